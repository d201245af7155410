#include "search/search.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "board/board_test_helpers.h"
#include "hash/hash.h"
#include "board/move_generator.h"
#include "settings/search_settings.h"
#include "settings/search_settings_catalogue.h"

namespace {

class SearchTest : public ::testing::Test {
 protected:
  void SetUp() override {
    TranspositionTable.Resize(1 << 22);
    EvaluationHashTable.Clear();
    search.SetDrawScore(0);
    search.search_finished = [this](MainLoop*, bool stopped) {
      ++finished_calls;
      stopped_by_command = stopped;
    };
  }

  // Searches the position after the moves; a search type and a hard time limit may be given.
  void Run(const std::string& fen, int max_depth, const std::vector<std::string>& moves = {},
           int type = SEARCH_NORMAL, int max_time_limit = 0) {
    SearchRequest request{type, max_depth, max_time_limit};
    request.game.SetFromFen(fen);
    for (const std::string& text : moves) request.game.PlayMove(board_test::FindMove(request.game.Current(), text));
    search.RunSearch(request, nullptr);  // without an owner the wait for a command ends at once
  }

  std::string BestMoveText() const { return board_test::MoveName(search.best_move); }

  Search search;
  int finished_calls = 0;
  bool stopped_by_command = true;
};

TEST_F(SearchTest, FindsMatesWithExactScores) {
  // Shortest mates for the side to move, in moves; negative: the side to move is mated.
  const std::pair<const char*, int> cases[] = {
      {"6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1", 1},
      {"7k/8/8/8/8/8/8/RR4K1 w - - 0 1", 2},
      {"8/k7/8/2K5/8/8/8/7R w - - 0 1", 3},
      {"k7/8/1K6/8/8/8/8/7R b - - 0 1", -1},
  };
  for (auto [fen, mate] : cases) {
    const int moves = mate < 0 ? -mate : mate;
    Run(fen, 2 * moves + 2);
    EXPECT_EQ(search.score, mate > 0 ? 32767 - (2 * moves - 1) : -(32767 - 2 * moves)) << fen;
    EXPECT_EQ(finished_calls, 1);
    EXPECT_FALSE(stopped_by_command);
    finished_calls = 0;
  }
}

// After a sacrifice the attacker is far behind in material, and its quiet moves used to be skipped as
// futile for nine plies: these mates were missed at any depth a game reaches. The shown line must
// not claim a mate that the score doesn't have.
TEST_F(SearchTest, MatesBehindASacrificeAreFoundAtAGameDepth) {
  const char* const first = "r3r1k1/pp1q1pp1/4b1p1/3p2B1/3Q1R2/8/PPP3PP/4R1K1 w - - 0 1";
  for (auto [fen, depth, move, mate] : {std::tuple{first, 12, "d4g7", 4},
                                        {"1k1r4/pp1b1R2/3q2pp/4p3/2B5/4Q3/PPP2B2/2K5 b - - 0 1", 6, "d6d1", 3}}) {
    Run(fen, depth);
    EXPECT_EQ(BestMoveText(), move) << fen;
    EXPECT_EQ(search.score, 32767 - (2 * mate - 1)) << fen;
    Board end = board_test::FromFen(fen);
    for (const PvMove& pv_move : search.pv) end.MakeMove(pv_move.move);
    std::vector<Move> replies;
    GenerateLegalMoves(end, replies);
    EXPECT_TRUE(!replies.empty() || search.pv.size() == std::size_t(2 * mate - 1))
        << fen << ": a line ending in mate is as long as the mate";
  }
  // Futility proper above the frontier again, as it was: the first mate is out of reach.
  const int saved = min_distance_for_extended_futility_pruning;
  min_distance_for_extended_futility_pruning = 601;
  TranspositionTable.Clear();
  Run(first, 12);
  min_distance_for_extended_futility_pruning = saved;
  EXPECT_LT(search.score, 31766);
}

TEST_F(SearchTest, StalemateIsSoughtOrAvoidedByTheDrawScore) {
  // Black's king has no move: a white king move stalemates, a queen move plays on to win.
  const char* fen = "k7/8/1Q6/8/8/8/8/6K1 w - - 0 1";
  Run(fen, 3);
  EXPECT_GT(search.score, 500);
  Board after = board_test::FromFen(fen);
  after.MakeMove(search.best_move);
  std::vector<Move> replies;
  GenerateLegalMoves(after, replies);
  EXPECT_TRUE(!replies.empty() || after.InCheck());

  search.SetDrawScore(10000);  // a draw is worth more than any winning evaluation now
  Run(fen, 3);
  EXPECT_EQ(search.score, 10000);
}

TEST_F(SearchTest, RepetitionIsSoughtOrAvoidedByTheDrawScore) {
  const char* start = "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1";
  const std::vector<std::string> moves = {"g1f3", "g8f6", "f3g1", "f6g8", "g1f3", "g8f6"};
  search.SetDrawScore(300);
  Run(start, 3, moves);
  EXPECT_EQ(BestMoveText(), "f3g1");  // the position after it was there before
  EXPECT_EQ(search.score, 300);

  search.SetDrawScore(-300);
  Run(start, 3, moves);
  EXPECT_NE(BestMoveText(), "f3g1");
  EXPECT_GT(search.score, -300);
}

TEST_F(SearchTest, MaxDepthOneRunsOnlyTheFirstIterationButAnalysisRunsThemAll) {
  Run("r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 2 3", 1);
  EXPECT_EQ(search.depth, 1);
  EXPECT_EQ(search.iteration, 2);  // the loop has ended after iteration 1
  EXPECT_EQ(search.moves_left, 0);
  EXPECT_EQ(search.move_count, 27);
  EXPECT_NE(search.best_move, 0u);
  ASSERT_FALSE(search.pv.empty());
  EXPECT_EQ(search.pv[0].move, search.best_move);
  EXPECT_EQ(finished_calls, 1);

  // Analysis ignores the depth limit and runs all iterations.
  Run("k7/8/1K6/8/8/8/8/7R b - - 0 1", 3, {}, SEARCH_ANALYZE);  // one legal move, mated next move
  EXPECT_EQ(search.depth, 79);
  EXPECT_EQ(search.move_count, 1);
  EXPECT_EQ(search.score, -32765);
  EXPECT_EQ(finished_calls, 2);
}

TEST_F(SearchTest, PrincipalVariationIsLegalAndStartsWithTheBestMove) {
  Run("r2q1rk1/pp2bppp/2n1pn2/3p4/3P4/2NBPN2/PP3PPP/R2Q1RK1 w - - 0 10", 4);
  ASSERT_GE(search.pv.size(), 2u);
  EXPECT_EQ(search.pv[0].move, search.best_move);
  EXPECT_EQ(search.root_moves[0]->move, search.best_move);  // the best move leads the root list
  EXPECT_EQ(search.root_moves[0]->line.front(), search.best_move);
  UserBoard game;
  game.SetFromFen("r2q1rk1/pp2bppp/2n1pn2/3p4/3P4/2NBPN2/PP3PPP/R2Q1RK1 w - - 0 10");
  for (const PvMove& move : search.pv) {
    EXPECT_FALSE(move.text.empty());
    EXPECT_NO_THROW(game.PlayMove(move.move));
  }
  EXPECT_GT(search.nodes, 100u);
}

TEST_F(SearchTest, TheClockEndsTheSearchAsTimeRunningOutAFinishedGameAsStopped) {
  Run("r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1PN2/PP2BPPP/R2QKB1R w KQ - 0 8", 0, {}, SEARCH_NORMAL, 300);
  EXPECT_EQ(finished_calls, 1);
  EXPECT_FALSE(stopped_by_command);  // the clock ended it, so the move is to be played
  EXPECT_NE(search.best_move, 0u);
  EXPECT_GE(search.depth, 2);
  // Generous: the poll comes about eight times a second, whatever else runs on the machine.
  EXPECT_LT(MillisecondsBetween(search.start_time, search.stop_time), 2000);

  // A finished game ends at once, as if stopped by a command.
  Run("7k/6Q1/6K1/8/8/8/8/8 b - - 0 1", 5);  // black is mated
  EXPECT_EQ(finished_calls, 2);
  EXPECT_TRUE(stopped_by_command);
  EXPECT_TRUE(search.no_moves);
  EXPECT_EQ(search.best_move, 0u);
}

TEST(BisectionSettled, StopsWithinTwentyUnlessDrawOrMateIsInside) {
  int value = 0;
  EXPECT_TRUE(BisectionSettled(30, 45, 0, value));
  EXPECT_EQ(value, 37);
  EXPECT_FALSE(BisectionSettled(-5, 10, 0, value));   // the draw score lies inside
  EXPECT_FALSE(BisectionSettled(30, 51, 0, value));   // too wide
  EXPECT_TRUE(BisectionSettled(-45, -30, 0, value));
  EXPECT_EQ(value, -37);
  EXPECT_FALSE(BisectionSettled(31760, 31770, 0, value));  // mates are found exactly
  EXPECT_TRUE(BisectionSettled(40, 40, 0, value));
  EXPECT_EQ(value, 40);
}

// Every value inside a setting's declared range gives a working search: each setting at its
// minimum and at its maximum, the others at their defaults, finds a legal move in a few positions.
TEST_F(SearchTest, EverySettingAtEitherEndOfItsRangeSearches) {
  const char* const positions[] = {
      "r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4",
      "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
      "8/5pk1/6p1/3P4/8/6P1/5P2/3r2K1 w - - 0 1",
      "8/8/3k4/8/2PK4/8/8/8 w - - 0 1",
  };
  for (const SearchSettingDescription& setting : SEARCH_SETTINGS) {
    for (int value : {setting.min, setting.max}) {
      RestoreSearchSettingDefaults();
      if (setting.boolean) *setting.boolean = value != 0;
      for (int i = 0; setting.integer && i < setting.size; ++i) setting.integer[i] = value;
      TranspositionTable.Clear();
      for (const char* fen : positions) {
        Run(fen, 3, {}, SEARCH_NORMAL, 100);  // depth 3 may be deep at the multiplier's maximum
        UserBoard game;
        game.SetFromFen(fen);
        EXPECT_TRUE(IsLegalMove(game.Current(), search.best_move)) << setting.name << "=" << value << " " << fen;
      }
    }
  }
  RestoreSearchSettingDefaults();
}

}  // namespace
