#include "evaluation/position_type.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "evaluation_test_support.h"

namespace {

using namespace evaluation_test;

struct Row {
  std::string fen;
  PositionType expected;
  PositionType previous = NO_POSITION_TYPE;
};

// Runs the rows; the endgame types are colour-blind (the opening test is White's first by design),
// so each endgame row is checked on its mirror too.
void ExpectTypes(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    Board board = FromFen(row.fen);
    EXPECT_EQ(ClassifyPosition(board, row.previous), row.expected) << row.fen << " after " << row.previous;
    if (row.expected >= POSITION_EQUAL_PIECES) {
      EXPECT_EQ(ClassifyPosition(Mirrored(board), row.previous), row.expected) << row.fen << " mirrored";
    }
  }
}

const char* const START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
// Knights and bishops of both sides out, castling rights kept; the pawn ranks are filled in.
std::string Developed(const std::string& black_pawns, const std::string& white_pawns) {
  return "r2qk2r/" + black_pawns + "/2nb1n2/5b2/5B2/2NB1N2/" + white_pawns + "/R2QK2R w KQkq - 0 1";
}

TEST(ClassifyPosition, OpeningUntilDevelopmentIsDone) {
  ExpectTypes({
      {START, POSITION_OPENING},
      // Every minor piece out and no castling right left.
      {"r2qk2r/pppppppp/2nb1n2/5b2/5B2/2NB1N2/PPPPPPPP/R2QK2R w - - 0 1", POSITION_MIDDLEGAME},
      // Once in the middlegame, a line of play stays there while the material holds.
      {START, POSITION_MIDDLEGAME, POSITION_MIDDLEGAME},
      // Black castled with its minors out: middlegame, however White stands.
      {"r2q1rk1/pppppppp/2nb1n2/5b2/8/8/PPPPPPPP/RNBQKBNR w KQ - 0 1", POSITION_MIDDLEGAME},
      {"r1bqkb1r/pppppppp/2n2n2/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", POSITION_OPENING},
      // Both developed: the pawn counts decide (middlegame once both have 6 or fewer).
      {Developed("pppppppp", "PPPPPPPP"), POSITION_OPENING},
      {Developed("2pppppp", "2PPPPPP"), POSITION_MIDDLEGAME},
      {Developed("2pppppp", "1PPPPPPP"), POSITION_OPENING},
      // White castled, both bishops at home: not done; Black's knights at home then mean opening.
      {"rnbqkbnr/2pppppp/8/8/8/2N2N2/2PPPPPP/R1BQKB1R w kq - 0 1", POSITION_OPENING},
      // One white bishop out instead: White is done, and the pawn counts decide.
      {"rnbqkbnr/2pppppp/8/8/8/2NB1N2/2PPPPPP/R1BQK2R w kq - 0 1", POSITION_MIDDLEGAME},
      // A white bishop at home with a castling right left: not done.
      {"rnbqkbnr/2pppppp/8/8/8/2NB1N2/2PPPPPP/R1BQK2R w KQkq - 0 1", POSITION_OPENING},
      // Black without castling rights and both bishops at home, White not done: opening.
      {"r1bq1b1r/2ppkppp/2n2n2/8/8/2N2N2/2PPPPPP/R1BQKB1R w - - 0 1", POSITION_OPENING},
      // The same with one black bishop out: neither side returns early, and 6 against 6 pawns.
      {"r1bq3r/2ppkppp/2nb1n2/8/8/2N2N2/2PPPPPP/R1BQKB1R w - - 0 1", POSITION_MIDDLEGAME},
  });
}

TEST(ClassifyPosition, MiddlegameMaterialStartsAtTwentyTwo) {
  // Queen and three minors: 19 points, 22 with the queen's 3; two rooks and four minors: 22.
  EXPECT_LT(ClassifyPosition(FromFen("4k3/pppppppp/8/8/8/2NBB3/PPPPPPPP/3QK3 w - - 0 1"), NO_POSITION_TYPE),
            POSITION_EQUAL_PIECES);
  EXPECT_LT(ClassifyPosition(FromFen("4k3/pppppppp/8/8/8/2NBBN2/PPPPPPPP/R3K2R w - - 0 1"), NO_POSITION_TYPE),
            POSITION_EQUAL_PIECES);
  ExpectTypes({
      {"4k3/pppppppp/8/8/8/3B4/PPPPPPPP/3QK2R w - - 0 1", POSITION_OTHER_ENDGAME},  // 18 + 3 = 21
      {"4k3/pppppppp/8/8/8/3BB3/PPPPPPPP/R2RK2R w - - 0 1", POSITION_OTHER_ENDGAME},  // 21
      // In the endgame the parent's type doesn't count.
      {"4k3/4p3/8/8/8/8/4P3/4K3 w - - 0 1", POSITION_PAWN_ENDING, POSITION_MIDDLEGAME},
  });
}

TEST(ClassifyPosition, EndgameTypes) {
  ExpectTypes({
      {"4k3/p2rb3/8/8/8/8/P2RB3/4K3 w - - 0 1", POSITION_EQUAL_PIECES},
      {"r7/8/4k3/8/8/4K3/4P3/R7 w - - 0 1", POSITION_ROOK_ENDING},
      {"r7/p7/4k3/8/8/4K3/4P3/RRR5 w - - 0 1", POSITION_OTHER_ENDGAME},
      {"3qk3/8/8/8/8/8/4P3/3QK3 w - - 0 1", POSITION_QUEEN_ENDING},
      {"4k3/4n3/8/8/8/8/4P3/4KN2 w - - 0 1", POSITION_KNIGHT_KNIGHT},
      {"4k3/4b3/8/8/8/8/4P3/4KN2 w - - 0 1", POSITION_KNIGHT_BISHOP},
      {"4kb2/8/8/8/8/8/4P3/2B1K3 w - - 0 1", POSITION_SAME_BISHOPS},
      {"2b1k3/8/8/8/8/8/4P3/2B1K3 w - - 0 1", POSITION_OPPOSITE_BISHOPS},
      {"4k3/4b3/8/8/8/8/4P3/R3K3 w - - 0 1", POSITION_ROOK_MINOR},
      {"4k3/4r3/8/8/8/8/4P3/3QK3 w - - 0 1", POSITION_QUEEN_ROOK},
      {"4k3/4rp2/8/8/8/8/8/3QK3 w - - 0 1", POSITION_QUEEN_ROOK},  // pawnless White
      // The same phases without the pairing: two knights, rook and knight, queen and rook on one
      // side, and a rook against two minors.
      {"4k3/4p3/8/8/8/8/4P3/1N2KN2 w - - 0 1", POSITION_OTHER_ENDGAME},
      {"4k3/4p3/3bn3/8/8/8/4P3/R3K3 w - - 0 1", POSITION_OTHER_ENDGAME},
      {"4k3/4p3/8/8/8/8/8/4KN2 w - - 0 1", POSITION_LONE_KNIGHT},
      {"4k3/4p3/8/8/8/8/8/4KB2 w - - 0 1", POSITION_LONE_BISHOP},
      {"4k3/4p3/8/8/8/8/8/R3K3 w - - 0 1", POSITION_LONE_ROOK},
      {"4k3/4p3/8/8/8/8/8/3QK3 w - - 0 1", POSITION_LONE_QUEEN},
      {"4k3/4p3/8/8/8/8/4P3/4K3 w - - 0 1", POSITION_PAWN_ENDING},
      // A lone piece whose owner has pawns is no lone piece.
      {"4k3/4p3/8/8/8/8/4P3/4KN2 w - - 0 1", POSITION_OTHER_ENDGAME},
  });
}

TEST(ClassifyPosition, MatingTypeByMissingPawnsAndMaterialDifference) {
  ExpectTypes({
      {"4k3/8/8/8/8/8/8/4K3 w - - 0 1", POSITION_MATING},
      {"4k3/8/8/8/8/8/8/RNBQK3 w - - 0 1", POSITION_MATING, POSITION_MIDDLEGAME},
      // Pawnless White with a knight against a queen and a pawn: 7 points behind.
      {"3qk3/4p3/8/8/8/8/8/4KN2 w - - 0 1", POSITION_MATING},
      // Pawnless White 5 points behind is mated; 4 points behind is not.
      {"4k3/3rbp2/8/8/8/8/8/4KN2 w - - 0 1", POSITION_MATING},
      {"r3k2r/4p3/8/8/8/8/8/4KBN1 w - - 0 1", POSITION_OTHER_ENDGAME},
      {"r3k3/4p3/8/8/8/8/8/4K3 w - - 0 1", POSITION_MATING},
      {"n3k3/4p3/8/8/8/8/8/4K3 w - - 0 1", POSITION_OTHER_ENDGAME},
      // Pawnless Black: 5 points ahead of it is mating, 3 is not.
      {"4k3/8/8/8/8/8/P7/R3K3 w - - 0 1", POSITION_MATING},
      {"4k3/8/8/8/8/8/P7/4KN2 w - - 0 1", POSITION_OTHER_ENDGAME},
  });
}

}  // namespace
