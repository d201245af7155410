#include "evaluation/simple_pawn_structure.h"

#include <algorithm>
#include <cstdlib>

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

constexpr Bitboard FILES_A_TO_D = FileMask(0) | FileMask(1) | FileMask(2) | FileMask(3);
constexpr Bitboard MAJORITY_FILES[2] = {FILES_A_TO_D, ~FILES_A_TO_D};

bool In(Bitboard set, Square s) { return (set & SquareBit(s)) != 0; }

// Ranks from the pawn to the nearest square straight ahead that holds an enemy pawn or a guarded
// own pawn; 0 when there is none.
int DistanceAhead(const EvaluationRecord& record, const Board& board, Square s, Color c) {
  Bitboard stops = board.sides[c ^ 1].pawns | record.pawns[c].defended;
  Bitboard ahead = Tables.front_span[c][s] & FileMask(FileOf(s)) & stops;
  if (ahead == 0) return 0;
  Square nearest = c == WHITE ? FirstBit(ahead) : LastBit(ahead);
  return std::abs(RankOf(nearest) - RankOf(s));
}

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
  Bitboard fronts = record.pawns[c].passed_front;
  auto front_on = [&](int file) { return fronts & FileMask(file); };
  int v = 0;
  for (int file = 1; file <= 7;) {
    if (front_on(file) == 0) {
      file += 2;
      continue;
    }
    if (front_on(file - 1) == 0) {
      file += 1;
      continue;
    }
    int a = RelativeRank(FirstBit(front_on(file)), c);
    int b = RelativeRank(FirstBit(front_on(file - 1)), c);
    int hi = std::max(a, b);
    v += CONNECTED_RANK[hi] * CONNECTED_GAP[hi - std::min(a, b)] / 8;
    file += 2;
  }
  return v;
}

// Pawn chains: a guard that is itself guarded, in a duo or on an edge file is a sound base.
int Chains(const EvaluationRecord& record, const Board& board, Color c) {
  const PawnFacts& facts = record.pawns[c];
  Bitboard pawns = board.sides[c].pawns;
  Bitboard sound = facts.defended | facts.duos;
  int v = 0;
  for (Bitboard guarded = facts.defended; guarded != 0;) {
    Bitboard behind = StepBack(SquareBit(PopFirstBit(guarded)), c);
    const Bitboard guards[2][2] = {{(behind >> 1) & ~FILE_H & pawns, FILE_A},
                                   {(behind << 1) & ~FILE_A & pawns, FILE_H}};
    for (const auto& [guard, edge_file] : guards) {
      if (guard == 0) continue;
      v += (guard & (edge_file | sound)) != 0 ? 2 : -4;
    }
  }
  return v;
}

int MajorityPawns(const EvaluationRecord& record, const Board& board, int wing, Color c) {
  const WingMajority& majority = record.majority[wing];
  if (majority.owner != std::uint32_t(c + 1)) return 0;
  const PawnFacts& facts = record.pawns[c];
  Bitboard middle_ranks = RelativeRankMask(2, c) | RelativeRankMask(3, c) | RelativeRankMask(4, c) |
                          RelativeRankMask(5, c);
  Bitboard held = record.rammed | facts.backward;
  int v = 17;
  for (Bitboard pawns = board.sides[c].pawns & ~facts.passed & middle_ranks & MAJORITY_FILES[wing];
       pawns != 0;) {
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
