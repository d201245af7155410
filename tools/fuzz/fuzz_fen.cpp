// The FEN reader: text that it accepts must give a consistent position that writes back as FEN and
// reads again to the same position.
#include <cstdlib>

#include "fuzz_input.h"
#include "interfaces/fen.h"
#include "interfaces/user_board.h"

using namespace ZephrinInterfaces;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ZephrinFuzz::PrepareProgram();
  UserBoard game;
  try {
    game.SetFromFen(ZephrinFuzz::Text(data, size));
  } catch (const std::exception&) {
    return 0;
  }
  if (!game.Current().IsConsistent()) std::abort();
  const std::string fen = PositionToFen(game);
  UserBoard again;
  again.SetFromFen(fen);
  if (PositionToFen(again) != fen) std::abort();
  return 0;
}
