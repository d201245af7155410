// Games played by hand to their end at the console and over XBoard: the prompt before each line,
// the board after each move, the result when the rules end the game, and taking moves back.
#include <gtest/gtest.h>

#include <fstream>

#include "e2e/engine_process.h"
#include "interfaces/user_board.h"

namespace {

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

TEST(GameEndEndToEnd, AGameWrittenAndReadBackAsPgn) {
  TemporaryDirectory directory;
  const std::string pgn = directory.File("game.pgn");
  RunEngine({}, "force\nname Tal\nd4\nNf6\nc4\ne6\nNc3\nBb4\nresult 1/2-1/2 {agreed}\nwrite_pgn " + pgn + "\n");
  EXPECT_EQ(ReadFile(pgn), "[Event \"?\"]\n[Site \"?\"]\n[Date \"????.??.??\"]\n[Round \"-\"]\n[White \"Tal\"]\n"
                           "[Black \"Zephrin\"]\n[Result \"1/2-1/2\"]\n[TimeControl \"?\"]\n\n"
                           "1. d4 Nf6 2. c4 e6 3. Nc3 Bb4 \n1/2-1/2\n");
  // Read back, the game stands at its start with every move ready for `next`.
  EXPECT_EQ(FenAfter("force\nread_pgn " + pgn + "\n"), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1\n");
  EXPECT_EQ(FenAfter("force\nread_pgn " + pgn + "\nnext all\n"),
            "rnbqk2r/pppp1ppp/4pn2/8/1bPP4/2N5/PP2PPPP/R1BQKBNR w KQkq - 2 4\n");
}

TEST(GameEndEndToEnd, NoHintInAFinishedGame) {
  const std::string stalemate = "force\nsetboard 7k/8/5K2/8/8/8/8/6Q1 w - - 0 1\nQg6\n";
  EXPECT_TRUE(RunEngine({}, stalemate + "hint\nhint\n")
                  .out.ends_with(Prompt("Black 1") + "Hint request could not be responded, because no legal move was found\n" +
                                 Prompt("Black 1") + "Hint request could not be responded, because no legal move was found\n" +
                                 Prompt("Black 1")));
  EXPECT_EQ(RunEngine({}, "xboard\n" + stalemate + "hint\nping 1\n").out, Prompt("White 1") + "pong 1\n");
}
