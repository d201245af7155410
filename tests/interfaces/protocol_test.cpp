// What each protocol writes for the operations that the search and the game call.
#include <gtest/gtest.h>

#include "interfaces/console_protocol.h"
#include "interfaces/game.h"
#include "interfaces/game_test_helpers.h"
#include "interfaces/xboard_protocol.h"

using namespace ZephrinInterfaces;

namespace {

class ProtocolTest : public ::testing::Test {
 protected:
  std::string Take() { return output_.Take(); }

 private:
  test_helpers::CapturedOutput output_;
};

SearchReport Report(std::int32_t score, std::uint64_t nodes) {
  SearchReport report;
  report.depth = 7;
  report.score = score;
  report.nodes = nodes;
  report.pv = {"e4", "e5", "Nf3"};
  report.move_count = 20;
  report.moves_left = 12;
  report.current_move_text = "d4";
  Now(report.start_time);
  return report;
}

}  // namespace

TEST(ScoreText, MatesCountInMoves) {
  for (const auto& [score, text] : std::initializer_list<std::pair<int, const char*>>{
           {31767, "31767"}, {-31767, "-31767"}, {32766, "#1"}, {32763, "#2"}, {-32763, "-#2"}, {31768, "#500"}}) {
    EXPECT_EQ(ScoreText(score), text) << score;
  }
}

TEST_F(ProtocolTest, ConsoleThinkingFollowsPost) {
  ConsoleProtocol console;
  console.ReportDepth(7);
  console.ReportLine(Report(32763, 250000));
  EXPECT_EQ(Take(), "Depth: 7.\rDepth: 7. e4 e5 Nf3 (#2)\n250 knodes searched\n");
  console.ReportNewBestMove("d4");
  console.ReportSearchInstability();
  EXPECT_EQ(Take(), "!? d4 #warning: Search instability found!\n");
  console.post = false;
  console.ReportDepth(8);
  console.ReportLine(Report(15, 10));
  console.ReportNewBestMove("d4");
  EXPECT_EQ(Take(), "");
}

TEST_F(ProtocolTest, XBoardThinkingLinesAndStatus) {
  XBoardProtocol_1 xboard;
  xboard.ReportLine(Report(32763, 250000));
  EXPECT_EQ(Take(), "");  // post starts off
  xboard.post = true;
  xboard.ReportDepth(7);
  xboard.ReportLine(Report(32763, 250000));
  EXPECT_EQ(Take(), "7 32763 0 250000 e4 e5 Nf3 \n");
  const SearchReport report = Report(0, 1234);
  xboard.ShowSearchStatus(&report);
  xboard.ShowSearchStatus(nullptr);
  EXPECT_EQ(Take(), "stat01: 0 1234 7 11 20 d4\nstat01: 0 0 0 0 0\n");
  xboard.ReportNewBestMove("d4");
  xboard.ReportSearchInstability();
  xboard.ShowSearchSummary(report);
  EXPECT_EQ(Take(), "");
}

// Resigning at the console, draw offers and their answers, "Zephrin played", the hint that finds no
// move, edit mode's words and the game results at the console are tested where the game and the
// end-to-end tests produce them; here the rest.
TEST_F(ProtocolTest, ResultsMovesAndMessages) {
  XBoardProtocol_2 xboard;
  xboard.ShowGameResult(1, 0, GAME_MODE_PLAY);
  xboard.ShowGameResult(3, 5, GAME_MODE_FORCE);
  xboard.ShowGameResult(3, 7, GAME_MODE_ANALYZE);
  xboard.ShowGameResult(2, 1, GAME_MODE_BOTH);
  xboard.ShowEngineMove("Nf3");
  xboard.ShowHint("e4");
  xboard.ShowHint("");
  xboard.TellUser("Warning: Startup command failed!\nError: x");
  xboard.Resign();
  xboard.RejectDraw(true);
  xboard.RejectDraw(false);
  xboard.ShowCommandIgnored("game over");
  xboard.ShowPredictedMove("e5");
  EXPECT_EQ(Take(),
            "1-0 {White mates}\n0-1 {White resigns}\nmove Nf3\nHint: e4\n"
            "telluser Warning: Startup command failed!\tError: x\nresign\n"
            "telluser Zephrin rejects the draw offer and wants to play on.\n");

  ConsoleProtocol console;
  console.ShowPredictedMove("e5");
  console.ShowEditPrompt();
  console.OfferDraw();
  console.id = "##Deep";
  console.ConsiderDraw(false);
  console.ConsiderDraw(true);
  EXPECT_EQ(Take(),
            "Predicted move made (e5)\nedit mode> Zephrin offers draw. (Note: type \"draw\" to accept)\n"
            "Deep is thinking about the draw offer and will decide after the next move.\n");
}

TEST(ProtocolReplacement, PersonalityAndIdStayPostDoesNot) {
  auto console = std::make_unique<ConsoleProtocol>();
  console->personality = -8;
  console->id.push_back('x');  // (an assignment here trips a false warning of GCC 12)
  Game game(std::move(console));
  game.ReplaceProtocol(std::make_unique<XBoardProtocol_1>());
  EXPECT_FALSE(game.Protocol().post);
  EXPECT_EQ(game.Protocol().personality, -8);
  EXPECT_EQ(game.Protocol().id, "x");
  game.ReplaceProtocol(std::make_unique<ConsoleProtocol>());
  EXPECT_TRUE(game.Protocol().post);
  EXPECT_EQ(game.Protocol().personality, -8);
}
