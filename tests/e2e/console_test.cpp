// The console protocol as a person at the terminal sees it.
#include <gtest/gtest.h>

#include <regex>

#include "e2e/engine_process.h"

namespace {
const std::string P = Prompt("White 1");
}

TEST(ConsoleEndToEnd, PlainStartPromptsAndLeavesAtEndOfInput) {
  const EngineRun run = RunEngine({}, "");
  EXPECT_EQ(run.out, P);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.status, 0);

  const EngineRun quit = RunEngine({}, "quit\nping 1\n");
  EXPECT_EQ(quit.out, P);
  EXPECT_EQ(quit.status, 0);
}

TEST(ConsoleEndToEnd, AnswersAndRefusalsInTheProgramsWords) {
  // The parser's refusals and those of hash sizes are tested on their own; here their form at the
  // console, and refusals of the commands themselves.
  const EngineRun run = RunEngine({}, "ping 7\n\n   \t\nlevel 40\nfoo bar\ntb foo 8M path\nst -1\n");
  EXPECT_EQ(run.out, P + "pong 7\n" + P + "OK.\n" + P + "OK.\n" +
                         P + "Error (wrong number of arguments): level 40\n" +
                         P + "Error (unrecognized command): foo bar\n" +
                         P + "Error (could not parse type): tb foo 8M path\n" +
                         P + "Error (argument out of bounds): st -1\n" + P);
  EXPECT_EQ(run.status, 0);
}

TEST(ConsoleEndToEnd, UnsupportedAndIgnoredWords) {
  std::string expected = P;
  for (std::string word : {"bk", "variant normal", "ics", "pause", "resume"})
    expected += "Error (command is not supported): " + word + "\n" + P;
  for (int i = 0; i < 5; ++i)  // random, accepted, rejected; then ? and . with no search
    expected += std::string("Command ignored (") + (i < 3 ? "command is not supported" : "no search running") + ")\n" + P;
  EXPECT_EQ(RunEngine({}, "bk\nvariant normal\nics\npause\nresume\nrandom\naccepted\nrejected 1\n?\n.\n").out, expected);
}

TEST(ConsoleEndToEnd, SettingsThatNeedNothingElse) {
  // The status text of the hash tables is tested with them.
  const EngineRun run = RunEngine({}, "personality\nforce\npersonality 0\npersonality Default\nsd 3\nsd -3\n");
  EXPECT_EQ(run.out, P + "Personality: Zephrin (0)\n" + P + P + P + P + P + "Error (argument out of bounds): sd -3\n" + P);
  // The personality's name covers the values from its own towards 0; changing it needs force mode.
  const EngineRun personality = RunEngine(
      {}, "personality 5\nforce\npersonality 5\npersonality\npersonality 5000\npersonality\npersonality -20\n"
          "personality\npersonality 0\npersonality\n");
  EXPECT_EQ(personality.out, P + "Error (must be in force mode): personality 5\n" + P + P + P + "Personality: Gremlow (5)\n" +
                                 P + P + "Personality: Fenx (1000)\n" + P + P + "Personality: Ondrith (-20)\n" + P + P +
                                 "Personality: Zephrin (0)\n" + P);
}

TEST(ConsoleEndToEnd, GreetingsOnReturningToTheConsole) {
  const std::string out = RunEngine({}, "xboard\nconsole\nname Garry Kasparov\nconsole\n").out;
  // A greeting; then the prompt, the name, and a greeting that names the opponent.
  EXPECT_TRUE(std::regex_match(out, std::regex(P + "(Hallo|Guten Tag|Welcome|Zephrin welcomes you|Zephrin ist bereit|"
                                                   "Ave und beim Jupiter)!\n" + P + P + "[^]*, Garry Kasparov!\n" + P)))
      << out;
}

TEST(ConsoleEndToEnd, VersionAndHelp) {
  const EngineRun run = RunEngine({}, "version\n");
  EXPECT_TRUE(run.out.starts_with(P + "Zephrin v2.0.2 (")) << run.out;
  EXPECT_NE(run.out.find("\nbuild: Zephrin with variable search extensions\n\ninline assembler:       disabled\n"
                         "move generator cache:   disabled\ntablebase support:      enabled\n"
                         "architecture:           AMD Athlon 64 compatible\nplatform:               cygwin\n"),
            std::string::npos);

  const EngineRun help = RunEngine({}, "help\n");
  EXPECT_TRUE(help.out.starts_with(P + "command          description\n"
                                       "\".\"..............Sends a request for the current search status\n"
                                       "?................Forces the engine to move immediately\n"
                                       "accepted.........unsupported (will be ignored for compatibility reasons)\n"
                                       "analyze..........Enters analyze mode\n"))
      << help.out;
  EXPECT_TRUE(help.out.ends_with("\nxboard...........Enters XBoard mode (protocol 1)\n" + P));
}

TEST(ConsoleEndToEnd, DisplayShowsTheBoardUnderEveryProtocol) {
  const EngineRun run = RunEngine({}, "display\nxboard\ndisplay\n");
  const std::string board_start = "    +---+---+---+---+---+---+---+---+\n  8 | R | N | B | Q | K | B | N | R |\n";
  const std::string board_end = "      a   b   c   d   e   f   g   h\ncastle possibilities: KQkq\n"
                                "side on move: white; en-passant square: none\n";
  ASSERT_TRUE(run.out.starts_with(P + board_start)) << run.out;
  const std::size_t second = run.out.find(board_end + P + board_start);
  ASSERT_NE(second, std::string::npos) << run.out;
  EXPECT_TRUE(run.out.ends_with(board_end));
}
