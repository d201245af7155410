#include "retrograde_solver.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "ending_material.h"

namespace ZephrinTablegen {

namespace {

constexpr std::int8_t UNKNOWN = -128;
constexpr int LEVELS = 256;

// Region numbers of the white king: the ten triangle squares without pawns, files a-d with them.
struct Region {
  std::array<std::int8_t, 64> number{};
  std::array<Square, 32> square{};
  int size = 0;
};

constexpr Region MakeRegion(bool pawns) {
  Region region;
  for (Square s = 0; s < 64; ++s) {
    region.number[s] = -1;
    if (InRegion(s, pawns)) {
      region.number[s] = std::int8_t(region.size);
      region.square[region.size++] = s;
    }
  }
  return region;
}

constexpr Region REGIONS[2] = {MakeRegion(false), MakeRegion(true)};

constexpr const Region& RegionOf(bool pawns) { return REGIONS[pawns ? 1 : 0]; }

// Plies to the end of a decided game of value v, and back.
int PlyOf(int v) { return v > 0 ? 2 * (126 - v) + 1 : 2 * (v + 126); }
std::int8_t ValueAtPly(int ply) { return std::int8_t(ply % 2 ? 126 - ply / 2 : -126 + ply / 2); }
// The value for the mover of a move into a position worth v to the other side.
int Backed(int v) { return v < 0 ? -v : v > 0 ? 1 - v : 0; }

// How a conversion's position is read in the table of the ending it leads to: which man of the
// parent stands in each slot of the child, and whether the child sees the board from black.
struct Conversion {
  const SolvedEnding* ending = nullptr;  // null for the bare kings, a draw
  bool colours_exchanged = false;
  int source[MAX_MEN] = {};
};

// All conversions, by capturing man, captured man (+1) and promotion.
using ConversionTable = std::array<std::array<std::array<Conversion, 6>, MAX_MEN + 1>, MAX_MEN>;

Conversion MakeConversion(const EndingLibrary& library, const Material& m, int man, int captured, PieceType promotion) {
  Conversion conversion;
  const Material after = MaterialAfter(m, man, captured, promotion);
  const std::string name = NormalEndingName(after, conversion.colours_exchanged);
  if (name == "kk") return conversion;
  const auto found = library.find(name);
  if (found == library.end()) throw std::logic_error("successor " + name + " not solved");
  conversion.ending = &found->second;
  const Material& child = found->second.material;
  bool used[MAX_MEN] = {};
  for (int slot = 0; slot < child.count; ++slot) {
    const Color colour = child.colour[slot] ^ (conversion.colours_exchanged ? 1 : 0);
    for (int i = 0; i < m.count; ++i) {
      const PieceType type = i == man && promotion != NO_PIECE ? promotion : m.type[i];
      if (i == captured || used[i] || type != child.type[slot] || m.colour[i] != colour) continue;
      used[i] = true;
      conversion.source[slot] = i;
      break;
    }
  }
  return conversion;
}

std::int8_t ProbeConversion(const Conversion& conversion, const Square* after, Color side_to_move) {
  if (!conversion.ending) return 0;
  Square squares[MAX_MEN];
  const int flip = conversion.colours_exchanged ? 56 : 0;
  for (int slot = 0; slot < conversion.ending->material.count; ++slot)
    squares[slot] = after[conversion.source[slot]] ^ flip;
  return Probe(*conversion.ending, squares, side_to_move ^ (flip ? 1 : 0));
}

// The state of one solve: moves left to refute per position, the best a conversion gives, and
// the positions to settle at each ply. A level entry is number * 4 + candidate * 2 + side; a
// candidate may have been settled sooner by then, a definite entry has its value already.
struct Solver {
  SolvedEnding& ending;
  ConversionTable conversions{};
  std::vector<std::uint8_t> moves_left[2];
  std::vector<std::int8_t> conversion_value[2];
  std::vector<std::vector<std::uint32_t>> levels = std::vector<std::vector<std::uint32_t>>(LEVELS);

  void Schedule(int ply, std::uint64_t number, Color side, bool candidate) {
    levels[ply].push_back(std::uint32_t(number * 4 + (candidate ? 2 : 0) + side));
  }
};

// The forward look at one position: its legal moves inside the ending are counted, its
// conversions are read from the smaller tables, and positions decided now or by a conversion
// alone are put on their level.
void InitialisePosition(Solver& solver, std::uint64_t number, const Square* squares, Color side) {
  const Material& m = solver.ending.material;
  std::int8_t& value = solver.ending.value[side][number];
  if (IsKingAttacked(m, squares, side ^ 1)) {
    value = NO_POSITION;
    return;
  }
  int moves = 0, best = UNKNOWN;
  bool any = false;
  ForEachLegalMove(m, squares, side, [&](const MoveRecord& move, const Square* after) {
    any = true;
    if (move.captured < 0 && move.promotion == NO_PIECE) {
      ++moves;
      return;
    }
    const int promotion = move.promotion == NO_PIECE ? 0 : move.promotion;
    const Conversion& conversion = solver.conversions[move.man][move.captured + 1][promotion];
    best = std::max(best, Backed(ProbeConversion(conversion, after, side ^ 1)));
  });
  solver.moves_left[side][number] = std::uint8_t(moves);
  solver.conversion_value[side][number] = std::int8_t(best);
  if (!any) {
    const bool mated = IsKingAttacked(m, squares, side);
    value = mated ? ValueAtPly(0) : 0;
    if (mated) solver.Schedule(0, number, side, false);
  } else if (best != UNKNOWN && (moves == 0 || best > 0)) {
    if (best == 0) value = 0;
    else solver.Schedule(PlyOf(best), number, side, true);
  }
}

// A position that a move leads into got its value v at this ply: a loss there makes its
// predecessor a win one ply later; a win refutes one more of the predecessor's moves, and the
// last refutation makes it a loss unless a conversion holds out longer or better.
void SettlePredecessor(Solver& solver, std::uint64_t number, Color side, int v, int ply) {
  std::int8_t& value = solver.ending.value[side][number];
  if (value != UNKNOWN) return;
  if (v < 0) {
    value = std::int8_t(-v);
    solver.Schedule(ply + 1, number, side, false);
    return;
  }
  std::uint8_t& left = solver.moves_left[side][number];
  if (left == 0 || --left > 0) return;
  const int conversion = solver.conversion_value[side][number];
  const int loss = Backed(v);
  if (conversion != UNKNOWN && conversion >= 0) return;
  if (conversion != UNKNOWN && conversion > loss) {
    solver.Schedule(PlyOf(conversion), number, side, true);
  } else {
    value = std::int8_t(loss);
    solver.Schedule(ply + 1, number, side, false);
  }
}

// Every position whose normal form this one is: itself, and its images with the white king
// outside the region. Calls visit(squares, is_itself).
template <class Visit>
void ForEachPreimage(const SolvedEnding& ending, const Square* squares, Visit&& visit) {
  const int count = ending.material.count;
  Square seen[8][MAX_MEN];
  int seen_count = 0;
  visit(squares, true);
  for (int symmetry = 1; symmetry < (ending.pawns ? 2 : 8); ++symmetry) {
    Square image[MAX_MEN];
    for (int i = 0; i < count; ++i) image[i] = Transform(squares[i], symmetry);
    const int back = NormalSymmetry(image[0], ending.pawns);
    if (back == 0) continue;
    bool maps_back = true, seen_before = false;
    for (int i = 0; i < count; ++i) maps_back = maps_back && Transform(image[i], back) == squares[i];
    for (int k = 0; k < seen_count; ++k) seen_before = seen_before || std::equal(image, image + count, seen[k]);
    if (!maps_back || seen_before) continue;
    std::copy(image, image + count, seen[seen_count++]);
    visit(image, false);
  }
}

// Takes back every move that can have led to this settled position, each exactly once, since the
// move counters rely on that: a stored predecessor can reach the position itself or any image
// that reads as it. Predecessors have the white king in the region, so from an image outside the
// region only that king can have moved.
void Propagate(Solver& solver, std::uint64_t number, Color side, int ply) {
  const SolvedEnding& ending = solver.ending;
  Square squares[MAX_MEN];
  PositionSquares(ending, number, squares);
  const int v = ending.value[side][number];
  const Color mover = side ^ 1;
  ForEachPreimage(ending, squares, [&](const Square* image, bool itself) {
    ForEachUnmove(ending.material, image, mover, !itself, [&](int man, Square from) {
      if (man == WHITE && !InRegion(from, ending.pawns)) return;
      Square before[MAX_MEN];
      std::copy(image, image + ending.material.count, before);
      before[man] = from;
      SettlePredecessor(solver, PositionNumber(ending, before), mover, v, ply);
    });
  });
}

void PrepareEnding(SolvedEnding& ending, const std::string& name) {
  ending.name = name;
  if (!ParseEndingName(name, ending.material)) throw std::invalid_argument("no ending of up to four men: " + name);
  ending.pawns = HasPawns(ending.material);
  ending.radix[0] = RegionOf(ending.pawns).size;
  ending.size = std::uint64_t(ending.radix[0]);
  for (int i = 1; i < ending.material.count; ++i) {
    ending.radix[i] = ending.material.type[i] == PAWN ? 48 : 64;
    ending.size *= std::uint64_t(ending.radix[i]);
  }
}

// Whether a man can take the man in slot `captured` (-1 none) and promote (NO_PIECE none), and
// leave the ending by it.
bool IsConversion(const Material& m, int man, int captured, PieceType promotion) {
  if (captured == WHITE || captured == BLACK || (captured >= 0 && m.colour[captured] == m.colour[man])) return false;
  if (promotion != NO_PIECE && m.type[man] != PAWN) return false;
  return captured >= 0 || promotion != NO_PIECE;
}

void PrepareConversions(ConversionTable& conversions, const Material& m, const EndingLibrary& library) {
  for (int man = 0; man < m.count; ++man)
    for (int captured = -1; captured < m.count; ++captured)
      for (PieceType promotion : {NO_PIECE, KNIGHT, BISHOP, ROOK, QUEEN})
        if (IsConversion(m, man, captured, promotion))
          conversions[man][captured + 1][promotion] = MakeConversion(library, m, man, captured, promotion);
}

void SolveEnding(SolvedEnding& ending, const EndingLibrary& library) {
  Solver solver{ending};
  PrepareConversions(solver.conversions, ending.material, library);
  for (Color side : {WHITE, BLACK}) {
    ending.value[side].assign(ending.size, UNKNOWN);
    solver.moves_left[side].assign(ending.size, 0);
    solver.conversion_value[side].assign(ending.size, UNKNOWN);
  }
  Square squares[MAX_MEN];
  for (std::uint64_t number = 0; number < ending.size; ++number) {
    if (!PositionSquares(ending, number, squares)) {
      ending.value[WHITE][number] = ending.value[BLACK][number] = NO_POSITION;
      continue;
    }
    for (Color side : {WHITE, BLACK}) InitialisePosition(solver, number, squares, side);
  }
  for (int ply = 0; ply + 1 < LEVELS; ++ply) {
    for (std::size_t i = 0; i < solver.levels[ply].size(); ++i) {
      const std::uint32_t entry = solver.levels[ply][i];
      const std::uint64_t number = entry >> 2;
      const Color side = Color(entry & 1);
      std::int8_t& value = ending.value[side][number];
      if (entry & 2) {
        if (value != UNKNOWN) continue;
        value = ValueAtPly(ply);
      }
      Propagate(solver, number, side, ply);
    }
    std::vector<std::uint32_t>().swap(solver.levels[ply]);
  }
  for (auto& values : ending.value) std::replace(values.begin(), values.end(), UNKNOWN, std::int8_t(0));
}

}  // namespace

std::uint64_t PositionNumber(const SolvedEnding& ending, const Square* squares) {
  std::uint64_t number = std::uint64_t(RegionOf(ending.pawns).number[squares[0]]);
  for (int i = 1; i < ending.material.count; ++i)
    number = number * std::uint64_t(ending.radix[i]) + std::uint64_t(squares[i] - (ending.radix[i] == 48 ? 8 : 0));
  return number;
}

bool PositionSquares(const SolvedEnding& ending, std::uint64_t number, Square* squares) {
  Bitboard occ = 0;
  for (int i = ending.material.count - 1; i >= 1; --i) {
    squares[i] = Square(number % std::uint64_t(ending.radix[i])) + (ending.radix[i] == 48 ? 8 : 0);
    number /= std::uint64_t(ending.radix[i]);
    occ |= SquareBit(squares[i]);
  }
  squares[0] = RegionOf(ending.pawns).square[number];
  occ |= SquareBit(squares[0]);
  return SparsePopCount(occ) == ending.material.count;
}

std::int8_t Probe(const SolvedEnding& ending, const Square* squares, Color side_to_move) {
  for (int i = 1; i < ending.material.count; ++i)  // a pawn on its first or last rank has no number
    if (ending.radix[i] == 48 && (squares[i] < 8 || squares[i] > 55)) return NO_POSITION;
  const int symmetry = NormalSymmetry(squares[0], ending.pawns);
  Square normal[MAX_MEN] = {};
  for (int i = 0; i < ending.material.count; ++i) normal[i] = Transform(squares[i], symmetry);
  return ending.value[side_to_move][PositionNumber(ending, normal)];
}

const SolvedEnding& Solve(EndingLibrary& library, const std::string& name) {
  const auto found = library.find(name);
  if (found != library.end()) return found->second;
  InitAttackTables();
  SolvedEnding ending;
  PrepareEnding(ending, name);
  for (const std::string& successor : SuccessorEndings(ending.material)) Solve(library, successor);
  SolveEnding(ending, library);
  return library[name] = std::move(ending);
}

}  // namespace ZephrinTablegen
