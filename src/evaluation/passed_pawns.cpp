#include "evaluation/passed_pawns.h"

#include "board/bitboard.h"
#include "evaluation/side_view.h"

namespace {

// Full evaluator: by file, and by rank from the pawn's own side (rank two is 1).
constexpr int PASSED_FILE_WEIGHT[8] = {7, 8, 7, 5, 5, 7, 8, 7};
constexpr ScorePair PASSED_RANK_VALUE[7] = {{0, 0},   {10, 5},  {12, 7},   {18, 10},
                                            {30, 20}, {55, 46}, {140, 140}};
// An enemy piece on the stop square: its weight by type, and the pair by the pawn's rank.
constexpr int BLOCKER_WEIGHT[7] = {0, 0, 8, 7, 6, 4, 10};
constexpr ScorePair BLOCKED_RANK_VALUE[7] = {{0, 0},   {2, 3},   {4, 4},  {6, 5},
                                             {12, 10}, {28, 30}, {72, 83}};

// Simple evaluator: the same ideas in plain integers.
constexpr int SIMPLE_PASSED_RANK_VALUE[7] = {0, 30, 35, 53, 85, 115, 200};
constexpr int SIMPLE_PASSED_FILE_WEIGHT[8] = {9, 9, 8, 7, 7, 8, 9, 9};
constexpr int SIMPLE_BLOCKED_RANK_VALUE[7] = {0, 4, 5, 12, 27, 40, 85};
constexpr int SIMPLE_BLOCKER_WEIGHT[7] = {0, 0, 8, 7, 4, 4, 9};
// By king distance 0 to 7: the own king to the pawn and to the promotion square, the enemy king
// to the pawn and to the promotion square. No king can stand on the pawn's square.
constexpr int OWN_KING_TO_PAWN[8] = {0, 4, 3, 0, -2, -3, -5, -6};
constexpr int OWN_KING_TO_QUEEN[8] = {6, 6, 3, 0, -3, -4, -5, -6};
constexpr int ENEMY_KING_TO_PAWN[8] = {0, 5, 3, 1, 0, -3, -6, -9};
constexpr int ENEMY_KING_TO_QUEEN[8] = {5, 5, 3, -1, -5, -12, -16, -20};

// The squares of the pawn's file behind it, as its colour looks.
Bitboard BehindOnFile(Color c, Square s) { return Tables.front_span[c ^ 1][s] & FileMask(FileOf(s)); }

Square StopSquare(Color c, Square s) { return c == WHITE ? s + 8 : s - 8; }

// The enemy piece on the stop square, NO_PIECE when there is none.
PieceType EnemyOnStop(const Board& board, Color c, Square s) {
  Square stop = StopSquare(c, s);
  return (board.sides[c ^ 1].all & SquareBit(stop)) != 0 ? board.TypeOn(stop) : NO_PIECE;
}

Square PassedFrontOnFile(const EvaluationRecord& record, Color c, int file) {
  Bitboard front = record.pawns[c].passed_front & FileMask(file);
  return FirstBit(front);
}

int SimplePassedPawn(const Board& board, Color c, Square s) {
  const int f = FileOf(s);
  const int r = RelativeRank(s, c);
  const Bitboard file = FileMask(f);
  const Bitboard behind = BehindOnFile(c, s);
  int v = SIMPLE_PASSED_RANK_VALUE[r] * SIMPLE_PASSED_FILE_WEIGHT[f] / 8;

  const Bitboard own_rooks = board.sides[c].rooks & file;
  if (own_rooks != 0) v += (own_rooks & behind) != 0 ? 12 : -8;
  const Bitboard enemy_rooks = board.sides[c ^ 1].rooks & file;
  if (enemy_rooks != 0) v -= (enemy_rooks & behind) != 0 ? 10 : 4;

  PieceType blocker = EnemyOnStop(board, c, s);
  if (blocker != NO_PIECE) {
    v -= SIMPLE_BLOCKED_RANK_VALUE[r] * SIMPLE_BLOCKER_WEIGHT[blocker] / 8;
  } else if ((board.occupied & SquareBit(StopSquare(c, s))) == 0 && RelativeSquare(s, c) > 31) {
    v += 6;
  }

  const Square promotion = RelativeSquare(MakeSquare(f, 7), c);
  const Square own_king = board.sides[c].king_square;
  const Square enemy_king = board.sides[c ^ 1].king_square;
  v += OWN_KING_TO_PAWN[Tables.king_distance[own_king][s]] +
       OWN_KING_TO_QUEEN[Tables.king_distance[own_king][promotion]] -
       ENEMY_KING_TO_PAWN[Tables.king_distance[enemy_king][s]] -
       ENEMY_KING_TO_QUEEN[Tables.king_distance[enemy_king][promotion]];
  return v;
}

}  // namespace

void FindPassedFronts(EvaluationRecord& record) {
  for (Color c : {WHITE, BLACK}) {
    PawnFacts& facts = record.pawns[c];
    facts.passed_front = 0;
    for (int file = 0; file < 8; ++file) {
      Bitboard on_file = facts.passed & FileMask(file);
      facts.passed_front_rank[file] = 0;
      if (on_file == 0) continue;
      Square s = c == WHITE ? LastBit(on_file) : FirstBit(on_file);
      facts.passed_front |= SquareBit(s);
      facts.passed_front_rank[file] = std::uint16_t(RankOf(s));
    }
  }
}

ScorePair EvaluatePassedPawns(EvaluationRecord& record, const Board&) {
  FindPassedFronts(record);
  ScorePair own[2];
  for (Color c : {WHITE, BLACK}) {
    for (Bitboard fronts = record.pawns[c].passed_front; fronts != 0;) {
      Square s = PopFirstBit(fronts);
      int weight = PASSED_FILE_WEIGHT[FileOf(s)];
      ScorePair value = PASSED_RANK_VALUE[RelativeRank(s, c)];
      own[c] += ScorePair(weight * value.Positional() / 8, weight * value.Dynamic() / 8);
    }
  }
  return own[WHITE] - own[BLACK];
}

ScorePair PassedPawnDetails(EvaluationRecord& record, const Board& board, Color colour, int file) {
  const Square s = PassedFrontOnFile(record, colour, file);
  const int wing = WING_OF_FILE[file];
  const Bitboard behind = BehindOnFile(colour, s);
  ScorePair pair;

  if ((board.sides[colour].rooks & behind) != 0) pair += ScorePair(5, 5);
  const Bitboard enemy_rooks = board.sides[colour ^ 1].rooks & FileMask(file);
  if (enemy_rooks != 0) pair -= (enemy_rooks & behind) != 0 ? ScorePair(4, 2) : ScorePair(2, 0);

  PieceType blocker = EnemyOnStop(board, colour, s);
  if (blocker != NO_PIECE) {
    int t = BLOCKER_WEIGHT[blocker];
    ScorePair b = BLOCKED_RANK_VALUE[RelativeRank(s, colour)];
    pair -= ScorePair(t * b.Positional() / 8, t * b.Dynamic() / 8);
    AddDefence(record, colour ^ 1, wing, 2);
  } else if ((board.occupied & SquareBit(StopSquare(colour, s))) == 0 && RelativeSquare(s, colour) > 31) {
    pair += ScorePair(6, 8);
    AddAttack(record, colour, wing, 1);
  }
  return pair;
}

int SimplePassedPawns(EvaluationRecord& record, const Board& board) {
  FindPassedFronts(record);
  int sum[2] = {0, 0};
  for (Color c : {WHITE, BLACK}) {
    for (Bitboard fronts = record.pawns[c].passed_front; fronts != 0;) {
      sum[c] += SimplePassedPawn(board, c, PopFirstBit(fronts));
    }
  }
  return sum[WHITE] - sum[BLACK];
}
