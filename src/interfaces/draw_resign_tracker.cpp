#include "interfaces/draw_resign_tracker.h"

#include <cstdlib>

#include "board/bitboard.h"

namespace ZephrinInterfaces {

namespace {

constexpr std::int32_t MATED_BELOW = -31767;
constexpr std::int32_t MATE_IN_ZERO = 32766;
constexpr std::int32_t SCORE_BAND = 14;  // a score this close to the contempt neither rises nor falls

bool HasQueen(const Board& position) { return (position.sides[WHITE].queens | position.sides[BLACK].queens) != 0; }

// Counts a run: one more if the condition holds, else back to 0.
void Count(std::int32_t& run, bool condition) { run = condition ? run + 1 : 0; }

}  // namespace

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

bool DrawResignTracker::ReachesResignThreshold(const Board& position, std::int32_t score) const {
  std::int32_t base = opponent_is_computer ? -440 : -250;
  if (HasQueen(position)) base -= 70;
  const Bitboard pawns = position.sides[WHITE].pawns | position.sides[BLACK].pawns;
  const int pawn_count = PopCount(pawns);
  const int other_count = PopCount(position.occupied & ~pawns);
  // In an ending with little material a big deficit may still be held.
  if (pawn_count <= 2 && other_count <= 8) base -= opponent_is_computer ? 600 : 200;
  return score <= base;
}

void DrawResignTracker::Update(const Board& position, std::int32_t score) {
  ++moves;
  ++moves_since_offer;
  if (score < MATED_BELOW) {
    mate_distance = (score + MATE_IN_ZERO) / 2 + 1;
    mate_seen = last_score > score;
  } else {
    mate_distance = -1;
    mate_seen = false;
  }
  Count(falling, score < contempt - SCORE_BAND);
  Count(rising, score > contempt + SCORE_BAND);
  Count(same_score, score == contempt);
  Count(near_zero, std::abs(score) <= (HasQueen(position) ? 17 : 25));
  Count(below_threshold, ReachesResignThreshold(position, score));
  // No tablebases are probed yet, so the verdict stays unknown.
  tablebase_verdict = VERDICT_UNKNOWN;
  last_score = score;
}

bool DrawResignTracker::ShouldResign() const {
  if (tablebase_verdict != VERDICT_UNKNOWN) return tablebase_verdict == VERDICT_LOSES_SOON;
  if (mate_seen && mate_distance <= (opponent_is_computer ? 10 : 4)) return true;
  if (!opponent_is_computer && mate_distance > 17) return false;
  return below_threshold >= (opponent_is_computer ? 5 : 6);
}

bool DrawResignTracker::ShouldAcceptDraw() const {
  if (moves_since_offer == 0) return true;  // the engine offered one at its last move
  if (below_threshold != 0 || same_score > 1 || falling > 5) return true;
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
