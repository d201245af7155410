#include "tablebases/nalimov_index.h"

#include <array>
#include <utility>

#include "tablebases/nalimov_ending_names.h"
#include "tablebases/nalimov_index_tables.h"

namespace NalimovTablebases {

namespace {

constexpr int PIECE_SQUARES = 62;  // squares left to a piece beside the two kings
constexpr int PAWN_SQUARES = 48;
constexpr int EP_CAPTURES = 14;    // a pawn that stepped twice, with a capturer beside it
constexpr int EP_THIRD_PAWN_SQUARES = 44;   // neither pawn, nor the square passed, nor the start
constexpr int EP_THIRD_PIECE_SQUARES = 60;  // neither king nor pawn

// One man of an index: the list that holds it (0 strong, 1 weak), its slot there, its kind for
// square_rank, and whether it is a pawn.
struct PlanMan {
  int list;
  int slot;
  int kind;
  bool pawn;
};

// How the index of one side of an ending is formed.
struct IndexPlan {
  int id;
  int side;    // 0: the strong side moves
  bool pawns;  // kings numbered by KK_PAWN, and no transposition
  bool flip;   // the first men run down the board, so they are counted upside down
  bool ep;     // a pawn on each side: entries for en passant follow the ordinary ones
  int first_count;  // men ranked beside the other king
  PlanMan first[2];
  int rest_count;  // men placed on what is left, in name order
  PlanMan rest[2];
  int men_count;
};

constexpr bool SameKind(const PlanMan& a, const PlanMan& b) { return a.slot / 3 == b.slot / 3; }

// The mover's men are ranked first; a mover without men ranks the other side's pawns, when those
// are all it has; otherwise the other side's men are all placed on the squares left.
constexpr IndexPlan MakePlan(int id, int side) {
  PlanMan men[2][3] = {};
  int count[2] = {0, 0};
  int seen[2][5] = {};
  int list = -1;
  bool has_pawn[2] = {false, false};
  for (const char* c = ENDING_NAMES[id]; *c != 0; ++c) {
    if (*c == 'k') {
      ++list;
      continue;
    }
    const int man = ManOfLetter(*c);
    men[list][count[list]++] = PlanMan{list, 3 * man + seen[list][man]++, man + 1, man == 0};
    has_pawn[list] = has_pawn[list] || man == 0;
  }
  IndexPlan plan{};
  plan.id = id;
  plan.side = side;
  plan.pawns = has_pawn[0] || has_pawn[1];
  plan.ep = has_pawn[0] && has_pawn[1];
  plan.men_count = count[0] + count[1];
  const int mover = side, other = 1 - side;
  bool other_all_pawns = count[other] > 0;
  for (int i = 0; i < count[other]; ++i) other_all_pawns = other_all_pawns && men[other][i].pawn;
  if (count[mover] > 0) {
    plan.first_count = count[mover];
    for (int i = 0; i < count[mover]; ++i) plan.first[i] = men[mover][i];
    plan.flip = mover == 1 && has_pawn[mover];
    plan.rest_count = count[other];
    for (int i = 0; i < count[other]; ++i) plan.rest[i] = men[other][i];
  } else if (other_all_pawns) {
    plan.first_count = count[other];
    for (int i = 0; i < count[other]; ++i) {
      plan.first[i] = men[other][i];
      plan.first[i].kind = KIND_ANY_PAWN;  // the mover's king may stand in check
    }
    plan.flip = count[other] == 1;
  } else {
    plan.rest_count = count[other];
    for (int i = 0; i < count[other]; ++i) plan.rest[i] = men[other][i];
  }
  return plan;
}

int Transpose(int s) { return ((s & 7) << 3) | (s >> 3); }

// The board seen from the mover's king: mirrored so that it stands in the quarter a1-d4 (files
// a-d only with pawns, and upside down when the strong side is black); without pawns also
// transposed onto the triangle a1-d1-d4, and with the other king on or below the diagonal when
// the mover's king is on it.
struct Normaliser {
  int mask;
  bool transpose;
  int operator()(int s) const { return transpose ? Transpose(s ^ mask) : s ^ mask; }
};

Normaliser PawnNormaliser(int mover_king, bool invert) {
  return {((mover_king & 7) >= 4 ? 7 : 0) | (invert ? 56 : 0), false};
}

Normaliser PawnlessNormaliser(int mover_king, int other_king) {
  const int mask = ((mover_king & 7) >= 4 ? 7 : 0) | (mover_king >= 32 ? 56 : 0);
  const int m = mover_king ^ mask, o = other_king ^ mask;
  const int mf = m & 7, mr = m >> 3;
  const bool transpose = mf < mr || (mf == mr && (o >> 3) > (o & 7));
  return {mask, transpose};
}

// The men placed so far, for the free-square numbers of the men that follow.
struct Placed {
  int squares[5];
  int count = 0;
  int pawns[3];
  int pawn_count = 0;
  int men = 0;

  Placed(int m, int o) : squares{m, o} { count = 2; }
  void Add(int s, bool pawn) {
    squares[count++] = s;
    ++men;
    if (pawn) pawns[pawn_count++] = s;
  }
  int FreeSquare(int s) const {
    int n = s;
    for (int i = 0; i < count; ++i) n -= squares[i] < s;
    return n;
  }
  int PawnSquare(int s) const {
    int n = s - 8;
    for (int i = 0; i < pawn_count; ++i) n -= pawns[i] < s;
    return n;
  }
};

std::uint64_t Pairs(std::uint64_t n) { return n * (n - 1) / 2; }
std::uint64_t PairNumber(int x, int y) {
  const std::uint64_t a = std::uint64_t(x > y ? x : y), b = std::uint64_t(x > y ? y : x);
  return a * (a - 1) / 2 + b;
}

// The other side's men on the squares left: each multiplies the index by the squares left to it
// and adds its number among them; two of a kind go as one unordered pair.
template <IndexPlan P>
std::uint64_t PlaceRest(std::uint64_t index, Placed& placed, const int (&squares)[2]) {
  constexpr bool pair = P.rest_count == 2 && SameKind(P.rest[0], P.rest[1]);
  for (int i = 0; i < P.rest_count; i += pair ? 2 : 1) {
    const bool pawn = P.rest[i].pawn;
    const std::uint64_t left = pawn ? PAWN_SQUARES - placed.pawn_count : PIECE_SQUARES - placed.men;
    const int s = squares[i];
    const int n = pawn ? placed.PawnSquare(s) : placed.FreeSquare(s);
    if (pair) {
      const int t = squares[i + 1];
      const int n2 = pawn ? placed.PawnSquare(t) : placed.FreeSquare(t);
      index = index * Pairs(left) + PairNumber(n, n2);
      placed.Add(t, pawn);
    } else {
      index = index * left + std::uint64_t(n);
    }
    placed.Add(s, pawn);
  }
  return index;
}

// The ordinary index: the king pair, the first men by their rank beside the other king, then the
// rest. Flipped men, kings and pair number are read upside down.
template <IndexPlan P, int PAIRS>
std::uint64_t OrdinaryIndex(const PairOffsets<PAIRS>& offsets, const std::int16_t (&kings)[64][64], int m,
                            int o, const int (&first)[2], const int (&rest)[2]) {
  constexpr int f = P.flip ? 56 : 0;
  const int m3 = m ^ f, o3 = o ^ f;
  const int p = kings[m3][o3];
  auto rank = [&](int kind, int s) {
    s ^= f;
    return square_rank[kind][o3][s] - int(s > m3 && square_rank[kind][o3][m3] != NOT_USABLE);
  };
  std::uint64_t index = std::uint64_t(p);
  Placed placed(m, o);
  if constexpr (P.first_count == 1) {
    index = offsets.pair_offset[P.first[0].kind][p] + std::uint64_t(rank(P.first[0].kind, first[0]));
  } else if constexpr (P.first_count == 2 && SameKind(P.first[0], P.first[1])) {
    constexpr int kind = P.first[0].kind;
    index = offsets.pair_offset2[kind][kind][p] + PairNumber(rank(kind, first[0]), rank(kind, first[1]));
  } else if constexpr (P.first_count == 2) {
    constexpr int x = P.first[0].kind, y = P.first[1].kind;
    index = offsets.pair_offset2[x][y][p] + std::uint64_t(rank(x, first[0])) * UsableBeside(y, m3, o3) +
            std::uint64_t(rank(y, first[1]));
  }
  for (int i = 0; i < P.first_count; ++i) placed.Add(first[i], P.first[i].pawn);
  return PlaceRest<P>(index, placed, rest);
}

std::uint64_t ordinary_ranges[ENDING_COUNT + 1][2];

struct ManOnSquare {
  int square;
  int list;
  bool pawn;
};

bool Beside(int a, int b) { return (a >> 3) == (b >> 3) && ((a & 7) - (b & 7) == 1 || (b & 7) - (a & 7) == 1); }

// Entries for a pawn that has just stepped twice: after the ordinary ones, numbered by the king
// pair, which pawn captures which, and the third man if there is one. False if the position has
// no such capture.
template <IndexPlan P>
bool EnPassantIndex(int m, int o, int ep, const int (&first)[2], const int (&rest)[2], std::uint64_t& index) {
  const int stepped = P.side == 0 ? ep - 8 : ep + 8, start = P.side == 0 ? ep + 8 : ep - 8;
  ManOnSquare men[3] = {};
  for (int i = 0; i < P.first_count; ++i) men[i] = {first[i], P.first[i].list, P.first[i].pawn};
  for (int i = 0; i < P.rest_count; ++i) men[P.first_count + i] = {rest[i], P.rest[i].list, P.rest[i].pawn};
  int capturer = -1, victim = -1;
  for (int i = 0; i < P.men_count; ++i) {
    if (!men[i].pawn) continue;
    if (men[i].list != P.side && men[i].square == stepped && victim < 0) victim = i;
    const bool lower = capturer < 0 || men[i].square < men[capturer].square;
    if (men[i].list == P.side && Beside(men[i].square, stepped) && lower) capturer = i;
  }
  if (capturer < 0 || victim < 0) return false;
  const int file = stepped & 7, capturer_square = men[capturer].square;
  const int capture = file == 0 ? 0 : 2 * file - 1 + int((capturer_square & 7) > file);
  std::uint64_t third = 0, third_range = 1;
  for (int i = 0; i < P.men_count; ++i) {
    if (i == capturer || i == victim) continue;
    // A third pawn keeps off the two pawns, the square passed and the start; a piece off kings and pawns.
    const int s = men[i].square;
    const int taken[4] = {capturer_square, stepped, men[i].pawn ? ep : m, men[i].pawn ? start : o};
    int n = men[i].pawn ? s - 8 : s;
    for (int t : taken) n -= t < s;
    third = std::uint64_t(n);
    third_range = men[i].pawn ? EP_THIRD_PAWN_SQUARES : EP_THIRD_PIECE_SQUARES;
  }
  const std::uint64_t p = std::uint64_t(KK_PAWN[m][o]);
  index = ordinary_ranges[P.id][P.side] + (p * EP_CAPTURES + std::uint64_t(capture)) * third_range + third;
  return true;
}

template <IndexPlan P>
std::uint64_t PlanIndex(const TB_PIECE_LIST& strong, const TB_PIECE_LIST& weak, int ep_square, bool invert) {
  const TB_PIECE_LIST* lists[2] = {&strong, &weak};
  const int mover_king = lists[P.side]->squares[TB_KING_SLOT];
  const int other_king = lists[1 - P.side]->squares[TB_KING_SLOT];
  const Normaliser norm =
      P.pawns ? PawnNormaliser(mover_king, invert) : PawnlessNormaliser(mover_king, other_king);
  const int m = norm(mover_king), o = norm(other_king);
  int first[2] = {0, 0}, rest[2] = {0, 0};
  for (int i = 0; i < P.first_count; ++i) first[i] = norm(lists[P.first[i].list]->squares[P.first[i].slot]);
  for (int i = 0; i < P.rest_count; ++i) rest[i] = norm(lists[P.rest[i].list]->squares[P.rest[i].slot]);
  if constexpr (P.ep) {
    std::uint64_t index = 0;
    if (ep_square != TB_NO_EP_SQUARE && EnPassantIndex<P>(m, o, norm(ep_square), first, rest, index)) return index;
  }
  if constexpr (P.pawns) return OrdinaryIndex<P>(PAWN_OFFSETS, KK_PAWN, m, o, first, rest);
  return OrdinaryIndex<P>(PAWNLESS_OFFSETS, KK_PAWNLESS, m, o, first, rest);
}

template <std::size_t... I>
constexpr std::array<IndexFunction, sizeof...(I)> MakeFunctions(std::index_sequence<I...>) {
  return {&PlanIndex<MakePlan(int(I / 2), int(I % 2))>...};
}

constexpr std::array<IndexFunction, 2 * (ENDING_COUNT + 1)> INDEX_FUNCTIONS =
    MakeFunctions(std::make_index_sequence<2 * (ENDING_COUNT + 1)>());

// The ordinary range: the offsets' total for the first men, times what each further man multiplies.
std::uint64_t ComputeOrdinaryRange(const IndexPlan& plan) {
  const int pairs = plan.pawns ? PAWN_KING_PAIRS : PAWNLESS_KING_PAIRS;
  auto total = [&](auto& offsets) -> std::uint64_t {
    if (plan.first_count == 0) return std::uint64_t(pairs);
    const int x = plan.first[0].kind;
    if (plan.first_count == 1) return offsets.pair_offset[x][pairs];
    return offsets.pair_offset2[x][plan.first[1].kind][pairs];
  };
  std::uint64_t range = plan.pawns ? total(PAWN_OFFSETS) : total(PAWNLESS_OFFSETS);
  int men = plan.first_count, pawns = 0;
  for (int i = 0; i < plan.first_count; ++i) pawns += plan.first[i].pawn;
  const bool pair = plan.rest_count == 2 && SameKind(plan.rest[0], plan.rest[1]);
  for (int i = 0; i < plan.rest_count; i += pair ? 2 : 1) {
    const std::uint64_t left = plan.rest[i].pawn ? PAWN_SQUARES - pawns : PIECE_SQUARES - men;
    range *= pair ? Pairs(left) : left;
    men += pair ? 2 : 1;
    pawns += plan.rest[i].pawn ? (pair ? 2 : 1) : 0;
  }
  return range;
}

std::uint64_t EnPassantRange(const IndexPlan& plan) {
  if (!plan.ep) return 0;
  std::uint64_t third = 1;
  if (plan.men_count == 3) {
    // The third man is the one left after a pawn of each side.
    int pawns = 0;
    for (int i = 0; i < plan.first_count; ++i) pawns += plan.first[i].pawn;
    for (int i = 0; i < plan.rest_count; ++i) pawns += plan.rest[i].pawn;
    third = pawns == 3 ? EP_THIRD_PAWN_SQUARES : EP_THIRD_PIECE_SQUARES;
  }
  return std::uint64_t(PAWN_KING_PAIRS) * EP_CAPTURES * third;
}

bool InitRanges() {
  InitIndexTables();
  for (int id = 0; id <= ENDING_COUNT; ++id) {
    for (int side = 0; side < 2; ++side) ordinary_ranges[id][side] = ComputeOrdinaryRange(MakePlan(id, side));
  }
  return true;
}

[[maybe_unused]] const bool ranges_ready = InitRanges();

}  // namespace

IndexFunction IndexFunctionFor(int id, int side) { return INDEX_FUNCTIONS[std::size_t(2 * id + side)]; }

std::uint64_t OrdinaryRange(int id, int side) { return ordinary_ranges[id][side]; }

std::uint64_t FullRange(int id, int side) {
  return ordinary_ranges[id][side] + EnPassantRange(MakePlan(id, side));
}

}  // namespace NalimovTablebases
