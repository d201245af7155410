#include "tablebases/nalimov_block_reader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "e2e/engine_process.h"
#include "table_compressor.h"
#include "tablebases/nalimov_decoder.h"

namespace {

namespace fs = std::filesystem;
using namespace NalimovTablebases;
using Table = std::vector<signed char>;
using Bytes = std::vector<unsigned char>;

// Blocks that force each feature of the format: literals with Fibonacci frequencies (codes
// longer than 13 bits), random bytes (a stored block), runs (matches at distance 1), a period of
// 61 bytes (other distances), and a short last block.
Table FeatureTable() {
  std::mt19937 random(7);
  Table table;
  std::vector<signed char> literals;
  for (int symbol = 0, a = 1, b = 1; symbol < 20; ++symbol, b = a + b, a = b - a)
    literals.insert(literals.end(), std::size_t(a), static_cast<signed char>(symbol * 7 - 60));
  std::shuffle(literals.begin(), literals.end(), random);
  table.insert(table.end(), literals.begin(), literals.begin() + 8192);
  for (int i = 0; i < 8192; ++i) table.push_back(static_cast<signed char>(random()));
  while (table.size() < 5 * 8192) {
    const std::size_t run = std::min<std::size_t>(1 + random() % 300, 5 * 8192 - table.size());
    table.insert(table.end(), run, static_cast<signed char>(random() % 9 - 4));
  }
  for (int i = 0; i < 8040; ++i) table.push_back(static_cast<signed char>(i % 61 == 0 ? 127 : i % 61 - 30));
  return table;
}

// Twenty whole blocks of random bytes: all stored, so that eight full blocks lie between two bases
// of the offset table.
Table RandomTable() {
  std::mt19937 random(11);
  Table table(20 * 8192);
  for (signed char& value : table) value = static_cast<signed char>(random());
  return table;
}

int Expected(signed char stored) { return stored == 0 ? 0 : stored < 0 ? stored - 32640 : stored + 32640; }

class NalimovBlockReader : public ::testing::Test {
 protected:
  void SetUp() override {
    CloseTableFiles();
    SetCache(100 * 8284);
  }
  void TearDown() override {
    CloseTableFiles();
    ResetCache(nullptr, 0);
  }

  void SetCache(std::size_t size) {
    memory_.assign(size, 0);
    ASSERT_TRUE(ResetCache(memory_.data(), size));
  }
  void Write(const std::string& name, const Bytes& bytes) const {
    std::ofstream(directory_ / name, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
  }
  static Bytes Plain(const Table& table) { return Bytes(table.begin(), table.end()); }
  bool Open(const char* ending, int id, int side, std::size_t size) const {
    return OpenTableFile(directory_.string(), ending, id, side, size, false);
  }
  // Every entry of the table through ReadValue; the count of wrong ones.
  static int WrongEntries(int id, int side, const Table& table) {
    int wrong = 0;
    for (std::size_t i = 0; i < table.size(); ++i) wrong += ReadValue(id, side, i) != Expected(table[i]);
    return wrong;
  }

  const TemporaryDirectory temporary_;
  const fs::path directory_{temporary_.path};
  std::vector<unsigned char> memory_;
};

TEST_F(NalimovBlockReader, CompressedFilesReadBackEveryByte) {
  for (const Table& table : {FeatureTable(), RandomTable(), Table{5, 5}}) {
    CloseTableFiles();
    SetCache(100 * 8284);
    Write("kqk.nbw", Plain(table));
    Write("kqk.nbb.emd", CompressTable(table));
    ASSERT_TRUE(Open("kqk", 5, 0, table.size()));
    ASSERT_TRUE(Open("kqk", 5, 1, table.size()));
    EXPECT_EQ(WrongEntries(5, 0, table), 0);
    EXPECT_EQ(WrongEntries(5, 1, table), 0);
    EXPECT_EQ(ReadValue(5, 1, table.size()), NOT_READ);
  }
}

// The compressor's file really has what the reader must handle: a stored block, compressed ones,
// a short last block and codes that need the trees behind the 13-bit table.
TEST_F(NalimovBlockReader, FeatureTableUsesEveryFormFeature) {
  const Bytes file = CompressTable(FeatureTable());
  std::uint32_t header_size = 0;
  ASSERT_TRUE(CheckHeaderStart(file.data(), header_size));
  auto decoder = std::make_unique<TB_DECODER>();
  ASSERT_TRUE(ReadHeader(file.data(), header_size, *decoder));
  EXPECT_EQ(decoder->block_count, 6u);
  EXPECT_EQ(decoder->last_block_size, 8040);
  EXPECT_EQ(CompressedBlockSize(*decoder, 1), 8192u);
  EXPECT_LT(CompressedBlockSize(*decoder, 3), 1000u);
  EXPECT_EQ(BlockOffset(*decoder, 6), file.size());
  EXPECT_TRUE(std::any_of(decoder->table, decoder->table + 8192, [](std::int16_t e) { return e < NO_CODE; }));
  const unsigned char check[] = "123456789";
  EXPECT_EQ(Crc32(check, 9), 0x2dfd2d88u);
}

TEST_F(NalimovBlockReader, FindsEveryNameVariantAndKeepsTheFirstFile) {
  const char* names[] = {"kpk.nbb", "knk.nbb.emd", "kbk_nbb.emd", "krk_nbb_emd", "kqknbb.emd"};
  const char* endings[] = {"kpk", "knk", "kbk", "krk", "kqk"};
  const Table table = FeatureTable();
  for (int id = 1; id <= 5; ++id) {
    Write(names[id - 1], id == 1 ? Plain(table) : CompressTable(table));
    EXPECT_FALSE(Open(endings[id - 1], id, 0, table.size()));
    EXPECT_TRUE(Open(endings[id - 1], id, 1, table.size())) << names[id - 1];
    EXPECT_EQ(ReadValue(id, 1, 8192 + 5), Expected(table[8192 + 5]));
  }
  const fs::path other = directory_ / "other";
  fs::create_directories(other);
  std::ofstream(other / "kpk.nbb", std::ios::binary) << std::string(table.size(), '\1');
  EXPECT_TRUE(OpenTableFile(other.string() + "/", "kpk", 1, 1, table.size(), false));
  EXPECT_EQ(WrongEntries(1, 1, table), 0);
}

TEST_F(NalimovBlockReader, BrokenBlockReadsAsNotFoundAndDropsTheFile) {
  const Table table = FeatureTable();
  Bytes file = CompressTable(table);
  file.resize(file.size() - 10);
  Write("krk.nbw.emd", file);
  ASSERT_TRUE(Open("krk", 4, 0, table.size()));
  EXPECT_EQ(ReadValue(4, 0, 0), Expected(table[0]));
  EXPECT_EQ(ReadValue(4, 0, table.size() - 1), NOT_READ);
  EXPECT_FALSE(TableExists(4, 0));
  EXPECT_EQ(ReadValue(4, 0, 0), NOT_READ);
}

// With one slot, each block read evicts the other: a block changed on disk after its eviction
// reads with its new bytes, while a block still cached keeps the bytes it was read with.
TEST_F(NalimovBlockReader, OneSlotCacheEvictsTheOtherBlock) {
  SetCache(8284);
  Table table(3 * 8192, 1);
  Write("kbk.nbw", Plain(table));
  ASSERT_TRUE(Open("kbk", 3, 0, table.size()));
  EXPECT_EQ(ReadValue(3, 0, 0), Expected(1));
  table[0] = 2;
  Write("kbk.nbw", Plain(table));
  EXPECT_EQ(ReadValue(3, 0, 0), Expected(1));
  EXPECT_EQ(ReadValue(3, 0, 8192), Expected(1));
  EXPECT_EQ(ReadValue(3, 0, 0), Expected(2));
}

TEST_F(NalimovBlockReader, CacheBelowOneSlotReadsNothing) {
  const Table table(100, 5);
  Write("kbk.nbw", Plain(table));
  SetCache(8283);
  ASSERT_TRUE(Open("kbk", 3, 0, table.size()));
  EXPECT_EQ(ReadValue(3, 0, 0), NOT_READ);
  EXPECT_TRUE(TableExists(3, 0));
  EXPECT_FALSE(ResetCache(memory_.data(), 55));
}

// Each fault of a file ends the program at registration with its message and status 1.
TEST_F(NalimovBlockReader, BrokenFilesEndTheProgramAtRegistration) {
  const Table table = FeatureTable();
  const Bytes good = CompressTable(table);
  const std::uint32_t header_size = good[0x40] << 24 | good[0x41] << 16 | good[0x42] << 8 | good[0x43];
  auto with_crc = [&](Bytes file) {
    const std::uint32_t crc = Crc32(file.data(), header_size - 4);
    for (int i = 0; i < 4; ++i) file[header_size - 4 + std::uint32_t(i)] = std::uint8_t(crc >> (24 - 8 * i));
    return file;
  };
  Bytes banner = good, crc = good, lengths = good;
  banner[3] ^= 1;
  crc[0x50] ^= 1;
  lengths[0x50 + 6 * 8 + ((6 + 25) * 13 + 7) / 8] ^= 0x1c;  // the width of the first code lengths
  const struct {
    Bytes file;
    std::size_t size;
    const char* message;
  } cases[] = {
      {Bytes(good.begin(), good.begin() + 70), table.size(), "krk.nbw.emd - read error"},
      {banner, table.size(), "krk.nbw.emd - file broken"},
      {crc, table.size(), "krk.nbw.emd - file broken"},
      {with_crc(lengths), table.size(), "krk.nbw.emd - file broken"},
      {good, table.size() + 1, "krk.nbw.emd corrupted 49001 49001 49000"},
  };
  for (const auto& fault : cases) {
    Write("krk.nbw.emd", fault.file);
    EXPECT_EXIT((dup2(2, 1), Open("krk", 4, 0, fault.size)), ::testing::ExitedWithCode(1),
                std::string("\\*\\*\\* .*") + fault.message);
  }
  Write("kqk.nbw", Plain(table));
  EXPECT_EXIT((dup2(2, 1), Open("kqk", 5, 0, table.size() - 1)), ::testing::ExitedWithCode(1),
              "kqk.nbw corrupted 48999 48999 49000");
}

}  // namespace
