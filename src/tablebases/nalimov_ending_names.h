// The names of the Nalimov endings in the order of their ids: k, the first side's other men, k,
// the second side's men, the stronger man first within a side. Id 0 is the placeholder kk.
#pragma once

namespace NalimovTablebases {

inline constexpr const char* ENDING_NAMES[] = {
    "kk",    "kpk",   "knk",   "kbk",   "krk",   "kqk",   "kpkp",  "knkp",  "knkn",  "kbkp",
    "kbkn",  "kbkb",  "krkp",  "krkn",  "krkb",  "krkr",  "kqkp",  "kqkn",  "kqkb",  "kqkr",
    "kqkq",  "kppk",  "knpk",  "knnk",  "kbpk",  "kbnk",  "kbbk",  "krpk",  "krnk",  "krbk",
    "krrk",  "kqpk",  "kqnk",  "kqbk",  "kqrk",  "kqqk",  "kppkp", "kppkn", "kppkb", "kppkr",
    "kppkq", "knpkp", "knpkn", "knpkb", "knpkr", "knpkq", "knnkp", "knnkn", "knnkb", "knnkr",
    "knnkq", "kbpkp", "kbpkn", "kbpkb", "kbpkr", "kbpkq", "kbnkp", "kbnkn", "kbnkb", "kbnkr",
    "kbnkq", "kbbkp", "kbbkn", "kbbkb", "kbbkr", "kbbkq", "krpkp", "krpkn", "krpkb", "krpkr",
    "krpkq", "krnkp", "krnkn", "krnkb", "krnkr", "krnkq", "krbkp", "krbkn", "krbkb", "krbkr",
    "krbkq", "krrkp", "krrkn", "krrkb", "krrkr", "krrkq", "kqpkp", "kqpkn", "kqpkb", "kqpkr",
    "kqpkq", "kqnkp", "kqnkn", "kqnkb", "kqnkr", "kqnkq", "kqbkp", "kqbkn", "kqbkb", "kqbkr",
    "kqbkq", "kqrkp", "kqrkn", "kqrkb", "kqrkr", "kqrkq", "kqqkp", "kqqkn", "kqqkb", "kqqkr",
    "kqqkq",
};

// The kinds of men in name order, as the five counts pawn, knight, bishop, rook, queen index them.
inline constexpr char MAN_LETTERS[] = "pnbrq";

// The letter's place in MAN_LETTERS, or -1.
constexpr int ManOfLetter(char c) {
  for (int i = 0; i < 5; ++i) {
    if (MAN_LETTERS[i] == c) return i;
  }
  return -1;
}

}  // namespace NalimovTablebases
