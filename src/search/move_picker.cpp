#include "search/move_picker.h"

#include <algorithm>

#include "board/random.h"
#include "board/static_exchange.h"
#include "search/quiescence.h"
#include "settings/search_settings.h"

const OrderTable ORDER_MIDDLEGAME = {
  {8, 16, 8, 6, 10, 0},
  {
    {  // pawn
        0,   0,   0,   0,   0,   0,   0,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
        4,   8,  12,  21,  21,  12,   8,   4,
        8,   0,  20,  44,  44,  19,   0,   8,
       12,   6,  24,  64,  64,  24,   6,  12,
       26,  20,  40,  80,  80,  40,  20,  26,
      200, 200, 200, 200, 200, 200, 200, 200,
        0,   0,   0,   0,   0,   0,   0,   0,
    },
    {  // knight
        0,   0,   8,  12,  12,   8,   0,   0,
        4,   8,  12,  22,  22,  12,   8,   4,
        8,  12,  28,  28,  28,  30,  26,   8,
       12,  16,  32,  54,  54,  32,  32,  12,
       14,  36,  36,  60,  60,  34,  36,  14,
        8,  50,  50,  64,  64,  50,  50,   8,
        4,  58,  70,  56,  56,  70,  58,   4,
        0,   0,   1,   2,   2,   1,   0,   0,
    },
    {  // bishop
        0,   2,   8,  12,  12,   8,   2,   0,
        4,  27,  22,  22,  22,  22,  27,   4,
        8,  12,  28,  34,  34,  30,  26,   8,
       12,  24,  38,  44,  44,  38,  24,  12,
       10,  25,  34,  40,  40,  34,  25,  10,
       10,  20,  32,  36,  36,  32,  20,  10,
        4,  16,  23,  28,  28,  23,  16,   4,
        0,   0,   1,   2,   2,   1,   0,   0,
    },
    {  // rook
        0,   0,   8,  10,  10,   8,   0,   0,
        0,   0,   6,   8,   8,   6,   0,   0,
        0,   0,   0,   4,   4,   0,   0,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
       20,  20,  20,  20,  20,  20,  20,  20,
        5,   5,   5,   5,   5,   5,   5,   5,
    },
    {  // queen
        0,   0,   0,   4,   0,   0,   0,   0,
        0,   2,   8,   6,   6,   4,   2,   0,
        0,   4,   6,   8,   8,   6,   4,   0,
        0,   4,   8,   9,   9,   8,   6,   0,
        0,   4,   6,  10,  10,   8,   6,  10,
        2,   6,  10,  10,  10,  10,   6,   2,
        4,   8,  12,  12,  12,  12,   8,   4,
        6,  10,  10,  10,  10,  10,  10,   6,
    },
    {  // king
       38,  30,  20,   0,   2,  11,  30,  24,
       16,  12,   6,   0,   0,   0,  12,  16,
        0,   0,   0,   0,   0,   0,   0,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
    },
  },
};

const OrderTable ORDER_ENDGAME = {
  {0, 8, 8, 6, 16, 8},
  {
    {  // pawn
        0,   0,   0,   0,   0,   0,   0,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
       10,  10,  10,  10,  10,  10,  10,  10,
       20,  20,  20,  20,  20,  20,  20,  20,
       40,  40,  40,  40,  40,  40,  40,  40,
      100, 100, 100, 100, 100, 100, 100, 100,
      200, 200, 200, 200, 200, 200, 200, 200,
        0,   0,   0,   0,   0,   0,   0,   0,
    },
    {  // knight
        0,   0,   0,   0,   0,   0,   0,   0,
        0,   4,  14,  16,  16,  14,   0,   0,
        0,  10,  24,  26,  26,  24,  10,   0,
        0,  26,  34,  40,  40,  34,  26,   0,
        0,  26,  36,  44,  44,  36,  26,   0,
        0,  16,  30,  36,  36,  30,  16,   0,
        0,   4,   8,  12,  12,   8,   4,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
    },
    {  // bishop
        0,   0,   0,   0,   0,   0,   0,   0,
        0,   6,  13,  16,  16,  13,   6,   0,
        3,  12,  22,  24,  24,  22,  12,   3,
        4,  15,  24,  30,  30,  24,  15,   4,
        4,  15,  24,  30,  30,  24,  15,   4,
        3,  12,  22,  24,  24,  22,  12,   3,
        0,   4,  13,  16,  16,  13,   4,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
    },
    {  // rook
        0,   0,   1,   2,   2,   1,   0,   0,
        0,   0,   1,   2,   2,   1,   0,   0,
        0,   0,   1,   2,   2,   1,   0,   0,
        0,   0,   1,   2,   2,   1,   0,   0,
        0,   0,   1,   2,   2,   1,   0,   0,
        0,   0,   1,   2,   2,   1,   0,   0,
        8,  10,  10,  10,  10,  10,  10,   8,
        2,   4,   4,   4,   4,   4,   4,   2,
    },
    {  // queen
        0,   0,   1,   3,   3,   1,   0,   0,
        0,   2,   4,   6,   6,   4,   2,   0,
        0,   4,   8,  10,  10,   8,   4,   0,
        3,   8,  10,  14,  14,  10,   8,   3,
        3,   8,  11,  14,  14,  11,   8,   3,
        2,   6,   9,  12,  12,   9,   6,   2,
        0,   3,   6,   8,   8,   6,   3,   0,
        0,   0,   1,   1,   1,   1,   0,   0,
    },
    {  // king
        0,   0,   0,   2,   2,   0,   0,   0,
        0,   6,  10,  13,  13,  10,   6,   0,
        1,  10,  20,  22,  22,  20,  10,   1,
        1,  16,  24,  30,  30,  24,  16,   1,
        2,  18,  26,  32,  32,  26,  18,   2,
        2,  17,  24,  28,  28,  24,  17,   2,
        0,   8,  12,  16,  16,  12,   8,   0,
        0,   0,   0,   0,   0,   0,   0,   0,
    },
  },
};

static int CheckKind(Move move) { return int((move >> 21) & 3); }

static int CheckBonus(Move move, int gamma) {
  return gamma > 31766 ? checking_move_sorting_bonus_if_playing_for_mate[CheckKind(move)]
                       : checking_move_sorting_bonus_if_not_playing_for_mate[CheckKind(move)];
}

// Turns a material gain into sort points: a steep bonus for big wins, a malus for losses.
static int GainBonus(int gain) {
  if (gain < -10) {
    return gain * material_loss_sorting_malus__multiplicator / material_loss_sorting_malus__divisor -
           material_loss_sorting_malus__minimum;
  }
  if (gain > very_promising_tactical_move_margin) {
    return gain * material_win_sorting_bonus__multiplicator / material_win_sorting_bonus__divisor +
           material_win_sorting_bonus__minimum;
  }
  return gain * material_quite_equal_sorting_bonus__multiplicator /
             material_quite_equal_sorting_bonus__divisor +
         material_quite_equal_sorting_bonus__minimum;
}

static int SafeQueenCheckBonus(int king_distance) {
  if (king_distance == 1) return safe_queen_check_very_close_to_king_sorting_bonus;
  if (king_distance == 2) return safe_queen_check_quite_close_to_king_sorting_bonus;
  return safe_queen_check_not_close_to_king_sorting_bonus;
}

int TacticalValue(const Board& board, Move move, int gamma) {
  int check = CheckKind(move);
  Square king = board.Enemy().king_square, to = MoveTo(move);
  int near_king = Tables.king_distance[king][to];
  PieceType promotion = MovePromotion(move);
  bool direct = (move & MOVE_DIRECT_CHECK) != 0;
  int base = tactical_moves_default_sorting_value + CheckBonus(move, gamma);
  int gain = 0;

  bool blind_underpromotion = promotion == ROOK || promotion == BISHOP || (promotion == KNIGHT && !direct);
  if (blind_underpromotion) {
    gain = PIECE_VALUE[promotion] - 1020;
  } else {
    if (promotion == QUEEN) gain = 920;
    if (promotion == KNIGHT) gain = 205;
    base += capture_move_sorting_bonus[MoveCaptured(move)];
    Bitboard involved = 0;
    int see = StaticExchange(board, move, involved);
    if (see > 0 || check < 2 || near_king <= 1) gain += see;
    if (check != 0) {
      if (see >= -10 && direct) {
        base += MoveMoved(move) == QUEEN ? SafeQueenCheckBonus(near_king) : safe_non_queen_check_sorting_bonus;
        gain += FollowUpGain(board, move);
      } else if (see >= -10 && check == 2) {
        gain += FollowUpGain(board, move);
      } else if (see < -10 && near_king > 1 && check >= 2) {
        gain += FollowUpGain(board, move);
      }
    }
  }
  int value = base + GainBonus(gain);
  return std::clamp(value, tactical_moves_minimum_sorting_value, 511);
}

void SortMoves(Move* first, Move* last) {
  for (int gap : {3, 1}) {
    for (Move* i = first + gap; i < last; ++i) {
      Move word = *i;
      Move* j = i;
      for (; j - gap >= first && *(j - gap) < word; j -= gap) *j = *(j - gap);
      *j = word;
    }
  }
}

Move SelectBest(Move* cursor, Move* end) {
  Move* best = cursor;
  for (Move* i = cursor + 1; i < end; ++i) {
    if (*i > *best) best = i;
  }
  std::swap(*best, *cursor);
  return *cursor;
}

static Move* Find(Move* first, Move* last, Move move) {
  for (Move* i = first; i < last; ++i) {
    if ((*i & MOVE_MASK) == move) return i;
  }
  return nullptr;
}

// Removes the hash move from T = [list, tactical_end) or Q = [tactical_end, end).
static void RemoveHashMove(MovePickerState& s, Move hash_move) {
  if (hash_move == 0) return;
  if (Move* in_t = Find(s.list, s.tactical_end, hash_move)) {
    std::swap(*in_t, *(s.tactical_end - 1));
    std::swap(*(s.tactical_end - 1), *(s.end - 1));
    --s.tactical_end;
    --s.end;
  } else if (Move* in_q = Find(s.tactical_end, s.end, hash_move)) {
    std::swap(*in_q, *(s.end - 1));
    --s.end;
  }
}

// Makes room at the end of region A and moves `killer` (in T behind A, or in Q) there.
static Move* AppendToPromising(MovePickerState& s, Move* killer) {
  Move* slot = s.promising_end;
  if (killer >= s.tactical_end) {  // from Q: via the first place of Q into the tactical region
    std::swap(*killer, *s.tactical_end);
    killer = s.tactical_end;
    ++s.tactical_end;
  }
  std::swap(*killer, *slot);
  ++s.promising_end;
  return slot;
}

// Moves the element at `from` to `to` (to <= from), shifting those in between up by one.
static void MoveUp(Move* to, Move* from) { std::rotate(to, from, from + 1); }

static void PlaceKillers(MovePickerState& s, KillerPair killers) {
  if (!enable_killer_heuristic_for_move_ordering) return;
  auto find_killer = [&](Move killer) -> Move* {
    if (killer == 0) return nullptr;
    return IsTactical(killer) ? Find(s.list, s.tactical_end, killer) : Find(s.tactical_end, s.end, killer);
  };
  if (Move* one = find_killer(killers.one)) {
    bool in_p = one < s.promising_end;
    if (in_p && if_killer1_is_promising_tactical_move_then_search_first) {
      MoveUp(s.list, one);
    } else {
      if (in_p) {  // take it out of P: it becomes the first move behind P
        std::rotate(one, one + 1, s.promising_end);
        one = --s.promising_end;
      }
      one = AppendToPromising(s, one);
      int size_p = int(s.promising_end - s.list) - 1;
      MoveUp(s.list + std::min(size_p, max_promising_tacticals_before_killer_one), one);
    }
  }
  if (Move* two = find_killer(killers.two)) {
    if (two >= s.promising_end) AppendToPromising(s, two);
  }
}

// The first region: tacticals to the front with their values, the hash move out, the promising
// ones sorted at the very front, and the killers placed among them.
static void BuildPromisingRegion(MovePickerState& s, const PickerContext& c) {
  s.eager = c.node_type == -1 || c.hash_move != 0 || s.end - s.list < 7;
  s.tactical_end = s.list;
  for (Move* i = s.list; i < s.end; ++i) {
    if (!IsTactical(*i)) continue;
    *i = WithSortValue(*i, TacticalValue(c.board, *i & MOVE_MASK, c.gamma));
    std::swap(*i, *s.tactical_end++);
  }
  RemoveHashMove(s, c.hash_move);
  s.promising_end = s.list;
  for (Move* i = s.list; i < s.tactical_end; ++i) {
    if (SortValueOf(*i) >= promising_move_minimum_sorting_value) std::swap(*i, *s.promising_end++);
  }
  SortMoves(s.list, s.promising_end);
  PlaceKillers(s, c.killers);
}

// Gives the quiet moves with a history count their value and gathers them at the front of Q.
static void PartitionHistory(MovePickerState& s, const PickerContext& c) {
  if (s.history_partitioned) return;
  s.history_partitioned = true;
  s.history_end = s.tactical_end;
  Color side = c.board.side_to_move;
  for (Move* i = s.tactical_end; i < s.end; ++i) {
    int value = c.history.HistoryValue(*i & MOVE_MASK, side, c.board.ply);
    if (value <= 0) continue;
    *i = WithSortValue(*i, std::max(value >> 7, 1));
    std::swap(*i, *s.history_end++);
  }
  SortMoves(s.tactical_end, s.history_end);
}

static bool HistoryBeforeTacticals(const PickerContext& c) {
  if (!enable_best_history_moves_before_remaining_tacticals) return false;
  if (max_history_moves_before_remaining_tacticals == 0) return false;
  if (search_all_tacticals_first_if_playing_for_mate && c.gamma > 31766) return false;
  if (max_material_margin_to_search_history_moves_before_tacticals == 32767000) return false;
  int margin = c.gamma - c.board.State().material - QUIESCENCE_MARGIN[c.position_type];
  return margin <= max_material_margin_to_search_history_moves_before_tacticals;
}

// Optionally the best history moves go in front of the remaining tacticals, as a region of their own.
static void HistoryRegion(MovePickerState& s, const PickerContext& c, MoveRegion& region) {
  region = {s.promising_end, s.promising_end, true, false};
  if (!HistoryBeforeTacticals(c)) return;
  PartitionHistory(s, c);
  int n = std::min(int(s.history_end - s.tactical_end), max_promising_tacticals_before_killer_one);
  std::rotate(s.promising_end, s.tactical_end, s.tactical_end + n);
  region.last = s.promising_end + n;
  s.promising_end += n;
  s.tactical_end += n;
}

static int StaticOrderValue(const Board& board, Move move, int position_type) {
  const OrderTable& table = position_type <= 1 ? ORDER_MIDDLEGAME : ORDER_ENDGAME;
  int mirror = board.side_to_move == WHITE ? 0 : 56;
  int piece = MoveMoved(move) - 1;
  int value = 50;
  if (randomize_move_ordering_of_remaining_moves != 0) {
    value += int(Random30() & 0xffff) % randomize_move_ordering_of_remaining_moves;
  }
  if (enable_static_move_ordering_piece_dependent_bonus) value += table.piece_bonus[piece];
  if (enable_static_move_ordering_to_sq_bonus) value += table.squares[piece][MoveTo(move) ^ mirror];
  if (enable_static_move_ordering_from_sq_malus) value -= table.squares[piece][MoveFrom(move) ^ mirror] / 2;
  return value;
}

// The static value for the moves without history.
static void ScoreRemaining(MovePickerState& s, const PickerContext& c) {
  if (!enable_static_move_ordering_from_sq_malus && !enable_static_move_ordering_to_sq_bonus &&
      !enable_static_move_ordering_piece_dependent_bonus && randomize_move_ordering_of_remaining_moves == 0) {
    return;
  }
  for (Move* i = s.history_end; i < s.end; ++i) {
    int value = StaticOrderValue(c.board, *i & MOVE_MASK, c.position_type);
    *i = value > 0 ? WithSortValue(*i, std::min(value, 511)) : (*i & MOVE_MASK);
  }
}

void MovePicker(MovePickerState& s, const PickerContext& c, MoveRegion& region) {
  region = {s.end, s.end, true, true};
  while (s.stage <= 4) {
    switch (s.stage++) {
      case 0:
        BuildPromisingRegion(s, c);
        region = {s.list, s.promising_end, true, false};
        break;
      case 1:
        HistoryRegion(s, c, region);
        break;
      case 2:
        SortMoves(s.promising_end, s.tactical_end);
        region = {s.promising_end, s.tactical_end, true, false};
        break;
      case 3:
        PartitionHistory(s, c);
        region = {s.tactical_end, s.history_end, true, false};
        break;
      case 4:
        ScoreRemaining(s, c);
        if (s.eager) {
          SortMoves(s.history_end, s.end);
          region = {s.list, s.end, true, true};
        } else {
          region = {s.history_end, s.end, false, true};
        }
        return;
    }
    if (!s.eager && region.first != region.last) return;
  }
}

Move* ScoreQuiescenceMoves(Move* list, Move* end, Move hash_move, KillerPair killers, int gamma,
                           const Board& board) {
  if (killers.one == hash_move) killers.one = 0;
  if (killers.two == hash_move) killers.two = 0;
  int need = gamma - board.State().material;
  for (Move* i = list; i < end;) {
    Move move = *i & MOVE_MASK;
    if (hash_move != 0 && move == hash_move) {
      std::swap(*i, *--end);
      continue;
    }
    int gain = 0;
    if (MoveCaptured(move) != NO_PIECE) gain = PIECE_VALUE[MoveCaptured(move)] - PIECE_VALUE[MoveMoved(move)] / 8;
    if (MovePromotion(move) != NO_PIECE) gain += PIECE_VALUE[MovePromotion(move)] - 100;
    int value = tactical_moves_minimum_sorting_value + CheckBonus(move, gamma) + GainBonus(gain);
    value += int(Random30() & 0xffff) % 10;
    if (gain >= need) value += wins_enough_material_to_reach_at_least_beta__quiescence;
    if (move == killers.one) value += killer1_bonus__quiescence;
    if (move == killers.two) value += killer2_bonus__quiescence;
    *i++ = WithSortValue(move, std::clamp(value, 0, 511));
  }
  return end;
}
