// Games kept by hand, without the engine moving, at the console and over XBoard: moves, taking
// back, the board after each move, results when the rules end the game, positions, clocks and files.
#include <gtest/gtest.h>

#include <fstream>

#include "e2e/engine_process.h"
#include "interfaces/user_board.h"

namespace {

const std::string P = Prompt("White 1");

// The diagram that the console prints after a move, for a position given as FEN.
std::string Diagram(const std::string& fen) {
  UserBoard game;
  game.SetFromFen(fen);
  return game.Current().DisplayText(false);
}

// The position after each line of `lines`, written by write_fen after the last one.
std::string FenAfter(const std::string& lines) {
  TemporaryDirectory directory;
  RunEngine({}, lines + "write_fen " + directory.File("p.fen") + "\n");
  return ReadFile(directory.File("p.fen"));
}

}  // namespace

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
  const EngineRun write = RunEngine({}, "xboard\nforce\nname Tal\nd4\nNf6\nc4\ne6\nNc3\nBb4\nresult 1/2-1/2 {agreed}\n"
                                        "write_fen " + fen + "\nwrite_pgn " + pgn + "\nwrite_fen " + directory +
                                        "/missing/x.fen\nwrite_pgn " + directory + "/\n");
  EXPECT_EQ(write.out, P + "Error (could not open file): write_fen " + directory + "/missing/x.fen\n" +
                           "Error (could not open file): write_pgn " + directory + "/\n");
  const std::string end = "rnbqk2r/pppp1ppp/4pn2/8/1bPP4/2N5/PP2PPPP/R1BQKBNR w KQkq - 2 4";
  EXPECT_EQ(ReadFile(fen), end + "\n");
  EXPECT_EQ(ReadFile(pgn), "[Event \"?\"]\n[Site \"?\"]\n[Date \"????.??.??\"]\n[Round \"-\"]\n[White \"Tal\"]\n"
                           "[Black \"Zephrin\"]\n[Result \"1/2-1/2\"]\n[TimeControl \"?\"]\n\n"
                           "1. d4 Nf6 2. c4 e6 3. Nc3 Bb4 \n1/2-1/2\n");

  // Read back, a game stands at its start with every move ready for `next`, and shows its tags.
  const EngineRun read = RunEngine({}, "read_fen " + fen + "\nforce\nread_fen " + fen + "\nread_pgn " + pgn +
                                           "\nnext all\nread_fen " + directory + "/none.fen\n");
  EXPECT_EQ(read.out, P + "Error (must be in force mode): read_fen " + fen + "\n" + P + P + Diagram(end) +
                          Prompt("White 4") + Diagram("rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1") +
                          "Event\t\"?\"\nSite\t\"?\"\nDate\t\"????.??.??\"\nRound\t\"-\"\nWhite\t\"Tal\"\nBlack\t\"Zephrin\"\n"
                          "TimeControl\t\"?\"\n" + P + Diagram(end) + Prompt("White 4") +
                          "Error (could not open file): read_fen " + directory + "/none.fen\n" + Prompt("White 4"));
}

TEST(GameEndEndToEnd, AWholeGameToMateAtTheConsole) {
  const EngineRun run = RunEngine({}, "force\nf3\ne7e5\ng4\nQh4#\ne4\nresult 1-0\n");
  EXPECT_EQ(run.out, Prompt("White 1") + Prompt("White 1") +
                         Diagram("rnbqkbnr/pppppppp/8/8/8/5P2/PPPPP1PP/RNBQKBNR b KQkq - 0 1") + Prompt("Black 1") +
                         Diagram("rnbqkbnr/pppp1ppp/8/4p3/8/5P2/PPPPP1PP/RNBQKBNR w KQkq - 0 2") + Prompt("White 2") +
                         Diagram("rnbqkbnr/pppp1ppp/8/4p3/6P1/5P2/PPPPP2P/RNBQKBNR b KQkq - 0 2") + Prompt("Black 2") +
                         Diagram("rnb1kbnr/pppp1ppp/8/4p3/6Pq/5P2/PPPPP2P/RNBQKBNR w KQkq - 1 3") +
                         "game over: 0-1 (Black mates)\n" + Prompt("White 3") +
                         // A finished game takes no more moves, and its result stands.
                         "Illegal move: e4\n" + Prompt("White 3") + "Command ignored (game over)\n" + Prompt("White 3"));
  EXPECT_EQ(run.status, 0);
}

TEST(GameEndEndToEnd, UndoAndNextRoundTrips) {
  const std::string moves = "force\ne4\ne5\nNf3\nNc6\nBb5\n";
  const std::string after_five = "r1bqkbnr/pppp1ppp/2n5/1B2p3/4P3/5N2/PPPP1PPP/RNBQK2R b KQkq - 3 3\n";
  EXPECT_EQ(FenAfter(moves), after_five);
  EXPECT_EQ(FenAfter(moves + "undo 3\nnext 3\n"), after_five);
  EXPECT_EQ(FenAfter(moves + "undo all\nnext all\n"), after_five);
  EXPECT_EQ(FenAfter(moves + "undo 2\nnext\n"), "r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 2 3\n");
  // Undo reopens a mated game; replaying the mate ends it again.
  const std::string mated = RunEngine({}, "force\nf3\ne5\ng4\nQh4\nundo\nnext\nundo 2\nnext all\n").out;
  const std::size_t first = mated.find("game over: 0-1 (Black mates)");
  EXPECT_NE(first, std::string::npos);
  EXPECT_EQ(mated.find("game over", first + 1), std::string::npos) << "next replays without announcing the result again";
  EXPECT_TRUE(mated.ends_with(Prompt("White 3"))) << mated;
}

TEST(GameEndEndToEnd, XBoardForceModePlay) {
  const EngineRun run = RunEngine({}, "xboard\nprotover 2\nnew\nforce\nusermove e2e4\nusermove e7e5\nusermove Qh5\n"
                                      "usermove Nc6\nusermove Bc4\nusermove Nf6\nusermove e2e5\nusermove h5f7\n"
                                      "usermove a7a6\nresult 1-0 {White mates}\nping 1\n");
  const std::string features = run.out.substr(0, run.out.find("feature done=1\n") + 15);
  // In force mode a front end hears of neither the mate nor the result it sends.
  EXPECT_EQ(run.out, features + "Illegal move: usermove e2e5\nIllegal move: usermove a7a6\npong 1\n");
  EXPECT_EQ(FenAfter("xboard\nforce\nusermove e2e4\nusermove e7e5\nusermove Qh5\nusermove Nc6\nusermove Bc4\n"
                     "usermove Nf6\nusermove h5f7\n"),
            "r1bqkb1r/pppp1Qpp/2n2n2/4p3/2B1P3/8/PPPP1PPP/RNB1K1NR b KQkq - 0 4\n");
  // In a game that the engine plays, the front end hears the result of the opponent's mate.
  const EngineRun played = RunEngine({}, "xboard\nforce\nf3\ne5\ng4\nblack\nusermove d8h4\nping 2\n");
  EXPECT_EQ(played.out, Prompt("White 1") + "0-1 {Black mates}\npong 2\n");
}

// Refused undo and next are tested with taking moves back under XBoard.
TEST(GameEndEndToEnd, BadInputLeavesTheGameAsItWas) {
  TemporaryDirectory directory;
  const std::string d = directory.path + "/";
  for (auto [name, text] : {std::pair{"bad.pgn", "[Event \"x\"]\n\n1. e4 e5 2. Nf3 Nf6?? 3. Kxe8 1-0\n"},
                            {"truncated.pgn", "[Event \"x\"]\n\n1. e4 e5 2. Nf3\n"},
                            {"bad.fen", "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0\n"},
                            {"illegal.fen", "8/8/8/8/8/8/8/8 w - - 0 1\n"}}) {
    std::ofstream(d + name) << text;
  }
  // Each failing line and the console's answer, followed by the line itself where it ends in ": ".
  const std::pair<std::string, std::string> failing[] = {
      {"setboard rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0",
       "Command ignored (input inconsistent with FEN standard)\nCommand ignored (Illegal position)\n"},
      {"setboard 8/8/8/8/8/8/8/8 w - - 0 1", "Command ignored (Illegal position)\n"},
      {"Ke3", "Illegal move: "}, {"Nxe5x", "Illegal move: "}, {"O-O", "Illegal move: "},
      {"usermove e7e5", "Illegal move: "}, {"read_pgn " + d + "bad.pgn", "Error (Illegal move): "},
      {"read_pgn " + d + "truncated.pgn", "Error (could not read PGN file): "},
      {"read_pgn " + d + "missing.pgn", "Error (could not open file): "},
      {"read_fen " + d + "bad.fen", "Error (could not read FEN file): "},
      {"read_fen " + d + "illegal.fen", "Error (Illegal position): "}};
  std::string input = "force\ne4\ne5\nNf3\n";
  for (int i = 0; const auto& [command, answer] : failing) input += command + "\nwrite_fen " + d + std::to_string(i++) + ".fen\n";
  const std::string out = RunEngine({}, input).out;
  for (int i = 0; const auto& [command, answer] : failing) {
    EXPECT_EQ(ReadFile(d + std::to_string(i++) + ".fen"), "rnbqkbnr/pppp1ppp/8/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R b KQkq - 1 2\n")
        << command;
    EXPECT_NE(out.find(Prompt("Black 2") + answer + (answer.ends_with(": ") ? command + "\n" : "")), std::string::npos)
        << command;
  }
}

TEST(GameEndEndToEnd, NoHintInAFinishedGame) {
  const std::string stalemate = "force\nsetboard 7k/8/5K2/8/8/8/8/6Q1 w - - 0 1\nQg6\n";
  EXPECT_TRUE(RunEngine({}, stalemate + "hint\nhint\n")
                  .out.ends_with(Prompt("Black 1") + "Hint request could not be responded, because no legal move was found\n" +
                                 Prompt("Black 1") + "Hint request could not be responded, because no legal move was found\n" +
                                 Prompt("Black 1")));
  EXPECT_EQ(RunEngine({}, "xboard\n" + stalemate + "hint\nping 1\n").out, Prompt("White 1") + "pong 1\n");
}
