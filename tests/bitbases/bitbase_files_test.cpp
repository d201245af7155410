#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "bitbases/bitbase_files.h"
#include "board/board_test_helpers.h"
#include "e2e/engine_process.h"
#include "frame/memory_mapped_file.h"
#include "frame/tee_stream.h"
#include "tablebases/tablebase_probe.h"

namespace {

namespace fs = std::filesystem;
using namespace ZephrinBitbases;

// A directory of bitbase files that the test writes; the tables are unloaded at the end.
class BitbaseFiles : public ::testing::Test {
 protected:
  void SetUp() override { UnloadBitbases(); }
  void TearDown() override { UnloadBitbases(); }

  // A new file of `size` zero bytes but for the given ones, written through the writable mapping.
  void Write(const char* name, std::size_t size, const std::vector<std::pair<std::size_t, std::uint8_t>>& bytes) {
    fs::remove(directory_ / name);
    ZephrinUtils::MemoryMappedFile file((directory_ / name).string(), size);
    for (const auto& [offset, value] : bytes) file.data()[offset] = value;
  }

  // LoadBitbasesFrom's report in the log.
  std::string Load() {
    const fs::path log = directory_ / "log.txt";
    Out.OpenLog(log.string());
    LoadBitbasesFrom(directory_.string());
    Out.OpenLog("");
    return ReadFile(log.string());
  }

  std::string Path(const char* name) const { return (directory_ / name).string(); }

  const TemporaryDirectory temporary_;
  const fs::path directory_{temporary_.path};
};

TEST_F(BitbaseFiles, OnlyFilesOfTheExactSizeAreMapped) {
  // Bytes more or less than the size of each file, and whether it is then mapped.
  for (auto [two_pawns_extra, rammed_pawn_extra, two_pawns_loaded, rammed_pawn_loaded] :
       {std::tuple{0, 0, true, true}, {1, -1, false, false}, {-1, 1, false, false}, {0, 1, true, false}}) {
    UnloadBitbases();
    Write(TWO_PAWNS_FILE, TWO_PAWNS_SIZE + two_pawns_extra, {});
    Write(RAMMED_PAWN_FILE, RAMMED_PAWN_SIZE + rammed_pawn_extra, {});
    const std::string log = Load();
    EXPECT_EQ(TwoPawnsData() != nullptr, two_pawns_loaded);
    EXPECT_EQ(RammedPawnData() != nullptr, rammed_pawn_loaded);
    EXPECT_NE(log.find(two_pawns_loaded ? "- two pawns bitbases found\n" : "Warning: Failed to open two pawns bitbases.\n"),
              std::string::npos) << log;
    EXPECT_NE(log.find(rammed_pawn_loaded ? "- rammed pawn bitbases found\n" : "Warning: Failed to open rammed pawn bitbases\n"),
              std::string::npos) << log;
  }

  // Absent files are reported and change nothing: the mapping made above stays.
  fs::remove(Path(TWO_PAWNS_FILE));
  fs::remove(Path(RAMMED_PAWN_FILE));
  const std::string log = Load();
  EXPECT_NE(log.find("Loading bitbases (executables directory='" + directory_.string() + "'):\n" +
                     "- two pawns bitbases not found ('" + Path(TWO_PAWNS_FILE) + "')\n" +
                     "- rammed pawn bitbases not found ('" + Path(RAMMED_PAWN_FILE) + "').\n" +
                     "- generic bitbases disabled\n"),
            std::string::npos) << log;
  EXPECT_NE(TwoPawnsData(), nullptr);
}

// Offsets worked by hand from the file layout. Two pawns: White Ka1, Pb2 against Black Pg7, Kh7,
// White to move: pawn slot 1, byte ((1 * 48 + 46) * 64 + 0) * 16 + 7 = 96263, bits 6-7.
// Rammed: White Ka1, Pb3 (rammed by Pb4), Ph2 against Black Kh8: slot 5, byte ((5 * 48 + 7) * 64 +
// 0) * 32 + 31 = 505887, bits 4-5 with White to move and 6-7 with Black to move.
TEST_F(BitbaseFiles, ProbesReadTheHandWorkedOffsetsInEveryOrientation) {
  Write(TWO_PAWNS_FILE, TWO_PAWNS_SIZE, {{96263, 3 << 6}});
  Write(RAMMED_PAWN_FILE, RAMMED_PAWN_SIZE, {{505887, (1 << 4) | (3 << 6)}});
  Load();
  const struct {
    const char* fen;
    BITBASE_RESULT result;
    int score;
  } cases[] = {
      {"8/6pk/8/8/8/8/1P6/K7 w - - 0 1", BB_FOUND, 32671},      // side to move wins, pawn on rank 2
      {"k7/1p6/8/8/8/8/6PK/8 b - - 0 1", BB_FOUND, 32671},      // colours exchanged
      {"8/kp6/8/8/8/8/6P1/7K w - - 0 1", BB_FOUND, 32671},      // mirrored left to right
      {"8/6pk/8/8/8/8/1P6/K7 b - - 0 1", BB_FOUND, 0},          // another entry: 0
      {"7k/8/8/8/1p6/1P6/7P/K7 w - - 0 1", BB_FOUND, -32613},   // strong side loses: Kh8 6 from b3
      {"7k/8/8/8/1p6/1P6/7P/K7 b - - 0 1", BB_FOUND, -32671},   // strong side wins, free pawn rank 2
      {"k7/7p/1p6/1P6/8/8/8/7K w - - 0 1", BB_FOUND, -32671},   // colours exchanged: Black strong
      {"k7/8/8/8/6p1/6P1/P7/7K w - - 0 1", BB_FOUND, -32613},   // mirrored left to right
      {"7k/8/8/8/1P6/1p6/7P/K7 w - - 0 1", BB_NOT_FOUND, 0},    // the pawns have passed: no ram
      {"7k/8/8/8/8/8/1P5P/K7 w - - 0 1", BB_NOT_FOUND, 0},      // two pawns of one side
      {"7k/6p1/8/8/8/8/1P6/KN6 w - - 0 1", BB_NOT_FOUND, 0},    // a knight
  };
  for (const auto& c : cases) {
    int score = 0;
    EXPECT_EQ(ProbeBitbases(board_test::FromFen(c.fen), score), c.result) << c.fen;
    if (c.result == BB_FOUND) {
      EXPECT_EQ(score, c.score) << c.fen;
    }
  }

  // Without the file, king and pawn against king and pawn is not found; one pawn still is.
  UnloadBitbases();
  int score = 0;
  EXPECT_EQ(ProbeBitbases(board_test::FromFen("8/6pk/8/8/8/8/1P6/K7 w - - 0 1"), score), BB_NOT_FOUND);
  EXPECT_EQ(ProbeBitbases(board_test::FromFen("7k/8/8/8/8/8/1P6/K7 w - - 0 1"), score), BB_FOUND);
}

}  // namespace
