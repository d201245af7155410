#include "search/search.h"

#include <algorithm>
#include <cstdlib>

#include "board/attacks.h"
#include "board/move_generator.h"
#include "evaluation/evaluation_settings.h"
#include "evaluation/position_type.h"
#include "frame/control_exceptions.h"
#include "frame/main_loop.h"
#include "frame/tee_stream.h"
#include "hash/hash.h"
#include "interfaces/move_text.h"
#include "settings/search_settings.h"

namespace {

constexpr int MATE = 32767;
constexpr int MATE_RANGE = 31766;
constexpr int ITERATION_LIMIT = 80;  // so no more than 79 iterations ever run
constexpr std::int64_t PUZZLE_MS = 3000;
constexpr std::int64_t FIRST_ITERATION_QUIET_MS = 3000;

// The value of a line that ends in mate, from the root's side: the side that mates on the last ply
// wins in that many plies. Zero for a line that doesn't end in mate.
int MateValueOfLine(const Board& root, const std::vector<Move>& line) {
  Board copy(root);
  for (Move move : line) copy.MakeMove(move);
  Move moves[MAX_MOVES];
  if (!copy.InCheck() || GenerateMoves(moves, copy, GEN_ALL) != moves) return 0;
  const int plies = int(line.size());
  return (plies & 1) != 0 ? MATE - plies : plies - MATE;
}

// Where a line ends in a mate that its value doesn't show, the mated side's last move was only the
// first one tried at a node where every move failed, not its best defence. The line is cut before
// that move, so that what is shown never claims more than the value.
void CutUnprovenMate(const Board& root, std::vector<Move>& line, int value) {
  const int mate = MateValueOfLine(root, line);
  if (mate == 0 || mate == value || line.size() < 2) return;
  line.resize(line.size() - 2);
}

}  // namespace

bool BisectionSettled(int lower, int upper, int draw_score, int& value) {
  bool clear_of_draw_and_mates = (lower > draw_score + 1 && upper <= MATE_RANGE) ||
                                 (upper < draw_score - 1 && lower >= -MATE_RANGE);
  if (std::abs(lower - upper) > 20 || !clear_of_draw_and_mates) return false;
  value = std::max((lower + upper) / 2, lower);
  return true;
}

Search::Search() : tree(std::make_unique<SearchTree>(this)) { root_moves.reserve(MAX_MOVES); }

Search::~Search() = default;

void Search::ResetResults() {
  no_moves = root_moves.empty();
  move_count = moves_left = std::uint16_t(root_moves.size());
  depth = 0;
  nodes = 0;
  fail_state = FAIL_NONE;
  score = 0;
  current_move = 0;
  current_move_text = "invalid";
  best_move = 0;
  pv.clear();
  start_time = stop_time = ponder_hit_time = TimeStamp{};
  running = false;
}

void Search::BuildRootMoves() {
  root_moves.clear();
  std::vector<Move> moves;
  GenerateLegalMoves(game.Current(), moves);
  for (Move move : moves) {
    auto root_move = std::make_unique<RootMove>();
    root_move->move = move;
    root_move->text = ZephrinInterfaces::MoveToText(game.Current(), move);
    root_move->line.reserve(SEARCH_PLIES);
    root_move->line.push_back(move);
    root_moves.push_back(std::move(root_move));
  }
}

void Search::RunSearch(const SearchRequest& request, MainLoop* owner_loop) {
  if (request.game.IsFinished()) {
    root_moves.clear();
    ResetResults();
    owner = owner_loop;
    TellSearchFinished(true);
    return;
  }
  game = request.game;
  owner = owner_loop;
  BuildRootMoves();
  ResetResults();
  mode = request.type;
  max_depth = request.max_depth;
  max_time_limit = request.max_time_limit;
  variable_time_limit = request.variable_time_limit;
  IterativeDeepening();
}

void Search::IterativeDeepening() {
  Now(start_time);
  TranspositionTable.NewSearch();
  clock.Start(max_time_limit, variable_time_limit);
  tree->Reset(game.Current());
  root_position_type = ClassifyPosition(tree->board, NO_POSITION_TYPE);
  running = true;
  bool stopped_by_command = false;
  try {
    RunIterations();
    WaitForCommand();
  } catch (const search_aborted_exception& e) {
    stopped_by_command = e.stopped_by_command;
  }
  Finish(stopped_by_command);
}

void Search::RunIterations() {
  if (root_moves.empty()) return;
  int limit = max_depth != 0 && mode != SEARCH_ANALYZE ? std::min(max_depth, ITERATION_LIMIT - 1) + 1 : ITERATION_LIMIT;
  best_move = root_moves[0]->move;
  for (iteration = 1; iteration < limit; ++iteration) {
    SearchIteration();
    if (mode == SEARCH_NORMAL && clock.ShouldStop(ElapsedMs(), TIME_CHECK_ITERATION_END, fail_state)) break;
  }
}

void Search::SetCurrentMove(const RootMove& root_move) {
  current_move = root_move.move;
  current_move_text = root_move.text;
}

// One iteration: the value of the first move by bisection, then a test of every other move
// against it.
void Search::SearchIteration() {
  clock.StartIteration();
  moves_left = move_count;
  depth = std::uint16_t(iteration);
  ReportDepth();

  int guess = score;  // the best value so far, 0 before the first iteration
  SetCurrentMove(*root_moves[0]);
  searching_pv_move = true;
  score = SearchRootMove(*root_moves[0], -MATE, MATE, guess);
  best_move = root_moves[0]->move;
  --moves_left;
  RefreshPvText(root_moves[0]->line);
  ReportLine();
  searching_pv_move = false;

  int best_score = score;
  for (std::size_t i = 1; i < root_moves.size(); ++i) {
    SetCurrentMove(*root_moves[i]);
    TryToBeatBest(i, best_score);
    --moves_left;
    searching_pv_move = false;
  }
}

// Tests root move i against the best; a move that beats it goes to the front and is searched for
// its value, and if that search doesn't confirm it, the old best returns.
void Search::TryToBeatBest(std::size_t index, int& best) {
  if (!TestRootMove(*root_moves[index], best)) return;
  std::rotate(root_moves.begin(), root_moves.begin() + std::ptrdiff_t(index),
              root_moves.begin() + std::ptrdiff_t(index) + 1);
  RootMove& candidate = *root_moves[0];
  clock.best_changed = true;
  ReportNewBestMove(candidate.text);
  Move saved_best_move = best_move;
  std::vector<PvMove> saved_pv = pv;
  best_move = candidate.move;
  RefreshPvText(candidate.line);
  searching_pv_move = true;
  int value = SearchRootMove(candidate, best, MATE, best + 10);
  if (value <= best) {
    clock.unstable = true;
    ReportSearchInstability();
    std::swap(root_moves[0], root_moves[1]);
    best_move = saved_best_move;
    pv = std::move(saved_pv);
    return;
  }
  score = best = value;
  RefreshPvText(candidate.line);
  ReportLine();
}

int Search::SearchRootMove(RootMove& root_move, int lower, int upper, int guess) {
  int g = guess;
  const int a = std::abs(guess);
  const int margin = (a >> 3) + 25;
  const int draw = draw_score;
  int step = 100 / iteration + a / 10 + 25;
  int run = 0;
  for (;;) {
    if (lower > guess + margin) {
      fail_state = FAIL_HIGH;
      clock.failed_high = true;
    } else if (upper < guess - margin) {
      fail_state = FAIL_LOW;
      clock.failed_low = true;
    } else {
      fail_state = FAIL_NONE;
    }
    int settled = 0;
    if (BisectionSettled(lower, upper, draw, settled)) {
      CutUnprovenMate(tree->board, root_move.line, settled);
      clock.RecordScore(settled);
      return settled;
    }
    step = std::min(step, std::max(std::abs(lower - upper) >> 2, 1));
    clock.lower = lower;
    clock.upper = upper;

    RestorePv(root_move.line);
    int value = SearchRootChild(root_move.move, g);

    if (value == g) {  // at least g
      ExtractPv(root_move);
      lower = value;
      if (run > 1) {
        step += (run * step) / 10;
      } else if (run < 0) {
        step -= step / 2;
        run = 0;
      }
      ++run;
    } else {  // below g
      upper = value;
      if (searching_pv_move && upper < guess - margin) ReportUpperBound(upper);
      if (run < -1) {
        step += (-run * step) / 10;
      } else if (run > 0) {
        step -= step / 2;
        run = 0;
      }
      --run;
    }
    step = std::max(step, 1);
    g = value > lower ? value - step + 1 : value + step;
    g = std::min(g, upper);
    g = std::max(g, lower);
    if (lower > upper) {
      LogOnlySection log_only;
      Out << "error: lowerbound and upperbound crossed!\n"
          << "lowerbound=" << std::int32_t(lower) << ", upperbound=" << std::int32_t(upper) << "\n";
    }
    if (lower >= upper) {
      CutUnprovenMate(tree->board, root_move.line, value);
      clock.RecordScore(value);
      return value;
    }
  }
}

bool Search::TestRootMove(RootMove& root_move, int best) {
  RestorePv(root_move.line);
  fail_state = FAIL_NONE;
  int g = best + 1;
  // Mate scores of the root side are even and those against it odd: test only where one can lie.
  if (g > MATE_RANGE + 1 && (g & 1) != 0) g = best + 2;
  if (g < -(MATE_RANGE + 1) && (g & 1) == 0) g = g + 1;
  int value = SearchRootChild(root_move.move, g);
  if (value != g - 1) ExtractPv(root_move);
  return value != g - 1;
}

int Search::SearchRootChild(Move move, int g) {
  int distance = (iteration - 1) * root_distance_multiplier;
  int flags = skip_null_move_at_the_root ? 0x461 : 0x460;
  Board& board = tree->board;
  board.MakeMove(move);
  tree->line[0] = move;
  tree->position_types[0] = root_position_type;
  int v = SearchNode(*tree, tree->move_stack, 1 - g, distance, NODE_PV, root_position_type, flags);
  board.UnmakeMove(move);
  nodes += tree->local_nodes;
  tree->local_nodes = 0;
  tree->UpdatePv(0, move);
  return -v;
}

// The line of a root move is taken only from a probe that reached its gamma: that line is the
// proof of the value's lower bound. A probe that fails low leaves in the table the first reply
// tried at each node, which is no line at all, so the move keeps the line of its last success.
void Search::ExtractPv(RootMove& root_move) {
  Board copy(tree->board);
  root_move.line.clear();
  for (const Move* m = tree->pv_table[0]; *m != 0 && copy.ply < SEARCH_PLIES - 1; ++m) {
    if (!IsLegalMove(copy, *m)) break;  // a move of the table that doesn't fit: the line ends
    root_move.line.push_back(*m);
    copy.MakeMove(*m);
  }
  int type = NO_POSITION_TYPE;
  while (!copy.IsDraw() && copy.ply <= 78) {
    type = ClassifyPosition(copy, type);
    Move move = 0;
    int entry_type = 0, flags = 0;
    if (TranspositionTable.ProbeEntry(copy.Key(), copy.ply, 0, MATE, move, entry_type, flags) == PROBE_MISS) break;
    if (move == 0 || !IsLegalMove(copy, move)) break;
    root_move.line.push_back(move);
    copy.MakeMove(move);
  }
}

void Search::RestorePv(const std::vector<Move>& line) {
  Board copy(tree->board);
  int type = ClassifyPosition(copy, NO_POSITION_TYPE);
  Move moves[MAX_MOVES];
  for (std::size_t i = 0; i < line.size(); ++i) {
    Move move = line[i];
    if (i > 0) {
      Move stored = 0;
      int depth_found = 0;
      if (!TranspositionTable.ProbeMove(copy.Key(), stored, depth_found)) {
        bool single = GenerateMoves(moves, copy, GEN_ALL) - moves == 1;
        TranspositionTable.StoreEntry(
            MakePvEntry(copy.Key(), move, type, single, QueenUnderAttack(copy), false));
      }
    }
    copy.MakeMove(move);
    type = ClassifyPosition(copy, type);
  }
}

void Search::RefreshPvText(const std::vector<Move>& line) {
  pv.clear();
  UserBoard copy = game;
  for (Move move : line) {
    std::string text = ZephrinInterfaces::MoveToText(copy.Current(), move);
    try {
      copy.PlayMove(move);
    } catch (const UserBoard::invalid_move&) {
      LogOnlySection log_only;
      Out << "Illegal move detected: " << text << " (" << std::uint32_t(move) << ")\n";
      copy.Current().Display(true);
      return;
    }
    pv.push_back({move, text});
  }
}

std::int64_t Search::ElapsedMs() const {
  TimeStamp now;
  Now(now);
  std::int64_t elapsed = MillisecondsBetween(start_time, now);
  if (ponder_hit_time.valid) elapsed -= MillisecondsBetween(start_time, ponder_hit_time) * 3 / 10;
  return elapsed;
}

void Search::PollSearch(std::uint64_t* countdown) {
  std::int64_t elapsed = ElapsedMs();
  if (countdown != nullptr) {
    std::uint64_t rate = elapsed > 999 ? nodes / std::uint64_t(elapsed) * 1000 : nodes;
    *countdown = rate / 8 + 100;
    if (iteration == 1) {
      if (elapsed <= FIRST_ITERATION_QUIET_MS) return;
      if (mode == SEARCH_PUZZLE) throw search_aborted_exception{false};
    }
  }
  if (mode == SEARCH_PUZZLE) {
    if (elapsed > PUZZLE_MS) throw search_aborted_exception{false};
  } else {
    PollOwnerInput();
    if (mode != SEARCH_NORMAL && mode != SEARCH_PUZZLE) return;
  }
  TimeCheckKind kind = searching_pv_move ? TIME_CHECK_PV_MOVE : TIME_CHECK_OTHER_MOVE;
  if (clock.ShouldStop(elapsed, kind, fail_state)) throw search_aborted_exception{false};
}

void Search::PollFromTree() {
  nodes += tree->local_nodes;
  tree->local_nodes = 0;
  PollSearch(&tree->poll_countdown);
}

// Analysis and pondering don't end by themselves: only a command (or a ponder hit) ends them.
void Search::WaitForCommand() {
  while (mode == SEARCH_ANALYZE || mode == SEARCH_PONDERING) {
    if (owner == nullptr) return;  // nobody could ever send the command
    SleepMilliseconds(125);
    PollSearch(nullptr);
  }
}

void Search::Finish(bool stopped_by_command) {
  Now(stop_time);
  running = false;
  ShowSearchSummary();
  TellSearchFinished(stopped_by_command);
}

void Search::SetDrawScore(std::int32_t value) {
  if (value == draw_score) return;
  draw_score = value;
  EvalSettings.white_draw_score = std::int16_t(game.SideToMove() == BLACK ? -value : value);
  TranspositionTable.Clear();
  EvaluationHashTable.Clear();
}

void Search::PonderHit() {
  mode = SEARCH_NORMAL;
  Now(ponder_hit_time);
}

const ZephrinInterfaces::SearchReport& Search::Report() const {
  ZephrinInterfaces::SearchReport& report = report_;
  report.move_count = move_count;
  report.moves_left = moves_left;
  report.depth = depth;
  report.nodes = nodes;
  report.score = score;
  report.current_move_text = current_move_text;
  report.pv.clear();
  for (const PvMove& move : pv) report.pv.push_back(move.text);
  report.start_time = start_time;
  report.stop_time = stop_time;
  return report;
}

// The owner's side. Without an owner the search runs silent and reads nothing.

void Search::PollOwnerInput() {
  if (owner != nullptr) PollInput(*owner);
}

void Search::ReportDepth() {
  if (owner != nullptr) owner->game->Protocol().ReportDepth(depth);
}

void Search::ReportLine() {
  if (owner != nullptr) owner->game->Protocol().ReportLine(Report());
}

void Search::ReportUpperBound(int bound) {
  if (owner != nullptr) owner->game->Protocol().ReportUpperBound(depth, bound);
}

void Search::ReportNewBestMove(const std::string& text) {
  if (owner != nullptr) owner->game->Protocol().ReportNewBestMove(text);
}

void Search::ReportSearchInstability() {
  if (owner != nullptr) owner->game->Protocol().ReportSearchInstability();
}

void Search::ShowSearchSummary() {
  if (owner != nullptr) owner->game->Protocol().ShowSearchSummary(Report());
}

void Search::TellSearchFinished(bool stopped_by_command) {
  if (search_finished) search_finished(owner, stopped_by_command);
}
