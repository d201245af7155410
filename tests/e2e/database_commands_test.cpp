// The endgame database commands as a person sees them: the status of the databases, probing a
// position, and the optimize_piece aid, which reads its own line.
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "e2e/engine_process.h"

namespace {

namespace fs = std::filesystem;
const std::string P = Prompt("White 1");

std::string Status(const char* two_pawns) {
  return std::string("Supported bitbases/tablebases:\nNalimov tablebases (type=nalimov)\n"
                     "King+pawn vs king bitbases (built-in)\nKing+pawn vs king+pawn bitbases (") +
         two_pawns + ")\nKing+pawn+pawn vs king+pawn with pawn ram bitbases (not loaded)\n";
}

}  // namespace

TEST(DatabaseCommandsEndToEnd, StatusProbeAndOptimizePiece) {
  const EngineRun run = RunEngine({}, "tb\nprobe 8/1P6/k7/8/K7/8/8/8 w - - 0 1\nprobe 8/8/8 w\n"
                                      "probe 8/8/8/8/8/8/8/8 w - - 0 1\noptimize_piece\nz9\noptimize_piece\nd4\n");
  const std::string empty = "    +---+---+---+---+---+---+---+---+\n";
  std::string board;
  for (const char* rank : {"  8 |   |   |   |   |   |   |   |   |\n", "  7 |   | *P|   |   |   |   |   |   |\n",
                           "  6 | K |   |   |   |   |   |   |   |\n", "  5 |   |   |   |   |   |   |   |   |\n",
                           "  4 | *K|   |   |   |   |   |   |   |\n", "  3 |   |   |   |   |   |   |   |   |\n",
                           "  2 |   |   |   |   |   |   |   |   |\n", "  1 |   |   |   |   |   |   |   |   |\n"}) {
    board += empty + rank;
  }
  board += empty + "      a   b   c   d   e   f   g   h\ncastle possibilities: none\n"
                   "side on move: white; en-passant square: none\n";
  EXPECT_EQ(run.out, P + Status("not loaded") + P + board +
                         "\nProbing bitbases: result=32711\nProbing tablebases: disabled (not loaded)\n" + P +
                         "Error (input inconsistent with FEN standard): probe 8/8/8 w\n" + P +
                         "Error (Illegal position): probe 8/8/8/8/8/8/8/8 w - - 0 1\n" + P +
                         "Piece:\nError: Invalid square\n" + P + "Piece:\nError: Invalid square\n" + P);
}

// The two-pawn file beside the executable is mapped at start; a file of the wrong size is not.
TEST(DatabaseCommandsEndToEnd, FileBitbasesLoadFromTheExecutablesDirectory) {
  const fs::path directory = fs::temp_directory_path() / ("zephrin_e2e_bitbases_" + std::to_string(getpid()));
  fs::create_directories(directory);
  const fs::path binary = directory / "zephrin";
  fs::copy_file(ZEPHRIN_BINARY, binary, fs::copy_options::overwrite_existing);
  for (const std::size_t size : {std::size_t{0x120000}, std::size_t{0x120001}}) {
    std::ofstream(directory / "kp_kp.zbb", std::ios::binary).write(std::vector<char>(size, 0).data(), std::streamsize(size));
    const EngineRun run = RunEngine({}, "tb\n", 60, 0, binary.string());
    EXPECT_EQ(run.out, P + Status(size == 0x120000 ? "loaded" : "not loaded") + P);
  }
  fs::remove_all(directory);
}
