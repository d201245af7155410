// The deterministic random numbers of the program: Knuth's lagged Fibonacci generator ran_array
// (lags 100 and 37, modulus 2^30, refills of 1009 values of which the first 100 are used), seeded
// with 314159, so every run draws the same sequence. The attack tables draw the first numbers for
// the position keys; the search's move ordering continues the sequence.
#pragma once

#include <cstdint>

class LaggedFibonacci {
 public:
  constexpr explicit LaggedFibonacci(long seed = 314159) : seed_(seed) {}
  std::uint32_t Next() {
    if (next_ == kLong) Refill();
    return std::uint32_t(buffer_[next_++]);
  }
  // The raw generator step: fills out[0..n-1], n >= 100, and advances the state.
  void Array(long* out, int n);
  void Start(long seed);

  static constexpr int kLong = 100;
  static constexpr int kShort = 37;
  static constexpr int kQuality = 1009;

 private:
  void Refill();

  long seed_;
  long state_[kLong] = {};
  long buffer_[kQuality] = {};
  int next_ = kLong;
  bool started_ = false;
};

// The program-wide sequence.
std::uint32_t Random30();
std::uint64_t Random64();  // four draws of Random30, low 16 bits each, the first draw lowest
// Replaces the program-wide generator's state (the attack tables hand over theirs).
void SetRandomSource(const LaggedFibonacci& source);
