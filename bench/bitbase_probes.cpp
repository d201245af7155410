// Bitbase probe benchmark: ProbeBitbases over sets of king and pawn positions, one set per
// bitbase, as the search calls it. The two file bitbases are mapped from zero-filled files of
// their size in a temporary directory: their contents don't change the cost of a probe.
//   bitbase_probes [rounds]   default 20000
// Prints, per bitbase, the probes per second in processor time, and a checksum of the scores.
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "bitbases/bitbase_files.h"
#include "board/board.h"
#include "tablebases/tablebase_probe.h"

namespace {

constexpr int POSITIONS_PER_SET = 1000;

void WriteZeroFile(const std::string& path, std::size_t size) {
  std::ofstream file(path, std::ios::binary);
  const std::vector<char> zeros(size, 0);
  file.write(zeros.data(), std::streamsize(size));
}

// Random legal positions of kings and the given pawns; a pawn that lands on an occupied square or
// a position that isn't legal is drawn again.
std::vector<Board> RandomPositions(std::mt19937& random, int white_pawns, int black_pawns, bool ram) {
  std::vector<Board> boards;
  std::uniform_int_distribution<int> square(0, 63), pawn_square(8, 55), side(0, 1);
  while (int(boards.size()) < POSITIONS_PER_SET) {
    Piece squares[64] = {};
    squares[square(random)] = 6;
    const Square black_king = square(random);
    if (squares[black_king] != 0) continue;
    squares[black_king] = -6;
    bool clash = false;
    auto place = [&](Square s, Piece p) {
      if (s < 8 || s > 55 || squares[s] != 0) clash = true;
      else squares[s] = p;
    };
    if (ram) {
      const Square rammed = pawn_square(random);
      place(rammed, 1);
      place(rammed + 8, -1);
    }
    for (int i = 0; i < white_pawns; ++i) place(pawn_square(random), 1);
    for (int i = 0; i < black_pawns; ++i) place(pawn_square(random), -1);
    Board board;
    if (!clash && board.SetPosition(squares, side(random), 0, 0)) boards.push_back(board);
  }
  return boards;
}

void Measure(const char* name, const std::vector<Board>& boards, int rounds) {
  std::int64_t checksum = 0;
  std::uint64_t probes = 0;
  const std::clock_t start = std::clock();
  for (int round = 0; round < rounds; ++round) {
    for (const Board& board : boards) {
      int score = 0;
      if (ProbeBitbases(board, score) == BB_FOUND) checksum += score;
      ++probes;
    }
  }
  const double seconds = double(std::clock() - start) / CLOCKS_PER_SEC;
  std::printf("%-12s %10llu probes  %.3f s  %.1f million probes per second  checksum %lld\n", name,
              static_cast<unsigned long long>(probes), seconds, seconds > 0 ? probes / seconds / 1e6 : 0.0,
              static_cast<long long>(checksum));
}

}  // namespace

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 20000;
  char directory[] = "/tmp/bitbase_probes.XXXXXX";
  if (mkdtemp(directory) == nullptr) {
    std::perror("mkdtemp");
    return 1;
  }
  const std::string two_pawns = std::string(directory) + "/" + ZephrinBitbases::TWO_PAWNS_FILE;
  const std::string rammed_pawn = std::string(directory) + "/" + ZephrinBitbases::RAMMED_PAWN_FILE;
  WriteZeroFile(two_pawns, ZephrinBitbases::TWO_PAWNS_SIZE);
  WriteZeroFile(rammed_pawn, ZephrinBitbases::RAMMED_PAWN_SIZE);
  LoadBitbasesFrom(directory);

  std::mt19937 random(12345);
  Measure("single_pawn", RandomPositions(random, 1, 0, false), rounds);
  Measure("two_pawns", RandomPositions(random, 1, 1, false), rounds);
  Measure("rammed_pawn", RandomPositions(random, 1, 0, true), rounds);

  UnloadBitbases();
  unlink(two_pawns.c_str());
  unlink(rammed_pawn.c_str());
  rmdir(directory);
  return 0;
}
