// Perft: counts the leaf nodes of the legal move tree, per root move or over a standard suite.
//   perft "<FEN>" <depth>   one line per root move "<from><to>[promo]: <count>", then the total
//   perft --bench           the standard suite at full depth with times and leaves per second
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "board/board.h"
#include "board/move_generator.h"
#include "frame/string_conversions.h"
#include "interfaces/fen.h"

namespace {

// The last ply is counted from the generated list without making the moves.
std::uint64_t Perft(Board& board, int depth) {
  Move moves[MAX_MOVES];
  Move* end = GenerateMoves(moves, board, GEN_ALL);
  if (depth <= 1) return depth == 1 ? std::uint64_t(end - moves) : 1;
  std::uint64_t total = 0;
  for (Move* m = moves; m != end; ++m) {
    board.MakeMove(*m);
    total += Perft(board, depth - 1);
    board.UnmakeMove(*m);
  }
  return total;
}

std::string MoveText(Move m) {
  static const char kPromotion[] = "  nbrq";
  std::string text = SquareText(MoveFrom(m)) + SquareText(MoveTo(m));
  if (MovePromotion(m)) text += kPromotion[MovePromotion(m)];
  return text;
}

struct SuiteEntry {
  const char* fen;
  int depth;
  std::uint64_t expected;
};

constexpr SuiteEntry SUITE[] = {
    {"rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1", 6, 119060324},
    {"r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1", 5, 193690690},
    {"8/2p5/3p4/KP5r/1R3p1k/8/4P1P1/8 w - - 0 1", 6, 11030083},
    {"r3k2r/Pppp1ppp/1b3nbN/nP6/BBP1P3/q4N2/Pp1P2PP/R2Q1RK1 w kq - 0 1", 5, 15833292},
    {"rnbq1k1r/pp1Pbppp/2p5/8/2B5/8/PPP1NnPP/RNBQK2R w KQ - 1 8", 5, 89941194},
    {"r4rk1/1pp1qppp/p1np1n2/2b1p1B1/2B1P1b1/P1NP1N2/1PP1QPPP/R4RK1 w - - 0 10", 5, 164075551},
};

int RunSuite() {
  std::uint64_t all_leaves = 0;
  double all_seconds = 0;
  bool all_right = true;
  for (const SuiteEntry& entry : SUITE) {
    Board board;
    ZephrinInterfaces::ReadFen(entry.fen, board);
    auto start = std::chrono::steady_clock::now();
    std::uint64_t leaves = Perft(board, entry.depth);
    double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    all_leaves += leaves;
    all_seconds += seconds;
    bool right = leaves == entry.expected;
    all_right = all_right && right;
    std::printf("%s depth %d: %llu%s  %.3f s  %.0f leaves/s\n", entry.fen, entry.depth,
                static_cast<unsigned long long>(leaves), right ? "" : " WRONG", seconds,
                seconds > 0 ? leaves / seconds : 0.0);
  }
  std::printf("total: %llu leaves in %.3f s, %.0f leaves/s\n", static_cast<unsigned long long>(all_leaves),
              all_seconds, all_seconds > 0 ? all_leaves / all_seconds : 0.0);
  return all_right ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  InitAttackTables();
  if (argc == 2 && std::string(argv[1]) == "--bench") return RunSuite();
  if (argc != 3) {
    std::fprintf(stderr, "usage: perft \"<FEN>\" <depth>\n       perft --bench\n");
    return 2;
  }
  Board board;
  try {
    ZephrinInterfaces::ReadFen(argv[1], board);
  } catch (const ZephrinException& e) {
    std::fprintf(stderr, "bad FEN: %s\n", e.what());
    return 2;
  }
  char* rest = nullptr;
  long depth = std::strtol(argv[2], &rest, 10);
  if (*argv[2] == '\0' || *rest != '\0' || depth < 1 || depth > 20) {
    std::fprintf(stderr, "depth must be a number from 1 to 20\n");
    return 2;
  }
  Move moves[MAX_MOVES];
  Move* end = GenerateMoves(moves, board, GEN_ALL);
  std::uint64_t total = 0;
  for (Move* m = moves; m != end; ++m) {
    board.MakeMove(*m);
    std::uint64_t count = Perft(board, int(depth) - 1);
    board.UnmakeMove(*m);
    total += count;
    std::printf("%s: %llu\n", MoveText(*m).c_str(), static_cast<unsigned long long>(count));
  }
  std::printf("%llu\n", static_cast<unsigned long long>(total));
  return 0;
}
