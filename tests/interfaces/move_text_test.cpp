#include "interfaces/move_text.h"

#include <gtest/gtest.h>

#include "board/move_generator.h"
#include "interfaces/game_test_helpers.h"

using namespace ZephrinInterfaces;
using test_helpers::GameFrom;
using test_helpers::Play;

namespace {

// The result code of parsing text, and the move in coordinate notation when it parsed.
std::string Read(const GameBoard& board, const std::string& text) {
  Move move = MOVE_INVALID;
  const ParseMoveResult result = ParseMove(board, text, move);
  if (result != PARSE_OK) return "code " + std::to_string(result);
  return MoveToText(board, move, NOTATION_COORDINATE);
}

std::string San(const GameBoard& board, const std::string& text) {
  return MoveToText(board, test_helpers::Parse(board, text), NOTATION_SAN);
}

}  // namespace

TEST(ParseMove, CoordinatesAndPromotions) {
  const GameBoard start = GameFrom().Current();
  EXPECT_EQ(Read(start, "e2e4"), "e2e4");
  EXPECT_EQ(Read(start, "E2E4"), "e2e4");
  EXPECT_EQ(Read(start, "g1f3"), "g1f3");
  EXPECT_EQ(Read(start, "e2e5"), "code 2");

  const GameBoard promotion = GameFrom("3r3k/4P3/8/8/8/8/8/K7 w - - 0 1").Current();
  EXPECT_EQ(Read(promotion, "e7e8q"), "e7e8");
  EXPECT_EQ(Read(promotion, "e7e8=Q"), "e7e8");
  EXPECT_EQ(Read(promotion, "e8=Q"), "e7e8");
  EXPECT_EQ(Read(promotion, "e7e8"), "e7e8");
  EXPECT_EQ(Read(promotion, "e7e8n"), "e7e8N");
  EXPECT_EQ(Read(promotion, "e7e8=r"), "e7e8R");
  EXPECT_EQ(Read(promotion, "e8=b"), "e7e8B");
  EXPECT_EQ(Read(promotion, "exd8=N"), "e7d8N");
  EXPECT_EQ(Read(promotion, "ed8n"), "code 5");
  EXPECT_EQ(Read(promotion, "e8"), "code 1");
  EXPECT_EQ(Read(promotion, "e8q"), "code 5");
  EXPECT_EQ(Read(promotion, "e7-e8"), "code 5");
  EXPECT_EQ(Read(start, "Ng1-f3"), "code 5");
}

TEST(ParseMove, Castling) {
  const GameBoard both = GameFrom("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1").Current();
  for (const char* text : {"O-O", "o-o", "0-0", "0-0+", "O-O#", "O-O ", "e1g1"}) {
    EXPECT_EQ(Read(both, text), "e1g1") << text;
  }
  for (const char* text : {"O-O-O", "o-o-o", "0-0-0", "e1c1", "Kc1"}) {
    EXPECT_EQ(Read(both, text), "e1c1") << text;
  }
  EXPECT_EQ(Read(both, "O-O!"), "code 5");
  EXPECT_EQ(Read(both, "O-0"), "code 5");
  EXPECT_EQ(Read(both, "O-O-"), "code 5");

  const GameBoard black = GameFrom("r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1").Current();
  EXPECT_EQ(Read(black, "O-O"), "e8g8");
  EXPECT_EQ(Read(black, "O-O-O"), "e8c8");
  // Castling that can't be played.
  EXPECT_EQ(Read(GameFrom().Current(), "O-O"), "code 3");
  EXPECT_EQ(Read(GameFrom("r3k2r/8/8/8/8/8/8/R3K2R w Qkq - 0 1").Current(), "O-O"), "code 3");
}

TEST(ParseMove, ForgivingSan) {
  const GameBoard start = GameFrom().Current();
  for (const char* text : {"Nf3", "nf3", "Ngf3", "N1f3", "Ng1f3", "ng1f3"}) {
    EXPECT_EQ(Read(start, text), "g1f3") << text;
  }
  EXPECT_EQ(Read(start, "Nf3!"), "code 5");
  EXPECT_EQ(Read(start, "Ng1xf3"), "code 2");
  EXPECT_EQ(Read(start, "Nxf3"), "code 2");
  EXPECT_EQ(Read(start, "Nf3+"), "code 2");
  EXPECT_EQ(Read(start, "Nd2"), "code 2");
  EXPECT_EQ(Read(start, "N3"), "code 1");
  EXPECT_EQ(Read(start, "Pe4"), "e2e4");
  EXPECT_EQ(Read(start, "e4"), "e2e4");

  // A lower-case b is a file: bxc3 is a capture from the b-file, Bxc3 a bishop's.
  const GameBoard capture = GameFrom("4k3/8/8/8/8/2n5/1P6/4BK2 w - - 0 1").Current();
  EXPECT_EQ(Read(capture, "bxc3"), "b2c3");
  EXPECT_EQ(Read(capture, "b:c3"), "b2c3");
  EXPECT_EQ(Read(capture, "Bxc3"), "e1c3");
  EXPECT_EQ(Read(capture, "xc3"), "b2c3");
  EXPECT_EQ(Read(capture, "Kxc3"), "code 2");
  // A pawn and a bishop reaching b4: with no piece named the pawn goes.
  const GameBoard pawn_first = GameFrom("4k3/8/8/8/8/8/1P6/4BK2 w - - 0 1").Current();
  EXPECT_EQ(Read(pawn_first, "b4"), "b2b4");
  EXPECT_EQ(Read(pawn_first, "Bb4"), "e1b4");

  // Check and mate marks demand a check.
  UserBoard fools = GameFrom();
  Play(fools, "f3 e5 g4");
  EXPECT_EQ(Read(fools.Current(), "Qh4#"), "d8h4");
  EXPECT_EQ(Read(fools.Current(), "Qh4+"), "d8h4");
  EXPECT_EQ(Read(fools.Current(), "Qh4+ extra text"), "d8h4");
  EXPECT_EQ(Read(fools.Current(), "Qg5+"), "code 2");
}

TEST(ParseMove, BadTextAndFinishedGames) {
  const GameBoard start = GameFrom().Current();
  for (const std::string& text : {std::string(""), std::string("zz"), std::string("#"),
                                 std::string("\x01\xff\x80", 3), std::string("e2\0e4", 5),
                                 std::string(1 << 20, 'Q'), std::string("Nf3 and then")}) {
    Move move = MOVE_INVALID;
    EXPECT_NE(ParseMove(start, text, move), PARSE_OK) << text.substr(0, 20);
  }
  UserBoard mated = GameFrom();
  Play(mated, "f3 e5 g4 Qh4");
  Move move = MOVE_INVALID;
  EXPECT_EQ(ParseMove(mated.Current(), "e2e4", move), PARSE_GAME_OVER);
  EXPECT_EQ(ParseMove(mated.Current(), "rubbish", move), PARSE_GAME_OVER);
}

TEST(MoveToText, SanDisambiguationAndMarks) {
  const GameBoard start = GameFrom().Current();
  EXPECT_EQ(San(start, "g1f3"), "Nf3");
  EXPECT_EQ(San(start, "e2e4"), "e4");

  // Rooks on one file need the rank, knights on one rank the file, three queens both.
  const GameBoard rooks = GameFrom("4k3/8/8/R7/8/8/8/R3K3 w - - 0 1").Current();
  EXPECT_EQ(San(rooks, "a1a3"), "R1a3");
  EXPECT_EQ(San(rooks, "a5a3"), "R5a3");
  EXPECT_EQ(San(rooks, "a1b1"), "Rb1");
  const GameBoard knights = GameFrom("4k3/8/8/8/8/8/8/1N2KN2 w - - 0 1").Current();
  EXPECT_EQ(San(knights, "b1d2"), "Nbd2");
  EXPECT_EQ(San(knights, "f1d2"), "Nfd2");
  EXPECT_EQ(San(knights, "f1e3"), "Ne3");
  const GameBoard queens = GameFrom("4k3/8/8/8/8/Q7/8/Q1Q1K3 w - - 0 1").Current();
  EXPECT_EQ(San(queens, "a1b2"), "Qa1b2");
  EXPECT_EQ(San(queens, "c1b2"), "Qcb2");
  EXPECT_EQ(San(queens, "a3b2"), "Q3b2");
  // A knight pinned to its king doesn't make another one ambiguous.
  const GameBoard pinned = GameFrom("4r1k1/8/8/8/8/8/4N3/4K2N w - - 0 1").Current();
  EXPECT_EQ(San(pinned, "h1g3"), "Ng3");

  // Captures, promotions, checks and mates.
  const GameBoard promotion = GameFrom("3r3k/4P3/8/8/8/8/8/K7 w - - 0 1").Current();
  EXPECT_EQ(San(promotion, "e7d8q"), "exd8=Q+");
  EXPECT_EQ(San(promotion, "e7d8n"), "exd8=N");
  EXPECT_EQ(San(promotion, "e7e8r"), "e8=R+");
  UserBoard fools = GameFrom();
  Play(fools, "f3 e5 g4");
  EXPECT_EQ(San(fools.Current(), "d8h4"), "Qh4#");
  const GameBoard en_passant = GameFrom("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 2").Current();
  EXPECT_EQ(San(en_passant, "e5d6"), "exd6");

  // Castling: "+" with a check, never "#".
  const GameBoard castle = GameFrom("5k2/8/8/8/8/8/8/R3K2R w KQ - 0 1").Current();
  EXPECT_EQ(San(castle, "e1g1"), "O-O+");
  EXPECT_EQ(San(castle, "e1c1"), "O-O-O");
  UserBoard castle_mate = GameFrom("4rkr1/4p1p1/8/8/8/8/8/4K2R w K - 0 1");
  EXPECT_EQ(San(castle_mate.Current(), "e1g1"), "O-O+");
  Play(castle_mate, "O-O");
  EXPECT_EQ(castle_mate.Current().result, RESULT_WHITE_WINS);
}

TEST(MoveToText, CoordinateAndLongNotation) {
  const GameBoard promotion = GameFrom("3r3k/4P3/8/8/8/8/8/K7 w - - 0 1").Current();
  EXPECT_EQ(MoveToText(promotion, test_helpers::Parse(promotion, "e8=Q"), NOTATION_COORDINATE), "e7e8");
  EXPECT_EQ(MoveToText(promotion, test_helpers::Parse(promotion, "e8=N"), NOTATION_COORDINATE), "e7e8N");
  EXPECT_EQ(MoveToText(promotion, test_helpers::Parse(promotion, "exd8=R"), NOTATION_LONG), "Pe7xd8=R+");
  const GameBoard start = GameFrom().Current();
  EXPECT_EQ(MoveToText(start, test_helpers::Parse(start, "e4"), NOTATION_LONG), "Pe2-e4");
  EXPECT_EQ(MoveToText(start, test_helpers::Parse(start, "Nc3"), NOTATION_LONG), "Nb1-c3");
  EXPECT_EQ(MoveToText(start, test_helpers::Parse(start, "Nc3")), "Nc3");
  const GameBoard castle = GameFrom("5k2/8/8/8/8/8/8/R3K2R w KQ - 0 1").Current();
  EXPECT_EQ(MoveToText(castle, test_helpers::Parse(castle, "O-O"), NOTATION_COORDINATE), "e1g1");
  EXPECT_EQ(MoveToText(castle, test_helpers::Parse(castle, "O-O"), NOTATION_LONG), "O-O+");

  // Every legal move of a busy position reads back from its own text in all three notations.
  const GameBoard busy =
      GameFrom("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1").Current();
  std::vector<Move> moves;
  GenerateLegalMoves(busy, moves);
  ASSERT_EQ(moves.size(), 48u);
  for (Move move : moves) {
    for (MoveNotation notation : {NOTATION_COORDINATE, NOTATION_SAN}) {
      Move read = MOVE_INVALID;
      const std::string text = MoveToText(busy, move, notation);
      EXPECT_EQ(ParseMove(busy, text, read), PARSE_OK) << text;
      EXPECT_EQ(read, move) << text;
    }
  }
}
