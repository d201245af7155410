// Two rare moments of the driver, watched through the protocol as a real game runs them: an abort
// while iteration 1 is still running, and a new best move that its own confirmation search
// refutes. The first needs a poll inside a slow iteration 1: the test polls at the first node and
// moves the start of the search three seconds back. The second needs a refuted candidate: the
// test gives the transposition table a deeper verdict on it between its test and its confirmation
// search.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "board/move_generator.h"
#include "frame/main_loop.h"
#include "hash/hash.h"
#include "interfaces/console_protocol.h"
#include "interfaces/game_test_helpers.h"
#include "interfaces/move_text.h"

using namespace ZephrinInterfaces;
using test_helpers::ScriptedInput;

namespace {

// The console's words, with a look at the search at each report.
class WatchingProtocol : public ConsoleProtocol {
 public:
  void ReportDepth(int depth) override {
    if (on_depth) on_depth(depth);
    ConsoleProtocol::ReportDepth(depth);
  }
  void ReportNewBestMove(const std::string& move) override {
    ConsoleProtocol::ReportNewBestMove(move);
    if (on_new_best_move) on_new_best_move(move);
  }
  void ReportSearchInstability() override {
    if (on_instability) on_instability();
    ConsoleProtocol::ReportSearchInstability();
  }
  void ShowSearchSummary(const SearchReport& search) override {
    if (on_summary) on_summary();
    ConsoleProtocol::ShowSearchSummary(search);
  }
  std::function<void(int)> on_depth;
  std::function<void(const std::string&)> on_new_best_move;
  std::function<void()> on_instability;
  std::function<void()> on_summary;
};

class SearchDriverEdgeTest : public ::testing::Test {
 protected:
  void SetUp() override {
    TranspositionTable.Resize(1 << 22);
    PawnHashTable.Clear();
    EvaluationHashTable.Clear();
    auto owned = std::make_unique<WatchingProtocol>();
    protocol = owned.get();
    loop = std::make_unique<MainLoop>(std::make_unique<Game>(std::move(owned)));
  }

  Search& search() { return loop->game->search; }

  // Runs the main loop over the script.
  ScriptedInput& Run(std::deque<std::string> script) {
    loop->input = std::make_unique<ScriptedInput>(std::move(script), &search());
    RunMainLoop(*loop);
    return static_cast<ScriptedInput&>(*loop->input);
  }

  // The next search polls at its very first node, inside the first probe of the first root
  // move; if `slow`, as if iteration 1 had already run for three seconds by then.
  void PollAtFirstNode(bool slow) {
    bool pending = true;
    protocol->on_depth = [this, pending, slow](int depth) mutable {
      if (depth != 1 || !pending) return;
      pending = false;
      search().tree->poll_countdown = 1;
      if (!slow) return;
      TimeStamp& start = search().start_time;
      const std::int64_t micros = start.seconds * 1000000 + start.microseconds - 3100000;
      start = {true, micros / 1000000, micros % 1000000};
    };
  }

  std::string Output() const { return output_.Text(); }

  test_helpers::CapturedOutput output_;
  WatchingProtocol* protocol = nullptr;
  std::unique_ptr<MainLoop> loop;
};

Move FirstLegalMove(const Board& board) {
  std::vector<Move> legal;
  GenerateLegalMoves(board, legal);
  return legal.empty() ? MOVE_INVALID : legal.front();
}

std::vector<Move> RootOrder(const Search& search) {
  std::vector<Move> order;
  for (const auto& root_move : search.root_moves) order.push_back(root_move->move);
  return order;
}

std::vector<Move> PvMoves(const Search& search) {
  std::vector<Move> moves;
  for (const PvMove& move : search.pv) moves.push_back(move.move);
  return moves;
}

// `text` occurs in `out`, and after the place `from`; returns where.
std::size_t FindAfter(const std::string& out, const std::string& text, std::size_t from) {
  const std::size_t at = out.find(text, from);
  EXPECT_NE(at, std::string::npos) << "no \"" << text << "\" after position " << from << " in:\n" << out;
  return at == std::string::npos ? from : at;
}

// What the search showed at one report.
struct Snapshot {
  std::string event;
  int iteration = 0;
  std::vector<Move> order;
  Move best_move = 0;
  std::vector<Move> pv;
  int score = 0;
  bool unstable = false;
};

}  // namespace

TEST_F(SearchDriverEdgeTest, MoveNowInIterationOnePlaysTheFirstRootMoveAndTheNextSearchIsSound) {
  const UserBoard start = *loop->game;
  const Move first = FirstLegalMove(start.Current());
  const std::string first_text = MoveToText(start.Current(), first);
  PollAtFirstNode(true);
  const ScriptedInput& input = Run({"sd 2", "go", "?", "e5", "ping 1"});

  // "?" was read in iteration 1 and played the only move the search had: the first one.
  ASSERT_GE(input.read_in_iteration.size(), 4u);
  EXPECT_EQ(input.read_in_iteration[2], 1);
  const std::vector<Move>& moves = loop->game->Moves();
  ASSERT_EQ(moves.size(), 3u) << Output();
  EXPECT_EQ(moves[0], first);
  std::size_t at = FindAfter(Output(), "Zephrin played: " + first_text + "\n", 0);

  // The game went on from the position after that move, and the next search, on the same tree
  // that the abort left in mid-line, found a legal reply with its own line.
  UserBoard replay = start;
  replay.PlayMove(first);
  replay.PlayMove(moves[1]);
  EXPECT_EQ(search().depth, 2);
  EXPECT_EQ(search().best_move, moves[2]);
  ASSERT_FALSE(search().pv.empty());
  EXPECT_EQ(search().pv.front().move, moves[2]);
  EXPECT_NO_THROW(replay.PlayMove(moves[2]));
  EXPECT_EQ(PositionToFen(replay), PositionToFen(*loop->game));
  FindAfter(Output(), "Zephrin played: ", at + 1);
  FindAfter(Output(), "pong 1\n", 0);
}

TEST_F(SearchDriverEdgeTest, ACommandThatChangesTheGameInIterationOneLeavesTheGameAsItWas) {
  const std::string fen = PositionToFen(*loop->game);
  PollAtFirstNode(true);
  const ScriptedInput& input = Run({"go", "force", "ping 2"});
  ASSERT_EQ(input.read_in_iteration.size(), 3u);
  EXPECT_EQ(input.read_in_iteration[1], 1);
  EXPECT_EQ(input.read_in_iteration[2], 0);  // read by the loop, after the search
  EXPECT_TRUE(loop->game->Moves().empty());
  EXPECT_EQ(PositionToFen(*loop->game), fen);
  EXPECT_EQ(loop->game->game_mode, GAME_MODE_FORCE);  // force ran again after the unwinding
  EXPECT_EQ(Output().find("Zephrin played"), std::string::npos) << Output();
  FindAfter(Output(), "pong 2\n", 0);
}

TEST_F(SearchDriverEdgeTest, AHintSearchPastThreeSecondsInIterationOneSuggestsTheFirstRootMove) {
  const GameBoard& position = loop->game->Current();
  const std::string first_text = MoveToText(position, FirstLegalMove(position));
  PollAtFirstNode(true);
  const ScriptedInput& input = Run({"hint", "ping 3"});
  ASSERT_EQ(input.read_in_iteration.size(), 2u);
  EXPECT_EQ(input.read_in_iteration[1], 0);  // a hint search reads no input
  EXPECT_EQ(search().depth, 1);
  EXPECT_TRUE(loop->game->Moves().empty());
  const std::size_t at = FindAfter(Output(), "Zephrin suggests " + first_text + "\n", 0);
  FindAfter(Output(), "pong 3\n", at);
}

TEST_F(SearchDriverEdgeTest, InputOfTheFirstThreeSecondsWaitsAndIsExecutedLater) {
  // A search of one iteration never reads, though it polls: the loop runs the line after the move.
  PollAtFirstNode(false);
  const ScriptedInput& short_search = Run({"sd 1", "go", "ping 4"});
  ASSERT_EQ(short_search.read_in_iteration.size(), 3u);
  EXPECT_EQ(short_search.read_in_iteration[2], 0);
  std::size_t at = FindAfter(Output(), "Zephrin played: ", 0);
  at = FindAfter(Output(), "pong 4\n", at);

  // A longer one reads it in iteration 2 or later and answers before its move.
  const ScriptedInput& long_search = Run({"sd 4", "e5", "ping 5"});
  ASSERT_EQ(long_search.read_in_iteration.size(), 3u);
  EXPECT_GE(long_search.read_in_iteration[2], 2);
  at = FindAfter(Output(), "pong 5\n", at);
  FindAfter(Output(), "Zephrin played: ", at);
}

TEST_F(SearchDriverEdgeTest, ARefutedNewBestMoveGoesSecondAndTheOldBestReturns) {
  // A position where new best moves turn up while the score lies near the draw score. Only there
  // does the confirmation search look at the test's own gamma again: elsewhere a candidate that
  // fails low at once settles a few points above the old best.
  const char* fen = "rnbqk1nr/pp3ppp/4p3/2ppP3/1b1P4/2N5/PPP2PPP/R1BQKBNR w KQkq - 0 5";
  std::vector<Snapshot> seen;
  auto snap = [&](const std::string& event) {
    const Search& s = search();
    seen.push_back({event, s.iteration, RootOrder(s), s.best_move, PvMoves(s), s.score, s.clock.unstable});
  };
  bool refuted = false;
  protocol->on_depth = [&](int) { snap("depth"); };
  protocol->on_instability = [&] { snap("instability"); };
  protocol->on_summary = [&] { snap("summary"); };
  protocol->on_new_best_move = [&](const std::string& text) {
    snap("new best " + text);
    const Search& s = search();
    const int best = s.score;
    if (refuted || best < s.draw_score - 10 || best > s.draw_score + 1) return;
    refuted = true;
    // A deep verdict: the candidate is worth a little less than the old best.
    Board after(s.tree->board);
    after.MakeMove(s.root_moves[0]->move);
    const auto value = std::int16_t(5 - best);  // from the side that replies
    TranspositionTable.StoreEntry({after.Key(), value, value, 64 * 70, 64 * 70,
                                   MakeHashWord(MOVE_INVALID, true, 0, 0)});
  };
  SearchRequest request;
  request.max_depth = 4;
  request.game.SetFromFen(fen);
  loop->input = std::make_unique<ScriptedInput>(std::deque<std::string>{}, &search());
  search().RunSearch(request, loop.get());

  const auto instability = std::find_if(seen.begin(), seen.end(), [](const Snapshot& s) { return s.event == "instability"; });
  ASSERT_TRUE(refuted) << "No new best move came while the score was near the draw score; pick another position.";
  ASSERT_NE(instability, seen.end()) << "The refuted candidate didn't cause the instability; pick another position.";
  ASSERT_EQ(std::count_if(seen.begin(), seen.end(), [](const Snapshot& s) { return s.event == "instability"; }), 1);

  // The report before it is the candidate's, with the candidate in front and the old results.
  const Snapshot& before = *(instability - 1);
  ASSERT_TRUE(before.event.starts_with("new best ")) << before.event;
  const Move candidate = before.order[0];
  const std::string candidate_text = before.event.substr(9);
  EXPECT_TRUE(instability->unstable);
  EXPECT_EQ(instability->best_move, candidate);  // still the candidate while the warning goes out

  // At the next report the old best leads again, the candidate second, the rest in their order;
  // best move, line and score are those from before the test.
  std::vector<Move> expected = before.order;
  std::swap(expected[0], expected[1]);
  const Snapshot& next = *(instability + 1);
  if (next.event.starts_with("new best ")) {
    // Another move beat the old best meanwhile: it has come to the front.
    const auto other = std::find(expected.begin(), expected.end(), next.order[0]);
    ASSERT_NE(other, expected.end());
    std::rotate(expected.begin(), other, other + 1);
  }
  EXPECT_EQ(next.order, expected);
  EXPECT_EQ(next.best_move, before.best_move);
  EXPECT_NE(next.best_move, candidate);
  EXPECT_EQ(next.pv, before.pv);
  EXPECT_EQ(next.score, before.score);

  // The flag lasts for the rest of its iteration only.
  bool later_iteration = false;
  for (auto s = instability; s != seen.end(); ++s) {
    if (s->event == "summary") continue;
    later_iteration = later_iteration || s->iteration > instability->iteration;
    EXPECT_EQ(s->unstable, s->iteration == instability->iteration) << s->event << " in iteration " << s->iteration;
  }
  EXPECT_TRUE(later_iteration) << "no iteration ran after the instability";

  // The console shows the candidate, then the warning on the same line.
  FindAfter(Output(), "!? " + candidate_text + " #warning: Search instability found!\n", 0);
  EXPECT_EQ(MoveToText(request.game.Current(), candidate), candidate_text);
}
