// Nalimov table reader benchmark: ReadValue on a compressed table that the benchmark makes itself,
// with every block in the cache (hits) and with one slot, so that every probe decodes a block
// (misses).
//   nalimov_probes [hit rounds]   default 200
// Prints the compression time, the file sizes, the probes per processor second of both kinds,
// and a checksum of the values read.
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "table_compressor.h"
#include "tablebases/nalimov_block_reader.h"

namespace {

namespace fs = std::filesystem;
using namespace NalimovTablebases;

constexpr int BLOCKS = 256;
constexpr int PROBES_PER_ROUND = 100000;
constexpr int MISS_PROBES = 4000;

// Distances to mate spread like a table's: mostly draws and short wins in runs, with a pattern of
// 64 squares for the last man and some noise.
std::vector<signed char> MakeTable() {
  std::mt19937 random(1);
  std::vector<signed char> table(std::size_t(BLOCKS) * 8192);
  for (std::size_t i = 0; i < table.size(); ++i) {
    const int square = int(i % 64), king = int(i / 64 % 64);
    int value = (square + king) % 7 == 0 ? 0 : 120 - (square ^ king) % 23;
    if (random() % 16 == 0) value = -126 + int(random() % 40);
    table[i] = static_cast<signed char>(value);
  }
  return table;
}

double Seconds(std::clock_t start) { return double(std::clock() - start) / CLOCKS_PER_SEC; }

void Report(const char* kind, std::uint64_t probes, double seconds, std::int64_t checksum) {
  std::printf("%-6s %10llu probes  %.3f s  %.2f million probes per second  checksum %lld\n", kind,
              static_cast<unsigned long long>(probes), seconds, seconds > 0 ? probes / seconds / 1e6 : 0.0,
              static_cast<long long>(checksum));
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 200;
  const fs::path directory = fs::temp_directory_path() / ("zephrin_nalimov_bench_" + std::to_string(getpid()));
  fs::create_directories(directory);

  const std::vector<signed char> table = MakeTable();
  std::clock_t start = std::clock();
  const std::vector<unsigned char> file = CompressTable(table);
  std::printf("compressed %zu bytes to %zu in %.3f s\n", table.size(), file.size(), Seconds(start));
  std::ofstream(directory / "kqk.nbw.emd", std::ios::binary)
      .write(reinterpret_cast<const char*>(file.data()), std::streamsize(file.size()));
  if (!OpenTableFile(directory.string(), "kqk", 5, 0, table.size(), false)) return 1;

  std::mt19937_64 random(2);
  std::vector<std::uint64_t> indices(PROBES_PER_ROUND);
  for (std::uint64_t& index : indices) index = random() % table.size();

  std::vector<unsigned char> cache((BLOCKS + 1) * 8284);
  ResetCache(cache.data(), cache.size());
  std::int64_t checksum = 0;
  for (std::uint64_t index : indices) checksum += ReadValue(5, 0, index);  // fills the cache
  start = std::clock();
  for (int round = 0; round < rounds; ++round)
    for (std::uint64_t index : indices) checksum += ReadValue(5, 0, index);
  Report("hit", std::uint64_t(rounds) * PROBES_PER_ROUND, Seconds(start), checksum);

  ResetCache(cache.data(), 8284);
  checksum = 0;
  start = std::clock();
  for (int i = 0; i < MISS_PROBES; ++i) checksum += ReadValue(5, 0, indices[std::size_t(i)]);
  Report("miss", MISS_PROBES, Seconds(start), checksum);

  CloseTableFiles();
  fs::remove_all(directory);
  return 0;
}
