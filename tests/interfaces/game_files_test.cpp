// What the command-line tests of files don't see: FEN over several lines, a short last rank, the
// tags of a loaded game, and a full disk. The texts of the other file errors and of the tags are
// tested end to end.
#include "interfaces/game_files.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <functional>

#include "e2e/engine_process.h"
#include "interfaces/game_test_helpers.h"

using namespace ZephrinInterfaces;

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

TEST(GameFiles, FenAndPgnFiles) {
  const TemporaryDirectory directory;
  const std::string file = directory.File("game");
  std::ofstream(file) << "8/8/8/4k3/8/8/8/R3K3\nb - -\n7 20\n";
  UserBoard loaded = LoadFen(file);
  EXPECT_EQ(PositionToFen(loaded), "8/8/8/4k3/8/8/8/R3K3 b - - 7 20");
  EXPECT_EQ(loaded.FirstPly(), 39);
  std::ofstream(file) << "4k3/8/8/8/8/8/4P3/4K w - - 0 1";  // a short last rank
  EXPECT_EQ(FileError([&] { LoadFen(file); }), "no error");

  // A loaded game brings its own tags; a failed load keeps the old ones.
  test_helpers::Play(loaded, "Kd4");
  SavePgn(file, loaded, "Incognito", "Zephrin");
  PgnTags tags;
  tags.event = "before";
  LoadPgn(file, tags);
  EXPECT_EQ(tags.white, "Incognito");
  EXPECT_EQ(tags.event, "?");
  tags.event = "kept";
  std::ofstream(file) << "[FEN \"4k3/8/8/8/8/8/8/4K2K w - - 0 1\"]\n*";
  EXPECT_EQ(FileError([&] { LoadPgn(file, tags); }), "Illegal position");
  EXPECT_EQ(tags.event, "kept");
  if (access("/dev/full", W_OK) == 0) {
    EXPECT_EQ(FileError([] { SaveFen("/dev/full", UserBoard()); }), "could not write FEN file");
    EXPECT_EQ(FileError([] { SavePgn("/dev/full", UserBoard(), "a", "b"); }), "could not write PGN file");
  }
}
