// Solves king and pawn against king by retrograde analysis and writes the result as C++ source:
// the table SINGLE_PAWN_TABLE[who][pawn][strong king], a bitboard over the weak king's squares
// with a bit set for every legal position that is a draw. who is 0 when the pawn's side is to
// move. The pawn is White's and moves upwards.
//   single_pawn_generator OUTPUT_FILE
// Runs at build time; it depends on nothing of the engine, so that the engine can be built from
// its output. It prints the number of wins and draws it found.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

using Square = int;
using Bitboard = std::uint64_t;

constexpr int STRONG_TO_MOVE = 0;
constexpr int WEAK_TO_MOVE = 1;

int File(Square s) { return s & 7; }
int Rank(Square s) { return s >> 3; }
Bitboard Bit(Square s) { return Bitboard{1} << s; }
int Distance(Square a, Square b) {
  return std::max(std::abs(File(a) - File(b)), std::abs(Rank(a) - Rank(b)));
}
bool Adjacent(Square a, Square b) { return Distance(a, b) == 1; }

// The squares a king on s may step to.
std::vector<Square> KingSteps(Square s) {
  std::vector<Square> steps;
  for (Square t = 0; t < 64; ++t) {
    if (Adjacent(s, t)) steps.push_back(t);
  }
  return steps;
}

// The squares a white pawn on s attacks.
Bitboard PawnAttacks(Square s) {
  Bitboard b = 0;
  if (File(s) > 0) b |= Bit(s + 7);
  if (File(s) < 7) b |= Bit(s + 9);
  return b;
}

struct Position {
  int who;
  Square pawn, strong, weak;
};

bool IsLegal(const Position& p) {
  if (p.pawn < 8 || p.pawn > 55) return false;
  if (p.pawn == p.strong || p.pawn == p.weak || p.strong == p.weak) return false;
  if (Adjacent(p.strong, p.weak)) return false;
  // The weak king can't stand in check with the pawn's side to move.
  return !(p.who == STRONG_TO_MOVE && (PawnAttacks(p.pawn) & Bit(p.weak)));
}

// Whether a slider that moves by (df, dr) steps from `from` reaches `to`, with only `blocker` able
// to stand between.
bool SlideReaches(Square from, Square to, int df, int dr, Square blocker) {
  int f = File(from) + df, r = Rank(from) + dr;
  while (f >= 0 && f < 8 && r >= 0 && r < 8) {
    Square s = r * 8 + f;
    if (s == to) return true;
    if (s == blocker) return false;
    f += df;
    r += dr;
  }
  return false;
}

bool RookAttacks(Square rook, Square target, Square blocker) {
  return SlideReaches(rook, target, 1, 0, blocker) || SlideReaches(rook, target, -1, 0, blocker) ||
         SlideReaches(rook, target, 0, 1, blocker) || SlideReaches(rook, target, 0, -1, blocker);
}

bool QueenAttacks(Square queen, Square target, Square blocker) {
  return RookAttacks(queen, target, blocker) || SlideReaches(queen, target, 1, 1, blocker) ||
         SlideReaches(queen, target, 1, -1, blocker) || SlideReaches(queen, target, -1, 1, blocker) ||
         SlideReaches(queen, target, -1, -1, blocker);
}

// The outcome right after the pawn has promoted on `piece` to a queen or a rook, the weak king to
// move. King and queen or rook against king win from every position in which the defender can
// neither take the new piece nor is stalemated; a check without an escape is mate. The weak king's
// own square doesn't block: it can't step back along the line of a check.
bool PromotionWins(Square piece, bool queen, Square strong, Square weak) {
  auto attacked = [&](Square s) {
    if (Adjacent(strong, s)) return true;
    if (s == piece) return false;
    return queen ? QueenAttacks(piece, s, strong) : RookAttacks(piece, s, strong);
  };
  bool can_move = false;
  for (Square to : KingSteps(weak)) {
    if (to == strong || attacked(to)) continue;
    if (to == piece) return false;  // takes the unprotected piece: a bare king each
    can_move = true;
  }
  return can_move || attacked(weak);
}

class Solver {
 public:
  Solver() : win_(2 * 64 * 64 * 64, 0) {}

  // Pawn moves only go up the board, so each pawn square is solved once those above it are.
  void Solve() {
    for (Square pawn = 55; pawn >= 8; --pawn) {
      bool changed = true;
      while (changed) {
        changed = false;
        for (int who = 0; who < 2; ++who) {
          for (Square strong = 0; strong < 64; ++strong) {
            for (Square weak = 0; weak < 64; ++weak) {
              Position p{who, pawn, strong, weak};
              if (!IsLegal(p) || Win(p)) continue;
              if (who == STRONG_TO_MOVE ? StrongWins(p) : WeakLoses(p)) {
                win_[Index(p)] = 1;
                changed = true;
              }
            }
          }
        }
      }
    }
  }

  bool Win(const Position& p) const { return win_[Index(p)] != 0; }

 private:
  static int Index(const Position& p) { return ((p.who * 64 + p.pawn) * 64 + p.strong) * 64 + p.weak; }

  // Some move of the pawn's side reaches a won position.
  bool StrongWins(const Position& p) const {
    for (Square to : KingSteps(p.strong)) {
      if (to == p.pawn || Adjacent(to, p.weak)) continue;
      if (Win({WEAK_TO_MOVE, p.pawn, to, p.weak})) return true;
    }
    Square ahead = p.pawn + 8;
    if (ahead == p.strong || ahead == p.weak) return false;
    if (ahead >= 56) {
      return PromotionWins(ahead, true, p.strong, p.weak) || PromotionWins(ahead, false, p.strong, p.weak);
    }
    if (Win({WEAK_TO_MOVE, ahead, p.strong, p.weak})) return true;
    Square two_ahead = p.pawn + 16;
    return Rank(p.pawn) == 1 && two_ahead != p.strong && two_ahead != p.weak &&
           Win({WEAK_TO_MOVE, two_ahead, p.strong, p.weak});
  }

  // Every move of the lone king reaches a won position; taking the pawn and stalemate draw, and a
  // check without an escape is mate.
  bool WeakLoses(const Position& p) const {
    bool has_move = false;
    for (Square to : KingSteps(p.weak)) {
      if (to == p.strong || Adjacent(to, p.strong) || (PawnAttacks(p.pawn) & Bit(to))) continue;
      if (to == p.pawn) return false;
      if (!Win({STRONG_TO_MOVE, p.pawn, p.strong, to})) return false;
      has_move = true;
    }
    return has_move || (PawnAttacks(p.pawn) & Bit(p.weak)) != 0;
  }

  std::vector<std::uint8_t> win_;
};

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: single_pawn_generator OUTPUT_FILE\n");
    return 2;
  }
  Solver solver;
  solver.Solve();

  std::FILE* out = std::fopen(argv[1], "w");
  if (out == nullptr) {
    std::perror(argv[1]);
    return 1;
  }
  std::fprintf(out,
               "// Made by tools/single_pawn/single_pawn_generator at build time; do not edit.\n"
               "#include \"bitbases/single_pawn_table.h\"\n\n"
               "namespace ZephrinBitbases {\n\n"
               "const Bitboard SINGLE_PAWN_TABLE[2][64][64] = {\n");
  long wins = 0, draws = 0;
  for (int who = 0; who < 2; ++who) {
    std::fprintf(out, "  {\n");
    for (Square pawn = 0; pawn < 64; ++pawn) {
      std::fprintf(out, "    {");
      for (Square strong = 0; strong < 64; ++strong) {
        Bitboard drawn = 0;
        for (Square weak = 0; weak < 64; ++weak) {
          Position p{who, pawn, strong, weak};
          if (!IsLegal(p)) continue;
          if (solver.Win(p)) {
            ++wins;
          } else {
            ++draws;
            drawn |= Bit(weak);
          }
        }
        std::fprintf(out, "%s0x%016llxULL", strong % 4 == 0 ? "\n      " : " ", (unsigned long long)drawn);
        if (strong < 63) std::fprintf(out, ",");
      }
      std::fprintf(out, "\n    },\n");
    }
    std::fprintf(out, "  },\n");
  }
  std::fprintf(out, "};\n\n}  // namespace ZephrinBitbases\n");
  if (std::fclose(out) != 0) {
    std::perror(argv[1]);
    return 1;
  }
  std::printf("single pawn bitbase: %ld wins, %ld draws\n", wins, draws);
  return 0;
}
