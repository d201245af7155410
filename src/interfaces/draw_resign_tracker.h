// What decides about draw offers and resigning: counters over the scores of the engine's searches.
#pragma once

#include <cstdint>

struct Board;

namespace ZephrinInterfaces {

struct DrawResignTracker {
  std::int32_t last_score = 1000000;
  bool mate_seen = false;             // being mated, and worse than at the last search
  std::int32_t mate_distance = -1;    // moves to that mate; -1 for none
  std::int32_t moves = 0;             // updates since the reset
  std::int32_t moves_since_offer = 1000;
  std::int32_t same_score = 0;        // updates in a row with the score equal to the contempt
  std::int32_t near_zero = 0;         // updates in a row with a score close to 0
  std::int32_t below_threshold = 0;   // updates in a row under the resign threshold
  std::int32_t falling = 0;           // updates in a row below contempt - 14
  std::int32_t rising = 0;            // updates in a row above contempt + 14
  std::int32_t tablebase_verdict = 4; // 0 wins, 1 loses soon, 2 loses slowly, 3 draw, 4 unknown
  bool draw_offered = false;          // the opponent offered a draw
  bool opponent_is_computer = false;  // survives a reset
  std::int32_t contempt = 0;          // survives a reset

  void Reset();
  // A new value resets everything else.
  void SetContempt(std::int32_t value);
  // The engine's score from its last search, made in `position` before its move.
  void Update(const Board& position, std::int32_t score);
  bool ShouldAcceptDraw() const;
  bool ShouldOfferDraw() const;
  bool ShouldResign() const;
};

// Whether the score has reached the resign threshold in the position.
bool BelowResignThreshold(const Board& position, std::int32_t score, bool opponent_is_computer);

}  // namespace ZephrinInterfaces
