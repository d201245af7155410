// A UCI front end's session, driven line by line through the real binary: the handshake, bad input
// answered by `info string` with the position kept, a game on the clock, and the searches that only
// a command ends.
#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "e2e/engine_process.h"
#include "frame/time_stamp.h"
#include "interfaces/move_text.h"
#include "interfaces/uci_protocol.h"

namespace {

using namespace ZephrinInterfaces;
using Lines = std::vector<std::string>;

// Every line of a search's answer is a well-formed `info` line until the `bestmove`, whose moves
// must be legal in `game` in UCI's form. Returns the best move.
Move CheckSearchAnswer(const Lines& lines, const UserBoard& game) {
  static const std::regex info(
      "info depth \\d+ score (cp|mate) -?\\d+( upperbound|( lowerbound)?( nodes \\d+( nps \\d+)? time \\d+)? pv"
      "( [a-h][1-8][a-h][1-8][qrbn]?)+)");
  static const std::regex best("bestmove ([a-h1-8qrbn]+)( ponder ([a-h1-8qrbn]+))?");
  std::smatch match;
  if (lines.empty() || !std::regex_match(lines.back(), match, best)) {
    ADD_FAILURE() << "no bestmove";
    return MOVE_INVALID;
  }
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) EXPECT_TRUE(std::regex_match(lines[i], info)) << lines[i];
  UserBoard after = game;
  Move moves[2] = {MOVE_INVALID, MOVE_INVALID};
  for (int i = 0; i < (match[3].matched ? 2 : 1); ++i) {
    const std::string text = match[i == 0 ? 1 : 3];
    EXPECT_EQ(ParseMove(after.Current(), text, moves[i]), PARSE_OK) << text;
    EXPECT_EQ(UciMoveText(moves[i]), text);
    if (i == 0 && moves[0] != MOVE_INVALID) after.PlayMove(moves[0]);
  }
  return moves[0];
}

}  // namespace

TEST(UciEndToEnd, ScriptedSessionFromHandshakeToQuit) {
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(120);
  EngineSession engine;
  ASSERT_TRUE(engine.Started());

  // The console's prompt stands before the first line; the hash size depends on the table's entries.
  engine.Send("uci\n");
  Lines hello = engine.ReadUntil("uciok", deadline);
  ASSERT_EQ(hello.size(), 11u);
  hello[3] = std::regex_replace(hello[3], std::regex("default \\d+"), "default N");
  EXPECT_EQ(hello, (Lines{" \rWhite 1> ", "id name Zephrin 2.0.2", "id author the Zephrin authors",
                          "option name Hash type spin default N min 1 max 65536", "option name Clear Hash type button",
                          "option name Ponder type check default false",
                          "option name Contempt type spin default 0 min -32767 max 32767",
                          "option name Personality type combo default Zephrin var Sarquel var Cordavin var Gremlow "
                          "var Ziravel var Morvek var Eskarth var Tilvane var Trevane var Haldrune var Yothmer var "
                          "Wenstor var Belquist var Nuvrain var Lumbrek var Zephrin var Fenx var Ondrith",
                          "option name NalimovPath type string default <empty>",
                          "option name NalimovCache type spin default 16 min 1 max 1024", "uciok"}));

  // Bad input changes nothing: the position of the last good `position` stays, and the move that
  // mates in it is a promotion, which UCI writes with its piece.
  const std::string mate_in_one = "position fen 8/8/8/8/8/2k5/p7/2K5 b - - 0 1";
  engine.Send("setoption name Hash value 1\nsetoption name Contempt value 5\nucinewgame\n"
              "setoption name Foo value 1\nsetoption name Hash value 0\nsetoption name Ponder value maybe\n"
              "setoption name NalimovPath value /nonexistent\n" +
              mate_in_one + "\nposition startpos moves e2e4 e7e5 e7e5\nposition fen 8/8/8/8/8/8/8/K6K w - -\n"
              "position fen x\ngo depth x\ngo foo 5\nponder\nisready\n");
  EXPECT_EQ(engine.ReadUntil("readyok", deadline),
            (Lines{"info string Error (unknown option Foo): setoption name Foo value 1",
                   "info string Error (argument out of bounds): setoption name Hash value 0",
                   "info string Error (invalid argument(s)): setoption name Ponder value maybe",
                   "info string Error (Could not initialize Nalimov tablebases. Reason: Could not open "
                   "tablebases. Is the path correct?): setoption name NalimovPath value /nonexistent",
                   "info string Error (illegal move e7e5): position startpos moves e2e4 e7e5 e7e5",
                   "info string Error (Illegal position): position fen 8/8/8/8/8/8/8/K6K w - -",
                   "info string Error (input inconsistent with FEN standard): position fen x",
                   "info string Error (integer argument expected): go depth x",
                   "info string Error (invalid argument(s)): go foo 5",
                   "info string Error (unrecognized command): ponder", "readyok"}));
  engine.Send("go depth 2\n");
  const Lines mate = engine.ReadUntil("bestmove", deadline);
  ASSERT_FALSE(mate.empty());
  EXPECT_EQ(mate.back(), "bestmove a2a1q");

  // A game on a clock of 3 s + 0.1 s, the engine playing both sides.
  UserBoard game;
  std::string moves;
  for (int ply = 0; ply < 16 && !game.IsFinished(); ++ply) {
    engine.Send("position startpos moves" + moves + "\ngo wtime 3000 btime 3000 winc 100 binc 100\n");
    const Move move = CheckSearchAnswer(engine.ReadUntil("bestmove", deadline), game);
    ASSERT_NE(move, MOVE_INVALID) << "at ply " << ply;
    moves.append(" ").append(UciMoveText(move));
    game.PlayMove(move);
  }

  // An infinite search answers `isready` at once and sends its move only after `stop`; a ponder
  // search sends it after `ponderhit`, when its time is up.
  engine.Send("position startpos moves" + moves + "\ngo infinite\n");
  SleepMilliseconds(300);
  engine.Send("isready\n");
  const Lines ready = engine.ReadUntil("readyok", std::chrono::steady_clock::now() + std::chrono::seconds(5));
  ASSERT_FALSE(ready.empty()) << "isready unanswered during the search";
  for (const std::string& line : ready) EXPECT_NE(line.substr(0, 8), "bestmove");
  engine.Send("stop\n");
  CheckSearchAnswer(engine.ReadUntil("bestmove", deadline), game);
  engine.Send("go ponder wtime 3000 btime 3000\n");
  SleepMilliseconds(300);
  engine.Send("ponderhit\n");
  CheckSearchAnswer(engine.ReadUntil("bestmove", deadline), game);

  engine.Send("quit\n");
  EXPECT_EQ(engine.Finish(deadline), 0);
}
