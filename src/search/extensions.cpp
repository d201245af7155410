#include "search/extensions.h"

#include "board/attacks.h"
#include "board/bitboard.h"
#include "search/move_picker.h"
#include "search/quiescence.h"
#include "search/search.h"
#include "search/search_tree.h"
#include "settings/search_settings.h"

namespace {

// Extra distance when the position type stays, and when it changes, by the new type.
constexpr int SAME_TYPE_EXTENSION[18] = {0, 0, 0, 0, 4, 5, 5, 5, 0, 0, -10, 5, 5, 0, -8, 10, -21, 0};
constexpr int NEW_TYPE_EXTENSION[18] = {0,  0,  32, 16,  128, 64, 64,   32,   32,
                                        -32, -192, 128, 128, 0, -128, 256, -384, 32};

// The full and limited measure of one setting.
int Measure(bool full, int full_value, int limited_value) { return full ? full_value : limited_value; }

bool IsEndgameType(int position_type) { return position_type != 0 && position_type != 1; }

int Iteration(const SearchTree& tree) { return tree.search != nullptr ? tree.search->iteration : 0; }

bool NoPin(const PinRecord& record) { return record.pinned_square < 0; }

// Whether a piece of `type` on `from` reaches `target` in the present position.
bool PieceAttacks(const Board& board, PieceType type, Color colour, Square from, Square target) {
  Bitboard attacks = 0;
  switch (type) {
    case PAWN: attacks = Tables.pawn_attacks[colour][from]; break;
    case KNIGHT: attacks = Tables.knight_attacks[from]; break;
    case BISHOP: attacks = board.BishopAttacks(from); break;
    case ROOK: attacks = board.RookAttacks(from); break;
    case QUEEN: attacks = board.QueenAttacks(from); break;
    case KING: attacks = Tables.king_attacks[from]; break;
    default: break;
  }
  return (attacks & SquareBit(target)) != 0;
}

// Whether a piece of `type` moves along the line between a and b.
bool SlidesBetween(PieceType type, Square a, Square b) {
  int d = Tables.direction[a][b];
  if (type == BISHOP) return IsDiagonalDirection(d);
  if (type == ROOK) return IsStraightDirection(d);
  return type == QUEEN && d != DIR_NONE;
}

bool IsSlider(PieceType type) { return type == BISHOP || type == ROOK || type == QUEEN; }

// The slider of `side` standing right behind `pinned` on the line from `king`; -1 if none.
Square SliderBehind(const Board& board, Square king, Square pinned, const BoardSide& side) {
  int d = Tables.direction[king][pinned];
  Bitboard sliders = IsStraightDirection(d) ? side.StraightSliders() : side.DiagonalSliders();
  Bitboard behind = board.LineAttacks(pinned, d) & Tables.rays[d - 1][pinned] & sliders;
  return behind ? FirstBit(behind) : -1;
}

// A pin made by an interposition against a check: the pinner, or -1.
Square InterpositionPinner(const Board& board, Move last, Move previous) {
  Color checker = board.side_to_move;
  Square king = board.sides[checker ^ 1].king_square;
  if (previous & MOVE_DIRECT_CHECK) {
    if (MoveMoved(previous) != KING) return MoveTo(previous);
    Square to = MoveTo(previous);
    return FileOf(to) == 6 ? to - 1 : to + 1;  // the rook that castled
  }
  // Purely discovered: the slider behind the interposed piece, on a line with the square left.
  Square interposed = MoveTo(last);
  if (Tables.direction[king][interposed] == DIR_NONE) return -1;
  Square pinner = SliderBehind(board, king, interposed, board.sides[checker]);
  if (pinner < 0 || !(Tables.queen_lines[MoveFrom(previous)] & SquareBit(pinner))) return -1;
  return pinner;
}

// No pin known: the last two moves may have created one.
int DetectNewPin(SearchTree& tree, PinRecord& record, Move last, Move previous) {
  const Board& board = tree.board;
  Color us = board.side_to_move;
  bool purely_discovered = (previous & MOVE_CHECK_FLAGS) == MOVE_DISCOVERED_CHECK;
  bool interposition = MoveGivesCheck(previous) && (MoveMoved(previous) >= BISHOP || purely_discovered) &&
                       MoveMoved(last) != KING && MoveCaptured(last) == NO_PIECE;
  if (interposition) {
    Square pinner = InterpositionPinner(board, last, previous);
    if (pinner < 0 || !PinIsReal(board, pinner, MoveTo(last), us)) return -3;
    record = PinRecord{std::int16_t(MoveTo(last)), std::int16_t(pinner), us};
    return 1;
  }
  // A slider has just moved onto a line with our king.
  Square to = MoveTo(last);
  PieceType moved = board.TypeOn(to);
  Square king = board.sides[us].king_square;
  if ((last & MOVE_DIRECT_CHECK) || !IsSlider(moved) || !SlidesBetween(moved, to, king)) return -3;
  Bitboard between = Tables.between[to][king];
  if (between & board.sides[us ^ 1].all) return -3;
  Bitboard ours = between & board.sides[us].all;
  if (PopCount(ours) != 1) return -3;
  Square pinned = FirstBit(ours);
  if (!PinIsReal(board, to, pinned, us ^ 1)) return -3;
  record = PinRecord{std::int16_t(pinned), std::int16_t(to), us ^ 1};
  return 1;
}

// The pinned side has moved: the pin goes on or ends.
int PinnedSideMoved(const Board& board, PinRecord& record, const PinRecord& known, Move last) {
  Square king = board.sides[board.side_to_move ^ 1].king_square;
  Square to = MoveTo(last);
  if (MoveMoved(last) == KING || to == known.pinner_square ||
      (Tables.between[known.pinner_square][king] & SquareBit(to))) {
    return -2;
  }
  record = known;
  return 0;
}

// The pinning side has moved: the pin may end, go on, or be tightened.
int PinnerSideMoved(const Board& board, PinRecord& record, const PinRecord& known, Move last) {
  Square king = board.sides[board.side_to_move].king_square;
  Square to = MoveTo(last);
  Square pinned = known.pinned_square;
  if (to == pinned) return -1;
  if (MoveFrom(last) == known.pinner_square) return -2;
  if (Tables.between[pinned][king] & SquareBit(to)) return -2;
  PieceType moved = board.TypeOn(to);
  Color mover = board.side_to_move ^ 1;
  if (Tables.between[known.pinner_square][pinned] & SquareBit(to)) {
    if (!IsSlider(moved) || !PieceAttacks(board, moved, mover, to, pinned)) return -2;
    record = known;
    record.pinner_square = std::int16_t(to);
    return 2;
  }
  record = known;
  return PieceAttacks(board, moved, mover, to, pinned) ? 2 : 0;
}

// The recapture rule: the same exchange value as the last capture, on the same square.
bool IsRecapture(const SearchTree& tree, Move move, int flags) {
  int ply = tree.board.ply;
  PieceType captured = MoveCaptured(move);
  if (ply < 1 || captured == NO_PIECE || captured < min_captured_piece_for_recapture_extension) return false;
  if (flags & NODE_NO_RECAPTURE_EXTENSION) return false;
  Move last = tree.line[ply - 1];
  if (EXCHANGE_POINTS[captured] != EXCHANGE_POINTS[MoveCaptured(last)]) return false;
  return !capture_and_recapture_must_be_on_the_same_sq || MoveTo(last) == MoveTo(move);
}

// The pawn bonuses: to the seventh always, to the sixth if no enemy pawn stands in front.
int PawnExtension(const Board& board, Move move, bool full, int position_type, int& kinds) {
  Square to = MoveTo(move);
  int rank = RankOf(to);
  Color us = board.side_to_move;
  bool endgame = IsEndgameType(position_type);
  if (rank == 1 || rank == 6) {
    kinds |= EXTEND_PAWN_7TH;
    return endgame ? Measure(full, full_passer_7th_rank_extension_bonus__endgame,
                             limited_passer_7th_rank_extension_bonus__endgame)
                   : Measure(full, full_passer_7th_rank_extension_bonus__non_endgame,
                             limited_passer_7th_rank_extension_bonus__non_endgame);
  }
  if (rank != 2 && rank != 5) return 0;
  if (passer_must_reach_6th_rank_by_non_capture_move && MoveCaptured(move) != NO_PIECE) return 0;
  if (rank != (us == WHITE ? 5 : 2)) return 0;
  if (Tables.front_span[us][to] & board.sides[us ^ 1].pawns) return 0;
  kinds |= EXTEND_PASSER_6TH;
  return endgame ? Measure(full, full_passer_6th_rank_extension_bonus__endgame,
                           limited_passer_6th_rank_extension_bonus__endgame)
                 : Measure(full, full_passer_6th_rank_extension_bonus__non_endgame,
                           limited_passer_6th_rank_extension_bonus__non_endgame);
}

// A rook reaching the seventh (either side's) while the enemy king is on its last two ranks.
bool RookToSeventh(const Board& board, Move move) {
  int to_rank = RankOf(MoveTo(move));
  int from_rank = RankOf(MoveFrom(move));
  if ((to_rank != 1 && to_rank != 6) || from_rank == 1 || from_rank == 6) return false;
  Color us = board.side_to_move;
  int king_rank = RankOf(board.sides[us ^ 1].king_square);
  return us == WHITE ? king_rank >= 6 : king_rank <= 1;
}

// The position type extension, only if the setting asks for it.
int PositionTypeExtension(SearchTree& tree, int distance, int node_type, int position_type, bool reached,
                          bool full) {
  int ply = tree.board.ply;
  if (!enable_position_type_dependent_search_extensions || ply < 1 || IsTactical(tree.line[ply - 1])) return 0;
  if (position_type < 0 || position_type > 17) return 0;
  int e = 0;
  if (tree.position_types[ply - 1] == position_type) {
    e = SAME_TYPE_EXTENSION[position_type];
  } else {
    tree.position_types[ply] = position_type;
    e = NEW_TYPE_EXTENSION[position_type];
    if (e > 0) {
      if (distance > (node_type == NODE_PV ? 384 : 512)) e += e / 2;
      if (node_type != NODE_PV) e /= 2;
    }
  }
  if (e > 0 && !reached) return 0;
  if (e > 0 && !full) e /= 4;
  return e;
}

}  // namespace

NodeExtensionResult NodeExtension(SearchTree& tree, int distance, int node_type, int position_type,
                                  int pin_code, int, int& threat_flags) {
  NodeExtensionResult result;
  int ply = tree.board.ply;
  bool pv = node_type == NODE_PV;
  int threshold = pv ? min_depth_for_search_extensions_if_searching_pv_move
                     : min_depth_for_search_extensions_if_not_searching_pv_move;
  bool reached = distance >= threshold;
  if (reached) {
    bool never_full = pv ? never_full_extension_in_quiescence_if_searching_pv_move
                         : never_full_extension_in_quiescence_if_not_searching_pv_move;
    int limit = Iteration(tree) * full_extension_root_depth_related_factor_multiplicator /
                    full_extension_root_depth_related_factor_divisor +
                full_extension_minimum_depth;
    bool full = !(distance <= 0 && never_full) && ply <= limit;
    result.full = full;
    if (threat_flags & THREAT_MATE) {
      result.delayed = Measure(full, full_mate_threat_extension_bonus, limited_mate_threat_extension_bonus);
      result.kinds |= EXTEND_MATE_THREAT;
    }
    if (threat_flags & THREAT_PERPETUAL) {
      result.delayed += Measure(full, full_perpetual_check_threat_extension_bonus,
                                limited_perpetual_check_threat_extension_bonus);
      result.kinds |= EXTEND_PERPETUAL;
    }
    if (threat_flags & THREAT_PIN) {
      result.kinds |= EXTEND_PIN;
      if (!always_assume_that_pin_threat_was_hashed && pin_code == 1) {
        result.delayed += Measure(full, full_pin_threat_extension_bonus__new_pin,
                                  limited_pin_threat_extension_bonus__new_pin);
      } else if (!always_assume_that_pin_threat_was_hashed && pin_code == 2) {
        result.delayed += Measure(full, full_pin_threat_extension_bonus__tightend_pin,
                                  limited_pin_threat_extension_bonus__tightend_pin);
      } else {
        result.delayed += Measure(full, full_pin_threat_extension_bonus__hashed_pin,
                                  limited_pin_threat_extension_bonus__hashed_pin);
      }
    }
    if (!(threat_flags & (THREAT_QUEEN_ATTACKED | THREAT_QUEEN_SAFE))) {
      threat_flags |= QueenIsAttacked(tree.board) ? THREAT_QUEEN_ATTACKED : THREAT_QUEEN_SAFE;
    }
    if (threat_flags & THREAT_QUEEN_ATTACKED) {
      result.kinds |= EXTEND_QUEEN_ATTACKED;
      result.delayed += Measure(full, full_queen_attacked_extension_bonus, limited_queen_attacked_extension_bonus);
    }
  }
  result.delayed += PositionTypeExtension(tree, distance, node_type, position_type, reached, result.full);
  int cap = Measure(result.full, full_delayed_extensions_bonus, limited_delayed_extensions_bonus);
  if (result.delayed > cap) result.delayed = cap;
  return result;
}

int MoveExtension(const SearchTree& tree, Move move, int flags, int threat_flags, const NodeExtensionResult& node,
                  int& kinds) {
  const Board& board = tree.board;
  bool full = node.full;
  kinds = node.kinds & ~EXTEND_MOVE_BITS;
  int instant = 0;
  switch (move & MOVE_CHECK_FLAGS) {
    case MOVE_DIRECT_CHECK:
      instant = Measure(full, full_simple_check_extension_bonus, limited_simple_check_extension_bonus);
      kinds |= EXTEND_DIRECT_CHECK;
      break;
    case MOVE_DISCOVERED_CHECK:
      instant = Measure(full, full_discovered_check_extension_bonus, limited_discovered_check_extension_bonus);
      kinds |= EXTEND_DISCOVERED_CHECK;
      break;
    case MOVE_CHECK_FLAGS:
      instant = Measure(full, full_double_check_extension_bonus, limited_double_check_extension_bonus);
      kinds |= EXTEND_DOUBLE_CHECK;
      break;
    default: break;
  }
  if (IsRecapture(tree, move, flags)) {
    instant += Measure(full, full_recapture_extension_bonus, limited_recapture_extension_bonus);
    kinds |= EXTEND_RECAPTURE;
  }
  PieceType moved = MoveMoved(move);
  if (moved == PAWN) instant += PawnExtension(board, move, full, tree.position_types[board.ply], kinds);
  if (moved == ROOK && RookToSeventh(board, move)) {
    instant += Measure(full, full_rook_on_7th_rank_extension_bonus, limited_rook_on_7th_rank_extension_bonus);
    kinds |= EXTEND_ROOK_7TH;
  }
  if (threat_flags & THREAT_SINGLE_MOVE) {
    instant += Measure(full, full_single_move_extension_bonus, limited_single_move_extension_bonus);
    kinds |= EXTEND_SINGLE_REPLY;
  }
  int instant_cap = Measure(full, full_instant_extensions_bonus, limited_instant_extensions_bonus);
  int total_cap = Measure(full, full_total_extensions_bonus, limited_total_extensions_bonus);
  int total = (instant < instant_cap ? instant : instant_cap) + node.delayed;
  return total < total_cap ? total : total_cap;
}

bool QueenIsAttacked(const Board& board) { return QueenUnderAttack(board); }

bool PinIsReal(const Board& board, Square pinner, Square pinned, Color side) {
  PieceType by = board.TypeOn(pinner);
  switch (board.TypeOn(pinned)) {
    case KNIGHT: return true;
    case BISHOP:
      return by == ROOK || (by == QUEEN && (Tables.rook_lines[pinned] & SquareBit(pinner)));
    case ROOK:
      return by == BISHOP || (by == QUEEN && (Tables.bishop_lines[pinned] & SquareBit(pinner)));
    case QUEEN:
      // Against a rook or bishop the pin costs the queen only if the pinner can be taken for free.
      return by != QUEEN && (Attackers(board, pinner) & board.sides[side].all) == 0;
    default: return false;
  }
}

void DetectRootPin(SearchTree& tree) {
  for (PinRecord& record : tree.pin_records) record = PinRecord{};
  const Board& board = tree.board;
  Square best = -1;
  Color best_colour = WHITE;
  for (Color c = WHITE; c <= BLACK; ++c) {
    const BoardSide& own = board.sides[c];
    for (Bitboard b = Blockers(board, own.king_square, own.all, board.sides[c ^ 1], ~Bitboard{0}); b;) {
      Square s = PopFirstBit(b);
      bool better = best < 0 || board.TypeOn(s) > board.TypeOn(best) ||
                    (board.TypeOn(s) == board.TypeOn(best) && s < best);
      if (better) {
        best = s;
        best_colour = c;
      }
    }
  }
  if (best < 0) return;
  Square pinner = SliderBehind(board, board.sides[best_colour].king_square, best, board.sides[best_colour ^ 1]);
  if (pinner < 0) return;
  tree.pin_records[0] = PinRecord{std::int16_t(best), std::int16_t(pinner), best_colour ^ 1};
}

int DetectPinThreat(SearchTree& tree, Move last, Move previous) {
  int ply = tree.board.ply;
  if (ply < 1) return -3;
  PinRecord& record = tree.pin_records[ply];
  const PinRecord& known = tree.pin_records[ply - 1];
  if (last == 0) {
    record = known;
    return -3;
  }
  record.pinned_square = -1;
  if (NoPin(known)) return DetectNewPin(tree, record, last, previous);
  if (known.pinner_side == tree.board.side_to_move) return PinnedSideMoved(tree.board, record, known, last);
  return PinnerSideMoved(tree.board, record, known, last);
}

bool PinIsThreat(const SearchTree& tree, int pin_code) {
  const PinRecord& record = tree.pin_records[tree.board.ply];
  if (pin_code <= 0 || NoPin(record)) return false;
  if (pin_code == 2 && !consider_only_winning_pins_as_threats) return true;
  const Board& board = tree.board;
  return EXCHANGE_POINTS[board.TypeOn(record.pinned_square)] > EXCHANGE_POINTS[board.TypeOn(record.pinner_square)];
}

bool DetectPerpetualCheck(SearchTree& tree) {
  const Board& board = tree.board;
  int ply = board.ply;
  PerpetualRecord& record = tree.perpetual_records[ply];
  Square king = board.Own().king_square;
  record.found = 0;
  record.king_square = std::int16_t(king);
  record.material = board.State().material;
  record.guards = Tables.king_attacks[king] & board.Own().all;
  record.count = std::uint16_t(ply >= 2 ? tree.perpetual_records[ply - 2].count + 1 : 1);
  int count = record.count;
  if (count < 2) return false;
  int first = ply + 2 * (1 - count);
  if (first < 0) return false;
  const PerpetualRecord& start = tree.perpetual_records[first];
  int need = 2;
  int gained = record.material - start.material;
  if (gained >= 500) {
    need = 4;
  } else if (gained >= 315) {
    need = 3;
  }
  if (count < need) return false;
  int d = Tables.king_distance[king][start.king_square];
  int guards = PopCount(record.guards);
  if (d >= 2) {
    need += d >= 4 ? 2 : 1;
  } else if (guards >= 2 && (start.guards == 0 || PopCount(start.guards) < guards - 1)) {
    need += 1;
  }
  if (need > count) return false;
  record.found = 1;
  return true;
}
