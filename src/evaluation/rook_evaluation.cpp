#include "evaluation/rook_evaluation.h"

#include <algorithm>
#include <cstdlib>

#include "board/bitboard.h"
#include "evaluation/piece_tables.h"
#include "evaluation/side_view.h"

namespace {

// By the squares the rook covers on its file, through own rooks and queens, 1 to 7.
constexpr ScorePair FILE_MOBILITY[7] = {ScorePair(-4, -10), ScorePair(-2, -8), ScorePair(0, -2), ScorePair(1, 4),
                                        ScorePair(2, 6),    ScorePair(3, 8),   ScorePair(4, 10)};

// Corners where a rook is shut in behind its king, stated for White.
constexpr Bitboard CORNERS[2] = {SquareSet({"a1", "b1", "c1", "a2", "b2", "a3"}),
                                 SquareSet({"f1", "g1", "h1", "g2", "h2", "h3"})};

constexpr int RANK_SEVEN = 6;  // counted from 0

enum class FileKind { OPEN, HALF_OPEN, BEHIND_PAWN, PAST_PAWN };

// The first square of a set beyond some square, as the colour looks.
Square Nearest(Color colour, Bitboard set) { return colour == WHITE ? FirstBit(set) : LastBit(set); }

bool EnemyKingOnLastRanks(const Board& board, Color colour) {
  return RelativeRank(board.sides[colour ^ 1].king_square, colour) >= RANK_SEVEN;
}

// The rook's file, through every own rook and queen on it, without the rook's own square.
Bitboard FileReach(const Board& board, Color colour, Square s) {
  const Bitboard sliders = board.sides[colour].rooks | board.sides[colour].queens;
  Bitboard reach = board.FileAttacks(s);
  Bitboard seen = SquareBit(s);
  for (Bitboard next = reach & sliders; next != 0; next = reach & sliders & ~seen) {
    Square t = FirstBit(next);
    seen |= SquareBit(t);
    reach |= board.FileAttacks(t);
  }
  return reach & ~SquareBit(s);
}

FileKind ClassifyFile(const Board& board, Color colour, Square s) {
  const Bitboard file = FileMask(FileOf(s));
  const Bitboard own_pawns = board.sides[colour].pawns & file;
  const Bitboard enemy_pawns = board.sides[colour ^ 1].pawns & file;
  if ((own_pawns | enemy_pawns) == 0) return FileKind::OPEN;
  if (own_pawns == 0) return FileKind::HALF_OPEN;
  const Bitboard ahead = LaterSquares(colour, s);
  if ((own_pawns & ahead) == 0) return FileKind::PAST_PAWN;
  Square own_first = Nearest(colour, own_pawns & ahead);
  if ((enemy_pawns & ahead & ~LaterSquares(colour, own_first)) != 0) return FileKind::HALF_OPEN;
  return FileKind::BEHIND_PAWN;
}

// Another own rook beside this one on the first two ranks, with no pawns in front of either.
ScorePair BesideRook(EvaluationRecord& record, const Board& board, Color colour, Square s, int wing) {
  const int f = FileOf(s);
  if (RelativeSquare(s, colour) > 14 || f == 7) return ScorePair();
  const BoardSide& own = board.sides[colour];
  const Bitboard files = FileMask(f) | FileMask(f + 1);
  bool neighbour = (own.rooks & FileMask(f + 1) & RelativeSet(colour, RankMask(0) | RankMask(1))) != 0;
  bool pawn_in_front = (own.pawns & files & RelativeSet(colour, RankMask(1) | RankMask(2))) != 0;
  if (!neighbour || pawn_in_front) return ScorePair();
  AddAttack(record, colour, wing, 1);
  AddDefence(record, colour, wing, 1);
  return ScorePair(2, 4);
}

ScorePair OpenFile(EvaluationRecord& record, const Board& board, Color colour, Square s, int wing,
                   bool doubled) {
  const int f = FileOf(s);
  int n = PopCount(board.sides[colour ^ 1].rooks & FileMask(f));
  int m = doubled ? 2 : 1;
  ScorePair pair;
  int attack, defence;
  if (f == record.single_open_file) {
    if (m > n) {
      pair = ScorePair(35, 36), attack = 8, defence = 8;
    } else {
      pair = ScorePair(25, 30), attack = 12, defence = 4;
    }
  } else if (m > n) {
    pair = ScorePair(7, 15), attack = 6, defence = 3;
  } else {
    pair = ScorePair(16, 25), attack = 8, defence = 2;
  }
  AddAttack(record, colour, wing, attack);
  AddDefence(record, colour, wing, defence);
  return pair;
}

// A rook behind an own pawn: hemmed in on its first ranks, and shut in behind a king that can no
// longer castle.
ScorePair BehindPawn(EvaluationRecord& record, const Board& board, Color colour, Square s, int wing,
                     Bitboard attacks) {
  const BoardSide& own = board.sides[colour];
  ScorePair pair;
  Square pawn = Nearest(colour, own.pawns & FileMask(FileOf(s)) & LaterSquares(colour, s));
  int pawn_rank = RelativeRank(pawn, colour);
  if (pawn_rank == 1 || pawn_rank == 2) {
    pair -= ScorePair(6, 14);
    AddAttack(record, colour, wing, -4);
    Bitboard lateral = attacks & ~board.FileAttacks(s) & ~own.all;
    if (lateral == 0) {
      pair -= ScorePair(2, 6);
      AddAttack(record, colour, wing, -5);
    }
    bool open_first_rank = false;
    for (Bitboard first = lateral & RelativeSet(colour, RankMask(0)); first != 0;) {
      if ((own.pawns & FileMask(FileOf(PopFirstBit(first)))) == 0) open_first_rank = true;
    }
    if (open_first_rank) {
      pair += ScorePair(6, 12);
      AddAttack(record, colour, wing, 4);
    }
  }
  if ((board.State().castling & CASTLE_RIGHTS_OF[colour]) != 0) return pair;
  const Bitboard king = SquareBit(own.king_square);
  for (Bitboard corner : CORNERS) {
    corner = RelativeSet(colour, corner);
    if ((corner & SquareBit(s)) == 0 || (corner & king) == 0) continue;
    if ((attacks & ~corner & ~king & ~own.pawns) != 0) continue;
    pair -= ScorePair(50, 70);
    AddAttack(record, colour, wing, -8);
    AddDefence(record, colour, wing, -5);
  }
  return pair;
}

ScorePair EvaluateRook(EvaluationRecord& record, const Board& board, Color colour, Square s) {
  const Color enemy = colour ^ 1;
  const BoardSide& own = board.sides[colour];
  const BoardSide& other = board.sides[enemy];
  const int f = FileOf(s);
  const int wing = KNIGHT_WING_OF_FILE[f];
  const Bitboard later = own.rooks & LaterSquares(colour, s);
  const bool on_seventh = RelativeRank(s, colour) == RANK_SEVEN;
  const bool king_on_last_ranks = EnemyKingOnLastRanks(board, colour);

  AddEndgameTerm(record, colour, 24);
  ScorePair pair = RookValue(board);

  const Bitboard reach = FileReach(board, colour, s);
  pair += FILE_MOBILITY[std::clamp(PopCount(reach), 1, 7) - 1];

  const Bitboard attacks = board.RookAttacks(s);
  record.side_facts[colour].attacks |= attacks;
  const FileKind kind = ClassifyFile(board, colour, s);

  // Connection with a higher own rook.
  const Bitboard connected = later & attacks;
  const bool doubled = (reach & later) != 0;
  if ((connected & RelativeSet(colour, RankMask(RANK_SEVEN))) != 0 && on_seventh && king_on_last_ranks) {
    pair += ScorePair(15, 28);
    AddAttack(record, colour, WING_CENTRE, 10);
  } else {
    if (connected != 0) {
      pair += ScorePair(8, 12);
      AddDefence(record, colour, WING_CENTRE, 2);
    } else if (doubled) {  // seen only through a queen
      pair -= ScorePair(6, 10);
      AddAttack(record, colour, wing, -2);
      AddDefence(record, colour, wing, -4);
    }
    pair += BesideRook(record, board, colour, s, wing);
  }

  switch (kind) {
    case FileKind::OPEN:
      pair += OpenFile(record, board, colour, s, wing, doubled);
      break;
    case FileKind::HALF_OPEN:
      pair += ScorePair(12, 18);
      AddAttack(record, colour, wing, 6);
      break;
    case FileKind::PAST_PAWN:
      AddAttack(record, colour, wing, 6);
      AddDefence(record, colour, wing, -6);
      break;
    case FileKind::BEHIND_PAWN:
      return pair + BehindPawn(record, board, colour, s, wing, attacks);
  }

  if (on_seventh && king_on_last_ranks) {
    pair += ScorePair(28, 50);
    AddAttack(record, colour, WING_CENTRE, 14);
  }
  const int king_file = FileOf(other.king_square);
  if (f == king_file) {
    pair += ScorePair(15, 38);
    AddAttack(record, colour, KingWing(record, enemy), 13);
  } else if (std::abs(f - king_file) == 1) {
    pair += ScorePair(12, 33);
    AddAttack(record, colour, KingWing(record, enemy), 11);
  }
  if ((other.queens & FileMask(f)) != 0) {
    pair += ScorePair(8, 25);
    AddAttack(record, colour, wing, 4);
    AddDefence(record, enemy, wing, -9);
  }
  return pair;
}

}  // namespace

ScorePair EvaluateRooks(EvaluationRecord& record, const Board& board, Color colour) {
  return SumOverPieces(board.sides[colour].rooks,
                       [&](Square s) { return EvaluateRook(record, board, colour, s); });
}
