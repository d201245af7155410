#include "evaluation/simple_evaluator.h"

#include <gtest/gtest.h>

#include "evaluation/passed_pawns.h"
#include "evaluation/pawn_facts.h"
#include "evaluation/position_type.h"
#include "evaluation/simple_pieces.h"
#include "evaluation/wrong_bishop_ending.h"
#include "evaluation_test_support.h"

namespace {

using namespace evaluation_test;

constexpr int FAR_BOUND = 30000;

// The simple evaluator's full score, as Evaluate calls it on a pawn table miss.
int FullSimple(const Board& board, EvaluationSettings* settings) {
  EvaluationRecord record = PassedOf(board);
  record.settings = settings;
  record.allow_lazy_exits = false;
  return EvaluateSimple(record, board, FAR_BOUND);
}

TEST(ScaleSimple, FewPawnsAndOppositeBishopsPullTheScoreTowardsADraw) {
  auto scale = [](const char* fen, int score, bool opposite_bishops) {
    Board board = FromFen(fen);
    EvaluationRecord record = FactsOf(board);
    return ScaleSimple(record, board, score, opposite_bishops);
  };
  const char* no_pawns = "4k3/8/8/8/8/8/8/2N1K3 w - - 0 1";
  EXPECT_EQ(scale(no_pawns, 40, false), 10);    // 40 * 2 / 8, above 40 - 50
  EXPECT_EQ(scale(no_pawns, 400, false), 350);  // 400 - 50 beats 100
  // Black is the stronger side with eight pawns: the score grows by an eighth.
  const char* eight = "4k3/pppppppp/8/8/8/8/8/2N1K3 w - - 0 1";
  EXPECT_EQ(scale(eight, -80, false), -90);
  EXPECT_EQ(scale(eight, 80, false), 30);  // White has no pawn: max(20, 30)
  // Opposite bishops alone: 350 * 6 / 8 = 262, * 2 / 8 = 65, but not below 350 - 250.
  EXPECT_EQ(scale("2b1k3/8/8/8/8/8/8/2B1K3 w - - 0 1", 400, true), 100);
  // With a knight more the bishops aren't alone: 350 * 6 / 8, against 100.
  EXPECT_EQ(scale("2b1k3/8/8/8/8/8/8/2B1K1N1 w - - 0 1", 400, true), 262);
}

TEST(EvaluateSimple, SidesWithoutMatingMaterialNeverScoreAboveTheDraw) {
  EvaluationSettings settings;
  settings.white_draw_score = -50;  // a program that plays for a win as White
  // A lone knight, two knights: no win for White whatever the material says.
  for (const char* fen : {"4k3/4p3/8/8/8/8/8/4K1N1 w - - 0 1", "4k3/4p3/8/8/8/8/8/3NK1N1 w - - 0 1",
                          "4k3/4p3/8/8/8/8/8/3NK1N1 b - - 0 1"}) {
    SCOPED_TRACE(fen);
    Board board = FromFen(fen);
    int white_view = board.side_to_move == WHITE ? FullSimple(board, &settings) : -FullSimple(board, &settings);
    EXPECT_EQ(white_view, -50);
  }
  // A bishop and a knight can win.
  EXPECT_GT(FullSimple(FromFen("4k3/4p3/8/8/8/8/8/3BK1N1 w - - 0 1"), &settings), 300);
  // The side that can't win may still lose: Black's pawns against the knight stay free.
  EXPECT_LT(FullSimple(FromFen("4k3/pppp4/8/8/8/8/8/4K1N1 w - - 0 1"), &settings), -50);
  // And the mirror: Black can't win, the draw score is White's view.
  Board mirror = Mirrored(FromFen("4k3/4p3/8/8/8/8/8/4K1N1 w - - 0 1"));
  settings.white_draw_score = 50;
  EXPECT_EQ(FullSimple(mirror, &settings), -50);  // Black to move
}

TEST(EvaluateSimple, WrongBishopAndRookPawn) {
  // The a-pawn's corner a8 is light, the bishop on e1 dark: a draw when the king is near a8.
  Board drawn = FromFen("1k6/8/2K5/P7/8/8/8/4B3 w - - 0 1");
  EvaluationSettings settings;
  EXPECT_EQ(FullSimple(drawn, &settings), 0);
  // King on d8, three away: 315 + 10 + 10 (strong king two away) + 62 for the pawn.
  Board far = FromFen("3k4/8/2K5/P7/8/8/8/4B3 b - - 0 1");
  EXPECT_EQ(FullSimple(far, &settings), -397);
  EXPECT_EQ(FullSimple(Mirrored(far), &settings), -397);
  // The right bishop: 835 + 62.
  Board right = FromFen("1k6/8/2K5/P7/8/8/8/3B4 w - - 0 1");
  EXPECT_EQ(FullSimple(right, &settings), 897);
  EXPECT_EQ(WrongBishopEnding(right.sides[WHITE], right.sides[BLACK].king_square, false), 897);
}

TEST(SimpleRooks, TheSingleOpenFileWithNoOwnPawn) {
  // Black has pawns on files a to g: h is the one open file, and White has no pawn at all.
  Board open = FromFen("4k3/ppppppp1/8/8/8/8/8/4K2R w - - 0 1");
  Board half = FromFen("4k3/ppppp1p1/5p2/8/8/8/8/4K1R1 w - - 0 1");
  EvaluationRecord open_record = FactsOf(open);
  EvaluationRecord half_record = FactsOf(half);
  ASSERT_EQ(open_record.single_open_file, 7);
  // 7 + 12 on the open file against 4 on a half-open one, with n = 8 both times.
  EXPECT_EQ(SimpleRooks(open_record, open) - SimpleRooks(half_record, half), 7 + 12 - 4);
}

// The types that Evaluate gives to the simple evaluator.
bool IsSimpleType(PositionType type) {
  return type == POSITION_EQUAL_PIECES || (type >= POSITION_KNIGHT_KNIGHT && type <= POSITION_LONE_QUEEN) ||
         type == POSITION_OTHER_ENDGAME;
}

const char* const SIMPLE_POSITIONS[] = {
    "8/5pk1/8/3n4/8/4B3/5PK1/8 w - - 0 1",
    "4k3/8/8/8/8/8/4P3/R3K2N b Q - 0 1",
    "2r3k1/5ppp/1b6/3p4/3P4/4N3/5PPP/2R3K1 w - - 0 1",
    "8/P7/8/8/1n6/7k/8/K7 w - - 0 1",
    "6k1/R4p1p/6p1/1r6/8/6P1/5P1P/2N3K1 b - - 0 1",
    "b5k1/1p3ppp/1P6/8/8/8/5PPP/B5K1 w - - 0 1",
    "8/8/1p2k3/1P6/8/3K2B1/8/8 w - - 0 1",
    "1b3rk1/R2R1p1p/6p1/8/8/8/5PPP/6K1 w - - 0 1",  // two rooks on one rank: which is the later one
};

// Every position of short walks from endgame positions: the mirror scores the same for the side
// to move, and a lazy answer always lies on the side of the bound where the full score is.
TEST(EvaluateSimple, MirrorsAgreeAndLazyAnswersMatchTheFullScore) {
  EvaluationSettings settings;
  int positions = 0;
  int lazy = 0;
  for (const char* fen : SIMPLE_POSITIONS) {
    Board board = FromFen(fen);
    ForEachNode(board, 2, [&](const Board& node) {
      if (!IsSimpleType(ClassifyPosition(node, NO_POSITION_TYPE))) return;
      ++positions;
      int full = FullSimple(node, &settings);
      ASSERT_EQ(FullSimple(Mirrored(node), &settings), full) << fen;
      for (int bound : {full - 900, full - 300, full, full + 1, full + 300, full + 900}) {
        EvaluationRecord record = PassedOf(node);
        record.settings = &settings;
        int answer = EvaluateSimple(record, node, bound);
        lazy += record.lazy;
        if (record.lazy) ASSERT_EQ(answer >= bound, full >= bound) << fen << " bound " << bound;
        else ASSERT_EQ(answer, full) << fen;
      }
    });
  }
  EXPECT_GT(positions, 500);
  EXPECT_GT(lazy, 100);
}

}  // namespace
