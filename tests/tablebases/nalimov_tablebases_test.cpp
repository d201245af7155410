#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "board/board_test_helpers.h"
#include "e2e/engine_process.h"
#include "interfaces/draw_resign_tracker.h"
#include "tablebases/nalimov_block_reader.h"
#include "tablebases/nalimov_ending.h"
#include "tablebases/nalimov_tablebases.h"
#include "tablebases/tablebase_probe.h"

namespace {

namespace fs = std::filesystem;
using namespace NalimovTablebases;
using namespace board_test;

constexpr int KQK = 5;

// The index of a kqk position with White strong: the queen and both kings.
std::uint64_t KqkIndex(int side, int white_king, int queen, int black_king) {
  TB_PIECE_LIST strong{}, weak{};
  strong.squares[TB_KING_SLOT] = white_king;
  strong.squares[TB_QUEEN_SLOT] = queen;
  weak.squares[TB_KING_SLOT] = black_king;
  return Ending(KQK).index[side](strong, weak, TB_NO_EP_SQUARE, false);
}

// Plain kqk files in a directory of their own: 127 everywhere but in the entries set.
class NalimovTables : public ::testing::Test {
 protected:
  void SetUp() override {
    fs::create_directories(directory_ / "empty");
    for (int side = 0; side < 2; ++side) tables_[side].assign(Ending(KQK).sizes[side], char(127));
  }
  void TearDown() override {
    CloseTableFiles();
    tablebases_loaded = false;
  }
  void Set(int side, std::uint64_t index, int value) { tables_[side][index] = char(value); }
  void Write() {
    for (int side = 0; side < 2; ++side) {
      std::ofstream(directory_ / (std::string("kqk") + (side == 0 ? ".nbw" : ".nbb")), std::ios::binary)
          .write(tables_[side].data(), std::streamsize(tables_[side].size()));
    }
  }
  TB_RESULT Probe(const std::string& fen, int& score) { return ProbeTablebases(FromFen(fen), score); }

  const TemporaryDirectory temporary_;
  const fs::path directory_{temporary_.path};
  std::vector<char> tables_[2];
};

// One entry serves a position, its mirror images and its colour-exchanged twin; an entry of 127
// is not found, and a byte maps to the distance of its mate.
TEST_F(NalimovTables, LookupReadsTheEntryOfThePosition) {
  Set(0, KqkIndex(0, At("b6"), At("h3"), At("a8")), 126);   // Qh8 mates
  Set(1, KqkIndex(1, At("b6"), At("h3"), At("a8")), -100);
  Set(1, KqkIndex(1, At("c3"), At("d4"), At("h8")), 0);
  Write();
  EXPECT_EQ(RegisterTablebases("/nonexistent:" + (directory_ / "empty").string() + ";" + directory_.string()), 3);
  InitNalimovTablebases(directory_.string(), 1 << 20);
  tablebases_loaded = true;
  int score = 0;
  for (const char* fen : {"k7/8/1K6/8/8/7Q/8/8 w - - 0 1", "7k/8/6K1/8/8/Q7/8/8 w - - 0 1",
                          "8/8/7q/8/8/1k6/8/K7 b - - 0 1", "8/8/q7/8/8/6k1/8/7K b - - 0 1"}) {
    ASSERT_EQ(Probe(fen, score), TB_FOUND) << fen;
    EXPECT_EQ(score, 32765) << fen;
  }
  ASSERT_EQ(Probe("k7/8/1K6/8/8/7Q/8/8 b - - 0 1", score), TB_FOUND);
  EXPECT_EQ(score, 2 * (-100 - 32640) + 32765);
  ASSERT_EQ(Probe("7k/8/8/8/3Q4/2K5/8/8 b - - 0 1", score), TB_FOUND);
  EXPECT_EQ(score, 0);
  EXPECT_EQ(Probe("k7/8/2K5/8/8/7Q/8/8 w - - 0 1", score), TB_NOT_FOUND);       // 127
  EXPECT_EQ(Probe("k7/8/2K5/8/8/7Q/8/6R1 w - - 0 1", score), TB_NOT_FOUND);      // no table
  EXPECT_EQ(Probe("k7/8/2K5/8/3P4/7Q/8/8 w - - 0 1", score), TB_NOT_FOUND);
  EXPECT_TRUE(ScoreOfValue(-126 - 32640, score));
  EXPECT_EQ(score, -32767);
  EXPECT_FALSE(ScoreOfValue(NOT_READ, score));
}

// The game resigns a tablebase loss only when the mate is near, and offers no draw in a won ending.
TEST_F(NalimovTables, VerdictOfTheTrackerFollowsTheTables) {
  Set(0, KqkIndex(0, At("b6"), At("h3"), At("a8")), 126);
  Set(1, KqkIndex(1, At("b6"), At("h3"), At("a8")), -100);
  Set(1, KqkIndex(1, At("c6"), At("h3"), At("a8")), -120);
  Write();
  InitNalimovTablebases(directory_.string(), 1 << 20);
  tablebases_loaded = true;
  ZephrinInterfaces::DrawResignTracker tracker;
  const std::pair<const char*, int> cases[] = {{"k7/8/1K6/8/8/7Q/8/8 w - - 0 1", 0},
                                               {"k7/8/1K6/8/8/7Q/8/8 b - - 0 1", 2},
                                               {"k7/8/2K5/8/8/7Q/8/8 b - - 0 1", 1},
                                               {"k7/8/2K5/8/8/7Q/8/8 w - - 0 1", 4}};
  for (const auto& [fen, verdict] : cases) {
    tracker.Update(FromFen(fen), 0);
    EXPECT_EQ(tracker.tablebase_verdict, verdict) << fen;
    EXPECT_EQ(tracker.ShouldResign(), verdict == 1) << fen;
  }
}

// A path without tables is refused with its reason, the engine goes on and probes a real one.
TEST_F(NalimovTables, TbCommandAndProbeEndToEnd) {
  Set(0, KqkIndex(0, At("b6"), At("h3"), At("a8")), 126);
  Write();
  const std::string P = Prompt("White 1");
  const EngineRun run = RunEngine({}, "force\ntb nalimov 1M " + (directory_ / "empty").string() + "\ntb nalimov 1M " +
                                          directory_.string() + "\nprobe k7/8/1K6/8/8/7Q/8/8 w - - 0 1\n");
  // The board display between them is the probe command's own.
  const std::string head = P + P + "Error (Could not initialize Nalimov tablebases.\nReason: Could not open tablebases. " +
                           "Is the path correct?): tb nalimov 1M " + (directory_ / "empty").string() + "\n" + P + P;
  const std::string tail = "\nProbing bitbases: not found\nProbing tablebases: result=32765\n" + P;
  EXPECT_EQ(run.out.substr(0, head.size()), head);
  ASSERT_GE(run.out.size(), tail.size());
  EXPECT_EQ(run.out.substr(run.out.size() - tail.size()), tail);
}

}  // namespace
