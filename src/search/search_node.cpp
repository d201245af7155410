// The node function: entry tests, hash table, endgame databases, threats, stand pat, enhanced
// transposition cutoff, null move, pruning set-up, internal iterative deepening and the move loop.
#include <algorithm>

#include "board/bitboard.h"
#include "evaluation/evaluation.h"
#include "evaluation/position_type.h"
#include "hash/hash.h"
#include "search/move_picker.h"
#include "search/quiescence.h"
#include "search/search.h"
#include "search/search_tree.h"
#include "settings/search_settings.h"
#include "tablebases/tablebase_probe.h"

namespace {

constexpr int MATE = 32767;
constexpr int MATE_RANGE = 31766;

// The pieces on the back rank at the start, by file.
constexpr PieceType BACK_RANK_START[8] = {ROOK, KNIGHT, BISHOP, QUEEN, KING, BISHOP, KNIGHT, ROOK};

enum class GenerateResult { NORMAL, SINGLE, NO_LEGAL_MOVE };
enum class Stage { HASH_MOVE, GENERATE, PICK, LAST, DONE };

// The locals of one node, shared by the steps below.
struct Node {
  SearchTree& tree;
  Board& board;
  int ply;
  int gamma;
  int distance;
  int node_type;
  int flags;
  int type = 0;  // this node's PositionType
  int threat = 0;
  bool in_check = false;
  Move hash_move = 0;
  // The move list, once generated: [list, end). Children write from `child_list` on.
  Move* list;
  Move* end = nullptr;
  bool generated = false;
  bool ettc_thinned = false;
  int pin_code = -3;
  NodeExtensionResult extension;
  int razor_reduction = 0;
  bool futile = false;
  int futility_base = 0;
  bool history_pruning = false;

  int Yes() const { return gamma; }
  int No() const { return gamma - 1; }
  int Answer(bool yes) const { return yes ? gamma : gamma - 1; }
  Move* ChildList() const { return generated ? end : list; }
  bool IsPv() const { return node_type == NODE_PV; }
};

bool IsQueenCheck(Move move) { return MoveMoved(move) == QUEEN && MoveGivesCheck(move); }

// Below the distance for checks, quiescence still follows a line of queen checks that counts as
// perpetual, as long as a draw would be welcome.
bool FollowsQueenCheckLine(const Node& n) {
  const SearchTree& tree = n.tree;
  if (n.ply < 2 || tree.perpetual_records[n.ply - 1].found == 0) return false;
  return IsQueenCheck(tree.line[n.ply - 2]) && n.distance >= PERPETUAL_LINE_FLOOR && n.gamma >= tree.DrawValue();
}

// The position type after the move that led here, without a hash entry.
int InheritedPositionType(const Node& n, int parent_type) {
  if (n.ply == 0) return parent_type;
  Move last = n.tree.line[n.ply - 1];
  if (last == 0) return parent_type;
  if (MoveCaptured(last) != NO_PIECE || MovePromotion(last) != NO_PIECE) {
    return ClassifyPosition(n.board, parent_type);
  }
  if (parent_type != POSITION_OPENING) return parent_type;
  Square from = MoveFrom(last);
  int back_rank = n.board.side_to_move == WHITE ? 7 : 0;  // the mover's back rank
  PieceType moved = MoveMoved(last);
  bool leaves_start = RankOf(from) == back_rank && moved != QUEEN && BACK_RANK_START[FileOf(from)] == moved;
  return leaves_start ? ClassifyPosition(n.board, parent_type) : POSITION_OPENING;
}

// Stores a lower bound (cutoff) or an upper bound of the node's value.
void StoreBound(const Node& n, int score, Move move, bool lower_bound) {
  if (n.distance < required_distance_to_store_hashtables) return;
  HASH_ENTRY entry{};
  entry.key = n.board.Key();
  int stored = ScoreToHash(score, n.ply);
  if (lower_bound) {
    entry.lower = std::int16_t(stored);
    entry.upper = HASH_NO_UPPER;
    entry.lower_depth = std::int16_t(n.distance);
    entry.upper_depth = HASH_NO_DEPTH;
  } else {
    entry.lower = HASH_NO_LOWER;
    entry.upper = std::int16_t(stored);
    entry.lower_depth = HASH_NO_DEPTH;
    entry.upper_depth = std::int16_t(n.distance);
  }
  entry.word = MakeHashWord(move, lower_bound, n.type, n.threat & THREAT_HASHED);
  TranspositionTable.StoreEntry(entry);
}

// What a node does at a cutoff: killers, history and the hash entry.
void RecordCutoff(Node& n, Move move) {
  UpdateKillers(n.tree.killers[n.ply], move);
  if (!(no_history_bonus_for_tactical_moves && IsTactical(move))) {
    n.tree.history->UpdateHistory(move, n.board.side_to_move, n.distance, n.ply);
  }
  StoreBound(n, n.gamma, move, true);
}

// Generates the node's list: the quiescence set, or all moves with mate and stalemate found.
GenerateResult GenerateNodeMoves(Node& n, int& answer) {
  n.generated = true;
  if (n.distance <= 0 && !n.in_check) {
    int mask = GenerationSet(n.distance, n.gamma, FollowsQueenCheckLine(n));
    n.end = mask == 0 ? n.list : GenerateMoves(n.list, n.board, mask);
    return GenerateResult::NORMAL;
  }
  n.end = GenerateMoves(n.list, n.board, GEN_ALL);
  if (n.end == n.list) {
    int value = n.in_check ? n.ply - MATE : n.tree.DrawValue();
    answer = n.Answer(n.gamma <= value);
    return GenerateResult::NO_LEGAL_MOVE;
  }
  return n.end - n.list == 1 ? GenerateResult::SINGLE : GenerateResult::NORMAL;
}

// The bitbases, for kings and pawns, from ply 3 on. A win or a draw answers. A loss carries no
// distance, so it only refutes a gamma above it; below, the node searches on, and the tablebases
// may still place the mate.
bool ProbeBitbasesAtNode(const Node& n, int& answer) {
  int r = 0;
  if (ProbeBitbases(n.board, r) != BB_FOUND) return false;
  if (r == 0) {
    answer = n.Answer(n.gamma <= n.tree.DrawValue());
  } else if (r > 0) {
    answer = n.Answer(n.gamma <= r - n.ply + 1);
  } else {
    if (n.gamma <= r + n.ply) return false;
    answer = n.No();
  }
  return true;
}

bool HasNoPawns(const Board& board, Color c) { return board.sides[c].pawns == 0; }
bool EitherSideHasNoPawns(const Board& board) { return HasNoPawns(board, WHITE) || HasNoPawns(board, BLACK); }

// The side with pieces in an ending of one piece against pawns.
Color PieceOwner(const Board& board) {
  const BoardSide& white = board.sides[WHITE];
  return white.minor_units + white.major_units > 0 ? WHITE : BLACK;
}

// A pawn of colour one step from promotion.
bool PawnAboutToPromote(const Board& board, Color c) {
  return (board.sides[c].pawns & RankMask(c == WHITE ? 6 : 1)) != 0;
}

// The cost of a tablebase probe is bounded by distance: deep nodes may probe more men than shallow
// ones, and each type has the piece counts whose tables are worth reading. Returns false where the
// node doesn't probe at all.
bool TablebasePieceBounds(const Node& n, int& minimum, int& maximum) {
  const Board& board = n.board;
  const bool pv = n.IsPv();
  const int d = n.distance;
  const Move last = n.ply > 0 ? n.tree.line[n.ply - 1] : 0;
  const bool capture_or_promotion = MoveCaptured(last) != NO_PIECE || MovePromotion(last) != NO_PIECE;
  minimum = 0;
  maximum = 6;
  if (n.ply <= 2 || (capture_or_promotion && (pv || d > 895))) return true;
  switch (n.type) {
    case POSITION_ROOK_ENDING:
    case POSITION_QUEEN_ENDING:
      minimum = 5;
      maximum = EitherSideHasNoPawns(board) ? 5 : 6;
      return d > (pv ? 320 : 384) || n.ply <= 3;
    case POSITION_KNIGHT_KNIGHT:
    case POSITION_SAME_BISHOPS:
    case POSITION_OPPOSITE_BISHOPS:
      minimum = 6;
      return d > (pv ? 448 : 576) && EitherSideHasNoPawns(board);
    case POSITION_LONE_KNIGHT:
    case POSITION_LONE_BISHOP:
    case POSITION_LONE_ROOK: {
      const Color owner = PieceOwner(board);
      return d > (pv ? 448 : 576) && HasNoPawns(board, owner) && !HasNoPawns(board, owner ^ 1);
    }
    case POSITION_LONE_QUEEN: {
      const Color owner = PieceOwner(board);
      return d > (pv ? 384 : 512) && HasNoPawns(board, owner) && PawnAboutToPromote(board, owner ^ 1);
    }
    case POSITION_PAWN_ENDING:
      maximum = EitherSideHasNoPawns(board) ? 3 : d > (pv ? 384 : 512) ? 6 : 4;
      return true;
    default:
      return false;
  }
}

// The tablebases, within the node's budget of pieces.
bool ProbeEndgameDatabases(const Node& n, int& answer) {
  int minimum = 0, maximum = 0;
  if (!TablebasePieceBounds(n, minimum, maximum)) return false;
  const int pieces = PopCount(n.board.occupied);
  if (pieces < minimum || pieces > maximum) return false;
  int r = 0;
  if (ProbeTablebases(n.board, r) != TB_FOUND) return false;
  const int value = r == 0 ? n.tree.DrawValue() : r > 0 ? r + 1 - n.ply : r + n.ply;
  answer = n.Answer(n.gamma <= value);
  return true;
}

// A pin that the last two moves created is a threat: less pruning here or at the next ply.
void DetectPin(Node& n) {
  if (!enable_pin_threat_detection || n.ply <= 1) return;
  n.pin_code = DetectPinThreat(n.tree, n.tree.line[n.ply - 1], n.tree.line[n.ply - 2]);
  bool threat = (n.threat & THREAT_PIN) != 0 || (n.pin_code > 0 && PinIsThreat(n.tree, n.pin_code));
  if (!threat) return;
  n.threat |= THREAT_PIN;
  if (skip_pruning_at_the_next_ply_because_of_pin_threat) {
    n.flags |= 0xb00;
  } else if (skip_pruning_at_this_ply_because_of_pin_threat) {
    n.flags |= 0x58;
  }
}

// A series of queen checks against the side to move may be a perpetual check.
void DetectPerpetual(Node& n) {
  if (!n.in_check || !enable_perpetual_check_detection) return;
  const Move* line = n.tree.line;
  bool queen_checks = n.ply >= 3 && IsQueenCheck(line[n.ply - 1]) && IsQueenCheck(line[n.ply - 3]);
  if (!(n.flags & NODE_NO_PERPETUAL_TEST) && queen_checks) {
    if (DetectPerpetualCheck(n.tree)) {
      n.threat |= THREAT_PERPETUAL;
      n.flags |= 0x300;
    }
  } else {
    n.tree.perpetual_records[n.ply] = PerpetualRecord{};
  }
}

// Stand pat: whether the static evaluation alone answers yes.
bool StandPat(Node& n) {
  if (n.in_check) return false;
  bool allowed = n.distance <= 0 ||
                 (n.distance <= max_distance_for_stand_pat_checks &&
                  (!no_stand_pat_check_if_full_searching_simple_endgames || IsSimpleEndgame(n.type)));
  if (!allowed || (n.threat & THREAT_MATE)) return false;
  if (skip_stand_pat_because_of_pin_threat && (n.threat & THREAT_PIN)) return false;
  return n.gamma <= Evaluate(n.tree.evaluator, n.board, n.gamma, n.type);
}

// When the enhanced transposition cutoff is worth trying.
bool EttcAllowed(const Node& n) {
  return enable_ettc && (n.type > 1 || !only_use_ettc_in_endgames) && min_distance_for_ettc < n.distance &&
         n.distance <= max_distance_for_ettc && (n.node_type == NODE_CUT || !only_use_ettc_on_cut_nodes) &&
         n.gamma >= -MATE_RANGE && n.gamma <= MATE_RANGE &&
         PopCount(n.board.occupied) <= max_pieces_left_for_ettc && !(n.flags & NODE_NO_ETTC) &&
         !(n.threat & (THREAT_PERPETUAL | THREAT_SINGLE_MOVE));
}

enum class EttcResult { CUTOFF, NO_CUTOFF, ANSWER };

// Asks the table about every child before searching any: a child known to fail low is a cutoff.
// The children's buckets are all requested from memory first, so that their latencies overlap.
EttcResult EttcProbe(Node& n, int& answer) {
  GenerateResult generated = GenerateNodeMoves(n, answer);
  if (generated == GenerateResult::NO_LEGAL_MOVE) return EttcResult::ANSWER;
  if (generated == GenerateResult::SINGLE) {
    n.hash_move = n.list[0];
    n.threat |= THREAT_SINGLE_MOVE;
    return EttcResult::NO_CUTOFF;
  }
  std::uint64_t keys[MAX_MOVES];
  for (Move* i = n.list; i < n.end; ++i) {
    keys[i - n.list] = n.board.KeyAfterMove(*i);
    TranspositionTable.Prefetch(keys[i - n.list]);
  }
  for (Move* i = n.list; i < n.end;) {
    Move move = *i;
    ++n.tree.local_nodes;
    Move child_move = 0;
    int child_type = 0, child_flags = 0;
    ProbeResult r = TranspositionTable.ProbeEntry(keys[i - n.list], n.ply + 1, n.distance - 64, 1 - n.gamma,
                                                  child_move, child_type, child_flags);
    if (r == PROBE_BELOW_GAMMA) {
      n.hash_move = move;
      if (child_move != 0 && n.ply + 1 < SEARCH_PLIES) UpdateKillers(n.tree.killers[n.ply + 1], child_move);
      return EttcResult::CUTOFF;
    }
    if (r == PROBE_AT_LEAST_GAMMA && ettc_should_remove_refuted_moves && move != n.hash_move) {
      *i = *--n.end;
      keys[i - n.list] = keys[n.end - n.list];
      n.ettc_thinned = true;
      continue;
    }
    ++i;
  }
  if (n.end == n.list) {
    answer = n.No();
    return EttcResult::ANSWER;
  }
  return EttcResult::NO_CUTOFF;
}

// When a null move is worth trying.
bool NullMoveWanted(const Node& n) {
  return !(n.flags & NODE_NO_NULL_MOVE) && !(n.threat & THREAT_ANY) && n.node_type != NODE_PV &&
         n.distance >= min_distance_for_null_move && min_ply_for_null_move <= n.ply &&
         n.ply <= max_ply_for_null_move && !n.in_check && NullMoveAllowed(n.type) &&
         !(skip_null_move_if_side_on_move_is_searching_for_mate && n.gamma > MATE_RANGE) &&
         !(skip_null_move_if_enemy_is_searching_for_mate && n.gamma < -MATE_RANGE) &&
         n.gamma <= n.board.State().material + maximum_material_margin_for_null_move;
}

int NullMoveChildFlags() {
  int flags = 0xc65;
  if (skip_enhanced_transposition_cutoff_if_searching_null_move) flags |= 0x02;
  if (skip_razoring_if_searching_null_move) flags |= 0x08;
  if (skip_extended_futility_pruning_if_searching_null_move) flags |= 0x10;
  if (skip_lmr_at_the_next_depth_if_searching_null_move) flags |= 0x80;
  if (skip_lmr_at_the_depth_after_the_next_if_searching_null_move) flags |= 0x1000;
  return flags;
}

// Null move: true if passing already keeps the value above gamma. Otherwise looks for a mate threat.
bool NullMoveCutoff(Node& n) {
  if (!NullMoveWanted(n)) return false;
  int reduction = n.distance >= null_move_reduction_critical_distance ? max_null_move_search_reduction
                                                                      : min_null_move_search_reduction;
  n.tree.line[n.ply] = 0;
  n.board.MakeNullMove();
  int v = SearchNode(n.tree, n.ChildList(), -n.gamma, n.distance - reduction, -n.node_type, n.type,
                     NullMoveChildFlags());
  if (v != -n.gamma) {
    n.board.UnmakeNullMove();
    return true;
  }
  if (n.distance >= min_distance_for_mate_threat_test && MateThreatTestAllowed(n.type)) {
    int d = maximum_distance_for_null_move_mate_threat_test;
    if (limit_distance_for_null_move_mate_threat_test) d = std::min(d, n.distance);
    int g = MATE - (n.ply + 2 * extend_if_mate_in_x_moves_threat);
    if (SearchNode(n.tree, n.ChildList(), g, d, -n.node_type, n.type, 0x7f) == g) n.threat |= THREAT_MATE;
  }
  n.board.UnmakeNullMove();
  return false;
}

// Razoring, futility and history pruning set up for the move loop.
void LimitedRazoring(Node& n) {
  bool enabled = n.IsPv() ? enable_limited_razoring_if_searching_pv_move
                          : enable_limited_razoring_if_not_searching_pv_move;
  if (!enabled || n.distance < min_distance_for_limited_razoring ||
      n.distance > max_distance_for_limited_razoring || (n.flags & NODE_NO_RAZORING)) {
    return;
  }
  if (skip_limited_razoring_if_searching_for_mate && n.gamma > MATE_RANGE) return;
  const BoardSide& enemy = n.board.Enemy();
  if (enemy.minor_units / 3 + enemy.major_units < minimum_enemy_pieces_left_for_limited_razoring) return;
  if (n.gamma <= n.board.State().material + limited_razoring_margin) return;
  int reduced = limited_razoring_reduction_independent_of_current_distance
                    ? limited_razoring_static_reduced_distance
                    : n.distance - limited_razoring_dynamic_reduction_factor;
  n.razor_reduction = n.distance - reduced;
  n.distance = reduced;
}

// The node is futile when its material plus `margin` stays below gamma: then only moves that gain
// enough to close the rest are searched.
void MarkFutileBelowGamma(Node& n, int margin) {
  const int base = n.board.State().material + margin;
  if (n.gamma > base) {
    n.futile = true;
    n.futility_base = base;
  }
}

void ExtendedFutility(Node& n) {
  bool enabled = n.IsPv() ? enable_extended_futility_pruning_if_searching_pv_move
                          : enable_extended_futility_pruning_if_not_searching_pv_move;
  if (!enabled || n.distance < min_distance_for_extended_futility_pruning ||
      n.distance > max_distance_for_extended_futility_pruning || (n.flags & NODE_NO_EXTENDED_FUTILITY)) {
    return;
  }
  if (skip_extended_futility_pruning_if_searching_for_mate && n.gamma > MATE_RANGE) return;
  MarkFutileBelowGamma(n, extended_futility_pruning_margin);
}

// Futility proper is the frontier's rule: a quiet move one ply from the quiescence can't make up the
// missing material. Above the frontier it gives way to extended futility, whose range starts where
// its own ends, so that the attacker's quiet moves after a sacrifice are searched for as long as
// they can still set up a mate. Moving the start of extended futility above
// `max_distance_for_futility_pruning` gives the whole upper limit back to this rule.
void Futility(Node& n, bool above_quiescence) {
  bool enabled = n.IsPv() ? enable_futility_pruning_if_searching_pv_move
                          : enable_futility_pruning_if_not_searching_pv_move;
  if (!enabled) return;
  if (above_quiescence && (n.distance > max_distance_for_futility_pruning ||
                           n.distance >= min_distance_for_extended_futility_pruning)) {
    return;
  }
  if (skip_futility_pruning_if_searching_for_mate && n.gamma > MATE_RANGE) return;
  MarkFutileBelowGamma(n, futility_pruning_margin);
}

void SelectivePruningSetUp(Node& n) {
  if (n.distance <= 0) {
    Futility(n, false);
    return;
  }
  if ((disable_selective_techniques_if_threats_exist && (n.threat & THREAT_ANY)) ||
      (disable_selective_techniques_if_searching_simple_endgames && IsSimpleEndgame(n.type))) {
    return;
  }
  LimitedRazoring(n);
  ExtendedFutility(n);
  Futility(n, true);
  n.history_pruning = n.distance > 0 && n.type <= POSITION_MIDDLEGAME && n.hash_move != 0 && !n.in_check &&
                      n.node_type != NODE_PV && !(n.flags & NODE_NO_HISTORY_PRUNING) &&
                      !(n.threat & THREAT_ANY);
}

bool InList(const Move* first, const Move* last, Move move) {
  for (const Move* i = first; i < last; ++i) {
    if ((*i & MOVE_MASK) == move) return true;
  }
  return false;
}

// Internal iterative deepening: without a hash move, a shallower search of the same node finds one. Returns false if
// the move it finds was already refuted by the enhanced transposition cutoff. The inner search must be strictly
// shallower: settings that would make it as deep or deeper (a threshold of 1 or less, a negative extra reduction)
// would otherwise call the same node again without end, so such a node goes without.
bool InternalIterativeDeepening(Node& n) {
  int min_depth = n.IsPv() ? min_depth_for_iid_if_searching_pv_move : min_depth_for_iid_if_not_searching_pv_move;
  if (n.hash_move != 0 || n.distance < min_depth) return true;
  int d = n.distance >= iid_critical_distance ? n.distance - iid_max_reduction : n.distance - iid_min_reduction;
  if (n.IsPv()) d -= iid_extra_reduction_if_not_searching_pv_move;
  d = std::max(d, 1);
  if (d >= n.distance) return true;
  int flags = 0x63 | n.flags;
  if (skip_razoring_if_doing_iid) flags |= 0x08;
  if (skip_extended_futility_pruning_if_doing_iid) flags |= 0x10;
  SearchNode(n.tree, n.ChildList(), n.gamma, d, n.node_type, n.type, flags);
  n.hash_move = n.tree.pv_table[n.ply][0];
  if (n.ettc_thinned && (n.hash_move == 0 || !InList(n.list, n.end, n.hash_move))) return false;
  return true;
}

// The move loop's source of moves: hash move, generation, the picker or the quiescence order.
struct MoveSource {
  Stage stage;
  MovePickerState picker;
  MoveRegion region;
  Move* cursor = nullptr;
  bool quiescence_order = false;
  bool scored = false;
  bool hash_searched = false;
  Move next = 0;               // the move whose child's key was worked out ahead
  std::uint64_t next_key = 0;  // and that key
};

enum class Next { MOVE, FINISH, ANSWER };

// Asks for the table entries of a child about to be searched. Its pawn entry is asked for only when
// the move changes the pawns (else it is the node's own), under the node's position type.
void PrefetchChild(const Node& n, Move move, std::uint64_t key) {
  PrefetchHashEntries(key);
  if (MoveMoved(move) == PAWN || MoveCaptured(move) == PAWN) {
    PawnHashTable.Prefetch(n.board.PawnKeyAfterMove(move), n.type);
  }
}

// The next move from the ordered list of the current region, or of the next one.
bool PickMove(Node& n, MoveSource& src, Move& move) {
  if (src.quiescence_order) {
    if (!src.scored) {
      n.end = ScoreQuiescenceMoves(n.list, n.end, n.hash_move, n.tree.killers[n.ply], n.gamma, n.board);
      // The few captures of a quiescence node: all their children's entries are asked for at once.
      for (const Move* m = n.list; m < n.end; ++m) {
        PrefetchChild(n, *m & MOVE_MASK, n.board.KeyAfterMove(*m & MOVE_MASK));
      }
      src.cursor = n.list;
      src.scored = true;
    }
    if (src.cursor >= n.end) return false;
    move = SelectBest(src.cursor++, n.end) & MOVE_MASK;
    return true;
  }
  while (src.cursor == src.region.last) {
    if (src.region.final) return false;
    PickerContext context{n.board,         n.distance, n.gamma, n.hash_move, n.node_type, n.tree.killers[n.ply],
                          *n.tree.history, n.type};
    MovePicker(src.picker, context, src.region);
    src.cursor = src.region.first;
  }
  move = (src.region.sorted ? *src.cursor : SelectBest(src.cursor, src.region.last)) & MOVE_MASK;
  ++src.cursor;
  // In a sorted region the move after this one is known: its entries arrive while this one is searched.
  if (src.region.sorted && src.cursor < src.region.last) {
    src.next = *src.cursor & MOVE_MASK;
    src.next_key = n.board.KeyAfterMove(src.next);
    PrefetchChild(n, src.next, src.next_key);
  }
  return true;
}

// The next move: the hash move, then the generated list.
Next NextMove(Node& n, MoveSource& src, Move& move, int& answer) {
  switch (src.stage) {
    case Stage::HASH_MOVE:
      move = n.hash_move;
      src.hash_searched = true;
      src.stage = (n.threat & THREAT_SINGLE_MOVE) ? Stage::DONE : Stage::GENERATE;
      return Next::MOVE;
    case Stage::GENERATE: {
      GenerateResult result = GenerateResult::NORMAL;
      if (!n.generated) {
        result = GenerateNodeMoves(n, answer);
        if (result == GenerateResult::NO_LEGAL_MOVE) return Next::ANSWER;
      }
      if (result == GenerateResult::SINGLE) {
        n.threat |= THREAT_SINGLE_MOVE;
        if (!enable_search_extensions && src.hash_searched) return Next::FINISH;
        move = n.list[0];
        src.stage = Stage::DONE;
        return Next::MOVE;
      }
      if (n.end == n.list) {
        answer = n.No();
        return Next::ANSWER;
      }
      src.stage = Stage::PICK;
      src.quiescence_order = n.distance <= 0 && !n.in_check;
      src.picker = MovePickerState(n.list, n.end);
      src.region = MoveRegion{n.list, n.list, true, false};
      src.cursor = n.list;
      [[fallthrough]];
    }
    case Stage::PICK:
      return PickMove(n, src, move) ? Next::MOVE : Next::FINISH;
    default:
      return Next::FINISH;
  }
}

// History and late move reductions of a move; returns false if history pruning drops it.
bool Reductions(const Node& n, Move move, int count, int kinds, int& reduction) {
  if (kinds == 0 && n.history_pruning && count > 10 && !IsTactical(move) &&
      n.tree.history->HistoryValue(move, n.board.side_to_move, n.ply) == 0) {
    if (enable_aggressive_history_pruning && n.distance >= 193 && n.distance <= 639) return false;
    reduction += 192;
  }
  if (skip_late_move_reduction_if_extended && kinds != 0) return true;
  if (enable_late_move_reduction && n.distance > 191 && !MoveGivesCheck(move) && !(n.flags & NODE_NO_LMR) &&
      count > 3 && !(n.threat & THREAT_ANY) && !n.in_check &&
      !(skip_late_move_reduction_if_in_principal_variation && n.IsPv())) {
    bool extended = enable_extended_late_move_reduction && n.distance > 319 && n.hash_move != 0 &&
                    IsTactical(n.hash_move) && count > 7 && !IsTactical(move);
    reduction += extended ? extended_late_move_reduction : standard_late_move_reduction;
  }
  return true;
}

// Futility: a move that can't bring gamma into reach at a futile node.
bool IsFutileMove(const Node& n, Move move) {
  if (!n.futile || MoveGivesCheck(move)) return false;
  int gain = PIECE_VALUE[MoveCaptured(move)];
  if (MovePromotion(move) != NO_PIECE) gain += PIECE_VALUE[MovePromotion(move)] - 100;
  return n.gamma > n.futility_base + gain;
}

int ChildFlags(int base, Move move) {
  int flags = base;
  if ((move & MOVE_CHECK_FLAGS) == MOVE_CHECK_FLAGS) flags |= NODE_NO_RECAPTURE_EXTENSION;
  if (MoveGivesCheck(move)) {
    if (skip_razoring_when_last_move_was_a_check) flags |= 0x100;
    if (skip_extended_futility_pruning_when_last_move_was_a_check) flags |= 0x200;
  }
  return flags;
}

// The move loop: yes at the first move that reaches gamma, else no with an upper bound stored.
int MoveLoop(Node& n) {
  int best = -MATE;
  Move best_move = 0;
  int count = 0;
  int child_base_flags = (n.flags & NEXT_PLY_FLAGS) >> NEXT_PLY_SHIFT;
  MoveSource src;
  src.stage = n.hash_move != 0 ? Stage::HASH_MOVE : Stage::GENERATE;
  for (;;) {
    Move move = 0;
    int answer = 0;
    Next next = NextMove(n, src, move, answer);
    if (next == Next::ANSWER) return answer;
    if (next == Next::FINISH) break;
    ++count;
    if (n.distance <= 0 && !n.in_check && !(n.threat & THREAT_SINGLE_MOVE) &&
        !(always_search_hash_move_in_quiescence && move == n.hash_move) &&
        !QuiescenceFilter(n.board, move, n.distance, n.gamma, n.type)) {
      continue;
    }
    PrefetchChild(n, move, move == src.next ? src.next_key : n.board.KeyAfterMove(move));
    int kinds = n.extension.kinds;
    int extended_distance = n.distance;
    if (enable_search_extensions) {
      extended_distance += MoveExtension(n.tree, move, n.flags, n.threat, n.extension, kinds);
    }
    if (IsFutileMove(n, move)) continue;
    int reduction = 0;
    if (!Reductions(n, move, count, kinds, reduction)) continue;
    extended_distance -= reduction;
    int total_reduction = n.razor_reduction + reduction;

    int child_flags = ChildFlags(child_base_flags, move);
    int child_type = count == 1 ? -n.node_type : NODE_CUT;
    int child_distance = extended_distance - 64;
    n.tree.line[n.ply] = move;
    n.board.MakeMove(move);
    int value = -SearchNode(n.tree, n.ChildList(), 1 - n.gamma, child_distance, child_type, n.type, child_flags);
    if (enable_verification_search && value >= n.gamma && total_reduction > 0) {
      int verify_type = n.IsPv() ? NODE_PV : NODE_ALL;
      value = -SearchNode(n.tree, n.ChildList(), 1 - n.gamma, child_distance + total_reduction, verify_type,
                          n.type, child_flags);
    }
    n.board.UnmakeMove(move);

    if (value > best) {
      best = value;
      n.tree.UpdatePv(n.ply, move);
    }
    if (n.gamma <= value) {
      RecordCutoff(n, move);
      return best;
    }
    best_move = move;
    if (n.node_type == NODE_CUT) n.node_type = NODE_ALL;
    if (src.stage == Stage::DONE) break;
  }
  if (best == -MATE) return n.No();
  StoreBound(n, best, best_move, false);
  return best;
}

}  // namespace

int SearchNode(SearchTree& tree, Move* list, int gamma, int distance, int node_type, int position_type,
               int flags) {
  Board& board = tree.board;
  Node n{tree, board, board.ply, gamma, distance, node_type, flags};
  n.list = list;
  const int ply = n.ply;

  // Entry.
  if (ply > 77) {
    tree.pv_table[ply][0] = 0;
    return n.No();
  }
  if (--tree.poll_countdown == 0) tree.search->PollFromTree();
  ++tree.local_nodes;
  tree.pv_table[ply][0] = 0;
  if ((ply & 7) == 0) tree.history->NewGroupGeneration(ply);
  if (gamma < ply - 32766) return n.Yes();
  if (gamma >= MATE - ply) return n.No();
  if (board.IsDraw()) return n.Answer(gamma <= tree.DrawValue());

  // Hash table.
  ProbeResult probe = PROBE_MISS;
  if (distance >= required_distance_to_probe_hashtables) {
    Move move = 0;
    int type = 0, threat = 0;
    probe = TranspositionTable.ProbeEntry(board.Key(), ply, distance, gamma, move, type, threat);
    if (probe == PROBE_AT_LEAST_GAMMA || probe == PROBE_BELOW_GAMMA) {
      tree.SetPvToSingleMove(ply, move);
      return n.Answer(probe == PROBE_AT_LEAST_GAMMA);
    }
    if (probe == PROBE_NO_CUTOFF) {
      n.hash_move = move;
      n.type = type;
      n.threat = threat & THREAT_HASHED;
    }
  }
  if (probe != PROBE_NO_CUTOFF) n.type = InheritedPositionType(n, position_type);

  // Endgame databases.
  int answer = 0;
  if (n.type >= POSITION_EQUAL_PIECES) {
    if (ply > 2 && ProbeBitbasesAtNode(n, answer)) return answer;
    if (ProbeEndgameDatabases(n, answer)) return answer;
  }

  // Threats before anything is searched.
  n.in_check = board.InCheck();
  DetectPin(n);
  DetectPerpetual(n);
  if (StandPat(n)) return n.Yes();

  // Enhanced transposition cutoff.
  if (EttcAllowed(n)) {
    EttcResult ettc = EttcProbe(n, answer);
    if (ettc == EttcResult::ANSWER) return answer;
    if (ettc == EttcResult::CUTOFF) {
      tree.SetPvToSingleMove(ply, n.hash_move);
      RecordCutoff(n, n.hash_move);
      return n.Yes();
    }
  }

  if (NullMoveCutoff(n)) return n.Yes();

  // Extensions of the node.
  tree.position_types[ply] = ply > 0 ? tree.position_types[ply - 1] : n.type;
  if (enable_search_extensions) {
    n.extension = NodeExtension(tree, n.distance, n.node_type, n.type, n.pin_code, n.flags, n.threat);
  }

  SelectivePruningSetUp(n);
  if (!InternalIterativeDeepening(n)) return n.No();
  return MoveLoop(n);
}

SearchTree::SearchTree(Search* owner) : history(std::make_unique<HistoryTable>()), search(owner) {
  for (KillerPair& k : killers) k = KillerPair{};
  for (Move& m : line) m = 0;
  for (int& t : position_types) t = 0;
  for (auto& row : pv_table) row[0] = 0;
}

void SearchTree::Reset(const Board& position) {
  board.CopyFrom(position);
  DetectRootPin(*this);
  poll_countdown = 100;
  local_nodes = 0;
  history->NewHistoryGeneration();
  for (PerpetualRecord& record : perpetual_records) record = PerpetualRecord{};
}

int SearchTree::DrawValue() const {
  int draw = search->draw_score;
  return (board.ply & 1) ? -draw : draw;
}

void SearchTree::UpdatePv(int ply, Move move) {
  Move* row = pv_table[ply];
  const Move* child = pv_table[ply + 1];
  row[0] = move;
  int i = 0;
  for (; ply + i + 2 < SEARCH_PLIES && child[i] != 0; ++i) row[i + 1] = child[i];
  row[i + 1] = 0;
}

void SearchTree::SetPvToSingleMove(int ply, Move move) {
  pv_table[ply][0] = move;
  if (move != 0) pv_table[ply][1] = 0;
}
