#include "evaluation/king_safety.h"

#include <algorithm>
#include <cmath>

#include "board/attacks.h"
#include "board/bitboard.h"
#include "evaluation/pawn_facts.h"
#include "evaluation/score_mix.h"
#include "evaluation/side_view.h"

namespace {

// Every king pays for being a target at all; one that may still castle hasn't found its home yet.
constexpr ScorePair BASE_PAIR(-20, -100);
constexpr ScorePair UNCASTLED_PAIR(-65, -75);
constexpr int UNCASTLED_CENTRE_ATTACK = -4;
constexpr int UNCASTLED_CENTRE_DEFENCE = -6;

// Occupied squares between the king and its castled square, 0 to 3, delay castling.
constexpr ScorePair CASTLING_PATH_PENALTY[4] = {{-4, -8}, {4, 8}, {8, 10}, {12, 14}};

// Files without an enemy pawn among the king's columns, 0 to 3.
constexpr ScorePair OPEN_COLUMN_PENALTY[4] = {{-6, -12}, {0, 6}, {6, 12}, {9, 18}};
constexpr int OPEN_COLUMN_ATTACK[4] = {-6, 4, 9, 13};

// A storming enemy pawn on relative rank two to five.
constexpr ScorePair STORM_PENALTY[4] = {{0, 0}, {6, 12}, {5, 13}, {3, 8}};
constexpr int STORM_ATTACK[4] = {0, 8, 7, 4};
// The storming pawn's distance in ranks from the nearest square the own pawns hold, 0 to 3.
constexpr ScorePair UNMET_STORM_PENALTY[4] = {{4, 12}, {3, 8}, {1, 5}, {0, 0}};
constexpr int UNMET_STORM_ATTACK[4] = {12, 10, 8, 0};

// King safety weighs more as the pawn structure opens, by openness / 2, in eighths.
constexpr int OPENNESS_SCALE[8] = {6, 6, 7, 8, 8, 9, 10, 11};

constexpr Square A1 = Sq("a1");
constexpr Square B1 = Sq("b1");
constexpr Square G1 = Sq("g1");
constexpr Square H1 = Sq("h1");

// The long diagonals along which a corner king without its fianchetto is exposed.
constexpr Bitboard A1_H8_DIAGONAL = SquareSet({"a1", "b2", "c3", "d4", "e5", "f6", "g7", "h8"});
constexpr Bitboard H1_A8_DIAGONAL = SquareSet({"h1", "g2", "f3", "e4", "d5", "c6", "b7", "a8"});
constexpr Bitboard B1_H7_DIAGONAL = SquareSet({"b1", "c2", "d3", "e4", "f5", "g6", "h7"});
constexpr Bitboard G1_A7_DIAGONAL = SquareSet({"g1", "f2", "e3", "d4", "c5", "b6", "a7"});

// The squares of the back rank beyond a corner king's neighbourhood.
constexpr Bitboard BackRankBeyond(Square king) {
  switch (king) {
    case A1: return SquareSet({"c1", "d1", "e1", "f1", "g1", "h1"});
    case B1: return SquareSet({"d1", "e1", "f1", "g1", "h1"});
    case G1: return SquareSet({"a1", "b1", "c1", "d1", "e1"});
    default: return SquareSet({"a1", "b1", "c1", "d1", "e1", "f1"});
  }
}

// One colour's king as seen from its own side: squares are stated for White and turned over for
// Black. `enemy` is the colour that attacks it.
struct KingSide {
  EvaluationRecord& record;
  const Board& board;
  Color own;
  Color enemy;

  Square Absolute(Square relative) const { return RelativeSquare(relative, own); }
  Piece On(Square relative) const { return board.squares[Absolute(relative)]; }
  bool OwnPiece(Square relative, PieceType type) const { return On(relative) == MakePiece(own, type); }
  bool EnemyPiece(Square relative) const { return On(relative) != 0 && ColorOf(On(relative)) == enemy; }
  bool OwnPawnOn(Bitboard relative_set) const { return Has(own, board.sides[own].pawns, relative_set); }
  bool OwnBishopOn(Bitboard relative_set) const { return Has(own, board.sides[own].bishops, relative_set); }
  int EnemyAttack(int wing) const { return record.potential[enemy][wing][POTENTIAL_ATTACK]; }
  int OwnDefence(int wing) const { return record.potential[own][wing][POTENTIAL_DEFENCE]; }
};

// The numbers of king_danger while a square is judged, kept wide until they are stored.
struct ShelterWork {
  ScorePair pair;
  int attack = 0;
  int shelter = 0;
  int gaps_near = 0;
  int gaps_far = 0;
  int open = 0;
  bool hole = false;
  bool adjacent = false;
};

// Minor pieces off the edge files stand in a missing pawn's place, a little.
void CoverByMinor(const KingSide& side, ShelterWork& work, Square square, ScorePair knight, ScorePair bishop) {
  int file = FileOf(square);
  if (file == 0 || file == 7) return;
  if (side.OwnPiece(square, KNIGHT)) {
    work.pair += knight;
    work.shelter += 2;
  } else if (side.OwnPiece(square, BISHOP)) {
    work.pair += bishop;
    work.shelter += 2;
  }
}

// The pawns on the king's file and its neighbours, on the two ranks in front of rank one.
void JudgeColumns(const KingSide& side, ShelterWork& work, Square king) {
  const int king_file = FileOf(king);
  const int first = std::max(king_file - 1, 0);
  const int last = std::min(king_file + 1, 7);
  for (int file = first; file <= last; ++file) {
    const Square x = file;
    const Square near = x + 8;
    const Square far = x + 16;
    const Square third = x + 24;
    if (side.record.files_without_pawn[side.enemy] & (1u << file)) ++work.open;

    const bool near_pawn = side.OwnPiece(near, PAWN);
    if (near_pawn) {
      work.pair += ScorePair(20, 28);
      if (file != first && side.OwnPiece(near - 1, PAWN)) work.adjacent = true;
    } else {
      ++work.gaps_near;
      if (side.EnemyPiece(near)) work.attack += 4;
      CoverByMinor(side, work, near, ScorePair(3, 6), ScorePair(2, 5));
    }

    const bool far_pawn = side.OwnPiece(far, PAWN);
    if (far_pawn) {
      work.pair += ScorePair(13, 22);
    } else {
      ++work.gaps_far;
      if (side.EnemyPiece(far)) work.attack += 4;
      CoverByMinor(side, work, far, ScorePair(2, 4), ScorePair(0, 2));
    }

    if (near_pawn || far_pawn) continue;
    if (side.OwnPiece(third, PAWN)) {
      work.pair -= ScorePair(10, 12);
      work.shelter -= 6;
    } else {
      work.pair -= ScorePair(12, 14);
      work.shelter -= 10;
    }
    if (x == B1 || x == G1) {
      work.hole = true;
      // A doubled isolated pawn beside the hole can neither fill it nor be defended.
      const Bitboard weak = side.record.pawns[side.own].doubled & side.record.pawns[side.own].isolated;
      if (weak & (SquareBit(side.Absolute(x + 9)) | SquareBit(side.Absolute(x + 7)))) {
        work.pair -= ScorePair(18, 25);
        work.shelter -= 10;
      }
    }
  }
}

struct CoverTerm {
  ScorePair pair;
  int shelter;
};

// The cover of a king with one gap in its pawns: a hole on b2 or g2, an open long diagonal
// before the corner, or a gap beside two pawns standing side by side.
CoverTerm OneGapCover(const KingSide& side, const ShelterWork& work, Square king) {
  if (work.hole) return {ScorePair(-20, -30), -10};
  if (king == A1 && !side.OwnPawnOn(SquareSet({"b2", "c3", "d4"})) && !side.OwnBishopOn(A1_H8_DIAGONAL)) {
    return {ScorePair(-4, -6), -6};
  }
  if (king == H1 && !side.OwnPawnOn(SquareSet({"g2", "f3", "e4"})) && !side.OwnBishopOn(H1_A8_DIAGONAL)) {
    return {ScorePair(-4, -6), -6};
  }
  if (king == B1 && !side.OwnPawnOn(SquareSet({"c2", "d3", "e4"})) && !side.OwnBishopOn(B1_H7_DIAGONAL)) {
    return {ScorePair(-2, -3), -4};
  }
  if (king == G1 && !side.OwnPawnOn(SquareSet({"f2", "e3", "d4"})) && !side.OwnBishopOn(G1_A7_DIAGONAL)) {
    return {ScorePair(-2, -3), -4};
  }
  if (work.adjacent) return {ScorePair(15, 26), 14};
  return {ScorePair(3, 10), 8};
}

// How many of the three squares in front hold a pawn; a king on rank two with none there counts
// the rank beyond.
CoverTerm PawnCover(const KingSide& side, const ShelterWork& work, Square king, bool on_rank_two) {
  int gaps = work.gaps_near;
  if (on_rank_two && gaps == 3) gaps = work.gaps_far;
  switch (gaps) {
    case 0: return {ScorePair(15, 26), 14};
    case 1: return OneGapCover(side, work, king);
    case 2: {
      const int file = FileOf(king);
      const bool pawn_on_knight_file = (file >= 6 && side.OwnPiece(Sq("g2"), PAWN)) ||
                                       (file <= 1 && side.OwnPiece(Sq("b2"), PAWN));
      if (pawn_on_knight_file) return {ScorePair(-5, -8), -7};
      return {ScorePair(-7, -12), -9};
    }
    default: return {ScorePair(-20, -25), -16};
  }
}

// Enemy pawns coming up the king's columns on ranks two to five.
void JudgePawnStorm(const KingSide& side, ShelterWork& work, Square king) {
  const int king_file = FileOf(king);
  const Bitboard enemy_pawns = side.board.sides[side.enemy].pawns;
  const Bitboard own_pawn_attacks = side.record.pawns[side.own].attacks;
  for (int file = std::max(king_file - 1, 0); file <= std::min(king_file + 1, 7); ++file) {
    const Bitboard stormers = enemy_pawns & FileMask(file) & RelativeSet(side.own, Rectangle('a', 'h', 2, 5));
    if (stormers == 0) continue;
    const Square p = RelativeSquare(side.own == WHITE ? FirstBit(stormers) : LastBit(stormers), side.own);
    const int p_rank = RankOf(p);
    work.pair -= STORM_PENALTY[p_rank - 1];
    work.attack += STORM_ATTACK[p_rank - 1];

    // The highest square at or below the stormer that the own pawns hold or watch.
    for (int rank = p_rank; rank >= 0; --rank) {
      const Square u = MakeSquare(file, rank);
      const bool own_pawn = side.OwnPiece(u, PAWN);
      if (!own_pawn && (own_pawn_attacks & SquareBit(side.Absolute(u))) == 0) continue;
      if (own_pawn) {
        work.attack -= 4;
        work.pair += ScorePair(2, 10);
      } else {
        const int distance = std::min(p_rank - rank, 3);
        work.pair -= UNMET_STORM_PENALTY[distance];
        work.attack += UNMET_STORM_ATTACK[distance];
      }
      break;
    }

    const bool chain_file = file <= 1 || file == 5 || file == 6;
    if (chain_file && side.On(p + 1) == MakePiece(side.enemy, PAWN)) {
      work.attack += 6;
      work.pair -= ScorePair(5, 16);
    }
    if (side.On(p + 8) != 0) {
      work.attack -= 2;
      work.pair += ScorePair(4, 8);
    }
  }
}

// The king judged as if it stood on `square` (relative); fills king_danger of its colour.
ScorePair KingShelter(const KingSide& side, Square square) {
  const int a = side.EnemyAttack(WING_QUEENSIDE);
  const int b = side.EnemyAttack(WING_KINGSIDE);
  const int c = side.EnemyAttack(WING_CENTRE);
  const int rank = RankOf(square);
  const int file = FileOf(square);

  ShelterWork work;
  if (rank >= 2) {
    work.attack = a + b + c + 10;
    work.shelter = side.OwnDefence(WING_CENTRE);
    work.pair = ScorePair(-120, -200);
  } else {
    if (file == 3 || file == 4) {
      work.attack = a + b + c;
      work.shelter = side.OwnDefence(WING_CENTRE);
      work.pair = ScorePair(-55, -80);
    } else if (file <= 2) {
      work.attack = a + c / 4;
      work.shelter = side.OwnDefence(WING_QUEENSIDE) + side.OwnDefence(WING_CENTRE) / 2;
      work.pair = ScorePair(2, 2);
    } else {
      work.attack = b + c / 4;
      work.shelter = side.OwnDefence(WING_KINGSIDE) + side.OwnDefence(WING_CENTRE) / 2;
      work.pair = ScorePair(6, 2);
    }
    const bool on_rank_two = rank == 1;
    Square king = square;
    if (on_rank_two) {
      king -= 8;
      work.shelter -= 8;
      work.pair -= ScorePair(6, 14);
    }
    JudgeColumns(side, work, king);
    work.pair -= OPEN_COLUMN_PENALTY[work.open];
    work.attack += OPEN_COLUMN_ATTACK[work.open];
    const CoverTerm cover = PawnCover(side, work, king, on_rank_two);
    work.pair += cover.pair;
    work.shelter += cover.shelter;
    if (file <= 1 || file >= 6) JudgePawnStorm(side, work, king);
  }

  KingDanger& danger = side.record.king_danger[side.own];
  danger = KingDanger{};
  danger.attack = std::int16_t(work.attack);
  danger.shelter = std::int16_t(work.shelter);
  danger.gaps_near = std::uint16_t(work.gaps_near);
  danger.gaps_far = std::uint16_t(work.gaps_far);
  danger.attack_factor = AttackCurve(danger.attack);
  return work.pair;
}

// (3 * toward_edge + other) / 4 for each half.
ScorePair BlendTowardsEdge(ScorePair toward_edge, ScorePair other) {
  return ScorePair((3 * toward_edge.Positional() + other.Positional()) / 4,
                   (3 * toward_edge.Dynamic() + other.Dynamic()) / 4);
}

// A king on the c- or f-file of its first two ranks is judged between its neighbours, mostly
// the one towards the edge, which is judged last so that its king_danger stays.
ScorePair KingShelterBlend(const KingSide& side, Square square) {
  if (RankOf(square) >= 2) return KingShelter(side, square);
  switch (FileOf(square)) {
    case 2: {
      ScorePair inner = KingShelter(side, square + 1);
      return BlendTowardsEdge(KingShelter(side, square - 1), inner);
    }
    case 5: {
      ScorePair inner = KingShelter(side, square - 1);
      return BlendTowardsEdge(KingShelter(side, square + 1), inner);
    }
    default: return KingShelter(side, square);
  }
}

bool HasStepBeyondFile(Bitboard steps, int file) {
  while (steps != 0) {
    if (FileOf(PopFirstBit(steps)) > file) return true;
  }
  return false;
}

// Two special cases of a corner king: an unprotected enemy pawn right in front of it, and a
// king without a step forward whose back rank an enemy rook or queen reaches.
ScorePair KingContact(const KingSide& side, Square king) {
  if (king != A1 && king != B1 && king != G1 && king != H1) return ScorePair();
  KingDanger& danger = side.record.king_danger[side.own];
  const BoardSide& own = side.board.sides[side.own];
  const BoardSide& enemy = side.board.sides[side.enemy];
  const Bitboard steps =
      Tables.king_attacks[side.Absolute(king)] & RelativeRankMask(1, side.own) & ~own.pawns;

  if (steps != 0) {
    const Square ahead = king + 8;
    const bool loose_pawn = side.On(ahead) == MakePiece(side.enemy, PAWN) &&
                            (side.record.pawns[side.enemy].defended & SquareBit(side.Absolute(ahead))) == 0;
    if (loose_pawn && !HasStepBeyondFile(steps, FileOf(ahead))) {
      danger.attack = std::int16_t(danger.attack - 10);
      danger.shelter = std::int16_t(danger.shelter + 2);
      return ScorePair(200, 240);
    }
    return ScorePair();
  }

  const Bitboard heavy = enemy.rooks | enemy.queens;
  Bitboard back_rank = RelativeSet(side.own, BackRankBeyond(king)) & side.record.side_facts[side.enemy].attacks;
  while (back_rank != 0) {
    if (Attackers(side.board, PopFirstBit(back_rank)) & heavy) {
      danger.shelter = std::int16_t(danger.shelter - 6);
      return ScorePair(-6, -12);
    }
  }
  return ScorePair();
}

// Castling rights that the enemy doesn't forbid by attacking the king's path.
int UsableCastling(const EvaluationRecord& record, const Board& board, Color c) {
  const int rights = board.State().castling;
  const int short_right = CASTLE_WHITE_SHORT << (2 * c);
  const int long_right = CASTLE_WHITE_LONG << (2 * c);
  const Bitboard enemy_attacks = record.side_facts[c ^ 1].attacks;
  int usable = rights & (short_right | long_right);
  if (enemy_attacks & RelativeSet(c, SquareSet({"f1", "g1"}))) usable &= ~short_right;
  if (enemy_attacks & RelativeSet(c, SquareSet({"b1", "c1", "d1"}))) usable &= ~long_right;
  return usable;
}

ScorePair PathPenalty(const KingSide& side, Bitboard relative_path) {
  return CASTLING_PATH_PENALTY[PopCount(side.board.occupied & RelativeSet(side.own, relative_path))];
}

// A king that may still castle is judged where castling would take it; any other where it stands.
ScorePair KingPair(const KingSide& side, int usable) {
  const int short_right = CASTLE_WHITE_SHORT << (2 * side.own);
  const int long_right = CASTLE_WHITE_LONG << (2 * side.own);
  const Bitboard long_path = SquareSet({"b1", "c1", "d1"});
  const Bitboard short_path = SquareSet({"f1", "g1"});
  if ((usable & short_right) && (usable & long_right)) {
    const ScorePair long_pair = KingShelter(side, B1);
    const KingDanger long_danger = side.record.king_danger[side.own];
    const ScorePair short_pair = KingShelter(side, G1);
    const int long_value = (long_pair.Positional() + long_pair.Dynamic()) / 2;
    const int short_value = (short_pair.Positional() + short_pair.Dynamic()) / 2;
    if (short_value < long_value) {
      side.record.king_danger[side.own] = long_danger;
      return long_pair - PathPenalty(side, long_path);
    }
    return short_pair - PathPenalty(side, short_path);
  }
  if (usable & short_right) return KingShelter(side, G1) - PathPenalty(side, short_path);
  if (usable & long_right) return KingShelter(side, B1) - PathPenalty(side, long_path);
  const Square king = RelativeSquare(side.board.sides[side.own].king_square, side.own);
  ScorePair pair = KingShelterBlend(side, king);
  return pair + KingContact(side, king);
}

// x * numerator / denominator, truncating towards zero, for both halves.
ScorePair ScaleTruncating(ScorePair pair, int numerator, int denominator) {
  return ScorePair(pair.Positional() * numerator / denominator, pair.Dynamic() * numerator / denominator);
}

int ScaleByEndgame(int x, double g) { return int(std::trunc(x * g + 0.5)); }

}  // namespace

ScorePair EvaluateKingSafety(EvaluationRecord& record, const Board& board) {
  ScorePair pairs[2] = {BASE_PAIR, BASE_PAIR};
  const int rights = board.State().castling;
  for (Color c : {WHITE, BLACK}) {
    if ((rights & CASTLE_RIGHTS_OF[c]) == 0) continue;
    pairs[c] += UNCASTLED_PAIR;
    AddAttack(record, c, WING_CENTRE, UNCASTLED_CENTRE_ATTACK);
    AddDefence(record, c, WING_CENTRE, UNCASTLED_CENTRE_DEFENCE);
  }
  const int usable[2] = {UsableCastling(record, board, WHITE), UsableCastling(record, board, BLACK)};
  for (Color c : {WHITE, BLACK}) pairs[c] += KingPair(KingSide{record, board, c, c ^ 1}, usable[c]);

  // Without the enemy queen an attack rarely gets through.
  for (Color c : {WHITE, BLACK}) {
    if (board.sides[c ^ 1].queens == 0) pairs[c] = ScaleTruncating(pairs[c], 3, 8);
  }
  const int openness_scale = OPENNESS_SCALE[std::min(record.openness >> 1, 7)];
  const double endgame_scale = 1.2 - record.endgame_factor;
  for (Color c : {WHITE, BLACK}) {
    pairs[c] = ScaleTruncating(pairs[c], openness_scale, 8);
    int positional = ScaleByEndgame(pairs[c].Positional(), endgame_scale);
    int dynamic = ScaleByEndgame(pairs[c].Dynamic(), endgame_scale);
    // A king's weaknesses hurt as far as an attack on it is under way.
    if (dynamic < 0) {
      dynamic = int(std::lround(dynamic * std::min(record.king_danger[c].attack_factor + 0.2, 1.2)));
    }
    pairs[c] = ScorePair(positional, dynamic);
  }
  return pairs[WHITE] - pairs[BLACK];
}
