#include "interfaces/uci_commands.h"

#include <gtest/gtest.h>

#include "interfaces/game_clock.h"
#include "interfaces/move_text.h"

using namespace ZephrinInterfaces;

// The limits of `go` come from the clock of the side to move only, by the engine's own allocation.
TEST(UciSearchRequest, LimitsFromTheSideToMovesClock) {
  UserBoard black_to_move;
  black_to_move.SetFromFen("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq - 0 1");
  UciGoParameters go;
  go.time_ms[WHITE] = 1000;
  go.time_ms[BLACK] = 60000;
  go.has_time[WHITE] = go.has_time[BLACK] = true;
  go.moves_to_go = 20;
  PlayerClock black;
  black.ms_left = 60000;
  black.moves_left = 20;
  const SearchTimeLimits expected = GameTimeLimits(black);
  SearchRequest request = UciSearchRequest(go, black_to_move);
  EXPECT_EQ(std::tuple(request.type, request.max_time_limit, request.variable_time_limit, request.max_depth),
            std::tuple(SEARCH_NORMAL, expected.max_time_limit, expected.variable_time_limit, 0));

  // movetime is a hard limit alone; mate N searches 2N iterations; ponder and infinite wait.
  go = UciGoParameters{};
  go.move_time_ms = 250;
  go.mate = 3;
  request = UciSearchRequest(go, UserBoard());
  EXPECT_EQ(std::tuple(request.max_time_limit, request.variable_time_limit, request.max_depth), std::tuple(250, 0, 6));
  go.ponder = true;
  EXPECT_EQ(UciSearchRequest(go, UserBoard()).type, SEARCH_PONDERING);
  go.ponder = false;
  go.infinite = true;
  EXPECT_EQ(UciSearchRequest(go, UserBoard()).type, SEARCH_ANALYZE);
}

// A game drawn by repetition goes on for the front end; a mate stands.
TEST(UciSearchRequest, DrawsByRuleReopenMatesStand) {
  UserBoard game;
  const char* knights[] = {"g1f3", "g8f6", "f3g1", "f6g8"};
  for (int ply = 0; ply < 12 && !game.IsFinished(); ++ply) {
    Move move = MOVE_INVALID;
    ASSERT_EQ(ParseMove(game.Current(), knights[ply % 4], move), PARSE_OK);
    game.PlayMove(move);
  }
  ASSERT_EQ(game.Current().reason, REASON_REPETITION);
  ReopenDrawByRule(game);
  EXPECT_FALSE(game.IsFinished());
  UserBoard mated;
  mated.SetFromFen("7k/6Q1/6K1/8/8/8/8/8 b - - 0 1");
  ReopenDrawByRule(mated);
  EXPECT_TRUE(mated.IsFinished());
}
