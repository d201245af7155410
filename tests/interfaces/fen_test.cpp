#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "board/board.h"
#include "interfaces/fen.h"

namespace {

using namespace ZephrinInterfaces;

const std::string START = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";

TEST(Fen, WritesAndReadsBack) {
  EXPECT_EQ(BoardToFen(Board(), 1), START);
  for (const std::string& fen : {
           START,
           std::string("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1"),
           std::string("rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8"),
           std::string("rnbqkbnr/pp1ppppp/8/2pP4/8/8/PPP1PPPP/RNBQKBNR w Kq c6 0 30"),
           std::string("8/8/8/8/k2Pp3/8/8/3K4 b - d3 37 61"),
       }) {
    Board board;
    const ZephrinInterfaces::FenCounts counts = ReadFen(fen, board);
    EXPECT_EQ(BoardToFen(board, counts.full_move_number), fen);
    EXPECT_TRUE(board.IsConsistent()) << fen;
  }
}

TEST(Fen, CountsAndFirstPly) {
  // Black to move at move 30 is tested with the game record.
  Board board;
  auto counts = ReadFen("4k3/8/8/8/8/8/8/4K3 w - - 0 0", board);
  EXPECT_EQ(counts.full_move_number, 1);
  EXPECT_EQ(counts.first_ply, 0);
  int first_ply = -1;
  ReadFen("  4k3/8/8/8/8/8/8/4K3\tw - -  0 007 \n", board, first_ply);  // extra blanks, leading zeros
  EXPECT_EQ(first_ply, 12);
  ReadFen("4k3/8/8/8/8/8/8/4KR2 w - - 100 80", board);
  EXPECT_TRUE(board.IsDraw());
}

TEST(Fen, MalformedTextIsAnIoErrorAndLeavesTheBoardAlone) {
  Board board;
  ReadFen("4k3/8/8/8/8/8/4P3/4K3 b - - 5 9", board);
  const Board before(board);
  const std::string kings = "4k3/8/8/8/8/8/8/4K3 ";
  for (const std::string& bad : {
           std::string(), kings + "w - - 0", kings + "w - - 0 1 extra",                    // five and seven fields
           kings + "x - - 0 1", kings + "W - - 0 1",                                       // side
           kings + "w QKkq - 0 1", kings + "w KK - 0 1", kings + "w K- - 0 1",             // castling
           kings + "w - e9 0 1", kings + "w - e 0 1", kings + "w - e33 0 1",               // en passant
           kings + "w - - 101 1", kings + "w - - -1 1", kings + "w - - +5 1", kings + "w - - 5x 1",  // half-moves
           kings + "w - - 0 -1", kings + "w - - 0 99999999999999999999",                   // move number
           kings + "w - - 0 4294967297", kings + "w - - 0 --1",
           kings + "w - - \"0 1",                                                          // unterminated quotation
           std::string("4k3/8/8/8/8/8/8/4X3 w - - 0 1"),                                   // bad piece letter
           std::string("4k3/ppppppppp/8/8/8/8/8/4K3 w - - 0 1"),                           // pieces pushed off
           std::string("4k3/8/8/8/8/8/8/8/4K3 w - - 0 1"), std::string("4k3//8/8/8/8/8/4K3 w - - 0 1"),  // their rank
       }) {
    EXPECT_THROW(ReadFen(bad, board), fen_io_error) << bad;
    EXPECT_EQ(0, std::memcmp(board.squares, before.squares, sizeof(board.squares))) << bad;
    EXPECT_EQ(board.Key(), before.Key()) << bad;
    EXPECT_EQ(board.side_to_move, BLACK) << bad;
  }
}

TEST(Fen, IllegalPositionsAreRefused) {
  Board board;
  const Board before(board);
  // Which positions are illegal is the board's test; here that the reader refuses them and keeps its board.
  for (const char* bad : {"8/8/8/8/8/8/8/4K3 w - - 0 1", "4k3/8/8/8/8/8/8/4K3 w K - 0 1",
                          "4k3/8/8/8/8/8/8/4K3 b - e3 0 1"}) {
    EXPECT_THROW(ReadFen(bad, board), fen_invalid_position) << bad;
    EXPECT_EQ(BoardToFen(board, 1), START) << bad;
  }
}

}  // namespace
