// What the engine knows, from search to search, to decide about draw offers and resigning: runs of
// scores in the same range, a mate seen coming, and what the tablebases say.
#pragma once

#include <cstdint>

#include "board/board.h"

namespace ZephrinInterfaces {

// The tablebases' verdict on the position for the engine.
constexpr int VERDICT_WINS = 0;
constexpr int VERDICT_LOSES_SOON = 1;  // mated within 29 plies
constexpr int VERDICT_LOSES_SLOWLY = 2;
constexpr int VERDICT_DRAW = 3;
constexpr int VERDICT_UNKNOWN = 4;

struct DrawResignTracker {
  std::int32_t last_score = 1000000;  // of the last search
  bool mate_seen = false;             // being mated, and the score got worse since the last search
  std::int32_t mate_distance = -1;    // moves until that mate, -1 for none
  std::int32_t moves = 0;             // updates since the reset
  std::int32_t moves_since_offer = 1000;
  std::int32_t same_score = 0;        // updates in a row with the score equal to the contempt
  std::int32_t near_zero = 0;
  std::int32_t below_threshold = 0;   // updates in a row under the resign threshold
  std::int32_t falling = 0;           // updates in a row under contempt - 14
  std::int32_t rising = 0;            // updates in a row above contempt + 14
  std::int32_t tablebase_verdict = VERDICT_UNKNOWN;
  bool draw_offered = false;          // by the opponent, with `draw`
  bool opponent_is_computer = false;  // survives a reset
  std::int32_t contempt = 0;          // survives a reset

  void Reset();
  // A new value resets everything else.
  void SetContempt(std::int32_t value);
  // Takes the score of a search for the engine's move, from the engine's view, in the position
  // before that move.
  void Update(const Board& position, std::int32_t score);
  bool ShouldAcceptDraw() const;
  bool ShouldOfferDraw() const;
  bool ShouldResign() const;

 private:
  bool ReachesResignThreshold(const Board& position, std::int32_t score) const;
};

}  // namespace ZephrinInterfaces
