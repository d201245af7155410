#include "evaluation/pawn_ending.h"

#include <gtest/gtest.h>

#include <cstdlib>

#include "evaluation/evaluation.h"
#include "evaluation/passed_pawns.h"
#include "evaluation/side_view.h"
#include "evaluation_test_support.h"
#include "hash/hash.h"

namespace {

using namespace evaluation_test;

// A lone passer that the king can't catch: White Ke1, Pa5 against Kh8.
constexpr const char* RUNNER = "7k/8/8/P7/8/8/8/4K3 w - - 0 1";
constexpr const char* RUNNER_BLACK_TO_MOVE = "7k/8/8/P7/8/8/8/4K3 b - - 0 1";

class PawnEndingTest : public ::testing::Test {
 protected:
  void SetUp() override {
    EvaluationHashTable.Clear();
    PawnHashTable.Clear();
    record.settings = &settings;
  }

  // One test against the bound, on empty tables, as the search would make it.
  int EvaluateAt(const Board& board, int bound) {
    EvaluationHashTable.Clear();
    PawnHashTable.Clear();
    return Evaluate(record, board, bound, POSITION_PAWN_ENDING);
  }

  EvaluationSettings settings;
  EvaluationRecord record;
};

// Hand-worked, White's view. Ke1, Pa5 against Kh8: a lone passer outside the king's square runs.
// Passer 122 (rank value 95, free stop square 6, kings -2 - 6 + 9 + 20), tripled 366; the runner
// 760 with White to move, 720 with Black, doubled; pawn structure 9 (table 6, isolated -14,
// queenside majority 17) and majority term 18, tripled 81; the black king is held in the pawn's
// square on h8 while White's reaches 59 squares: 3 * 58.
TEST_F(PawnEndingTest, HandWorkedPositions) {
  EXPECT_EQ(EvaluateAt(FromFen(RUNNER), 0), 300 + 1520 + 366 + 81 + 174);
  EXPECT_FALSE(record.lazy);
  EXPECT_EQ(EvaluateAt(FromFen(RUNNER_BLACK_TO_MOVE), 0), -300 - (1440 + 366 + 81 + 174));
  EXPECT_FALSE(record.lazy);
  // With Pg2 against Pg6 besides: the pawn structure holds g2 (4 - 10) and g6 (4 - 10), the g2
  // pawn can step twice and gains a tempo (+16), and White's king reaches 56 squares.
  EXPECT_EQ(EvaluateAt(FromFen("7k/8/6p1/P7/8/8/6P1/4K3 w - - 0 1"), 0), 300 + 1520 + 366 + 81 + 16 + 165);
  // Passers on both wings and on both sides, Kd1, Pa4, Ph4 against Ke8, Pd5: passers 58 + 52 - 35,
  // tripled 225; no race without the two-pawn table; pawn structure -13 + 2 * 17 and majority term
  // 18, tripled 117; passers on both wings 60; kings reach 32 and 7 squares, 3 * 25.
  Board board = FromFen("4k3/8/8/3p4/P6P/8/8/3K4 w - - 0 1");
  EXPECT_EQ(EvaluateAt(board, 0), 300 + 225 + 117 + 60 + 75);
  EXPECT_EQ(PawnRace(record, board), 0);
}

int lookups = 0;
int race_table[64][64];  // by White pawn and Black pawn

int FakeTwoPawns(Color, Square, Square, Square white_pawn, Square black_pawn) {
  ++lookups;
  return race_table[white_pawn][black_pawn];
}

// Each White passer is met by Black's best answer, and White picks its best passer.
TEST_F(PawnEndingTest, PassersAgainstPassersTakeTheBestPawnAgainstTheBestAnswer) {
  const char* white_to_move = "4k3/8/4p3/3p4/P6P/8/8/3K4 w - - 0 1";
  Board board = FromFen(white_to_move);
  EvaluateAt(board, 0);  // fills `passed_front`
  race_table[Sq("h4")][Sq("d5")] = 3;
  race_table[Sq("h4")][Sq("e6")] = 1;
  race_table[Sq("a4")][Sq("d5")] = 0;
  race_table[Sq("a4")][Sq("e6")] = 3;
  EXPECT_EQ(PassersRace(record, board, FakeTwoPawns), 0);  // h4 loses to e6, a4 draws against d5

  Board black = FromFen("4k3/8/4p3/3p4/P6P/8/8/3K4 b - - 0 1");
  EvaluateAt(black, 0);
  EXPECT_EQ(PassersRace(record, black, FakeTwoPawns), -150);  // every White passer meets a win

  // Once a passer can do no better than the best so far, its other answers aren't looked up.
  EvaluateAt(board, 0);
  race_table[Sq("h4")][Sq("e6")] = 0;
  race_table[Sq("h4")][Sq("d5")] = 0;
  race_table[Sq("a4")][Sq("d5")] = 1;
  lookups = 0;
  EXPECT_EQ(PassersRace(record, board, FakeTwoPawns), 0);
  EXPECT_EQ(lookups, 3);
}

// The estimate before the costly terms is the material and t: 100 + 1520 + 366 = 1986 for the
// runner, so bounds more than 3000 away answer at once.
TEST_F(PawnEndingTest, DecidedRacesAnswerBeforeTheCostlyTerms) {
  const Board board = FromFen(RUNNER);
  EXPECT_EQ(EvaluateAt(board, 1986 + 3001), 1986 + 3000);
  EXPECT_TRUE(record.lazy);
  EXPECT_EQ(EvaluateAt(board, 1986 + 3000), 2441);
  EXPECT_FALSE(record.lazy);
  // Black to move sees -(100 + 1440 + 366).
  EXPECT_EQ(EvaluateAt(FromFen(RUNNER_BLACK_TO_MOVE), -1906 + 3001), -1906 + 3000);
  EXPECT_TRUE(record.lazy);
}

// A side without pawns can't win, and its enemy can't lose: the estimate is held at the draw score
// on that side, so a large contempt moves the lazy answer, though never the full score.
TEST_F(PawnEndingTest, TheEstimateKeepsToTheDrawScoreWhenOneSideHasNoPawn) {
  const Board board = FromFen(RUNNER);  // Black has no pawn: White's estimate is at least the draw
  settings.white_draw_score = 2500;
  EXPECT_EQ(EvaluateAt(board, -600), -600);  // 2500 - -600 is past the margin; 1986 wouldn't be
  EXPECT_TRUE(record.lazy);
  EXPECT_EQ(EvaluateAt(board, 0), 2441);

  const Board mirror = Mirrored(board);  // White has no pawn; Black to move sees the same
  settings.white_draw_score = -2500;
  EXPECT_EQ(EvaluateAt(mirror, -600), -600);
  EXPECT_TRUE(record.lazy);
  EXPECT_EQ(EvaluateAt(mirror, 0), 2441);
}

// The colour-flipped position, with the other side to move, scores the same for the side to move,
// at every node of a small tree; and the lazy answers far from the score fall on its side.
TEST_F(PawnEndingTest, ScoresAreIndependentOfColour) {
  const char* const fens[] = {
      RUNNER,
      "7k/8/6p1/P7/8/8/6P1/4K3 b - - 0 1",
      "4k3/8/4p3/3p4/P6P/8/8/3K4 w - - 0 1",
      "4k3/p5pp/8/8/8/8/PP4P1/4K3 w - - 0 1",
      "8/5pk1/6p1/7p/7P/6P1/5PK1/8 w - - 0 1",
      "8/8/1p1k4/p1p5/P1P5/1P1K4/8/8 w - - 0 1",
      "8/pk6/1p6/1P6/P7/8/5K2/8 b - - 0 1",
      "8/3k4/8/3KP3/8/8/8/8 w - - 0 1",
  };
  int positions = 0;
  for (const char* fen : fens) {
    Board board = FromFen(fen);
    ForEachNode(board, 3, [&](const Board& node) {
      if (ClassifyPosition(node, NO_POSITION_TYPE) != POSITION_PAWN_ENDING) return;  // a pawn promoted
      ++positions;
      EvaluationHashTable.Clear();
      const int score = ExactEvaluation(record, node, POSITION_PAWN_ENDING);
      EvaluationHashTable.Clear();
      ASSERT_EQ(ExactEvaluation(record, Mirrored(node), POSITION_PAWN_ENDING), score) << fen;
      ASSERT_LE(std::abs(score), MATE_BOUND) << fen;
      ASSERT_LT(EvaluateAt(node, score + 4000), score + 4000) << fen;
      ASSERT_GE(EvaluateAt(node, score - 4000), score - 4000) << fen;
    });
  }
  EXPECT_GT(positions, 4000);
}

}  // namespace
