#include "interfaces/game_files.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <functional>

#include "interfaces/game_test_helpers.h"

using namespace ZephrinInterfaces;
using test_helpers::GameFrom;
using test_helpers::Play;
using test_helpers::Slurp;
using test_helpers::TemporaryFile;

namespace {

std::string FileError(const std::function<void()>& action) {
  try {
    action();
  } catch (const game_file_error& error) {
    return error.what();
  }
  return "no error";
}

}  // namespace

TEST(GameFiles, FenFiles) {
  TemporaryFile file;
  UserBoard game = GameFrom();
  Play(game, "e4 c5 Nf3 d6");
  SaveFen(file.Name(), game);
  EXPECT_EQ(Slurp(file.Name()), "rnbqkbnr/pp2pppp/3p4/2p5/4P3/5N2/PPPP1PPP/RNBQKB1R w KQkq - 0 3\n");
  const UserBoard loaded = LoadFen(file.Name());
  EXPECT_EQ(PositionToFen(loaded), PositionToFen(game));
  EXPECT_TRUE(loaded.Moves().empty());
  EXPECT_EQ(loaded.FirstPly(), 4);

  // The six words may stand on several lines.
  file.Write("8/8/8/4k3/8/8/8/R3K3\nb - -\n7 20\n");
  EXPECT_EQ(PositionToFen(LoadFen(file.Name())), "8/8/8/4k3/8/8/8/R3K3 b - - 7 20");

  for (const auto& [text, error] : {std::pair{"8/8/8/4k3/8/8/8/R3K3 b - -", "could not read FEN file"},
                                    {"8/8/8/4k3/8/8/8/R3K3 x - - 0 1", "could not read FEN file"},
                                    {"8/8/8/4k3/8/8/8/R7 w - - 0 1", "Illegal position"},
                                    {"4k3/8/8/8/8/8/4P3/4K w - - 0 1", "no error"}}) {  // a short last rank
    file.Write(text);
    EXPECT_EQ(FileError([&] { LoadFen(file.Name()); }), error) << text;
  }
  if (access("/dev/full", W_OK) == 0) {
    EXPECT_EQ(FileError([] { SaveFen("/dev/full", UserBoard()); }), "could not write FEN file");
  }
}

TEST(GameFiles, PgnFiles) {
  TemporaryFile file;
  UserBoard game = GameFrom();
  Play(game, "e4 e5 Nf3");
  SavePgn(file.Name(), game, "Incognito", "Zephrin");
  const std::string text = Slurp(file.Name());
  EXPECT_NE(text.find("[White \"Incognito\"]\n[Black \"Zephrin\"]\n[Result \"*\"]\n"), std::string::npos);
  EXPECT_NE(text.find("\n\n1. e4 e5 2. Nf3 \n*\n"), std::string::npos);

  PgnTags tags;
  tags.event = "before";
  UserBoard loaded = LoadPgn(file.Name(), tags);
  EXPECT_EQ(tags.white, "Incognito");
  EXPECT_EQ(tags.event, "?");
  loaded.PlayAllNext();
  EXPECT_EQ(loaded.Moves(), game.Moves());

  tags.event = "kept";
  EXPECT_EQ(FileError([&] { LoadPgn("/nonexistent/zephrin/game.pgn", tags); }), "could not open file");
  EXPECT_EQ(FileError([] { SavePgn("/nonexistent/zephrin/game.pgn", UserBoard(), "a", "b"); }),
            "could not open file");
  file.Write("1. e4 e5");
  EXPECT_EQ(FileError([&] { LoadPgn(file.Name(), tags); }), "could not read PGN file");
  file.Write("1. e4 e4 *");
  EXPECT_EQ(FileError([&] { LoadPgn(file.Name(), tags); }), "Illegal move");
  file.Write("[FEN \"4k3/8/8/8/8/8/8/4K2K w - - 0 1\"]\n*");
  EXPECT_EQ(FileError([&] { LoadPgn(file.Name(), tags); }), "Illegal position");
  EXPECT_EQ(tags.event, "kept");
  if (access("/dev/full", W_OK) == 0) {
    EXPECT_EQ(FileError([] { SavePgn("/dev/full", UserBoard(), "a", "b"); }), "could not write PGN file");
  }
  EXPECT_EQ(PgnTagsText(PgnTags()),
            "Event\t\"?\"\nSite\t\"?\"\nDate\t\"????.??.??\"\nRound\t\"-\"\nWhite\t\"?\"\n"
            "Black\t\"?\"\nTimeControl\t\"?\"\n");
}
