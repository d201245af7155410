#include "search/time_allocator.h"

void TimeAllocator::Start(std::int64_t max_time_limit, std::int64_t variable_time_limit) {
  hard_limit = max_time_limit;
  base_time = variable_time_limit;
  failed_low = failed_high = unstable = best_changed = false;
  iterations = 0;
  records.clear();
  records.reserve(80);
  ForgetCaches();
}

void TimeAllocator::StartIteration() {
  ++iterations;
  if (iterations > 1) {
    std::int32_t fail_type = failed_low ? 1 : failed_high ? 2 : 0;
    records.push_back({fail_type, best_changed});
  }
  unstable = best_changed = false;
  previous_score = iteration_score;
  iteration_score = NO_SCORE;
  ForgetCaches();
}

void TimeAllocator::RecordScore(std::int32_t score) {
  if (iteration_score == NO_SCORE) {
    iteration_score = score;
  } else if (score > iteration_score) {
    iteration_score = score;
    best_changed = true;
  }
  ForgetCaches();
}

bool TimeAllocator::IsVolatile() {
  if (volatile_cache_ == NO_SCORE) {
    bool result = false;
    if (iterations >= 5 && records.size() >= 3) {
      auto weight = [](const IterationRecord& r) {
        int w = r.fail_type == 1 ? 25 : r.fail_type == 2 ? 15 : 0;
        return r.changed ? w + 20 : w;
      };
      std::size_t n = records.size();
      result = weight(records[n - 1]) + weight(records[n - 2]) / 2 + weight(records[n - 3]) / 2 > 29;
    }
    volatile_cache_ = result;
  }
  return volatile_cache_ != 0;
}

bool TimeAllocator::IsStable() {
  if (stable_cache_ == NO_SCORE) {
    bool result = false;
    if (iterations >= 5 && records.size() >= 2) {
      const IterationRecord& r1 = records[records.size() - 1];
      const IterationRecord& r2 = records[records.size() - 2];
      result = r1.fail_type == 0 && !r1.changed && r2.fail_type == 0 && !r2.changed;
    }
    stable_cache_ = result;
  }
  return stable_cache_ != 0;
}

// A fail high shortens the time, more so when the score is positive.
static void ApplyFailHigh(float& t, std::int32_t lower, std::int32_t d) {
  if (lower > 0) {
    if (d >= -304) t = t * 0.5f;
  } else if (d >= -99) {
    t = t * 0.7f;
  }
}

void TimeAllocator::ApplyPvMove(float& t, std::int32_t fail_state) const {
  t = t * 1.2f;
  if (iteration_score == NO_SCORE) {
    if (fail_state == 1) {
      std::int32_t d = previous_score - upper;
      if (upper < 0 && d >= 256) t = t * 8.0f;
      else if (d <= 100) t = t * 2.0f;
      else t = t * 3.0f;
    } else if (fail_state == 2) {
      ApplyFailHigh(t, lower, lower - previous_score);
    }
  } else if (fail_state == 2 && lower > previous_score) {
    ApplyFailHigh(t, lower, lower - iteration_score);
  }
}

void TimeAllocator::ApplyOtherMove(float& t) const {
  t = t * 2.4f;
  if (previous_score > iteration_score) {
    std::int32_t d = previous_score - iteration_score;
    if (upper < 0 && d >= 256) t = t * 8.0f;
    else if (d > 100) t = t * 3.0f;
    else if (d > 25) t = t * 2.0f;
  }
}

bool TimeAllocator::ShouldStop(std::int64_t elapsed, TimeCheckKind kind, std::int32_t fail_state) {
  if (iterations == 1) return false;
  if (hard_limit != 0 && elapsed >= hard_limit) return true;
  if (base_time == 0) return false;

  float t = float(base_time);
  switch (kind) {
    case TIME_CHECK_OTHER_MOVE:
      ApplyOtherMove(t);
      if (IsVolatile()) t = t * 1.45f;
      break;
    case TIME_CHECK_ITERATION_END:
      t = IsVolatile() ? t * 0.8f * 1.45f : t * 0.4f;
      break;
    case TIME_CHECK_PV_MOVE:
      ApplyPvMove(t, fail_state);
      if (IsVolatile()) t = t * 1.45f;
      break;
  }
  if (unstable) t = t * 1.75f;
  if (IsStable()) t = t * 0.7f;
  return elapsed >= std::int64_t(t);
}
