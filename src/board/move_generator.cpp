#include "board/move_generator.h"

#include "board/attacks.h"
#include "board/bitboard.h"
#include "frame/checked_assert.h"

namespace {

// What the generator knows about the position before it walks the pieces.
struct GenContext {
  const Board& board;
  const BoardSide& own;
  const BoardSide& enemy;
  int mask;
  bool in_check;
  Square king;          // K, the mover's king
  Square enemy_king;    // Q
  Bitboard targets;     // T
  Bitboard bishop_q;    // Bq
  Bitboard rook_q;      // Rq
  Bitboard queen_q;     // Aq
  Bitboard discoverers; // D
  Bitboard pinned;      // P
  Square checker;       // the single checker, if in check by one piece
};

inline Move Word(Square from, Square to, PieceType moved, PieceType captured) {
  return Move(from) | Move(to) << 6 | Move(moved) << 12 | Move(captured) << 15;
}

// The captured field of the move word by the piece on the target square (-6..6, offset by 6):
// one load instead of taking the type and shifting it for every move emitted.
constexpr Move CAPTURED_FIELD[13] = {6u << 15, 5u << 15, 4u << 15, 3u << 15, 2u << 15, 1u << 15, 0,
                                     1u << 15, 2u << 15, 3u << 15, 4u << 15, 5u << 15, 6u << 15};

// The move word of a piece of type `moved` from `from` to `to`, with whatever stands on `to`.
inline Move WordOnBoard(const Board& board, Square from, Square to, PieceType moved) {
  return Word(from, to, moved, NO_PIECE) | CAPTURED_FIELD[board.squares[to] + 6];
}

// The quiet or capturing targets wanted for their check class, when the mask doesn't ask for
// every move: direct only, discovered only, or both.
inline Bitboard CheckTargets(int mask, Bitboard direct, Bitboard discovered) {
  Bitboard result = 0;
  if (mask & GEN_DIRECT_CHECKS) result |= direct & ~discovered;
  if (mask & GEN_DISCOVERED_CHECKS) result |= discovered & ~direct;
  if (mask & GEN_DOUBLE_CHECKS) result |= direct & discovered;
  return result;
}

// The target filter shared by knights and sliders.
inline Bitboard Filter(const GenContext& g, Bitboard direct, Bitboard discovered) {
  if (g.in_check || (g.mask & GEN_QUIET)) return g.targets;
  return g.targets | (CheckTargets(g.mask, direct, discovered) & ~g.own.all);
}

inline Move* Emit(Move* list, const GenContext& g, Square from, Bitboard to_set, PieceType moved,
                  Bitboard direct, Bitboard discovered) {
  if ((direct | discovered) == 0) {  // most pieces give no check from any target
    while (to_set) {
      Square to = PopFirstBit(to_set);
      *list++ = WordOnBoard(g.board, from, to, moved);
    }
    return list;
  }
  while (to_set) {
    Square to = PopFirstBit(to_set);
    Move m = WordOnBoard(g.board, from, to, moved);
    if (direct & SquareBit(to)) m |= MOVE_DIRECT_CHECK;
    if (discovered & SquareBit(to)) m |= MOVE_DISCOVERED_CHECK;
    *list++ = m;
  }
  return list;
}

// The four promotions of one pawn arrival, as far as the mask wants them, queen first.
Move* EmitPromotions(Move* list, const GenContext& g, Move base, Square from, Square to, bool capture) {
  const Square q = g.enemy_king;
  bool line_check = false;
  Square x = to;
  if (g.queen_q & SquareBit(to)) {
    line_check = true;
  } else if ((g.queen_q & SquareBit(from)) && Tables.direction[from][q] == Tables.direction[to][from]) {
    line_check = true;
    x = from;
  }
  bool checks[6] = {};
  checks[QUEEN] = line_check;
  checks[ROOK] = line_check && (g.rook_q & SquareBit(x));
  checks[BISHOP] = line_check && (g.bishop_q & SquareBit(x));
  checks[KNIGHT] = (Tables.knight_attacks[q] & SquareBit(to)) != 0;

  const int mask = g.mask;
  const bool all = mask & (GEN_QUIET | GEN_UNDERPROMOTIONS);
  const bool queen = (mask & GEN_QUEEN_PROMOTIONS) || (capture && (mask & GEN_CAPTURES));
  const bool checking = (mask & GEN_DIRECT_CHECKS) ||
                        ((mask & GEN_DOUBLE_CHECKS) && (base & MOVE_DISCOVERED_CHECK));
  for (PieceType p : {QUEEN, ROOK, BISHOP, KNIGHT}) {
    if (all || (p == QUEEN && queen) || (checking && checks[p]))
      *list++ = base | Move(p) << 18 | (checks[p] ? MOVE_DIRECT_CHECK : 0);
  }
  return list;
}

// Whether K, with the two pawns f and c gone, sees a rook or queen of `sliders` along its rank.
inline bool RankPinTest(const Board& board, Square k, Square f, Square c, Bitboard sliders) {
  Bitboard occupancy = board.occupied & ~SquareBit(f) & ~SquareBit(c);
  return Tables.rank_attacks[k][(occupancy >> (k & 56)) & 255] & sliders;
}

// Whether c stands between k and a slider in `straight`/`diagonal` on a line other than a file.
inline bool RemovalUncovers(const Board& board, Square k, Square c, Bitboard straight, Bitboard diagonal) {
  int d = Tables.direction[k][c];
  if (d == DIR_NONE || IsFileDirection(d)) return false;
  Bitboard line = board.LineAttacks(c, d);
  return (line & SquareBit(k)) && (line & (IsStraightDirection(d) ? straight : diagonal));
}

inline bool OnSameLine(Square a, Square b, Square c) {
  int d = Tables.direction[a][b];
  return d != DIR_NONE && (Tables.direction[b][c] == d || Tables.direction[c][b] == d);
}

template <Color US>
Move* GenerateEnPassant(Move* list, const GenContext& g) {
  constexpr Color THEM = US ^ 1;
  const Board& b = g.board;
  const Square ep = b.plies[b.ply].ep_square;
  const Square c = US == WHITE ? ep - 8 : ep + 8;
  if (g.in_check && g.checker != c) return list;
  const Bitboard own_straight = g.own.StraightSliders(), own_diagonal = g.own.DiagonalSliders();
  const Bitboard enemy_straight = g.enemy.StraightSliders(), enemy_diagonal = g.enemy.DiagonalSliders();
  const bool removal_discovers =
      FileOf(c) != FileOf(g.enemy_king) && RemovalUncovers(b, g.enemy_king, c, own_straight, own_diagonal);
  if (FileOf(c) != FileOf(g.king) && RemovalUncovers(b, g.king, c, enemy_straight, enemy_diagonal)) return list;

  for (Bitboard candidates = Tables.pawn_attacks[THEM][ep] & g.own.pawns; candidates;) {
    const Square f = PopFirstBit(candidates);
    if (Tables.direction[g.king][f] != DIR_NONE) {
      if (RankOf(f) == RankOf(g.king)) {
        if (RankPinTest(b, g.king, f, c, enemy_straight)) continue;
      } else if ((g.pinned & SquareBit(f)) && !OnSameLine(g.king, f, ep)) {
        continue;
      }
    }
    Move m = Word(f, ep, PAWN, PAWN);
    const bool direct = Tables.pawn_attacks[THEM][g.enemy_king] & SquareBit(ep);
    const bool discovered =
        removal_discovers ||
        (RankOf(f) == RankOf(g.enemy_king) && RankPinTest(b, g.enemy_king, f, c, own_straight)) ||
        ((g.discoverers & SquareBit(f)) && !OnSameLine(g.enemy_king, f, ep));
    if (direct) m |= MOVE_DIRECT_CHECK;
    if (discovered) m |= MOVE_DISCOVERED_CHECK;
    const int wanted = direct && discovered ? GEN_DOUBLE_CHECKS
                       : direct             ? GEN_DIRECT_CHECKS
                       : discovered         ? GEN_DISCOVERED_CHECKS
                                            : 0;
    if (g.in_check || (g.mask & (GEN_CAPTURES | GEN_QUIET)) || (g.mask & wanted)) *list++ = m;
  }
  return list;
}

template <Color US>
Move* GeneratePawnMoves(Move* list, const GenContext& g) {
  constexpr Color THEM = US ^ 1;
  constexpr int UP = US == WHITE ? 8 : -8;
  constexpr Bitboard PROMOTION_RANK = US == WHITE ? RANK_8 : RANK_1;
  constexpr Bitboard DOUBLE_RANK = US == WHITE ? RankMask(2) : RankMask(5);
  auto up = [](Bitboard b) { return US == WHITE ? b << 8 : b >> 8; };
  const Board& b = g.board;
  const Bitboard pawns = g.own.pawns;
  const Bitboard direct_squares = Tables.pawn_attacks[THEM][g.enemy_king];
  const Bitboard promotion_wanted =
      (g.mask & (GEN_CHECKS | GEN_QUEEN_PROMOTIONS | GEN_UNDERPROMOTIONS)) ? PROMOTION_RANK : 0;
  const bool restricted = !g.in_check && !(g.mask & GEN_QUIET);

  // Pushes.
  const Bitboard pushers = pawns & ~(g.pinned & ~FileMask(FileOf(g.king)));
  const Bitboard discovering_pushers = g.discoverers & pawns & ~FileMask(FileOf(g.enemy_king));
  Bitboard single = up(pushers) & ~b.occupied;
  Bitboard twice = up(single & DOUBLE_RANK) & ~b.occupied;
  const Bitboard single_discovered = up(discovering_pushers);
  const Bitboard twice_discovered = up(up(discovering_pushers));
  if (g.in_check) {
    single &= g.targets;
    twice &= g.targets;
  } else if (restricted) {
    single &= promotion_wanted | CheckTargets(g.mask, direct_squares, single_discovered);
    twice &= CheckTargets(g.mask, direct_squares, twice_discovered);
  }
  for (Bitboard set = single; set;) {
    Square to = PopFirstBit(set);
    Square from = to - UP;
    Move m = Word(from, to, PAWN, NO_PIECE);
    if (single_discovered & SquareBit(to)) m |= MOVE_DISCOVERED_CHECK;
    if (SquareBit(to) & PROMOTION_RANK) {
      list = EmitPromotions(list, g, m, from, to, false);
    } else {
      if (direct_squares & SquareBit(to)) m |= MOVE_DIRECT_CHECK;
      *list++ = m;
    }
  }
  for (Bitboard set = twice; set;) {
    Square to = PopFirstBit(set);
    Move m = Word(to - 2 * UP, to, PAWN, NO_PIECE);
    if (twice_discovered & SquareBit(to)) m |= MOVE_DISCOVERED_CHECK;
    if (direct_squares & SquareBit(to)) m |= MOVE_DIRECT_CHECK;
    *list++ = m;
  }

  // Captures, first towards the a-file, then towards the h-file.
  if (g.in_check || (g.mask & (GEN_CAPTURES | GEN_CHECKS | GEN_QUEEN_PROMOTIONS | GEN_QUIET))) {
    for (int side = 0; side < 2; ++side) {
      // Towards the a-file: +7 for white (anti-diagonal), -9 for black (diagonal).
      const bool west = side == 0;
      const int step = US == WHITE ? (west ? 7 : 9) : (west ? -9 : -7);
      const bool anti = (US == WHITE) == west;
      const Bitboard pin_line = anti ? Tables.anti_attacks[g.king][0] : Tables.diag_attacks[g.king][0];
      const Bitboard movers = pawns & (west ? ~FILE_A : ~FILE_H) & ~(g.pinned & ~pin_line);
      auto shift = [step](Bitboard x) { return step > 0 ? x << step : x >> -step; };
      const Bitboard line_to_q = anti ? Tables.anti_attacks[g.enemy_king][0] : Tables.diag_attacks[g.enemy_king][0];
      // A capturer in D discovers unless the capture runs along its line to Q.
      const Bitboard discovered = shift(g.discoverers & movers & ~line_to_q);
      Bitboard set = shift(movers) & g.enemy.all;
      if (g.in_check) set &= g.targets;
      else if (restricted && !(g.mask & GEN_CAPTURES))
        set &= promotion_wanted | CheckTargets(g.mask, direct_squares, discovered);
      while (set) {
        Square to = PopFirstBit(set);
        Square from = to - step;
        Move m = Word(from, to, PAWN, TypeOf(b.squares[to]));
        if (discovered & SquareBit(to)) m |= MOVE_DISCOVERED_CHECK;
        if (SquareBit(to) & PROMOTION_RANK) {
          list = EmitPromotions(list, g, m, from, to, true);
        } else {
          if (direct_squares & SquareBit(to)) m |= MOVE_DIRECT_CHECK;
          *list++ = m;
        }
      }
    }
  }

  const Square ep = b.plies[b.ply].ep_square;
  if (ep && (Tables.pawn_attacks[THEM][ep] & pawns)) list = GenerateEnPassant<US>(list, g);
  return list;
}

template <PieceType TYPE>
Move* GenerateSliderMoves(Move* list, const GenContext& g, Bitboard pieces) {
  const Board& b = g.board;
  const Bitboard check_lines = TYPE == BISHOP ? g.bishop_q : TYPE == ROOK ? g.rook_q : g.queen_q;
  while (pieces) {
    Square from = PopFirstBit(pieces);
    Bitboard attacks;
    if (g.pinned & SquareBit(from)) {
      int d = Tables.direction[from][g.king];
      if ((TYPE == BISHOP && !IsDiagonalDirection(d)) || (TYPE == ROOK && !IsStraightDirection(d))) continue;
      attacks = b.LineAttacks(from, d);
    } else {
      attacks = TYPE == BISHOP ? b.BishopAttacks(from) : TYPE == ROOK ? b.RookAttacks(from) : b.QueenAttacks(from);
    }
    const Bitboard direct = attacks & check_lines;
    const Bitboard discovered =
        (g.discoverers & SquareBit(from)) ? attacks & ~b.LineAttacks(from, Tables.direction[from][g.enemy_king]) : 0;
    list = Emit(list, g, from, attacks & Filter(g, direct, discovered), TYPE, direct, discovered);
  }
  return list;
}

template <Color US>
Move* GenerateCastling(Move* list, const GenContext& g) {
  constexpr Color THEM = US ^ 1;
  constexpr Square E = US == WHITE ? 4 : 60;
  const Board& b = g.board;
  const int rights = b.plies[b.ply].castling;
  const Bitboard q = SquareBit(g.enemy_king);
  auto attacked = [&](Square s) {
    return (Tables.pawn_attacks[US][s] & g.enemy.pawns) || IsAttackedByPieces(b, s, g.enemy);
  };
  auto emit = [&](Move move, bool check) {
    if (g.mask & GEN_CASTLING) *list++ = move | (check ? MOVE_DIRECT_CHECK : 0);
    else if ((g.mask & GEN_DIRECT_CHECKS) && check) *list++ = move | MOVE_DIRECT_CHECK;
  };
  const bool rank_check = Tables.rank_attacks[E][(b.occupied >> (E & 56)) & 255] & q;
  if ((rights & (US == WHITE ? CASTLE_WHITE_SHORT : CASTLE_BLACK_SHORT)) &&
      !(b.occupied & (SquareBit(E + 1) | SquareBit(E + 2))) && !attacked(E + 1) && !attacked(E + 2)) {
    emit(US == WHITE ? CASTLE_WHITE_SHORT_MOVE : CASTLE_BLACK_SHORT_MOVE,
         rank_check || (b.FileAttacks(E + 1) & q));
  }
  if ((rights & (US == WHITE ? CASTLE_WHITE_LONG : CASTLE_BLACK_LONG)) &&
      !(b.occupied & (SquareBit(E - 1) | SquareBit(E - 2) | SquareBit(E - 3))) && !attacked(E - 1) &&
      !attacked(E - 2)) {
    emit(US == WHITE ? CASTLE_WHITE_LONG_MOVE : CASTLE_BLACK_LONG_MOVE,
         rank_check || (b.FileAttacks(E - 1) & q));
  }
  (void)THEM;
  return list;
}

template <Color US>
Move* GenerateKingMoves(Move* list, const GenContext& g, int d1, int d2) {
  const Board& b = g.board;
  const Square k = g.king;
  Bitboard set = Tables.king_attacks[k] & ~Tables.king_attacks[g.enemy_king];
  const bool discovering = g.discoverers & SquareBit(k);
  const int dq = Tables.direction[k][g.enemy_king];
  Bitboard off_line = 0;
  if (discovering) {
    for (Bitboard s = set; s;) {
      Square t = PopFirstBit(s);
      if (Tables.direction[k][t] != dq && Tables.direction[t][k] != dq) off_line |= SquareBit(t);
    }
  }
  if (g.in_check) set &= ~g.own.all;
  else if (!(g.mask & GEN_QUIET) && (g.mask & GEN_DISCOVERED_CHECKS)) set &= g.targets | (off_line & ~g.own.all);
  else set &= g.targets;
  while (set) {
    Square to = PopFirstBit(set);
    if (Tables.pawn_attacks[US][to] & g.enemy.pawns) continue;
    if (IsAttackedByPieces(b, to, g.enemy)) continue;
    if (g.in_check && (Tables.direction[k][to] == d1 || Tables.direction[k][to] == d2)) continue;
    Move m = Word(k, to, KING, TypeOf(b.squares[to]));
    if (off_line & SquareBit(to)) m |= MOVE_DISCOVERED_CHECK;
    *list++ = m;
  }
  return list;
}

template <Color US>
Move* Generate(Move* list, const Board& b, int mask) {
  constexpr Color THEM = US ^ 1;
  const BoardSide& own = b.sides[US];
  const BoardSide& enemy = b.sides[THEM];
  GenContext g{b, own, enemy, mask, b.plies[b.ply].in_check != 0, own.king_square, enemy.king_square,
               0, 0, 0, 0, 0, 0, -1};

  if (!g.in_check && (b.plies[b.ply].castling & CASTLE_RIGHTS_OF[US]) &&
      (mask & (GEN_CASTLING | GEN_DIRECT_CHECKS)))
    list = GenerateCastling<US>(list, g);

  int d1 = DIR_NONE, d2 = DIR_NONE;
  bool double_check = false;
  if (g.in_check) {
    Bitboard checkers = Attackers(b, g.king) & enemy.all;
    Square first = FirstBit(checkers);
    bool first_is_pawn = TypeOf(b.squares[first]) == PAWN;
    d1 = first_is_pawn ? DIR_NONE : Tables.direction[first][g.king];
    if (HasMoreThanOne(checkers)) {
      double_check = true;
      Square second = LastBit(checkers);
      d2 = TypeOf(b.squares[second]) == PAWN ? DIR_NONE : Tables.direction[second][g.king];
    } else {
      g.checker = first;
      g.targets = SquareBit(first);
      if (d1 != DIR_NONE) g.targets |= Tables.between[first][g.king];
    }
  } else {
    if (mask & GEN_QUIET) g.targets |= ~own.all;
    if (mask & GEN_CAPTURES) g.targets |= enemy.all;
  }

  g.bishop_q = b.BishopAttacks(g.enemy_king);
  g.rook_q = b.RookAttacks(g.enemy_king);
  g.queen_q = g.bishop_q | g.rook_q;
  g.discoverers = FindBlockers(b, g.queen_q & own.all, own, g.enemy_king);

  if (!double_check) {
    g.pinned = FindBlockers(b, b.QueenAttacks(g.king) & own.all, enemy, g.king);

    const Bitboard knight_checks = Tables.knight_attacks[g.enemy_king];
    for (Bitboard knights = own.knights & ~g.pinned; knights;) {
      Square from = PopFirstBit(knights);
      const Bitboard attacks = Tables.knight_attacks[from];
      const Bitboard direct = attacks & knight_checks;
      const Bitboard discovered = (g.discoverers & SquareBit(from)) ? attacks : 0;
      list = Emit(list, g, from, attacks & Filter(g, direct, discovered), KNIGHT, direct, discovered);
    }
    list = GenerateSliderMoves<BISHOP>(list, g, own.bishops);
    list = GenerateSliderMoves<ROOK>(list, g, own.rooks);
    list = GenerateSliderMoves<QUEEN>(list, g, own.queens);
    list = GeneratePawnMoves<US>(list, g);
  }
  return GenerateKingMoves<US>(list, g, d1, d2);
}

}  // namespace

Move* GenerateMoves(Move* list, const Board& board, int mask) {
  return board.side_to_move == WHITE ? Generate<WHITE>(list, board, mask) : Generate<BLACK>(list, board, mask);
}

void GenerateLegalMoves(const Board& board, std::vector<Move>& moves) {
  constexpr Move INVALID = MOVE_INVALID;
  Move buffer[MAX_MOVES + 1];
  buffer[MAX_MOVES] = INVALID;
  Move* end = GenerateMoves(buffer, board, GEN_ALL);
  const long NUM_MOVES = end - buffer;
  CHECKED_ASSERT(NUM_MOVES <= MAX_MOVES && buffer[MAX_MOVES] == INVALID, "move_generator",
                 "Increase the constant MAX_MOVES!");
  moves.assign(buffer, end);
}

bool IsLegalMove(const Board& board, Move move) {
  Move buffer[MAX_MOVES];
  Move* end = GenerateMoves(buffer, board, GEN_ALL);
  for (Move* m = buffer; m != end; ++m)
    if (*m == move) return true;
  return false;
}
