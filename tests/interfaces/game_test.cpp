// The game's decisions: what the draw and resign tracker concludes from a run of scores, what
// happens when a search ends, and the requests that the game raises for the next search.
#include "interfaces/game.h"

#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

#include "frame/control_exceptions.h"
#include "interfaces/console_protocol.h"
#include "interfaces/game_test_helpers.h"
#include "interfaces/xboard_protocol.h"

using namespace ZephrinInterfaces;
using namespace test_helpers;

namespace {

// Built on first use, not during static initialisation, which may precede the FEN reader's.
const Board WITH_QUEENS = Board();
const Board& RookEnding() {
  static const Board board = test_helpers::FromFen("4k3/4r3/8/8/8/8/3R4/4K3 w - - 0 1");
  return board;
}

DrawResignTracker After(std::initializer_list<int> scores, bool computer, const Board& position = WITH_QUEENS) {
  DrawResignTracker tracker;
  tracker.opponent_is_computer = computer;
  for (int score : scores) tracker.Update(position, score);
  return tracker;
}

// A game after 1. e4 in which the engine plays Black and has just searched; output is kept.
class GameTest : public ::testing::Test {
 protected:
  void SetUp() override { UseProtocol(std::make_unique<ConsoleProtocol>()); }

  void UseProtocol(std::unique_ptr<BasicProtocol> protocol) {
    game = std::make_unique<Game>(std::move(protocol));
    Play(*game, "e4");
    game->clock.active = BLACK;
  }
  // The engine's search found `line`, with `score`, and ended by itself.
  void FinishSearch(const std::string& line, int score) {
    game->search_state = SEARCH_STATE_THINKING;
    game->search.pv.clear();
    UserBoard board = *game;
    std::istringstream moves(line);
    for (std::string text; moves >> text;) {
      const Move move = Parse(board.Current(), text);
      game->search.pv.push_back({move, text});
      board.PlayMove(move);
    }
    game->search.best_move = game->search.pv.empty() ? MOVE_INVALID : game->search.pv[0].move;
    game->search.score = score;
    game->SearchFinished(false);
  }
  // The request raised by `action`.
  template <typename Action>
  SearchRequest RequestOf(Action action) {
    try {
      action();
    } catch (const search_request_received_exception& raised) {
      return raised.request;
    }
    ADD_FAILURE() << "no search was requested";
    return {};
  }

  test_helpers::CapturedOutput output;
  std::unique_ptr<Game> game;
};

}  // namespace

TEST(DrawResignTracker, ResignsAfterARunBelowTheThreshold) {
  // Against a person -320 is the threshold with queens on the board, and six searches in a row.
  EXPECT_FALSE(After({-320, -320, -320, -320, -320}, false).ShouldResign());
  EXPECT_TRUE(After({-320, -320, -320, -320, -320, -320}, false).ShouldResign());
  EXPECT_FALSE(After({-320, -320, -320, -320, -320, -319}, false).ShouldResign());
  // Against a computer the threshold is lower, and five are enough.
  EXPECT_FALSE(After({-500, -500, -500, -500, -500, -500}, true).ShouldResign());
  EXPECT_TRUE(After({-510, -510, -510, -510, -510}, true).ShouldResign());
  // With little material left a deficit may still be held: -450 against a person.
  EXPECT_FALSE(After({-449, -449, -449, -449, -449, -449}, false, RookEnding()).ShouldResign());
  EXPECT_TRUE(After({-450, -450, -450, -450, -450, -450}, false, RookEnding()).ShouldResign());
}

TEST(DrawResignTracker, AMateSeenComing) {
  const int mated_in_3 = -32761;
  DrawResignTracker tracker = After({mated_in_3}, false);
  EXPECT_EQ(tracker.mate_distance, 3);
  EXPECT_TRUE(tracker.ShouldResign());
  // The same score again didn't get worse: no resignation yet.
  tracker.Update(WITH_QUEENS, mated_in_3);
  EXPECT_FALSE(tracker.mate_seen);
  EXPECT_FALSE(tracker.ShouldResign());
  // A person is given a longer mate to find; a computer isn't.
  EXPECT_FALSE(After({0, -32753}, false).ShouldResign());  // mated in 7
  EXPECT_TRUE(After({0, -32753}, true).ShouldResign());
  EXPECT_FALSE(After({0, -32745}, true).ShouldResign());  // mated in 11
}

TEST(DrawResignTracker, DrawOffersAndTheirAnswers) {
  // A score far from the contempt refuses; one that keeps falling accepts.
  EXPECT_FALSE(After({100}, false).ShouldAcceptDraw());
  EXPECT_TRUE(After({-20, -20, -20, -20, -20, -20}, false).ShouldAcceptDraw());
  // Level for long enough: accept and offer, unless the score is rising.
  DrawResignTracker level;
  level.opponent_is_computer = true;
  for (int i = 0; i < 15; ++i) level.Update(RookEnding(), i % 2 == 0 ? 25 : -25);
  EXPECT_TRUE(level.ShouldAcceptDraw());
  EXPECT_TRUE(level.ShouldOfferDraw());
  level.draw_offered = true;
  EXPECT_FALSE(level.ShouldOfferDraw());

  // The same score as the contempt twice is a draw offer, but not to a person right after one.
  DrawResignTracker same = After({0, 0}, true);
  EXPECT_TRUE(same.ShouldOfferDraw());
  EXPECT_FALSE(After({0}, true).ShouldOfferDraw());
  DrawResignTracker person = After({0, 0}, false);
  EXPECT_TRUE(person.ShouldOfferDraw());
  person.moves_since_offer = 0;
  EXPECT_TRUE(person.ShouldAcceptDraw());  // the engine offered at its last move
  person.Update(WITH_QUEENS, 0);
  EXPECT_FALSE(person.ShouldOfferDraw());

  // A new contempt starts over, but the opponent stays a computer.
  same.SetContempt(5);
  EXPECT_EQ(same.moves, 0);
  EXPECT_TRUE(same.opponent_is_computer);
  EXPECT_FALSE(After({5, 5}, true).ShouldOfferDraw());
}

TEST_F(GameTest, TheEngineMovesAfterItsSearch) {
  FinishSearch("e5 Nf3", 10);
  EXPECT_EQ(PositionToFen(*game), "rnbqkbnr/pppp1ppp/8/4p3/4P3/8/PPPP1PPP/RNBQKBNR w KQkq e6 0 2");
  EXPECT_TRUE(output.Take().starts_with("Zephrin played: e5\n    +---+"));
  EXPECT_EQ(game->search_state, SEARCH_STATE_IDLE);
  EXPECT_EQ(game->clock.active, WHITE);
}

TEST_F(GameTest, TheEngineAnswersADrawOffer) {
  game->tracker.draw_offered = true;
  FinishSearch("e5", 100);
  EXPECT_TRUE(output.Take().starts_with("Zephrin rejects the draw offer and wants to play on.\nZephrin played: e5\n"));
  EXPECT_FALSE(game->tracker.draw_offered);
  // A computer isn't told.
  UseProtocol(std::make_unique<ConsoleProtocol>());
  game->tracker.opponent_is_computer = true;
  game->tracker.draw_offered = true;
  FinishSearch("e5", 100);
  EXPECT_TRUE(output.Take().starts_with("Zephrin played: e5\n"));

  UseProtocol(std::make_unique<ConsoleProtocol>());
  game->tracker.draw_offered = true;
  FinishSearch("e5", -400);
  EXPECT_EQ(output.Take(), "Zephrin accepts draw offer\ngame over: 1/2-1/2 (Mutual agreement)\n");
  EXPECT_EQ(game->Moves().size(), 1u);
  EXPECT_TRUE(game->IsFinished());

  // A front end ends the game itself with `result`; the engine plays on meanwhile.
  UseProtocol(std::make_unique<XBoardProtocol_1>());
  game->tracker.draw_offered = true;
  FinishSearch("e5", -400);
  EXPECT_EQ(output.Take(), "offer draw\nmove e5\n");
  EXPECT_FALSE(game->IsFinished());
}

TEST_F(GameTest, TheEngineResignsOrOffersADraw) {
  game->tracker.below_threshold = 5;
  FinishSearch("e5", -1000);
  EXPECT_NE(output.Take().find("Congratulations! Zephrin resigns.\ngame over: 1-0 (Black resigns)\n"),
            std::string::npos);
  EXPECT_EQ(game->Current().result, RESULT_WHITE_WINS);

  UseProtocol(std::make_unique<XBoardProtocol_1>());
  game->tracker.opponent_is_computer = true;
  game->tracker.same_score = 1;
  game->tracker.moves = 1;
  FinishSearch("e5", 0);
  EXPECT_EQ(output.Take(), "move e5\noffer draw\n");
  EXPECT_EQ(game->tracker.moves_since_offer, 0);
}

TEST_F(GameTest, PonderingAfterTheMove) {
  game->pondering = true;
  const SearchRequest ponder = RequestOf([this] { FinishSearch("e5 Nf3 Nc6", 0); });
  EXPECT_EQ(ponder.type, SEARCH_PONDERING);
  EXPECT_EQ(PositionToFen(ponder.game), "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 1 2");
  EXPECT_EQ(game->hint, Parse(game->Current(), "Nf3"));
  EXPECT_EQ(game->Moves().size(), 2u);  // the game itself waits for the opponent's move

  // Without a reply in the line, a short search looks for one first.
  UseProtocol(std::make_unique<XBoardProtocol_1>());
  game->pondering = true;
  const SearchRequest puzzle = RequestOf([this] { FinishSearch("e5", 0); });
  EXPECT_EQ(puzzle.type, SEARCH_PUZZLE);
  EXPECT_EQ(puzzle.max_time_limit, 1000);
  EXPECT_EQ(puzzle.variable_time_limit, 750);
  EXPECT_EQ(puzzle.game.Moves().size(), 2u);

  // Its answer becomes the hint, and the ponder search follows on it.
  game->search_state = SEARCH_STATE_HINT;
  game->search.best_move = Parse(game->Current(), "d4");
  const SearchRequest after_hint = RequestOf([this] { game->SearchFinished(false); });
  EXPECT_EQ(after_hint.type, SEARCH_PONDERING);
  EXPECT_EQ(after_hint.game.Moves().size(), 3u);
  EXPECT_EQ(game->hint, game->search.best_move);

  // Pondering started by a command uses the known hint the same way.
  const SearchRequest started = RequestOf([this] { game->StartPondering(); });
  EXPECT_EQ(PositionToFen(started.game), PositionToFen(after_hint.game));
}

TEST_F(GameTest, AHintSearchThatACommandWaitsFor) {
  game->hint = HINT_REQUESTED;
  game->pondering = true;
  game->search_state = SEARCH_STATE_HINT;
  game->search.best_move = Parse(game->Current(), "c5");
  game->SearchFinished(false);  // no ponder search: `hint` shows the move first
  EXPECT_EQ(game->hint, game->search.best_move);

  game->hint = HINT_REQUESTED;
  game->search_state = SEARCH_STATE_HINT;
  game->search.best_move = MOVE_INVALID;
  game->SearchFinished(false);
  EXPECT_EQ(game->hint, HINT_NO_MOVE_KNOWN);
  game->StartPondering();  // nothing known, nothing to ponder on
}

// The limits themselves are the clock's (tested there); here what st, sd and the search kind change.
TEST_F(GameTest, SearchLimitsComeFromTheClocks) {
  game->clock.clocks[WHITE].ms_left = -1;  // the opponent's clock, in a ponder search the engine's
  game->st_limit = 2000;
  game->sd_limit = 7;
  const SearchRequest normal = RequestOf([this] { game->RequestSearch(SearchKind::normal); });
  EXPECT_EQ(normal.type, SEARCH_NORMAL);
  EXPECT_EQ(std::tuple(normal.max_time_limit, normal.variable_time_limit, normal.max_depth), std::tuple(2000, 3658, 7));
  const SearchRequest ponder = RequestOf([this] { game->RequestSearch(SearchKind::pondering); });
  EXPECT_EQ(std::pair(ponder.max_time_limit, ponder.variable_time_limit), std::pair(150, 150));
  const SearchRequest analysis = RequestOf([this] { game->RequestSearch(SearchKind::analyze); });
  EXPECT_EQ(analysis.type, SEARCH_ANALYZE);
  EXPECT_EQ(analysis.max_depth + analysis.max_time_limit + analysis.variable_time_limit, 0);
}
