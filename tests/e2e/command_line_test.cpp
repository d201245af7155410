// The command line: start-up commands, their forms, warnings and exit statuses.
#include <gtest/gtest.h>

#include "e2e/engine_process.h"

namespace {

const std::string P = Prompt("White 1");

std::string Stopped(const std::string& text) {
  return "Error while parsing startup commands (stopped at \"" + text + "\")\n";
}

}  // namespace

TEST(CommandLineEndToEnd, VersionAndHelpExitAfterRunning) {
  const EngineRun version = RunEngine({"--hash", "trans", "8M", "--version", "--bogus"}, "ping 1\n");
  EXPECT_TRUE(version.out.starts_with("Zephrin v2.0.2 (")) << version.out;
  EXPECT_EQ(version.out.find("pong"), std::string::npos);
  EXPECT_EQ(version.status, 0);

  const EngineRun help = RunEngine({"--help"}, "");
  EXPECT_TRUE(help.out.starts_with("command         description\ncontempt........Sets the contempt value.")) << help.out;
  EXPECT_NE(help.out.find("\nxboard..........Enters XBoard mode (protocol 1)\n"), std::string::npos);
  EXPECT_EQ(help.out.find("ping"), std::string::npos);  // not a start-up command
  EXPECT_EQ(help.status, 0);

  const EngineRun quit = RunEngine({"--quit"}, "ping 1\n");
  EXPECT_EQ(quit.out, "");
  EXPECT_EQ(quit.status, 0);
}

TEST(CommandLineEndToEnd, OptionsRunBeforeTheLoopWithForceFirst) {
  // hash resizes only in force mode, which the command line sets up first.
  const EngineRun run = RunEngine({"--hash", "trans", "8M", "--sd=4", "--id", "two", "words"}, "hash\nprotover 2\n");
  EXPECT_TRUE(run.out.starts_with(P + "transposition table: 6.00 megabyte\n")) << run.out;
  EXPECT_NE(run.out.find("feature myname=\"Zephrin two words\"\n"), std::string::npos);
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(run.status, 0);

  // Values given with "=" may be negative.
  const EngineRun equals = RunEngine({"--contempt=-20", "--personality", "Fenx"}, "personality\nprotover 2\n");
  EXPECT_TRUE(equals.out.starts_with(P + "Personality: Fenx (1000)\n" + P + "feature analyze=1\n")) << equals.out;
  EXPECT_NE(equals.out.find("feature myname=\"Fenx Zephrin\"\n"), std::string::npos);
  EXPECT_EQ(equals.status, 0);

  // A word without dashes warns and works; empty arguments are skipped.
  const EngineRun word = RunEngine({"hash", "trans", "8M", ""}, "hash\n");
  EXPECT_EQ(word.err, "Warning: Expecting '-' before option \"hash\"! Continuing...\n");
  EXPECT_TRUE(word.out.starts_with(P + "transposition table: 6.00 megabyte\n")) << word.out;
  EXPECT_EQ(word.status, 0);
  const EngineRun empty = RunEngine({"", "--sd", "3", ""}, "");
  EXPECT_EQ(empty.out, P);
  EXPECT_EQ(empty.status, 0);
}

TEST(CommandLineEndToEnd, BadOptionsStopWithStatusOne) {
  const struct {
    std::vector<std::string> arguments;
    std::string text;
  } cases[] = {
      {{"-"}, "-"}, {{"--"}, "--"}, {{"--bogus"}, "--bogus"}, {{"---version"}, "---version"},
      {{"--version="}, "--version="}, {{"--=version"}, "--=version"}, {{"--ping", "1"}, "--ping"},
      {{"--sd", "4", "-"}, "-"},
      {{"--contempt", "-20"}, "Error (wrong number of arguments): contempt"},
      {{"--hash", "trans"}, "Error (wrong number of arguments): hash trans"},
      {{"--sd=x"}, "Error (integer argument expected): sd x"},
      {{"--sd", "-1"}, "Error (wrong number of arguments): sd"},
      {{"--sd=-1"}, "Error (argument out of bounds): sd -1"},
      {{"--id", "don't"}, "Error (could not tokenize the input string): id don't"},
  };
  for (const auto& c : cases) {
    const EngineRun run = RunEngine(c.arguments, "ping 1\n");
    EXPECT_EQ(run.out, Stopped(c.text)) << c.arguments[0];
    EXPECT_EQ(run.status, 1) << c.arguments[0];
  }
}
