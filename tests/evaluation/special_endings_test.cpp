#include "evaluation/special_endings.h"

#include <gtest/gtest.h>

#include "board/attack_tables.h"
#include "evaluation/mating_evaluation.h"
#include "evaluation/rook_and_pawn.h"
#include "evaluation/side_view.h"
#include "evaluation_test_support.h"

using namespace evaluation_test;

// The squares of White's rook, Black's rook, White's king, Black's king and White's pawn.
TEST(RookAndPawnTest, QueeningSquareCutOffKingAndTheBridge) {
  InitAttackTables();
  // The weak king on the queening square holds whatever else stands.
  EXPECT_EQ(RookAndPawn(Sq("a2"), Sq("h1"), Sq("d6"), Sq("e8"), Sq("e7")), 10);
  // The rook on the e-file keeps the king on the f-file away from the c-pawn.
  for (const char* wk : {"a1", "c7", "h1", "d4"}) {
    EXPECT_EQ(RookAndPawn(Sq("e2"), Sq("a8"), Sq(wk), Sq("f5"), Sq("c6")), 250 + 8 * 3) << wk;
  }
  // No cut once another man stands on the rook's file, or the king is within a file of the pawn.
  EXPECT_LT(RookAndPawn(Sq("e2"), Sq("e8"), Sq("a1"), Sq("f5"), Sq("c6")), 250);
  // Not yet on rank six: the cut is worth less.
  EXPECT_LT(RookAndPawn(Sq("e2"), Sq("a8"), Sq("a1"), Sq("f5"), Sq("c4")), 250);
  // The bridge: king on the queening square, pawn on the seventh, the black rook beside its file.
  EXPECT_EQ(RookAndPawn(Sq("g4"), Sq("c1"), Sq("d8"), Sq("h7"), Sq("d7")), 350 + 4 * 4 - 8 * 0);
  EXPECT_EQ(RookAndPawn(Sq("g1"), Sq("c1"), Sq("d8"), Sq("h7"), Sq("d7")), 350 + 4 * 4 - 8 * 3);
}

// Rook endings with one pawn score the table's value from the side to move's view, the same for a
// Black pawn as for the mirrored White one.
TEST(RookEndingTest, OnePawnEndingsUseTheTableForBothColours) {
  EvaluationRecord record{};  // cleared, as Evaluate hands it over
  Board white_pawn = FromFen("r7/8/2P2k2/8/8/8/4R3/1K6 w - - 0 1");
  EXPECT_EQ(EvaluateRookEnding(record, white_pawn, 0), 274);
  Board black_to_move = FromFen("r7/8/2P2k2/8/8/8/4R3/1K6 b - - 0 1");
  EXPECT_EQ(EvaluateRookEnding(record, black_to_move, 0), -274);
  EXPECT_EQ(EvaluateRookEnding(record, Mirrored(white_pawn), 0), 274);
  EXPECT_FALSE(record.lazy);
}

TEST(MatingTest, KingAndQueenDriveTheLoneKingToTheEdge) {
  // Strong king e3, queen b1; the lone king on e5, e6, e7 and e8.
  int previous = 0;
  for (const char* fen : {"8/8/8/4k3/8/4K3/8/1Q6 w - - 0 1", "8/8/4k3/8/8/4K3/8/1Q6 w - - 0 1",
                          "8/4k3/8/8/8/4K3/8/1Q6 w - - 0 1", "4k3/8/8/8/8/4K3/8/1Q6 w - - 0 1"}) {
    Board board = FromFen(fen);
    int score = EvaluateMating(board);
    EXPECT_GT(score, 2900) << fen;  // the lone king and nothing else: about 2000 over the queen
    EXPECT_GT(score, previous) << fen;
    EXPECT_EQ(EvaluateMating(Mirrored(board)), score) << fen;
    previous = score;
  }
  // The side without the queen sees the negation, plus the constant for the side to move.
  Board board = FromFen("4k3/8/8/8/8/4K3/8/1Q6 b - - 0 1");
  EXPECT_EQ(EvaluateMating(board), -MatingAttack(board, WHITE, 1020) + 6);
}

TEST(MatingTest, BishopAndKnightDriveToTheCornerOfTheBishopsColour) {
  // A dark bishop (c1) mates in a1 or h8, a light one (f1) in h1 or a8.
  Board dark_a1 = FromFen("8/8/8/8/8/2K5/8/k1BN4 w - - 0 1");
  Board dark_h1 = FromFen("8/8/8/8/8/5K2/8/2BN3k w - - 0 1");
  EXPECT_GT(EvaluateMating(dark_a1), EvaluateMating(dark_h1));
  Board light_a1 = FromFen("8/8/8/8/8/2K5/8/k2N1B2 w - - 0 1");
  Board light_h1 = FromFen("8/8/8/8/8/5K2/8/3N1B1k w - - 0 1");
  EXPECT_GT(EvaluateMating(light_h1), EvaluateMating(light_a1));
  for (const Board* board : {&dark_a1, &dark_h1, &light_a1, &light_h1}) {
    // Only the bishop-and-knight rule, never the general mating rule.
    EXPECT_EQ(MatingAttack(*board, WHITE, 620), BishopAndKnight(*board, WHITE));
    EXPECT_EQ(EvaluateMating(*board), BishopAndKnight(*board, WHITE) + 6);
    EXPECT_EQ(EvaluateMating(Mirrored(*board)), EvaluateMating(*board));
  }
  // The lone king in the right corner is worth more than in the centre.
  EXPECT_GT(EvaluateMating(dark_a1), EvaluateMating(FromFen("8/8/8/3k4/8/2K5/8/2BN4 w - - 0 1")));
}

TEST(MatingTest, EvenMaterialCountsKingsAndLooseMen) {
  // A rook each: the side to move gets the constant 3, and the cornered king costs its side.
  Board board = FromFen("7k/8/8/8/3K4/8/8/r5R1 w - - 0 1");
  EXPECT_EQ(EvaluateMating(board), KingsAndPieces(board) + 3);
  Board black_to_move = FromFen("7k/8/8/8/3K4/8/8/r5R1 b - - 0 1");
  EXPECT_EQ(EvaluateMating(black_to_move), -KingsAndPieces(board) + 3);
  EXPECT_GT(KingsAndPieces(board), 0);
  EXPECT_EQ(EvaluateMating(Mirrored(board)), EvaluateMating(board));
  // A bishop against a knight is a fifth of a pawn or less: still the even rule.
  Board minor = FromFen("7k/8/8/8/3K4/8/8/n6B w - - 0 1");
  EXPECT_EQ(EvaluateMating(minor), KingsAndPieces(minor) + 3);
}

TEST(MatingTest, ASmallEdgeIsAtLeastZeroForTheStrongerSide) {
  // A rook against a bishop: the stronger side never falls below 0 and the constant is 4.
  Board board = FromFen("b6k/8/8/8/8/8/8/R3K3 w - - 0 1");
  EXPECT_EQ(EvaluateMating(board), MaterialEdge(board, WHITE, 185) + 4);
  EXPECT_GE(MaterialEdge(board, WHITE, 185), 0);
  Board black_to_move = FromFen("b6k/8/8/8/8/8/8/R3K3 b - - 0 1");
  EXPECT_EQ(EvaluateMating(black_to_move), -MaterialEdge(board, WHITE, 185) + 4);
  // The bishop kept by its king is worth more to the weaker side than one far off.
  Board guarded = FromFen("7k/6b1/8/8/8/8/8/R3K3 w - - 0 1");
  EXPECT_LT(MaterialEdge(guarded, WHITE, 185), MaterialEdge(board, WHITE, 185));
}
