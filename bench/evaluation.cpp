// Evaluation speed: collects the positions of a shallow walk of the standard positions, then
// times null-window tests at bounds near and far from the score (as the search asks them), and
// full bisections (as the eval command does), with the tables at their default sizes.
//   evaluation [depth]   walk depth, 3 by default
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "board/board.h"
#include "board/move_generator.h"
#include "evaluation/evaluation.h"
#include "hash/hash.h"
#include "interfaces/fen.h"

namespace {

const char* const STARTS[] = {
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
    "2r3k1/5ppp/8/3p4/3P4/8/5PPP/2R3K1 b - - 0 1",
};

struct Sample {
  Board board;
  PositionType type;
};

void Collect(Board& board, int depth, std::vector<Sample>& samples) {
  samples.push_back({board, ClassifyPosition(board, NO_POSITION_TYPE)});
  if (depth == 0) return;
  std::vector<Move> moves;
  GenerateLegalMoves(board, moves);
  for (Move move : moves) {
    board.MakeMove(move);
    Collect(board, depth - 1, samples);
    board.UnmakeMove(move);
  }
}

double Seconds(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

}  // namespace

int main(int argc, char** argv) {
  int depth = argc > 1 ? std::atoi(argv[1]) : 3;
  ResizeHashTablesToDefaults();
  std::vector<Sample> samples;
  for (const char* fen : STARTS) {
    Board board;
    ZephrinInterfaces::ReadFen(fen, board);
    Collect(board, depth, samples);
  }

  EvaluationRecord record;
  auto start = std::chrono::steady_clock::now();
  long long checksum = 0;
  for (const Sample& s : samples) checksum += ExactEvaluation(record, s.board, s.type);
  double exact_seconds = Seconds(start);

  // Bounds around an even score, some of them far off.
  const int offsets[] = {-600, -50, -5, 0, 5, 50, 600};
  long long tests = 0;
  EvaluationHashTable.Clear();
  PawnHashTable.Clear();
  start = std::chrono::steady_clock::now();
  for (int round = 0; round < 2; ++round) {
    for (const Sample& s : samples) {
      for (int offset : offsets) {
        checksum += Evaluate(record, s.board, offset, s.type);
        ++tests;
      }
    }
  }
  double test_seconds = Seconds(start);

  std::printf("positions: %zu (walk depth %d)\n", samples.size(), depth);
  std::printf("exact evaluations: %.0f per second\n", double(samples.size()) / exact_seconds);
  std::printf("bound tests: %.0f per second\n", double(tests) / test_seconds);
  std::printf("checksum: %lld\n", checksum);
  return 0;
}
