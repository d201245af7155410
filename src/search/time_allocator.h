// Decides, for a running search, whether to stop now. It is given a hard limit and a base time
// per search; the time really granted is the base times a factor that depends on what the search
// is doing at the moment of the question and on how the last iterations went.
#pragma once

#include <cstdint>
#include <vector>

enum TimeCheckKind : int {
  TIME_CHECK_PV_MOVE = 0,        // during the first root move, or a new best move
  TIME_CHECK_OTHER_MOVE = 1,     // during the test of any other root move
  TIME_CHECK_ITERATION_END = 2,  // after an iteration, in normal mode only
};

// A score outside the range of scores: "not known yet".
constexpr std::int32_t NO_SCORE = 32867;

struct IterationRecord {
  std::int32_t fail_type;  // 1 failed low, 2 failed high, 0 neither
  bool changed;            // the best move or its score went up during the iteration
};

class TimeAllocator {
 public:
  std::int64_t hard_limit = 0;  // milliseconds, 0 for none
  std::int64_t base_time = 0;   // milliseconds, 0 for none
  std::int32_t previous_score = 0;
  std::int32_t iteration_score = NO_SCORE;
  std::int32_t iterations = 0;
  bool failed_low = false;
  bool failed_high = false;
  bool unstable = false;
  bool best_changed = false;
  std::vector<IterationRecord> records;
  std::int32_t lower = -32767;  // bounds of the running root bisection
  std::int32_t upper = 32767;

  void Start(std::int64_t max_time_limit, std::int64_t variable_time_limit);
  void StartIteration();
  void RecordScore(std::int32_t score);
  bool ShouldStop(std::int64_t elapsed, TimeCheckKind kind, std::int32_t fail_state);

  bool IsVolatile();
  bool IsStable();

 private:
  // Cached answers of IsVolatile and IsStable (0 or 1), NO_SCORE when unknown.
  std::int32_t volatile_cache_ = NO_SCORE;
  std::int32_t stable_cache_ = NO_SCORE;

  void ForgetCaches() { volatile_cache_ = stable_cache_ = NO_SCORE; }
  void ApplyPvMove(float& t, std::int32_t fail_state) const;
  void ApplyOtherMove(float& t) const;
};
