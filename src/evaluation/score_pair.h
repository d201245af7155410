// A score under construction: a positional and a dynamic value packed into one 32-bit word,
// positional in the low half and dynamic in the high half. Pairs add and subtract half by half,
// each half wrapping at 16 bits on its own; no carry or borrow crosses from one half to the other.
#pragma once

#include <cstdint>

struct ScorePair {
  std::uint32_t word = 0;

  constexpr ScorePair() = default;
  constexpr ScorePair(int positional, int dynamic)
      : word(std::uint32_t(std::uint16_t(positional)) | std::uint32_t(std::uint16_t(dynamic)) << 16) {}

  static constexpr ScorePair FromWord(std::uint32_t w) {
    ScorePair pair;
    pair.word = w;
    return pair;
  }

  constexpr int Positional() const { return std::int16_t(std::uint16_t(word)); }
  constexpr int Dynamic() const { return std::int16_t(std::uint16_t(word >> 16)); }

  constexpr bool operator==(const ScorePair&) const = default;
};

namespace score_pair_detail {
constexpr std::uint32_t SIGN_BITS = 0x80008000u;  // the top bit of each half
}  // namespace score_pair_detail

// Adds the low 15 bits of each half, then puts the sign bits in by exclusive or, so that the carry
// out of the low half never reaches the high half.
constexpr ScorePair operator+(ScorePair a, ScorePair b) {
  using score_pair_detail::SIGN_BITS;
  std::uint32_t body = (a.word & ~SIGN_BITS) + (b.word & ~SIGN_BITS);
  return ScorePair::FromWord(body ^ ((a.word ^ b.word) & SIGN_BITS));
}

// Subtracts with the top bit of each half of a set beforehand, so that a borrow stops there.
constexpr ScorePair operator-(ScorePair a, ScorePair b) {
  using score_pair_detail::SIGN_BITS;
  std::uint32_t body = (a.word | SIGN_BITS) - (b.word & ~SIGN_BITS);
  return ScorePair::FromWord(body ^ ((a.word ^ ~b.word) & SIGN_BITS));
}

constexpr ScorePair operator-(ScorePair a) { return ScorePair() - a; }

constexpr ScorePair& operator+=(ScorePair& a, ScorePair b) { return a = a + b; }
constexpr ScorePair& operator-=(ScorePair& a, ScorePair b) { return a = a - b; }
