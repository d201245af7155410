// No input line, however malformed, ends the program: thousands of random and mutated lines go
// through the real binary, which still answers afterwards and leaves with status 0 at end of input.
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "e2e/engine_process.h"
#include "frame/tokenizer.h"

namespace {

// Commands that end the program, start searches, read further input, touch files or allocate
// whatever a random size asks for stay out of the mix.
const std::set<std::string> EXCLUDED = {
    "quit", "go", "analyze", "playother", "hint", "new", "white", "black", "edit", "optimize_piece",
    "generate", "verify", "tb", "read_fen", "read_pgn", "write_fen", "write_pgn", "read_settings",
    "write_settings", "hash"};

const std::vector<std::string> KEYWORDS = {
    "xboard", "protover", "fritz", "console", "force", "exit", "?", "usermove", "undo", "remove", "next",
    "result", "draw", "setboard", "level", "tc", "st", "sd", "time", "otim", "contempt", "personality",
    "easy", "hard", "post", "nopost", "computer", "name", "rating", "id", "modify_settings",
    "display_settings", ".", "display", "eval", "help", "version", "ping", "probe", "bk", "ics", "pause",
    "resume", "variant", "random", "accepted", "rejected", "e2e4", "Nf3", "O-O", "a7a8q"};

const std::vector<std::string> ODD_ARGUMENTS = {
    "99999999999999999999", "-2147483648", "2147483647", "-0", "007", "1:30", "0", "", "\"", "'", "\"a b\"",
    "all", "1-0", "{time}", "8/8/8/8/8/8/8/8 w - - 0 1", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "\xff\xfe", "\xc3(", "\x01\x02\x1b[2J", "Fenx", "Random", ";", "-", "--", "=", "x=1", "0x10", "1e9"};

std::string RandomBytes(std::mt19937& random, std::size_t length) {
  std::string text;
  for (std::size_t i = 0; i < length; ++i) {
    char c = static_cast<char>(random() % 256);
    if (c == '\n') c = ' ';
    text += c;
  }
  return text;
}

std::string MutatedCommand(std::mt19937& random) {
  std::string line = KEYWORDS[random() % KEYWORDS.size()];
  const int arguments = static_cast<int>(random() % 5);
  for (int i = 0; i < arguments; ++i) {
    line += random() % 3 == 0 ? "\t" : " ";
    switch (random() % 3) {
      case 0: line += ODD_ARGUMENTS[random() % ODD_ARGUMENTS.size()]; break;
      case 1: line += std::to_string(static_cast<long long>(random()) - 2147483648LL); break;
      default: line += RandomBytes(random, random() % 12); break;
    }
  }
  return line;
}

bool Excluded(const std::string& line) {
  try {
    const TokenizedLine tokens = TokenizeLine(line);
    return !tokens.tokens.empty() && EXCLUDED.count(tokens.tokens[0]) != 0;
  } catch (const ZephrinUtils::tokenize_exception&) {
    return false;
  }
}

}  // namespace

TEST(RobustnessEndToEnd, RandomAndMutatedLinesNeitherCrashNorStopTheProgram) {
  std::mt19937 random(20261123);
  std::string input = "force\n";
  int lines = 0;
  while (lines < 3000) {
    std::string line;
    switch (random() % 4) {
      case 0: line = RandomBytes(random, random() % 200); break;
      case 1: line = std::string(10000, "a\"' x"[random() % 5]); break;
      default: line = MutatedCommand(random); break;
    }
    if (Excluded(line)) continue;
    input += line + "\n";
    ++lines;
  }
  input += "ping 42\n";
  const EngineRun run = RunEngine({}, input, 300);
  ASSERT_FALSE(run.timed_out);
  EXPECT_EQ(run.status, 0);
  const std::size_t pong = run.out.rfind("pong ");
  ASSERT_NE(pong, std::string::npos);
  EXPECT_EQ(run.out.substr(pong, 8), "pong 42\n");
}
