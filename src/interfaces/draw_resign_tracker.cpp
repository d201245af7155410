#include "interfaces/draw_resign_tracker.h"

#include <bit>
#include <cstdlib>

#include "board/board.h"
#include "tablebases/tablebase_probe.h"

namespace ZephrinInterfaces {

namespace {

constexpr int VERDICT_WINS = 0;
constexpr int VERDICT_LOSES_SOON = 1;
constexpr int VERDICT_LOSES_SLOWLY = 2;
constexpr int VERDICT_DRAW = 3;
constexpr int VERDICT_UNKNOWN = 4;

bool QueenOnBoard(const Board& position) { return (position.sides[WHITE].queens | position.sides[BLACK].queens) != 0; }

int Count(Bitboard set) { return std::popcount(set); }

// Grows a run while the condition holds, and ends it otherwise.
void Run(std::int32_t& counter, bool condition) { counter = condition ? counter + 1 : 0; }

}  // namespace

bool BelowResignThreshold(const Board& position, std::int32_t score, bool opponent_is_computer) {
  int base = opponent_is_computer ? -440 : -250;
  if (QueenOnBoard(position)) base -= 70;
  const int pawns = Count(position.sides[WHITE].pawns | position.sides[BLACK].pawns);
  const int others = Count(position.occupied) - pawns;
  int threshold = base;
  if (pawns <= 2 && others <= 8) threshold = base - (opponent_is_computer ? 600 : 200);
  return score <= threshold;
}

void DrawResignTracker::Reset() {
  const bool computer = opponent_is_computer;
  const std::int32_t kept_contempt = contempt;
  *this = DrawResignTracker();
  opponent_is_computer = computer;
  contempt = kept_contempt;
}

void DrawResignTracker::SetContempt(std::int32_t value) {
  if (value == contempt) return;
  contempt = value;
  Reset();
}

namespace {

// The tablebases' word on the position before the engine's move: a loss with the mate far off
// leaves the game to play on, as the opponent may yet go wrong. A queued probe keeps the verdict.
std::int32_t TablebaseVerdict(const Board& position, std::int32_t verdict) {
  int value = 0;
  switch (ProbeTablebases(position, value)) {
    case TB_FOUND:
      if (value == 0) return VERDICT_DRAW;
      if (value > 0) return VERDICT_WINS;
      return IsLongTablebaseResult(position) ? VERDICT_LOSES_SLOWLY : VERDICT_LOSES_SOON;
    case TB_QUEUED: return verdict;
    default: return VERDICT_UNKNOWN;
  }
}

}  // namespace

void DrawResignTracker::Update(const Board& position, std::int32_t score) {
  ++moves;
  ++moves_since_offer;
  if (score < -31767) {
    mate_distance = (score + 32766) / 2 + 1;
    mate_seen = last_score > score;
  } else {
    mate_distance = -1;
    mate_seen = false;
  }
  Run(falling, score < contempt - 14);
  Run(rising, score > contempt + 14);
  Run(same_score, score == contempt);
  Run(near_zero, std::abs(score) <= (QueenOnBoard(position) ? 17 : 25));
  Run(below_threshold, BelowResignThreshold(position, score, opponent_is_computer));
  tablebase_verdict = TablebaseVerdict(position, tablebase_verdict);
  last_score = score;
}

bool DrawResignTracker::ShouldResign() const {
  if (tablebase_verdict != VERDICT_UNKNOWN) return tablebase_verdict == VERDICT_LOSES_SOON;
  if (mate_seen && mate_distance <= (opponent_is_computer ? 10 : 4)) return true;
  if (!opponent_is_computer && mate_distance > 17) return false;
  return below_threshold >= (opponent_is_computer ? 5 : 6);
}

bool DrawResignTracker::ShouldAcceptDraw() const {
  if (moves_since_offer == 0 || below_threshold != 0 || same_score > 1 || falling > 5) return true;
  if (near_zero < 15) return false;
  return rising < 7;
}

bool DrawResignTracker::ShouldOfferDraw() const {
  if (tablebase_verdict == VERDICT_WINS || draw_offered || moves < 2) return false;
  if (!opponent_is_computer && moves_since_offer < 8) return false;
  if (same_score > 1) return true;
  if (near_zero < 15) return false;
  return rising < 7;
}

}  // namespace ZephrinInterfaces
