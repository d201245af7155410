// The position of edit mode: worked-out castling rights, the colour in which pieces are set, and
// the check of a changed position.
#include "interfaces/edit_board.h"

#include <gtest/gtest.h>

#include "interfaces/fen.h"
#include "interfaces/game_test_helpers.h"

using namespace ZephrinInterfaces;

namespace {

constexpr Square A1 = 0, H1 = 7, E4 = 28;

std::string FenOf(EditBoard& board) { return BoardToFen(board.Position(), 1); }

}  // namespace

TEST(EditBoard, RightsSurviveUntilASquareChanges) {
  EditBoard board{Board()};
  EXPECT_EQ(board.status, EDIT_BOARD_VALID);
  EXPECT_EQ(board.Castling(), 15);
  board.SetPiece(E4, 0);  // already empty: nothing changes
  EXPECT_EQ(board.castling, 15);
  EXPECT_EQ(board.status, EDIT_BOARD_VALID);

  board.SetPiece(H1, 0);
  EXPECT_EQ(board.status, EDIT_BOARD_CHANGED);
  EXPECT_EQ(board.Castling(), CASTLE_WHITE_LONG | CASTLE_BLACK_SHORT | CASTLE_BLACK_LONG);
  EXPECT_EQ(FenOf(board), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBN1 w Qkq - 0 1");

  // Rights that a position gave up stay given up while its squares stand.
  EditBoard no_rights{test_helpers::FromFen("r3k2r/8/8/8/8/8/8/R3K2R w Kq - 0 1")};
  EXPECT_EQ(FenOf(no_rights), "r3k2r/8/8/8/8/8/8/R3K2R w Kq - 0 1");
  no_rights.SetPiece(A1, 0);
  no_rights.SetPiece(A1, ROOK);
  EXPECT_EQ(FenOf(no_rights), "r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1");
}

// Setting pieces in either colour, clearing and the refusal of a pawn on the first rank are tested
// through the program's edit mode.
TEST(EditBoard, IllegalPositionsAreRefused) {
  // Black in check with Black to move is legal; handing White the move isn't.
  EditBoard check{test_helpers::FromFen("4k3/8/8/8/8/8/8/3KR3 b - - 0 1")};
  EXPECT_TRUE(check.IsValid());
  check.side = WHITE;
  check.status = EDIT_BOARD_CHANGED;
  EXPECT_FALSE(check.IsValid());
  // A board built from a colour alone (as only the tests build one) holds no position.
  EditBoard empty(BLACK);
  EXPECT_FALSE(empty.IsValid());
  EXPECT_THROW(empty.Position(), EditBoard::invalid_position);
}

TEST(EditBoard, TheEnPassantSquareIsLostWhenThePositionIsRebuilt) {
  EditBoard board{test_helpers::FromFen("rnbqkbnr/pppp1ppp/8/8/3Pp3/8/PPP1PPPP/RNBQKBNR b KQkq d3 0 1")};
  EXPECT_EQ(FenOf(board), "rnbqkbnr/pppp1ppp/8/8/3Pp3/8/PPP1PPPP/RNBQKBNR b KQkq d3 0 1");
  board.status = EDIT_BOARD_CHANGED;
  EXPECT_EQ(FenOf(board), "rnbqkbnr/pppp1ppp/8/8/3Pp3/8/PPP1PPPP/RNBQKBNR b KQkq - 0 1");
}
