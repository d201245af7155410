// The endgame database commands as a person sees them: the status of the databases, probing a
// position, and the optimize_piece aid, which reads its own line.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "e2e/engine_process.h"
#include "retrograde_solver.h"
#include "table_writer.h"

namespace {

namespace fs = std::filesystem;
const std::string P = Prompt("White 1");

std::string Status(const char* two_pawns) {
  return std::string("Supported bitbases/tablebases:\nNalimov tablebases (type=nalimov)\n"
                     "King+pawn vs king bitbases (built-in)\nKing+pawn vs king+pawn bitbases (") +
         two_pawns + ")\nKing+pawn+pawn vs king+pawn with pawn ram bitbases (not loaded)\n";
}

// A copy of the engine in a directory of its own, so that the bitbase files beside it are the test's
// (`make run` puts one beside the built engine).
struct EngineCopy {
  EngineCopy() { fs::copy_file(ZEPHRIN_BINARY, binary()); }
  std::string binary() const { return (directory / "zephrin").string(); }
  const TemporaryDirectory temporary;
  const fs::path directory{temporary.path};
};

}  // namespace

TEST(DatabaseCommandsEndToEnd, StatusProbeAndOptimizePiece) {
  const EngineCopy engine;
  const EngineRun run = RunEngine({}, "tb\nprobe 8/1P6/k7/8/K7/8/8/8 w - - 0 1\nprobe 8/8/8 w\n"
                                      "probe 8/8/8/8/8/8/8/8 w - - 0 1\noptimize_piece\nz9\noptimize_piece\nd4\n",
                                  60, 0, engine.binary());
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
  const EngineCopy engine;
  for (const std::size_t size : {std::size_t{0x120000}, std::size_t{0x120001}}) {
    std::ofstream(engine.directory / "kp_kp.zbb", std::ios::binary)
        .write(std::vector<char>(size, 0).data(), std::streamsize(size));
    const EngineRun run = RunEngine({}, "tb\n", 60, 0, engine.binary());
    EXPECT_EQ(run.out, P + Status(size == 0x120000 ? "loaded" : "not loaded") + P);
  }
}

// Generate and verify with king and pawn against king from the table maker: the built-in bitbase
// agrees with the table on every position, a job that needs a table that isn't there fails and
// leaves no file, and the job words are checked before anything runs.
TEST(DatabaseCommandsEndToEnd, GenerateAndVerifyAgainstTheTables) {
  const EngineCopy engine;
  ZephrinTablegen::EndingLibrary library;
  const ZephrinTablegen::SolvedEnding& kpk = ZephrinTablegen::Solve(library, "kpk");
  for (int side = 0; side < 2; ++side) {
    ZephrinTablegen::TableCounts counts;
    const std::vector<signed char> table = ZephrinTablegen::LayOutTable(kpk, 1, side, counts);
    std::ofstream((engine.directory / (side == 0 ? "kpk.nbw" : "kpk.nbb")).string(), std::ios::binary)
        .write(reinterpret_cast<const char*>(table.data()), std::streamsize(table.size()));
  }
  const EngineRun run = RunEngine({}, "generate\nverify\nverify two_pawns\nforce\ngenerate single_pawn\n"
                                      "verify generic\ngenerate kp_kp\nverify two_pawns\ntb nalimov 1M " +
                                          engine.directory.string() + "\nverify single_pawn\ngenerate all\n",
                                  60, 0, engine.binary());
  const std::string verified = "Verifying bitbase 'single_pawn'...passed (331352 positions)\nVerification finished (";
  const std::size_t at = run.out.find(verified);
  ASSERT_NE(at, std::string::npos) << run.out;
  EXPECT_EQ(run.out.substr(0, at),
            P + "List of available generation jobs:\ntwo_pawns rammed_pawn\n" + P +
                "List of available verification jobs:\nsingle_pawn two_pawns rammed_pawn\n" + P +
                "Error (must be in force mode): verify two_pawns\n" + P + P +
                "Error (Support for single pawn bitbase generation disabled): generate single_pawn\n" + P +
                "Error (Generic bitbases verification not supported): verify generic\n" + P +
                "Error (Could not parse generation job description 'kp_kp'): generate kp_kp\n" + P +
                "Verifying bitbase 'two_pawns'...failed\nError (tablebases not loaded): verify two_pawns\n" + P + P);
  EXPECT_TRUE(run.out.ends_with(P + "Generating king+pawn vs king+pawn bitbases data file...failed\n"
                                    "Error (endgame king+pawn vs king+pawn not available): generate all\n" + P))
      << run.out;
  EXPECT_FALSE(fs::exists(engine.directory / "kp_kp.zbb"));
}
