#include "interfaces/pgn.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "e2e/engine_process.h"
#include "interfaces/game_files.h"
#include "interfaces/game_test_helpers.h"

using namespace ZephrinInterfaces;
using namespace test_helpers;

namespace {

std::string Written(const UserBoard& game, const PgnTags& tags = PgnTags()) {
  std::ostringstream out;
  WritePgn(game, out, tags);
  return out.str();
}

// Reads PGN text into a game that already holds another one.
UserBoard ReadText(const std::string& text, PgnTags* tags_out = nullptr) {
  UserBoard game = GameFrom();
  Play(game, "d4 d5");
  PgnTags tags;
  std::istringstream in(text);
  ReadPgn(game, in, tags);
  if (tags_out) *tags_out = tags;
  return game;
}

// The text that the game layer gives for a failed read of text; the game must stay as it was.
std::string ReadError(const std::string& text) {
  UserBoard game = GameFrom();
  Play(game, "e4 c5 Nf3");
  game.UndoMove();
  auto state = [&game] { return std::tuple(PositionToFen(game), game.Moves(), game.NextMoves()); };
  const auto before = state();
  PgnTags tags;
  tags.event = "unchanged";
  std::istringstream in(text);
  std::string error = "no error";
  try {
    ReadPgn(game, in, tags);
  } catch (const UserBoard::user_exception& failure) {
    error = failure.what();
  }
  EXPECT_EQ(state(), before);
  EXPECT_EQ(tags.event, "unchanged");
  return error;
}

// Games for the writer: from the start and from set-up positions with either side to move, with
// castling, en passant, promotions and results among them.
struct WrittenGame {
  const char* fen;  // empty: the start position
  bool edited;      // set up as edit mode does, which keeps first ply 0 with Black to move
  const char* moves;
};
const WrittenGame WRITTEN_GAMES[] = {
    {"", false,
     "e4 Nf6 e5 d5 exd6 Qxd6 d4 Bf5 Nf3 Nc6 Be2 O-O-O O-O e5 dxe5 Qxd1 Rxd1 Rxd1+ Bxd1 Nxe5 Nxe5 "
     "Bxc2 Bxc2 g6 Nxf7 Bd6 Nxh8 Bxh2+ Kxh2"},
    {"", false, "f3 e5 g4 Qh4#"},
    {"4k3/1P6/8/8/8/8/8/4K2R w K - 0 40", false,
     "b8=Q+ Kd7 O-O Ke6 Qe8+ Kd5 Rf5+ Kd4 Qe5+ Kd3 Rf3+ Kd2 Qe3+ Kc2 Rf2+ Kb1 Qe1#"},
    {"4k3/8/8/8/3Pp3/8/8/K7 b - d3 0 12", false, "exd3 Kb2 d2 Kc2 d1=N"},
    {"4k3/8/8/8/8/8/8/R3K3 b - - 0 1", true, "Kd7 Ra7+ Kc6"},
    {"4k3/8/8/8/8/8/4P3/4K3 w - - 0 1", false, "e4 Kd7"},
};

UserBoard Built(const WrittenGame& row) {
  UserBoard game = GameFrom(row.fen);
  if (row.edited) game.SetPosition(UserBoard(game).Current());
  Play(game, row.moves);
  return game;
}

}  // namespace

TEST(Pgn, WriteReadWriteGivesTheSameFile) {
  PgnTags tags;
  tags.white = "Zephrin";
  for (const WrittenGame& row : WRITTEN_GAMES) {
    SCOPED_TRACE(row.moves);
    const UserBoard game = Built(row);
    const std::string text = Written(game, tags);
    EXPECT_EQ(text.find("[FEN ") == std::string::npos, *row.fen == 0);
    std::istringstream in(text);
    UserBoard read;
    PgnTags read_tags;
    ReadPgn(read, in, read_tags);
    read.PlayAllNext();
    EXPECT_EQ(read.Moves(), game.Moves());
    EXPECT_EQ(Written(read, read_tags), text);
  }
}

// Another program replays every written game without a complaint and ends where the game did.
TEST(Pgn, PgnExtractReplaysWrittenGames) {
  const std::string program =
      access("/usr/bin/pgn-extract", X_OK) == 0 ? "/usr/bin/pgn-extract" : "/usr/games/pgn-extract";
  if (access(program.c_str(), X_OK) != 0) GTEST_SKIP() << "pgn-extract is not installed (Debian package)";
  const TemporaryDirectory directory;
  const std::string pgn = directory.File("game.pgn"), log = directory.File("log"), out = directory.File("out");
  for (const WrittenGame& row : WRITTEN_GAMES) {
    SCOPED_TRACE(row.moves);
    const UserBoard game = Built(row);
    std::ofstream(pgn) << Written(game);
    std::ofstream{log};
    const std::string command = program + " -s -F --notags -w 1000 -l'" + log + "' '" + pgn + "' >'" + out + "' 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
    EXPECT_EQ(ReadFile(log), "");
    // Without the move number: an edited game counts from ply 0 even when Black moves first.
    const std::string fen = PositionToFen(game).substr(0, PositionToFen(game).rfind(' ') + 1);
    EXPECT_NE(ReadFile(out).find("{ \"" + fen), std::string::npos) << ReadFile(out) << fen;
  }
}

TEST(Pgn, FamousGamesPlayThroughToTheirEnd) {
  for (auto [file, plies, result, white] : {std::tuple{"opera_game.pgn", 33u, RESULT_WHITE_WINS, "Paul Morphy"},
                                             {"immortal_game.pgn", 45u, RESULT_WHITE_WINS, "Adolf Anderssen"},
                                             {"evergreen_game.pgn", 47u, RESULT_WHITE_WINS, "Adolf Anderssen"},
                                             {"reti_tartakower.pgn", 21u, RESULT_WHITE_WINS, "Richard Reti"},
                                             {"fools_mate.pgn", 4u, RESULT_BLACK_WINS, "?"}}) {
    SCOPED_TRACE(file);
    PgnTags tags;
    UserBoard game = LoadPgn(DataFile(file), tags);
    EXPECT_EQ(tags.white, white);
    // The game stands at its start with the whole game to come.
    EXPECT_TRUE(game.Moves().empty());
    EXPECT_EQ(game.NextMoves().size(), plies);
    EXPECT_EQ(PositionToFen(game), PositionToFen(UserBoard()));
    game.PlayAllNext();
    EXPECT_EQ(game.Current().result, result);
    EXPECT_EQ(game.Current().reason, REASON_MATE);
  }
}

// The tags of a plain game and a result are tested end to end.
TEST(Pgn, WrittenTextIsExact) {
  PgnTags tags;
  UserBoard opera = LoadPgn(DataFile("opera_game.pgn"), tags);
  opera.PlayAllNext();
  EXPECT_EQ(Written(opera, tags), ReadFile(DataFile("opera_game_written.pgn")));

  // From a FEN: the SetUp and FEN tags after Result, and Black's first move numbered "N...".
  UserBoard from_fen = GameFrom("rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 7");
  Play(from_fen, "c5 Nf3");
  EXPECT_NE(Written(from_fen).find("[Result \"*\"]\n[SetUp \"1\"]\n[FEN \"rnbqkbnr/pppppppp/8/8/4P3/8/"
                                   "PPPP1PPP/RNBQKBNR b KQkq e3 0 7\"]\n[TimeControl \"?\"]\n\n7... c5 8. Nf3 \n*\n"),
            std::string::npos)
      << Written(from_fen);

  // An edited position with Black to move counts from move 1.
  UserBoard edited;
  edited.SetPosition(GameFrom("4k3/8/8/8/8/8/8/R3K3 b - - 0 1").Current());
  Play(edited, "Kd7 Ra7+");
  EXPECT_NE(Written(edited).find("[FEN \"4k3/8/8/8/8/8/8/R3K3 b - - 0 1\"]\n[TimeControl \"?\"]\n\n"
                                 "1... Kd7 2. Ra7+ \n*\n"),
            std::string::npos);

}

TEST(Pgn, ReaderTolerance) {
  PgnTags tags;
  // Move numbers glued to moves, black move numbers, and bare numbers.
  UserBoard numbers = ReadText("[White \"Here\"]\n\n1.e4 1...e5 2. Nf3 2... Nc6 3.Bb5 3... a6 *", &tags);
  EXPECT_EQ(tags.white, "Here");
  EXPECT_EQ(tags.black, "?");
  EXPECT_EQ(numbers.NextMoves().size(), 6u);
  EXPECT_TRUE(numbers.Moves().empty());

  // No tags at all; comments in braces over lines, a line comment; moves right behind them.
  UserBoard comments = ReadText(
      "1. e4 {a comment\nover two lines} e5 {book} 2. Nf3 ; rest of the line e4 e4\nNc6 1/2-1/2\n");
  comments.PlayAllNext();
  EXPECT_EQ(comments.Moves().size(), 4u);
  EXPECT_EQ(PositionToFen(comments),
            "r1bqkbnr/pppp1ppp/2n5/4p3/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 2 3");
  // The result word isn't kept: the game stands at its start.
  EXPECT_EQ(ReadText("1. e4 e5 1-0").Current().result, RESULT_NONE);

  // A FEN tag sets the start; unknown tags, the Result tag and CRLF line ends pass.
  UserBoard set_up = ReadText(
      "[Event \"Study\"]\r\n[SetUp \"1\"]\r\n[Result \"1-0\"]\r\n"
      "[FEN \"4k3/8/8/8/8/8/8/R3K3 w - - 0 40\"]\r\n\r\n40. Ra8+ Kd7 *\r\n",
      &tags);
  EXPECT_EQ(tags.event, "Study");
  EXPECT_EQ(tags.fen, "4k3/8/8/8/8/8/8/R3K3 w - - 0 40");
  EXPECT_EQ(set_up.FirstPly(), 78);
  set_up.PlayAllNext();
  EXPECT_EQ(PositionToFen(set_up), "R7/3k4/8/8/8/8/8/4K3 w - - 2 41");

  // A byte order mark before the first tag.
  ReadText("\xEF\xBB\xBF[Event \"Marked\"]\n1. e4 *", &tags);
  EXPECT_EQ(tags.event, "Marked");

  // Only the first of several games is read.
  UserBoard first = ReadText("1. e4 *\n\n[Event \"Two\"]\n\n1. d4 d5 *\n", &tags);
  EXPECT_EQ(first.NextMoves().size(), 1u);
  EXPECT_EQ(tags.event, "?");

  // NAGs, variations (nested, with comments holding parentheses) and move marks pass.
  UserBoard annotated = ReadText(
      "1. e4! $1 e5?! (1... c5 2. Nf3 (2. c3 {the ( Alapin}) d6) 2. Nf3 $14 Nc6 (2... d6)\n"
      "3. Bb5!? *");
  annotated.PlayAllNext();
  EXPECT_EQ(annotated.Moves().size(), 5u);
}

TEST(Pgn, BadInputChangesNothing) {
  const std::pair<const char*, const char*> rows[] = {
      {"", "input/output error"}, {"[Event \"Unfinished\"]\n\n1. e4 e5 2. Nf3", "input/output error"},  // no result
      {"[Event \"Truncated", "input/output error"}, {"[Event Unquoted]\n1. e4 *", "input/output error"},
      {"[Event \"\n1. e4 *", "input/output error"}, {"1. e4 {a comment that never ends", "input/output error"},
      {"1. e4 (1. d4 d5", "input/output error"}, {"1. e4 e5 2. Ke3 Nc6 *", "invalid move"},
      {"1. e4 e5 2. Qh5 Nc6 3. Bc4 Nf6 4. Qxf7# Ke7 *", "invalid move"},
      {"1. e4 e5 2. Nf3 Nf6 3. Nc3 Nc6 4. d4 exd4 5. Nxd4 Nxd4 6. Qxd4 N3 *", "invalid move"},
      {"[FEN \"8/8/8/8/8/8/8/8 w - - 0 1\"]\n1. e4 *", "invalid position"},
      {"[FEN \"not a fen\"]\n1. e4 *", "input/output error"}};
  for (const auto& [text, error] : rows) EXPECT_EQ(ReadError(text), error) << text;

  // A comment of a megabyte in words: at most 1000 characters of a comment are passed over, and
  // what follows isn't a move.
  // A comment without blanks is one word, however long, and ends with it.
  EXPECT_EQ(ReadText("1. e4 {" + std::string(1 << 20, 'x') + "} e5 *").NextMoves().size(), 2u);
  std::string words;
  while (words.size() < (1 << 20)) words += "lorem ipsum ";
  EXPECT_EQ(ReadError("1. e4 {" + words + "} e5 *"), "invalid move");
}
