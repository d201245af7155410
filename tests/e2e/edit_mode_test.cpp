// Edit mode through the program: a person sets up a position at the console, a front end sends
// its edit words without prompts or echo.
#include <gtest/gtest.h>

#include "e2e/engine_process.h"

namespace {

// The board that `display` prints after `input`.
std::string DisplayAfter(const std::string& input) {
  const std::string out = RunEngine({}, input + "display\n").out;
  const std::size_t board = out.rfind("    +---+---+---+---+---+---+---+---+\n  8 |");
  if (board == std::string::npos) return out;
  return out.substr(board, out.find('\n', out.find("en-passant square: ", board)) + 1 - board);
}

std::string Position(const std::string& fen) {
  return DisplayAfter("force\nsetboard " + fen + "\n");
}

}  // namespace

TEST(EditModeEndToEnd, AtTheConsole) {
  EXPECT_EQ(RunEngine({}, "edit\n").out, Prompt("White 1") + "Error (must be in force mode): edit\n" + Prompt("White 1"));

  // Finishing at once keeps the position and drops its history.
  const EngineRun same = RunEngine({}, "force\ne4\ne5\nundo\nedit\n.\nnext\nundo\n");
  EXPECT_TRUE(same.out.ends_with(Prompt("Black 1") + "Error (next move buffer is empty): next\n" + Prompt("Black 1") +
                                 "Error (no move to undo): undo\n" + Prompt("Black 1")))
      << same.out;
  EXPECT_EQ(DisplayAfter("force\ne4\nedit\n.\n"), Position("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"));

  const EngineRun cancelled = RunEngine({}, "force\nedit\n#\ncancel\n");
  EXPECT_TRUE(cancelled.out.ends_with("edit mode> Edit mode aborted\n" + Prompt("White 1"))) << cancelled.out;
  EXPECT_EQ(DisplayAfter("force\nedit\n#\ncancel\n"), DisplayAfter("force\n"));

  // An illegal position is refused and the loop goes on; verify and restore.
  const EngineRun refused =
      RunEngine({}, "force\nedit\n#\n.\nZe4\nsay \"hi\nverify\nrestore\nxe2\nverify\nrestore\n.\n");
  const std::size_t invalid = refused.out.find("edit mode> Command ignored (Illegal position)\nedit mode> "
                                               "Error (unknown command): Ze4\nedit mode> Error (could not tokenize "
                                               "the input string): say \"hi\nedit mode> Current position is invalid\n");
  EXPECT_NE(invalid, std::string::npos) << refused.out;
  EXPECT_NE(refused.out.find("edit mode> Current position is valid\n", invalid), std::string::npos) << refused.out;
  EXPECT_EQ(DisplayAfter("force\nedit\n#\nrestore\n.\n"), DisplayAfter("force\n"));
  EXPECT_EQ(DisplayAfter("force\nedit\n#\nKe1\nc\nKe8\ns\n.\n"), Position("4k3/8/8/8/8/8/8/4K3 b - - 0 1"));

  // A position set up piece by piece, then played on.
  EXPECT_EQ(DisplayAfter("force\nedit\n#\nKe1\nRh1\nc\nKe8\n.\nO-O\n"), Position("4k3/8/8/8/8/8/8/5RK1 b - - 1 1"));

  const EngineRun quit = RunEngine({}, "force\nedit\nquit\nping 1\n");
  EXPECT_TRUE(quit.out.ends_with("edit mode> ")) << quit.out;
  EXPECT_EQ(quit.status, 0);
}

TEST(EditModeEndToEnd, UnderXBoard) {
  const EngineRun run = RunEngine({}, "xboard\nforce\nedit\n#\nPa2\nKe1\nc\nKe8\nZe4\n.\nping 1\n");
  EXPECT_EQ(run.out, Prompt("White 1") + "Error (unknown command): Ze4\npong 1\n");
  EXPECT_EQ(DisplayAfter("xboard\nforce\nedit\n#\nPa2\nKe1\nc\nKe8\n.\n"), Position("4k3/8/8/8/8/8/P7/4K3 w - - 0 1"));

  // A front end isn't asked again: it is told, and the game keeps the two kings alone.
  const EngineRun illegal = RunEngine({}, "xboard\nforce\nedit\nPe1\n.\nping 2\n");
  EXPECT_EQ(illegal.out, Prompt("White 1") + "telluser Illegal position\npong 2\n");
  EXPECT_EQ(DisplayAfter("xboard\nforce\nedit\nPe1\n.\n"), Position("4k3/8/8/8/8/8/8/4K3 w - - 0 1"));
}
