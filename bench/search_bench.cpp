// Search benchmark: a fixed set of positions (openings, middlegames, endings, tactics), each
// searched to a fixed number of iterations with no time limit. Prints per position the nodes and
// the best move, then the total nodes, the time and the nodes per second. The node count is the
// same from run to run.
//   search_bench [iterations]   default 9
// Time is given as wall-clock time and as processor time, since other programs may share the
// machine.
#include <chrono>
#include <ctime>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "board/board.h"
#include "hash/hash.h"
#include "interfaces/move_text.h"
#include "search/search.h"

namespace {

const char* const POSITIONS[] = {
    // Openings
    "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1",
    "r1bqk2r/1pppbppp/p1n2n2/4p3/B3P3/5N2/PPPP1PPP/RNBQ1RK1 w kq - 4 6",
    "rnbqkb1r/1p2pppp/p2p1n2/8/3NP3/2N5/PPP2PPP/R1BQKB1R w KQkq - 0 6",
    "rnbqk1nr/pp3ppp/4p3/2ppP3/1b1P4/2N5/PPP2PPP/R1BQKBNR w KQkq - 0 5",
    "rnbq1rk1/ppp1bppp/4pn2/3p2B1/2PP4/2N1P3/PP3PPP/R2QKBNR w KQ - 1 6",
    "rnbq1rk1/ppp1ppbp/3p1np1/8/2PPP3/2N2N2/PP2BPPP/R1BQK2R b KQ - 3 6",
    "rn1qkbnr/pp2pppp/2p3b1/8/3P4/6N1/PPP2PPP/R1BQKBNR w KQkq - 3 6",
    "r1bqkbnr/pp3ppp/2n1p3/2ppP3/3P4/2P2N2/PP3PPP/RNBQKB1R b KQkq - 2 5",
    // Middlegames
    "r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1PN2/PP2BPPP/R2QKB1R w KQ - 0 8",
    "r2q1rk1/pp2bppp/2n1pn2/3p4/3P4/2NBPN2/PP3PPP/R2Q1RK1 w - - 0 10",
    "r1b2rk1/2q1bppp/p2ppn2/1p6/3NP3/1BN1B3/PPP1QPPP/R4RK1 w - - 0 12",
    "2rq1rk1/pb1nbppp/1p2pn2/2pp4/2PP4/1P2PN2/PB1NBPPP/2RQ1RK1 w - - 0 12",
    "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1",
    "r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10",
    "rnbqkb1r/pp1p1pPp/8/2p1pP2/1P1P4/3P3P/P1P1P3/RNBQKBNR w KQkq e6 0 1",
    "r1bbk1nr/pp3p1p/2n5/1N4p1/2Np1B2/8/PPP2PPP/2KR1B1R w kq - 0 13",
    "3r1rk1/p1q2ppp/1pn1pn2/2b5/2P5/1PN1PN2/PB2QPPP/3R1RK1 w - - 0 15",
    "r2qr1k1/1b1nbppp/p2p1n2/1pp1p3/4P3/2PP1N1P/PPB2PP1/RNBQR1K1 w - - 0 12",
    // Endings
    "8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1",
    "8/8/4k3/8/2p5/8/B2K4/8 w - - 0 1",
    "8/5pk1/6p1/7p/7P/6P1/5PK1/8 w - - 0 1",
    "8/8/1p1k4/p1p5/P1P5/1P1K4/8/8 w - - 0 1",
    "6k1/5ppp/8/8/8/8/5PPP/3R2K1 w - - 0 1",
    "8/8/3k4/8/8/3K4/3R4/8 w - - 0 1",
    "8/3k4/8/3KP3/8/8/8/8 w - - 0 1",
    "8/pk6/1p6/1P6/P7/8/5K2/8 w - - 0 1",
    "2r3k1/5ppp/8/8/8/8/5PPP/2R3K1 b - - 0 1",
    // Tactics
    "r1bqkb1r/pppp1ppp/2n2n2/4p2Q/2B1P3/8/PPPP1PPP/RNB1K1NR w KQkq - 4 4",
    "6k1/5ppp/8/8/8/8/5PPP/R5K1 w - - 0 1",
    "2rr3k/pp3pp1/1nnqbN1p/3pN3/2pP4/2P3Q1/PPB4P/R4RK1 w - - 0 1",
    "r1b1kb1r/pppp1ppp/5q2/4n3/3KP3/2N3PN/PPP4P/R1BQ1B1R b kq - 0 1",
    "5rk1/1ppb3p/p1pb4/6q1/3P1p1r/2P1R2P/PP1BQ1P1/5RKN w - - 0 1",
    "r1bq2rk/pp3pbp/2p1p1pQ/7P/3P4/2PB1N2/PP3PP1/2KR3R w - - 0 1",
    "8/7p/5k2/5p2/p1p2P2/Pr1pPK2/1P1R3P/8 b - - 0 1",
};

}  // namespace

int main(int argc, char** argv) {
  int iterations = argc > 1 ? std::atoi(argv[1]) : 9;
  if (iterations < 1) iterations = 1;
  TranspositionTable.Resize(DEFAULT_TRANSPOSITION_TABLE_BYTES);
  PawnHashTable.Resize(DEFAULT_PAWN_HASH_TABLE_BYTES);
  EvaluationHashTable.Resize(DEFAULT_EVALUATION_HASH_TABLE_BYTES);

  Search search;
  std::uint64_t total_nodes = 0;
  auto start = std::chrono::steady_clock::now();
  std::clock_t cpu_start = std::clock();
  int number = 0;
  for (const char* fen : POSITIONS) {
    SearchRequest request;
    request.type = SEARCH_NORMAL;
    request.max_depth = iterations;
    try {
      request.game.SetFromFen(fen);
    } catch (const UserBoard::user_exception& e) {
      std::fprintf(stderr, "bad position (%s): %s\n", e.what(), fen);
      return 1;
    }
    search.RunSearch(request, nullptr);
    total_nodes += search.nodes;
    std::string best = search.best_move != 0 && !search.pv.empty() ? search.pv[0].text : "-";
    std::printf("%2d %10llu %-8s %6d  %s\n", ++number, static_cast<unsigned long long>(search.nodes),
                best.c_str(), search.score, fen);
  }
  double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::printf("positions: %d, iterations: %d\n", number, iterations);
  std::printf("total nodes: %llu\n", static_cast<unsigned long long>(total_nodes));
  double cpu_seconds = double(std::clock() - cpu_start) / CLOCKS_PER_SEC;
  std::printf("time: %.2f s (processor time %.2f s)\n", seconds, cpu_seconds);
  std::printf("nodes per second: %.0f (per processor second %.0f)\n",
              seconds > 0 ? double(total_nodes) / seconds : 0.0,
              cpu_seconds > 0 ? double(total_nodes) / cpu_seconds : 0.0);
  return 0;
}
