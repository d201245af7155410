#include "tablebases/nalimov_ending.h"

#include <cstring>
#include <string_view>

#include "tablebases/nalimov_ending_names.h"
#include "tablebases/nalimov_ending_lookup.h"
#include "tablebases/nalimov_index.h"

namespace NalimovTablebases {

namespace {

struct EndingSizes {
  const char* name;
  std::uint64_t sizes[2];
};

// Entries of each side's table: one more than the largest index of a legal position, as
// bench/nalimov_table_sizes measures it. The scheme's own range may run a little further, into
// entries that only illegal positions take (the files stop before them).
constexpr EndingSizes SIZES[ENDING_COUNT + 1] = {
    {"kk", {462, 462}},
    {"kpk", {81664, 84012}},
    {"knk", {26282, 28644}},
    {"kbk", {27243, 28644}},
    {"krk", {27030, 28644}},
    {"kqk", {25629, 28644}},
    {"kpkp", {3863492, 3863492}},
    {"knkp", {4931904, 4981504}},
    {"knkn", {1603202, 1603202}},
    {"kbkp", {5112000, 4981504}},
    {"kbkn", {1661823, 1603202}},
    {"kbkb", {1661823, 1661823}},
    {"krkp", {5072736, 4981504}},
    {"krkn", {1649196, 1603202}},
    {"krkb", {1649196, 1661823}},
    {"krkr", {1649196, 1649196}},
    {"kqkp", {4810080, 4981504}},
    {"kqkn", {1563735, 1603202}},
    {"kqkb", {1563735, 1661823}},
    {"kqkr", {1563735, 1649196}},
    {"kqkq", {1563735, 1563735}},
    {"kppk", {1806671, 1912372}},
    {"knpk", {4648581, 5374656}},
    {"knnk", {735304, 873642}},
    {"kbpk", {4817128, 5374656}},
    {"kbnk", {1550620, 1747284}},
    {"kbbk", {789885, 873642}},
    {"krpk", {4779530, 5374656}},
    {"krnk", {1538479, 1747284}},
    {"krbk", {1594560, 1747284}},
    {"krrk", {777300, 873642}},
    {"kqpk", {4533490, 5374656}},
    {"kqnk", {1459616, 1747284}},
    {"kqbk", {1512507, 1747284}},
    {"kqrk", {1500276, 1747284}},
    {"kqqk", {698739, 873642}},
    {"kppkp", {84219361, 89391280}},
    {"kppkn", {108400260, 115899744}},
    {"kppkb", {108400260, 120132000}},
    {"kppkr", {108400260, 119209296}},
    {"kppkq", {108400260, 113036880}},
    {"knpkp", {220000347, 235647728}},
    {"knpkn", {278914860, 300846144}},
    {"knpkb", {278914860, 311832000}},
    {"knpkr", {278914860, 309442752}},
    {"knpkq", {278914860, 293420736}},
    {"knnkp", {137991648, 149445120}},
    {"knnkn", {44118240, 48096060}},
    {"knnkb", {44118240, 49854690}},
    {"knnkr", {44118240, 49475880}},
    {"knnkq", {44118240, 46912050}},
    {"kbpkp", {227922056, 235647728}},
    {"kbpkn", {289027680, 300846144}},
    {"kbpkb", {289027680, 311832000}},
    {"kbpkr", {289027680, 309442752}},
    {"kbpkq", {289027680, 293420736}},
    {"kbnkp", {290989584, 298890240}},
    {"kbnkn", {93037200, 96192120}},
    {"kbnkb", {93037200, 99709380}},
    {"kbnkr", {93037200, 98951760}},
    {"kbnkq", {93037200, 93824100}},
    {"kbbkp", {148223520, 149445120}},
    {"kbbkn", {47393100, 48096060}},
    {"kbbkb", {47393100, 49854690}},
    {"kbbkr", {47393100, 49475880}},
    {"kbbkq", {47393100, 46912050}},
    {"krpkp", {226159365, 235647728}},
    {"krpkn", {286777440, 300846144}},
    {"krpkb", {286777440, 311832000}},
    {"krpkr", {286777440, 309442752}},
    {"krpkq", {286777440, 293420736}},
    {"krnkp", {288692928, 298890240}},
    {"krnkn", {92308740, 96192120}},
    {"krnkb", {92308740, 99709380}},
    {"krnkr", {92308740, 98951760}},
    {"krnkq", {92308740, 93824100}},
    {"krbkp", {299203200, 298890240}},
    {"krbkn", {95673600, 96192120}},
    {"krbkb", {95673600, 99709380}},
    {"krbkr", {95673600, 98951760}},
    {"krbkq", {95673600, 93824100}},
    {"krrkp", {145901232, 149445120}},
    {"krrkn", {46658340, 48096060}},
    {"krrkb", {46658340, 49854690}},
    {"krrkr", {46658340, 49475880}},
    {"krrkq", {46658340, 46912050}},
    {"kqpkp", {214595485, 235647728}},
    {"kqpkn", {272015040, 300846144}},
    {"kqpkb", {272015040, 311832000}},
    {"kqpkr", {272015040, 309442752}},
    {"kqpkq", {272015040, 293420736}},
    {"kqnkp", {273904512, 298890240}},
    {"kqnkn", {87576960, 96192120}},
    {"kqnkb", {87576960, 99709380}},
    {"kqnkr", {87576960, 98951760}},
    {"kqnkq", {87576960, 93824100}},
    {"kqbkp", {283818240, 298890240}},
    {"kqbkn", {90750420, 96192120}},
    {"kqbkb", {90750420, 99709380}},
    {"kqbkr", {90750420, 98951760}},
    {"kqbkq", {90750420, 93824100}},
    {"kqrkp", {281568240, 298890240}},
    {"kqrkn", {90038460, 96192120}},
    {"kqrkb", {90038460, 99709380}},
    {"kqrkr", {90038460, 98951760}},
    {"kqrkq", {90038460, 93824100}},
    {"kqqkp", {131170128, 149445120}},
    {"kqqkn", {41944320, 48096060}},
    {"kqqkb", {41944320, 49854690}},
    {"kqqkr", {41944320, 49475880}},
    {"kqqkq", {41944320, 46912050}},
};

// The same pieces on both sides and no pawn, whose direction tells the sides apart: one table
// serves both sides to move.
bool IsSymmetric(const char* name) {
  const char* second = std::strchr(name + 1, 'k');
  return std::string_view(name + 1, std::size_t(second - name - 1)) == std::string_view(second + 1) &&
         std::strchr(name, 'p') == nullptr;
}

struct EndingTable {
  TB_ENDING rows[ENDING_COUNT + 1];

  EndingTable() {
    for (int id = 0; id <= ENDING_COUNT; ++id) {
      TB_ENDING& row = rows[id];
      row.id = id;
      row.flags = IsSymmetric(ENDING_NAMES[id]) ? TB_SYMMETRIC : 0;
      row.index[0] = IndexFunctionFor(id, 0);
      row.index[1] = IndexFunctionFor(id, 1);
      std::strncpy(row.name, ENDING_NAMES[id], sizeof row.name - 1);
      row.name[sizeof row.name - 1] = 0;
      row.sizes[0] = SIZES[id].sizes[0];
      row.sizes[1] = SIZES[id].sizes[1];
    }
  }
};

}  // namespace

const TB_ENDING& Ending(int id) {
  static const EndingTable table;
  return table.rows[id];
}

}  // namespace NalimovTablebases
