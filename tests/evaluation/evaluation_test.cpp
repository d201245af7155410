#include "evaluation/evaluation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <regex>
#include <string>

#include "evaluation_test_support.h"
#include "hash/hash.h"

namespace {

using namespace evaluation_test;

// Each test starts from empty tables, with the program's draw score 0 and no personality.
class EvaluateTest : public ::testing::Test {
 protected:
  void SetUp() override {
    EvaluationHashTable.Clear();
    PawnHashTable.Clear();
    EvalSettings = EvaluationSettings{};
    record.settings = &settings;
  }

  int ExactWithoutLazyExits(const Board& board, PositionType type) {
    record.allow_lazy_exits = false;
    EvaluationHashTable.Clear();
    int score = ExactEvaluation(record, board, type);
    EvaluationHashTable.Clear();
    record.allow_lazy_exits = true;
    return score;
  }

  EvaluationSettings settings;
  EvaluationRecord record;
};

// The other variant of the full evaluator, for positions with middlegame material.
bool HasFullVariants(PositionType type) { return type == POSITION_OPENING || type == POSITION_MIDDLEGAME; }

TEST_F(EvaluateTest, MateBoundsAreNeverReached) {
  const char* const fens[] = {
      "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
      "r7/8/4k3/8/8/4K3/4P3/R7 b - - 0 1",
  };
  for (const char* fen : fens) {
    Board board = FromFen(fen);
    PositionType type = ClassifyPosition(board, NO_POSITION_TYPE);
    EXPECT_EQ(Evaluate(record, board, 31767, type), 31766) << fen;
    EXPECT_EQ(Evaluate(record, board, 32767, type), 32766) << fen;
    EXPECT_EQ(Evaluate(record, board, -31767, type), -31767) << fen;
    EXPECT_EQ(Evaluate(record, board, -32767, type), -32767) << fen;
    // Mate bounds neither use nor fill the evaluation table.
    EXPECT_EQ(EvaluationHashTable.Probe(board.Key(), 0), EVALUATION_PROBE_MISS) << fen;
  }
}

TEST_F(EvaluateTest, ScoresAreIndependentOfColour) {
  int positions = 0;
  for (const auto& start : WalkStarts()) {
    Board board = FromFen(start.fen);
    ForEachNode(board, start.depth, [&](const Board& node) {
      Board mirror = Mirrored(node);
      PositionType type = ClassifyPosition(node, NO_POSITION_TYPE);
      ++positions;
      int score = ExactEvaluation(record, node, type);
      ASSERT_EQ(score, ExactEvaluation(record, mirror, type)) << start.fen << " type " << type;
      // No static score reaches the mate range.
      ASSERT_LE(std::abs(score), MATE_BOUND) << start.fen;
      if (HasFullVariants(type)) {
        // The other variant of the same position; the evaluation table would answer with the
        // first variant's score.
        PositionType other = POSITION_OPENING + POSITION_MIDDLEGAME - type;
        EvaluationHashTable.Clear();
        ASSERT_EQ(ExactEvaluation(record, node, other), ExactEvaluation(record, mirror, other))
            << start.fen << " type " << other;
      }
    });
  }
  EXPECT_GT(positions, 5000);
}

// The lazy test judges by an estimate and is taken as exact; in sharp positions the terms it skips
// (a king caught in the centre, say) can outweigh its margin, so a few lazy answers may differ from
// the full score, but only a few, and every answer without a lazy exit is exact.
TEST_F(EvaluateTest, LazyExitsAgreeWithTheFullEvaluation) {
  const int offsets[] = {-5000, -1000, -701, -400, -290, -276, -100, -1, 0,
                         1,     100,   276,  290,  400,  701,  1000, 5000};
  int lazy_answers = 0;
  int exact_answers = 0;
  int lazy_misjudgements = 0;
  for (const auto& start : WalkStarts()) {
    Board board = FromFen(start.fen);
    ForEachNode(board, start.depth - 1, [&](const Board& node) {
      PositionType type = ClassifyPosition(node, NO_POSITION_TYPE);
      int exact = ExactWithoutLazyExits(node, type);
      bool misjudged = false;
      for (int offset : offsets) {
        int bound = std::clamp(exact + offset, -MATE_BOUND, MATE_BOUND);
        EvaluationHashTable.Clear();
        int answer = Evaluate(record, node, bound, type);
        if (type != POSITION_MATING && record.lazy) {
          ++lazy_answers;
          ASSERT_TRUE(answer == bound || answer == bound - 1);
          if ((answer >= bound) != (exact >= bound)) {
            misjudged = true;
            ++lazy_misjudgements;
          }
          continue;
        }
        ASSERT_EQ(answer >= bound, exact >= bound) << start.fen << " bound " << bound;
        if (type == POSITION_MATING) continue;
        ++exact_answers;
        ASSERT_EQ(answer, exact) << start.fen << " bound " << bound;
      }
      // With lazy exits on, the bisection still finds the full score. A misjudged bound next to
      // the score (the offsets -1, 0 and 1) is the only way it can go astray.
      EvaluationHashTable.Clear();
      if (!misjudged) {
        ASSERT_EQ(ExactEvaluation(record, node, type), exact) << start.fen;
      }
    });
  }
  EXPECT_GT(lazy_answers, 1000);
  EXPECT_GT(exact_answers, 1000);
  EXPECT_LE(lazy_misjudgements * 100, lazy_answers) << lazy_misjudgements << " of " << lazy_answers;
}

// Pawn-rich middlegames, with isolated, doubled, backward and passed pawns on both sides.
const evaluation_test::WalkStart PAWN_STRUCTURES[] = {
    {"r1bq1rk1/pp3ppp/2n1pn2/3p4/3P4/2NBPN2/PP3PPP/R2QK2R w KQ - 0 9", 2},
    {"r2q1rk1/1b2bppp/p2ppn2/1p6/3NPP2/1BN5/PPP3PP/R2Q1RK1 w - - 0 12", 2},
    {"2r2rk1/pp3ppp/4pn2/q2p4/2PP4/P3PN2/5PPP/R2QR1K1 b - - 0 16", 2},
    {"r4rk1/5ppp/p1p5/1p1pP3/3P4/2P2N2/P4PPP/R4RK1 w - - 0 20", 2},
};

// A pawn table hit gives the same score as the miss that stored the entry; in both variants of
// the full evaluator also the same facts, pawn summary and potentials.
TEST_F(EvaluateTest, APawnTableHitScoresLikeTheMiss) {
  record.allow_lazy_exits = false;
  int compared = 0;
  auto compare = [&](const Board& node) {
    const PositionType classified = ClassifyPosition(node, NO_POSITION_TYPE);
    const bool full = HasFullVariants(classified);
    for (PositionType type : {classified, PositionType(POSITION_OPENING + POSITION_MIDDLEGAME - classified)}) {
      if (type != classified && !full) break;
      PawnHashTable.Clear();
      EvaluationHashTable.Clear();
      int from_miss = Evaluate(record, node, 0, type);
      EvaluationRecord miss = record;
      EvaluationHashTable.Clear();
      ASSERT_EQ(Evaluate(record, node, 0, type), from_miss) << ZephrinInterfaces::BoardToFen(node, 1) << " type " << type;
      ++compared;
      if (type == POSITION_MATING) continue;
      ASSERT_NE(PawnHashTable.Probe(node.PawnKey(), type), nullptr);
      ASSERT_EQ(record.pawn_summary.from_hash, 1);
      if (!full) continue;
      ASSERT_EQ(record.pawn_summary.positional, miss.pawn_summary.positional);
      ASSERT_EQ(record.pawn_summary.dynamic, miss.pawn_summary.dynamic);
      ASSERT_EQ(record.endgame_term, miss.endgame_term);
      ASSERT_EQ(record.rammed, miss.rammed);
      ASSERT_EQ(record.openness, miss.openness);
      for (int wing = 0; wing < 2; ++wing) ASSERT_EQ(record.majority[wing].owner, miss.majority[wing].owner);
      for (Color c : {WHITE, BLACK}) {
        ASSERT_EQ(KeptSets(record.pawns[c]), KeptSets(miss.pawns[c]));
        ASSERT_EQ(record.side_facts[c].attacks, miss.side_facts[c].attacks);
      }
      ASSERT_EQ(std::memcmp(record.potential, miss.potential, sizeof record.potential), 0);
    }
  };
  for (const auto& start : PAWN_STRUCTURES) {
    Board board = FromFen(start.fen);
    ForEachNode(board, start.depth, compare);
  }
  for (const auto& start : WalkStarts()) {
    Board board = FromFen(start.fen);
    ForEachNode(board, start.depth - 1, compare);
  }
  EXPECT_GT(compared, 5000);
}

// A lazy exit leaves both tables unchanged; a full answer fills them, and the evaluation table
// then answers the position without touching the record.
TEST_F(EvaluateTest, TheTablesLearnOnlyFullAnswers) {
  Board board = FromFen("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
  PositionType type = ClassifyPosition(board, NO_POSITION_TYPE);
  const std::uint64_t free_pawn_slots = PawnHashTable.FreeSlotCount();
  const std::uint64_t free_evaluation_slots = EvaluationHashTable.FreeSlotCount();
  EXPECT_EQ(Evaluate(record, board, 3000, type), 2999);
  EXPECT_TRUE(record.lazy);
  EXPECT_EQ(Evaluate(record, board, -3000, type), -3000);
  EXPECT_TRUE(record.lazy);
  EXPECT_EQ(PawnHashTable.FreeSlotCount(), free_pawn_slots);
  EXPECT_EQ(EvaluationHashTable.FreeSlotCount(), free_evaluation_slots);

  // A bound near the score is answered in full, and both tables learn the position.
  int exact = ExactWithoutLazyExits(board, type);
  EXPECT_EQ(Evaluate(record, board, exact, type), exact);
  EXPECT_FALSE(record.lazy);
  EXPECT_NE(PawnHashTable.Probe(board.PawnKey(), type), nullptr);
  EXPECT_EQ(EvaluationHashTable.Probe(board.Key(), exact), EVALUATION_PROBE_AT_LEAST_BOUND);
  EXPECT_EQ(EvaluationHashTable.Probe(board.Key(), exact + 1), EVALUATION_PROBE_BELOW_BOUND);

  // A sharper position, stored by the bisection of ExactEvaluation, answered from the table.
  board = FromFen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1");
  type = ClassifyPosition(board, NO_POSITION_TYPE);
  exact = ExactEvaluation(record, board, type);
  EXPECT_NE(EvaluationHashTable.Probe(board.Key(), exact), EVALUATION_PROBE_MISS);
  record.openness = 999;
  record.endgame_term = -999;
  EXPECT_EQ(Evaluate(record, board, exact + 1000, type), exact + 999);
  EXPECT_EQ(Evaluate(record, board, exact - 1000, type), exact - 1000);
  EXPECT_EQ(Evaluate(record, board, exact, type), exact);
  EXPECT_EQ(Evaluate(record, board, exact + 1, type), exact);
  EXPECT_EQ(record.openness, 999);
  EXPECT_EQ(record.endgame_term, -999);
}

TEST_F(EvaluateTest, TheMatingTypeUsesNeitherTableNorRecord) {
  Board board = FromFen("4k3/8/8/8/8/8/8/RNBQK3 w - - 0 1");
  ASSERT_EQ(ClassifyPosition(board, NO_POSITION_TYPE), POSITION_MATING);
  record.openness = 7;
  int score = ExactEvaluation(record, board, POSITION_MATING);
  EXPECT_EQ(record.openness, 7);
  EXPECT_EQ(EvaluationHashTable.FreeSlotCount(), EvaluationHashTable.SlotCount());
  EXPECT_GT(score, 1000);  // the mating evaluation's own values are its tests'
}

// The command's exact score is tested through the program; here that it keeps to settings of its own.
TEST_F(EvaluateTest, TheEvalCommandLeavesTheProgramsSettingsAlone) {
  Board board = FromFen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R b KQkq - 0 1");
  EvalSettings.white_draw_score = 55;
  const std::string text = EvaluationCommandText(board, 7);
  EXPECT_TRUE(std::regex_match(text, std::regex("eval: -?[0-9]+\n"))) << text;
  EXPECT_EQ(EvalSettings.white_draw_score, 55);
  EXPECT_EQ(EvalSettings.personality, 0);
}

}  // namespace
