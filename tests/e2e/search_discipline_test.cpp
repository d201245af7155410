// Commands that arrive while the engine thinks: they are executed inside the search, and those
// that change the game end it first, as a front end sees it over the XBoard protocol. Searches
// that a command is to end get a depth they can't finish; the others get small depths.
#include <gtest/gtest.h>

#include <sstream>

#include "e2e/engine_process.h"

namespace {

const std::string P = Prompt("White 1");

// The lines of the output after the first prompt.
std::vector<std::string> Lines(const std::string& out) {
  std::vector<std::string> lines;
  std::istringstream in(out.substr(out.starts_with(P) ? P.size() : 0));
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

}  // namespace

TEST(SearchDisciplineEndToEnd, CommandsThatLeaveTheSearchAloneRunInsideIt) {
  // Standard input stays open until the search is over, as a front end's would. The whole input
  // arrives at once, so the commands behind the first "go" wait in the input buffer, where the
  // search finds them although the descriptor has nothing more to read.
  const EngineRun run = RunEngine({}, "xboard\nsd 6\ngo\ngo\nping 1\ntime 6000\notim 6000\nnopost\n.\n", 60, 3000);
  const std::vector<std::string> lines = Lines(run.out);
  ASSERT_EQ(lines.size(), 4u) << run.out;
  EXPECT_EQ(lines[0], "Error (command not legal now): go");
  EXPECT_EQ(lines[1], "pong 1");
  EXPECT_TRUE(lines[2].starts_with("stat01: ")) << lines[2];
  EXPECT_NE(lines[2], "stat01: 0 0 0 0 0");
  EXPECT_TRUE(lines[3].starts_with("move ")) << lines[3];
  EXPECT_EQ(run.status, 0);
}

TEST(SearchDisciplineEndToEnd, CommandsThatChangeTheGameEndTheSearchWithoutAMove) {
  // new: no move, and afterwards the engine waits as Black.
  EXPECT_EQ(RunEngine({}, "xboard\nsd 60\ngo\nnew\nping 2\n", 60).out, P + "pong 2\n");
  // time finishes inside the search, new then aborts it.
  EXPECT_EQ(RunEngine({}, "xboard\nsd 60\ngo\ntime 6000\nnew\nping 3\n", 60).out, P + "pong 3\n");
  // force stops the thinking; the position stays as it was.
  const EngineRun force = RunEngine({}, "xboard\nsd 60\ngo\nforce\nusermove e4\nping 4\n", 60);
  EXPECT_EQ(force.out, P + "pong 4\n");
  // The end of input reads as quit, also during a search.
  const EngineRun quit = RunEngine({}, "xboard\nsd 60\ngo\n", 60);
  EXPECT_EQ(quit.out, P);
  EXPECT_EQ(quit.status, 0);
}

TEST(SearchDisciplineEndToEnd, MoveNowPlaysTheBestMoveSoFarEvenUnderHugeLimits) {
  const std::vector<std::string> lines =
      Lines(RunEngine({}, "xboard\nsd 2147483647\nst 2147483647\nlevel 0 0:01 2147483\ngo\n?\n", 60).out);
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_TRUE(lines[0].starts_with("move ")) << lines[0];
  const std::vector<std::string> now = Lines(RunEngine({}, "xboard\nsd 60\ngo\n?\nping 5\n", 60).out);
  ASSERT_EQ(now.size(), 2u);
  EXPECT_TRUE(now[0].starts_with("move ")) << now[0];
  EXPECT_EQ(now[1], "pong 5");
}

TEST(SearchDisciplineEndToEnd, TheEngineMatesAndAFinishedGameIsAnalysedByWaiting) {
  EXPECT_EQ(RunEngine({}, "xboard\nforce\nsetboard 6k1/5ppp/8/8/8/8/8/R5K1 w - - 0 1\nsd 2\ngo\n").out,
            P + "move Ra8#\n1-0 {White mates}\n");
  EXPECT_EQ(RunEngine({}, "xboard\nforce\nf3\ne5\ng4\nQh4\nanalyze\nping 6\n.\nexit\nping 7\n").out,
            P + "pong 6\nstat01: 0 0 0 0 0\npong 7\n");
}
