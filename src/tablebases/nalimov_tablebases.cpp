#include "tablebases/nalimov_tablebases.h"

#include <cstdio>
#include <cstdlib>

#include "board/bitboard.h"
#include "frame/tee_stream.h"
#include "tablebases/nalimov_block_reader.h"
#include "tablebases/nalimov_ending.h"
#include "tablebases/nalimov_ending_lookup.h"
#include "tablebases/nalimov_index_tables.h"

namespace NalimovTablebases {

namespace {

constexpr int FIRST_FOUR_MEN = 6;
constexpr int FIRST_FIVE_MEN = 36;
constexpr int MAX_MEN_OF_A_KIND = 3;

void* cache_memory = nullptr;

bool IsSymmetric(int id) { return (Ending(id).flags & TB_SYMMETRIC) != 0; }

// The endings that got a file enter the lookup by their names, as the files name them.
void EnterRegisteredEndings() {
  for (int id = 1; id <= ENDING_COUNT; ++id) {
    if (!TableExists(id, 0) && !TableExists(id, 1)) continue;
    if (!EnterEnding(Ending(id).name, id, IsSymmetric(id))) {
      std::printf("*** Unable to register %s\n", Ending(id).name);
      std::exit(1);
    }
  }
}

int RegisterDirectory(const std::string& directory) {
  int highest = 0;
  for (int id = 1; id <= ENDING_COUNT; ++id) {
    const TB_ENDING& ending = Ending(id);
    bool found = OpenTableFile(directory, ending.name, id, 0, ending.sizes[0], IsSymmetric(id));
    if (!IsSymmetric(id)) found = OpenTableFile(directory, ending.name, id, 1, ending.sizes[1], false) || found;
    if (found) highest = id;
  }
  return highest;
}

// Fills the list of one side from its bitboards, lowest square first, and its five counts; false
// for more men of a kind than a list holds.
bool FillSide(const BoardSide& side, TB_PIECE_LIST& list, int* counts) {
  for (PieceType type = PAWN; type <= QUEEN; ++type) {
    Bitboard men = side.Pieces(type);
    if (PopCount(men) > MAX_MEN_OF_A_KIND) return false;
    int slot = 3 * (type - PAWN);
    counts[type - PAWN] = PopCount(men);
    while (men != 0) list.squares[slot++] = PopFirstBit(men);
  }
  list.squares[TB_KING_SLOT] = side.king_square;
  return true;
}

}  // namespace

int RegisterTablebases(const std::string& paths) {
  InitIndexTables();
  CloseTableFiles();
  int highest = 0;
  std::size_t start = 0;
  while (start <= paths.size()) {
    std::size_t end = paths.find_first_of(",:;", start);
    if (end == std::string::npos) end = paths.size();
    if (end > start) {
      const int id = RegisterDirectory(paths.substr(start, end - start));
      if (id > highest) highest = id;
    }
    start = end + 1;
  }
  EnterRegisteredEndings();
  if (highest >= FIRST_FIVE_MEN) return 5;
  if (highest >= FIRST_FOUR_MEN) return 4;
  return highest >= 1 ? 3 : 0;
}

void InitNalimovTablebases(const std::string& path, std::uint64_t size) {
  Out.WriteLogOnly("Initializing Nalimov tablebases... '" + path + "'");
  if (RegisterTablebases(path) == 0) {
    Out.WriteLogOnly("Error! Could not initialize tablebases!\nIs the path correct?");
    throw NalimovException("Could not open tablebases. Is the path correct?");
  }
  std::free(cache_memory);
  cache_memory = size > 0 ? std::malloc(size) : nullptr;
  if (cache_memory == nullptr) size = 0;
  // Without a cache no block can be read: every probe then finds nothing, which is no error.
  if (!ResetCache(cache_memory, size) && size > 0) {
    Out.WriteLogOnly("Error! Could not initialize tablebases!\nIncrease the cache size.");
    throw NalimovException("Increase the cache size, because it is too small.");
  }
}

// Entries count moves to mate: 126 is mate in one, and each further move costs 2 in the score,
// so that a mate in one scores 32765 and being mated now -32767.
bool ScoreOfValue(int value, int& score) {
  if (value == NOT_READ) return false;
  score = value > 0 ? 2 * value - 32767 : value < 0 ? 2 * value + 32765 : 0;
  return true;
}

bool LookupTablebase(const Board& board, int& score) {
  TB_PIECE_LIST lists[2] = {};
  int counts[10] = {};
  if (!FillSide(board.sides[WHITE], lists[WHITE], counts) || !FillSide(board.sides[BLACK], lists[BLACK], counts + 5)) {
    return false;
  }
  const int signed_id = FindEnding(counts);
  if (signed_id == 0) return false;
  const bool invert = signed_id < 0;
  const int id = invert ? -signed_id : signed_id;
  const Color strong = invert ? BLACK : WHITE;
  const int side = board.side_to_move == strong ? 0 : 1;
  if (!TableExists(id, IsSymmetric(id) ? 0 : side)) return false;
  const std::uint64_t index = Ending(id).index[side](lists[strong], lists[strong ^ 1], TB_NO_EP_SQUARE, invert);
  return ScoreOfValue(ReadValue(id, side, index), score);
}

}  // namespace NalimovTablebases
