#include <gtest/gtest.h>

#include <filesystem>

#include "e2e/engine_process.h"
#include "retrograde_solver.h"
#include "table_compressor.h"
#include "table_writer.h"
#include "tablebases/nalimov_block_reader.h"
#include "tablebases/nalimov_ending.h"
#include "tablebases/nalimov_tablebases.h"

namespace {

namespace fs = std::filesystem;
using namespace ZephrinTablegen;

// Writes the solved endings into a directory, plain or compressed, as the table maker does.
void WriteEndings(EndingLibrary& library, const fs::path& directory, bool compressed) {
  fs::create_directories(directory);
  for (int id : {1, 8}) {
    const NalimovTablebases::TB_ENDING& layout = NalimovTablebases::Ending(id);
    const SolvedEnding& ending = Solve(library, layout.name);
    for (int side = 0; side < (layout.flags & NalimovTablebases::TB_SYMMETRIC ? 1 : 2); ++side) {
      TableCounts counts;
      const std::vector<signed char> table = LayOutTable(ending, id, side, counts);
      const std::string path = (directory / layout.name).string() + (side == 0 ? ".nbw" : ".nbb");
      if (compressed) {
        const std::vector<unsigned char> file = CompressTable(table);
        WriteFile(path + ".emd", file.data(), file.size());
      } else {
        WriteFile(path, reinterpret_cast<const unsigned char*>(table.data()), table.size());
      }
    }
  }
}

// Every legal position of the ending, or every step-th, with either colour as the first side, is
// read back through the engine's tablebase look-up with the value the solver gave it.
int CountMisreadPositions(const SolvedEnding& ending, std::uint64_t step) {
  int wrong = 0, read = 0;
  Board board;
  const int count = ending.material.count;
  for (std::uint64_t raw = 0; raw < (std::uint64_t(1) << (6 * count)); raw += step) {
    Square squares[MAX_MEN];
    Piece board_squares[2][64] = {};
    for (int i = 0; i < count; ++i) {
      squares[i] = Square(raw >> (6 * i)) & 63;
      for (int flip = 0; flip < 2; ++flip)
        board_squares[flip][squares[i] ^ (flip ? 56 : 0)] =
            MakePiece(ending.material.colour[i] ^ flip, ending.material.type[i]);
    }
    for (Color side : {WHITE, BLACK}) {
      const int v = Probe(ending, squares, side);
      for (int flip = 0; flip < 2; ++flip) {
        if (v == NO_POSITION || !board.SetPosition(board_squares[flip], side ^ flip, 0, 0)) continue;
        int score = 0, expected = 0;
        NalimovTablebases::ScoreOfValue(v > 0 ? v + 32640 : v < 0 ? v - 32640 : 0, expected);
        ++read;
        wrong += !NalimovTablebases::LookupTablebase(board, score) || score != expected;
      }
    }
  }
  EXPECT_GT(read, 1000);
  return wrong;
}

// The solver, the writer with the index functions, the compressor and the reader check each
// other: king and pawn against king, and the symmetric two knights, plain and compressed.
TEST(TableRoundTrip, ReaderFindsWhatTheSolverWrote) {
  const TemporaryDirectory temporary;
  const fs::path directory = temporary.path;
  EndingLibrary library;
  for (bool compressed : {false, true}) {
    const fs::path tables = directory / (compressed ? "compressed" : "plain");
    WriteEndings(library, tables, compressed);
    NalimovTablebases::InitNalimovTablebases(tables.string(), 1 << 20);
    EXPECT_EQ(CountMisreadPositions(library.at("kpk"), 1), 0) << tables;
    EXPECT_EQ(CountMisreadPositions(library.at("knkn"), 4099), 0) << tables;
    NalimovTablebases::CloseTableFiles();
  }
}

}  // namespace
