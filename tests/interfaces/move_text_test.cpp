#include "interfaces/move_text.h"

#include <gtest/gtest.h>

#include "board/move_generator.h"
#include "interfaces/game_test_helpers.h"

using namespace ZephrinInterfaces;
using namespace test_helpers;

namespace {

using Rows = std::initializer_list<std::pair<const char*, const char*>>;

// Each text read in the game's position gives the move in coordinate notation, or the parser's code.
void ExpectReads(const UserBoard& game, Rows rows) {
  const GameBoard& board = game.Current();
  for (const auto& [text, expected] : rows) {
    Move move = MOVE_INVALID;
    const ParseMoveResult result = ParseMove(board, text, move);
    const std::string read =
        result == PARSE_OK ? MoveToText(board, move, NOTATION_COORDINATE) : "code " + std::to_string(result);
    EXPECT_EQ(read, expected) << PositionToFen(game) << ": " << text;
  }
}

// Each move, in any notation that parses, is written as expected in `notation`.
void ExpectTexts(const UserBoard& game, Rows rows, MoveNotation notation = NOTATION_SAN) {
  const GameBoard& board = game.Current();
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(MoveToText(board, test_helpers::Parse(board, text), notation), expected) << PositionToFen(game);
  }
}

UserBoard FoolsMate() {
  UserBoard game = GameFrom();
  Play(game, "f3 e5 g4");
  return game;
}

const char* const PROMOTION = "3r3k/4P3/8/8/8/8/8/K7 w - - 0 1";
const char* const CASTLE = "5k2/8/8/8/8/8/8/R3K2R w KQ - 0 1";

}  // namespace

TEST(ParseMove, CoordinatesPromotionsAndCastling) {
  ExpectReads(GameFrom(), {{"e2e4", "e2e4"}, {"E2E4", "e2e4"}, {"g1f3", "g1f3"}, {"e2e5", "code 2"},
                           {"Ng1-f3", "code 5"}});
  ExpectReads(GameFrom(PROMOTION), {{"e7e8q", "e7e8"}, {"e7e8=Q", "e7e8"}, {"e8=Q", "e7e8"}, {"e7e8", "e7e8"},
                                    {"e7e8n", "e7e8N"}, {"e7e8=r", "e7e8R"}, {"e8=b", "e7e8B"}, {"exd8=N", "e7d8N"},
                                    {"ed8n", "code 5"}, {"e8", "code 1"}, {"e8q", "code 5"}, {"e7-e8", "code 5"}});
  ExpectReads(GameFrom("r3k2r/8/8/8/8/8/8/R3K2R w KQkq - 0 1"),
              {{"O-O", "e1g1"}, {"o-o", "e1g1"}, {"0-0", "e1g1"}, {"0-0+", "e1g1"}, {"O-O#", "e1g1"},
               {"O-O ", "e1g1"}, {"e1g1", "e1g1"}, {"O-O-O", "e1c1"}, {"o-o-o", "e1c1"}, {"0-0-0", "e1c1"},
               {"e1c1", "e1c1"}, {"Kc1", "e1c1"}, {"O-O!", "code 5"}, {"O-0", "code 5"}, {"O-O-", "code 5"}});
  ExpectReads(GameFrom("r3k2r/8/8/8/8/8/8/R3K2R b KQkq - 0 1"), {{"O-O", "e8g8"}, {"O-O-O", "e8c8"}});
  // Castling that can't be played.
  ExpectReads(GameFrom(), {{"O-O", "code 3"}});
  ExpectReads(GameFrom("r3k2r/8/8/8/8/8/8/R3K2R w Qkq - 0 1"), {{"O-O", "code 3"}});
}

TEST(ParseMove, ForgivingSan) {
  ExpectReads(GameFrom(), {{"Nf3", "g1f3"}, {"nf3", "g1f3"}, {"Ngf3", "g1f3"}, {"N1f3", "g1f3"}, {"Ng1f3", "g1f3"},
                           {"ng1f3", "g1f3"}, {"Nf3!", "code 5"}, {"Ng1xf3", "code 2"}, {"Nxf3", "code 2"},
                           {"Nf3+", "code 2"}, {"Nd2", "code 2"}, {"N3", "code 1"}, {"Pe4", "e2e4"}, {"e4", "e2e4"}});
  // A lower-case b is a file: bxc3 is a capture from the b-file, Bxc3 a bishop's.
  ExpectReads(GameFrom("4k3/8/8/8/8/2n5/1P6/4BK2 w - - 0 1"),
              {{"bxc3", "b2c3"}, {"b:c3", "b2c3"}, {"Bxc3", "e1c3"}, {"xc3", "b2c3"}, {"Kxc3", "code 2"}});
  // A pawn and a bishop reaching b4: with no piece named the pawn goes.
  ExpectReads(GameFrom("4k3/8/8/8/8/8/1P6/4BK2 w - - 0 1"), {{"b4", "b2b4"}, {"Bb4", "e1b4"}});
  // Check and mate marks demand a check.
  ExpectReads(FoolsMate(), {{"Qh4#", "d8h4"}, {"Qh4+", "d8h4"}, {"Qh4+ extra text", "d8h4"}, {"Qg5+", "code 2"}});
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
  ExpectTexts(GameFrom(), {{"g1f3", "Nf3"}, {"e2e4", "e4"}});
  // Rooks on one file need the rank, knights on one rank the file, three queens both.
  ExpectTexts(GameFrom("4k3/8/8/R7/8/8/8/R3K3 w - - 0 1"), {{"a1a3", "R1a3"}, {"a5a3", "R5a3"}, {"a1b1", "Rb1"}});
  ExpectTexts(GameFrom("4k3/8/8/8/8/8/8/1N2KN2 w - - 0 1"), {{"b1d2", "Nbd2"}, {"f1d2", "Nfd2"}, {"f1e3", "Ne3"}});
  ExpectTexts(GameFrom("4k3/8/8/8/8/Q7/8/Q1Q1K3 w - - 0 1"), {{"a1b2", "Qa1b2"}, {"c1b2", "Qcb2"}, {"a3b2", "Q3b2"}});
  // A knight pinned to its king doesn't make another one ambiguous.
  ExpectTexts(GameFrom("4r1k1/8/8/8/8/8/4N3/4K2N w - - 0 1"), {{"h1g3", "Ng3"}});

  // Captures, promotions, checks and mates.
  ExpectTexts(GameFrom(PROMOTION), {{"e7d8q", "exd8=Q+"}, {"e7d8n", "exd8=N"}, {"e7e8r", "e8=R+"}});
  ExpectTexts(FoolsMate(), {{"d8h4", "Qh4#"}});
  ExpectTexts(GameFrom("4k3/8/8/3pP3/8/8/8/4K3 w - d6 0 2"), {{"e5d6", "exd6"}});

  // Castling: "+" with a check, never "#".
  ExpectTexts(GameFrom(CASTLE), {{"e1g1", "O-O+"}, {"e1c1", "O-O-O"}});
  UserBoard castle_mate = GameFrom("4rkr1/4p1p1/8/8/8/8/8/4K2R w K - 0 1");
  ExpectTexts(castle_mate, {{"e1g1", "O-O+"}});
  Play(castle_mate, "O-O");
  EXPECT_EQ(castle_mate.Current().result, RESULT_WHITE_WINS);
}

TEST(MoveToText, CoordinateAndLongNotation) {
  ExpectTexts(GameFrom(PROMOTION), {{"e8=Q", "e7e8"}, {"e8=N", "e7e8N"}}, NOTATION_COORDINATE);
  ExpectTexts(GameFrom(PROMOTION), {{"exd8=R", "Pe7xd8=R+"}}, NOTATION_LONG);
  ExpectTexts(GameFrom(), {{"e4", "Pe2-e4"}, {"Nc3", "Nb1-c3"}}, NOTATION_LONG);
  const GameBoard start = GameFrom().Current();
  EXPECT_EQ(MoveToText(start, test_helpers::Parse(start, "Nc3")), "Nc3");
  ExpectTexts(GameFrom(CASTLE), {{"O-O", "e1g1"}}, NOTATION_COORDINATE);
  ExpectTexts(GameFrom(CASTLE), {{"O-O", "O-O+"}}, NOTATION_LONG);

  // Every legal move of a busy position reads back from its own text in coordinates and in SAN.
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
