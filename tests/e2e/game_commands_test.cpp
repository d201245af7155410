// A game kept by hand, without the engine moving: moves, taking back, results, positions, clocks
// and files, as a front end and a person see them.
#include <gtest/gtest.h>

#include "e2e/engine_process.h"

namespace {
const std::string P = Prompt("White 1");
}

TEST(GameEndToEnd, MovesAndTakingBackUnderXBoard) {
  const EngineRun run = RunEngine(
      {}, "xboard\nforce\ne4\ne5\ne2e5\nundo 0\nundo x\nundo 3\nundo all\nnext 3\nremove\nremove\nnext all\n"
          "usermove Nf3\nremove\nnext\nnext\nnext\ndraw\nresult 1-0 {White mates}\nresult 0-1\ne4\nundo\nd4\nping 1\n");
  EXPECT_EQ(run.out, P +
                         "Illegal move: e2e5\n"
                         "Error (argument out of bounds): undo 0\n"
                         "Error (integer argument expected): undo x\n"
                         "telluser could not undo 1 move(s), because start position has been reached\n"
                         "Error (no move to undo): undo all\n"
                         "telluser 1 move(s) could not be made, because next move buffer is empty\n"
                         "Error (no moves to remove): remove\n"
                         "Error (next move buffer is empty): next\n"
                         "Error (command not legal now): draw\n"
                         "Illegal move: e4\n"
                         "pong 1\n");
  EXPECT_EQ(run.status, 0);
}

TEST(GameEndToEnd, SidesDrawOffersAndResults) {
  const EngineRun run = RunEngine({}, "xboard\nblack\nping 1\ndraw\ncomputer\ndraw\nwhite\nresult 1/2-1/2 {agreed}\ndraw\n"
                                      "result *\nping 2\n");
  EXPECT_EQ(run.out, P + "pong 1\n"
                         "telluser Zephrin is thinking about the draw offer and will decide after the next move.\n"
                         "Error (game over): draw\n"
                         "pong 2\n");
  // The side to move changes only to a legal position: here White would stand in check with Black to move.
  const EngineRun sides = RunEngine({}, "xboard\nforce\nsetboard 4k3/8/8/8/8/8/8/4K2R w - - 0 1\nwhite\nblack\n"
                                        "force\nsetboard 4k3/8/8/8/8/8/8/r3K3 w - - 0 1\nblack\n");
  EXPECT_EQ(sides.out, P + "Error (cannot change sides): black\n");
}

TEST(GameEndToEnd, PositionsFromSetboard) {
  // The refusals of bad positions at the console are in the test of bad input.
  const EngineRun console = RunEngine(
      {}, "setboard 8/8/8/8/8/8/8/K6k w - - 0 1\nforce\nsetboard rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR b KQkq - 0 30\n");
  EXPECT_TRUE(console.out.starts_with(P + "Error (must be in force mode): setboard 8/8/8/8/8/8/8/K6k w - - 0 1\n" + P + P))
      << console.out;
  EXPECT_TRUE(console.out.ends_with("      a   b   c   d   e   f   g   h\n" + Prompt("Black 30")));

  // A front end is told, and the position becomes the two kings.
  const EngineRun xboard = RunEngine({}, "xboard\nforce\nsetboard nonsense\ndisplay\n");
  EXPECT_TRUE(xboard.out.starts_with(P + "telluser Illegal position\n    +---+---+---+---+---+---+---+---+\n"
                                         "  8 |   |   |   |   | K |   |   |   |\n"))
      << xboard.out;
}

// Every refusal of a time control has its text in the clock's and the parser's tests; here the
// commands at work and the form of their refusals.
TEST(GameEndToEnd, ClockCommandsCheckTheirControls) {
  const EngineRun run = RunEngine({}, "xboard\nlevel 40 5 0\nlevel 0 0:30 3\nlevel 40 0 -1\ntc 40 5 0\n"
                                      "tc 40 90 0 0 30 0\ntc 0 5 1 ; 0 10 2\nst 30\nsd 5\ntime 6000\notim 5000\n"
                                      "time x\nping 1\n");
  EXPECT_EQ(run.out, P + "Error (argument out of bounds): level 40 0 -1\n"
                         "Error (last time control must not terminate): tc 40 5 0\n"
                         "Error (integer argument expected): time x\npong 1\n");
}

TEST(GameEndToEnd, PositionsAndGamesInFiles) {
  const TemporaryDirectory temporary;
  const std::string directory = temporary.path;
  const std::string fen = directory + "/position.fen";
  const std::string pgn = directory + "/game.pgn";
  const EngineRun write = RunEngine({}, "xboard\nforce\ne4\nc5\nNf3\nwrite_fen " + fen + "\nwrite_pgn " + pgn +
                                            "\nwrite_fen " + directory + "/missing/x.fen\nwrite_pgn " + directory + "/\n");
  EXPECT_EQ(write.out, P + "Error (could not open file): write_fen " + directory + "/missing/x.fen\n" +
                           "Error (could not open file): write_pgn " + directory + "/\n");

  const EngineRun read = RunEngine({}, "read_fen " + fen + "\nforce\nread_fen " + fen + "\nread_pgn " + pgn +
                                           "\nnext all\nread_fen " + directory + "/none.fen\n");
  EXPECT_TRUE(read.out.starts_with(P + "Error (must be in force mode): read_fen " + fen + "\n" + P + P +
                                   "    +---+"))
      << read.out;
  EXPECT_NE(read.out.find("      a   b   c   d   e   f   g   h\n" + Prompt("Black 2") + "    +---+"),
            std::string::npos);
  EXPECT_NE(read.out.find("\nWhite\t\"Incognito\"\nBlack\t\"Zephrin\"\n"), std::string::npos) << read.out;
  EXPECT_TRUE(read.out.ends_with(Prompt("Black 2") + "Error (could not open file): read_fen " + directory +
                                 "/none.fen\n" + Prompt("Black 2")))
      << read.out;
}
