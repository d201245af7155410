// The PGN reader: a game it accepts is played through legal moves and can be written again.
#include <cstdlib>
#include <sstream>

#include "fuzz_input.h"
#include "interfaces/pgn.h"
#include "interfaces/user_board.h"

using namespace ZephrinInterfaces;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ZephrinFuzz::PrepareProgram();
  UserBoard game;
  PgnTags tags;
  std::istringstream in(ZephrinFuzz::Text(data, size));
  try {
    ReadPgn(game, in, tags);
  } catch (const std::exception&) {
    return 0;
  }
  if (!game.Current().IsConsistent()) std::abort();
  std::ostringstream out;
  WritePgn(game, out, tags);
  return 0;
}
