#include "board/random.h"

#include <algorithm>

namespace {

constexpr long kModulus = 1L << 30;
constexpr int kSeparation = 70;

long ModDiff(long x, long y) { return (x - y) & (kModulus - 1); }

// Constant-initialised, so that tables built during static initialisation find it ready.
constinit LaggedFibonacci random_source;

// The generator's step out[j] = out[j - 100] - out[j - 37] for at most 37 consecutive j: none of
// them reads what another writes, so the compiler may do them side by side.
void DiffBlock(long* __restrict target, const long* __restrict far, const long* __restrict near, int count) {
  for (int k = 0; k < count; ++k) target[k] = ModDiff(far[k], near[k]);
}

}  // namespace

void LaggedFibonacci::Array(long* out, int n) {
  int i, j;
  for (j = 0; j < kLong; ++j) out[j] = state_[j];
  for (; j < n; j += kShort) {
    DiffBlock(out + j, out + j - kLong, out + j - kShort, std::min(kShort, n - j));
  }
  j = n;
  for (i = 0; i < kShort; ++i, ++j) state_[i] = ModDiff(out[j - kLong], out[j - kShort]);
  for (; i < kLong; ++i, ++j) state_[i] = ModDiff(out[j - kLong], state_[i - kShort]);
}

void LaggedFibonacci::Start(long seed) {
  long x[kLong + kLong - 1];
  long ss = (seed + 2) & (kModulus - 2);
  for (int j = 0; j < kLong; ++j) {
    x[j] = ss;
    ss <<= 1;
    if (ss >= kModulus) ss -= kModulus - 2;
  }
  x[1]++;
  ss = seed & (kModulus - 1);
  for (int t = kSeparation - 1; t;) {
    for (int j = kLong - 1; j > 0; --j) x[j + j] = x[j], x[j + j - 1] = 0;
    for (int j = kLong + kLong - 2; j >= kLong; --j) {
      x[j - (kLong - kShort)] = ModDiff(x[j - (kLong - kShort)], x[j]);
      x[j - kLong] = ModDiff(x[j - kLong], x[j]);
    }
    if (ss & 1) {
      for (int j = kLong; j > 0; --j) x[j] = x[j - 1];
      x[0] = x[kLong];
      x[kShort] = ModDiff(x[kShort], x[kLong]);
    }
    if (ss) ss >>= 1;
    else --t;
  }
  int j = 0;
  for (; j < kShort; ++j) state_[j + kLong - kShort] = x[j];
  for (; j < kLong; ++j) state_[j - kShort] = x[j];
  for (j = 0; j < 10; ++j) Array(x, kLong + kLong - 1);
  started_ = true;
}

void LaggedFibonacci::Refill() {
  if (!started_) Start(seed_);
  Array(buffer_, kQuality);
  next_ = 0;
}

std::uint32_t Random30() { return random_source.Next(); }

std::uint64_t Random64() {
  std::uint64_t r = 0;
  for (int i = 0; i < 4; ++i) r |= std::uint64_t(Random30() & 0xffff) << (16 * i);
  return r;
}

void SetRandomSource(const LaggedFibonacci& source) { random_source = source; }
