#include "evaluation/simple_pawn_structure.h"

#include <algorithm>

#include "board/bitboard.h"
#include "evaluation/side_view.h"

namespace {

// By square for White, rank one first.
constexpr std::int16_t SIMPLE_PAWN[64] = {
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  4,  4,  3,  3,  4,  4,  0,
     0,  4,  4,  3,  3,  4,  4,  0,
     3,  6,  6,  5,  5,  6,  6,  3,
     6,  8,  8,  7,  7,  8,  8,  6,
     9, 11, 11, 10, 10, 11, 11,  9,
    17, 18, 18, 18, 18, 18, 18, 17,
     0,  0,  0,  0,  0,  0,  0,  0,
};
// A pawn with an own pawn beside it.
constexpr std::int16_t SIMPLE_DUO[64] = {
     0,  0,  0,  0,  0,  0,  0,  0,
     2,  3,  3,  3,  3,  3,  3,  2,
     2,  3,  3,  3,  3,  3,  3,  2,
     3,  4,  4,  4,  4,  4,  4,  3,
     7,  7,  7,  7,  7,  7,  7,  7,
    10, 10, 10, 10, 10, 10, 10, 10,
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
};
// A pawn guarded by an own pawn.
constexpr std::int16_t SIMPLE_DEFENDED[64] = {
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
     3,  4,  4,  4,  4,  4,  4,  3,
     5,  3,  3,  3,  3,  3,  3,  5,
     3,  3,  3,  3,  3,  3,  3,  3,
     3,  3,  3,  3,  3,  3,  3,  3,
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
};

// A weak backward pawn by its distance to the next stop ahead (1 can't occur).
constexpr int WEAK_BACKWARD[6] = {-20, -14, -14, -15, -15, -16};
// Two isolated pawns on a file by the distance ahead of the front one.
constexpr int DOUBLED_ISOLATED[6] = {-48, -40, -42, -44, -44, -44};
// A passed pawn guarded by an own pawn that isn't passed: by rank (rank two is 1) and by file.
constexpr int GUARDED_PASSER_RANK[7] = {0, 0, 3, 10, 30, 55, 90};
constexpr int GUARDED_PASSER_FILE[8] = {7, 8, 8, 8, 8, 8, 8, 7};
// Connected passers: by the higher pawn's rank, and by the rank gap.
constexpr int CONNECTED_RANK[7] = {0, 39, 40, 45, 54, 75, 118};
constexpr int CONNECTED_GAP[6] = {10, 9, 7, 5, 3, 2};
// Majority pawns off the passed ones, by rank from the owner's side (rank three is 2).
constexpr int MAJORITY_PAWN[6] = {0, 0, 2, 7, 10, 12};

bool In(Bitboard set, Square s) { return (set & SquareBit(s)) != 0; }

int ScorePawn(const EvaluationRecord& record, int d, Square s, Color c) {
  const PawnFacts& facts = record.pawns[c];
  const Square r = RelativeSquare(s, c);
  int v = SIMPLE_PAWN[r];
  if (In(facts.backward, s)) {
    if (In(facts.backward_weak, s)) v += WEAK_BACKWARD[std::min(d, 5)];
    else v += d == 0 ? -10 : -8;
  }
  if (In(facts.isolated, s) && !In(facts.doubled, s)) return v + (d == 0 ? -14 : -10);
  if (In(facts.passed_front, s)) return v;
  if (In(facts.duos, s)) v += SIMPLE_DUO[r];
  if (In(facts.defended, s)) v += SIMPLE_DEFENDED[r];
  return v;
}

// Doubled and tripled pawns, judged by the file's front pawn.
int ScoreFile(const EvaluationRecord& record, const Board& board, const int ahead[64], int file, Color c) {
  const PawnFacts& facts = record.pawns[c];
  int count = facts.file_counts[file];
  if (count < 2) return 0;
  Bitboard on_file = board.sides[c].pawns & FileMask(file);
  int d = ahead[c == WHITE ? LastBit(on_file) : FirstBit(on_file)];
  bool iso = (facts.isolated & FileMask(file)) != 0;
  if (count > 2) return -(iso ? 85 : 65) - (d == 0 ? 5 : 0);
  if (!iso) return -18;
  return DOUBLED_ISOLATED[std::min(d, 5)];
}

int GuardedPasser(const EvaluationRecord& record, const Board& board, int file, Color c) {
  const PawnFacts& facts = record.pawns[c];
  Bitboard front = facts.passed_front & FileMask(file);
  if (front == 0) return 0;
  Square s = FirstBit(front);
  Bitboard guards = Tables.pawn_attacks[c ^ 1][s] & board.sides[c].pawns & ~facts.passed;
  if (guards == 0) return 0;
  return GUARDED_PASSER_RANK[RelativeRank(s, c)] * GUARDED_PASSER_FILE[file] / 8;
}

// Passed pawns that lead neighbouring files, the closer in rank the better.
int ConnectedPassers(const EvaluationRecord& record, Color c) {
  int v = 0;
  ForEachConnectedPasserPair(record.pawns[c].passed_front, c, [&](int, int high_rank, int gap) {
    v += CONNECTED_RANK[high_rank] * CONNECTED_GAP[gap] / 8;
  });
  return v;
}

// Pawn chains: a sound base for a guard counts for it, an unsound one against it.
int Chains(const EvaluationRecord& record, const Board& board, Color c) {
  int v = 0;
  ForEachChainGuard(record.pawns[c], board.sides[c].pawns, c,
                    [&](Bitboard, bool sound) { v += sound ? 2 : -4; });
  return v;
}

int MajorityPawns(const EvaluationRecord& record, const Board& board, int wing, Color c) {
  const WingMajority& majority = record.majority[wing];
  if (majority.owner != std::uint32_t(c + 1)) return 0;
  Bitboard held = record.rammed | record.pawns[c].backward;
  int v = 17;
  for (Bitboard pawns = MajorityAdvancers(record, board, wing, c); pawns != 0;) {
    Square s = PopFirstBit(pawns);
    v += MAJORITY_PAWN[RelativeRank(s, c)];
    if (In(held, s)) v -= 8;
  }
  return v;
}

}  // namespace

void SimplePawnStructure(EvaluationRecord& record, const Board& board) {
  int own[2] = {0, 0};
  int ahead[64] = {};
  for (Color c : {WHITE, BLACK}) {
    const PawnFacts& facts = record.pawns[c];
    for (int i = 0; i < facts.pawn_count; ++i) {
      Square s = facts.pawn_squares[i];
      ahead[s] = DistanceAhead(record, board, s, c);
      own[c] += ScorePawn(record, ahead[s], s, c);
    }
  }
  for (int file = 0; file < 8; ++file) {
    for (Color c : {WHITE, BLACK}) {
      own[c] += ScoreFile(record, board, ahead, file, c) + GuardedPasser(record, board, file, c);
    }
  }
  for (Color c : {WHITE, BLACK}) {
    own[c] += ConnectedPassers(record, c) + Chains(record, board, c);
    own[c] += MajorityPawns(record, board, WING_QUEENSIDE, c) + MajorityPawns(record, board, WING_KINGSIDE, c);
  }
  record.pawn_summary.simple = std::int16_t(own[WHITE] - own[BLACK]);
}
