// The settings file, read from disk as `read_settings` reads it, and a short search with what it set.
#include "fuzz_input.h"
#include "search/search.h"
#include "settings/settings_commands.h"

using namespace OptimizeInterface;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ZephrinFuzz::PrepareProgram();
  if (ReadSearchSettings(ZephrinFuzz::WriteScratchFile("settings.txt", data, size))) return 0;  // refused
  static Search search;
  search.search_finished = [](MainLoop*, bool) {};
  SearchRequest request{SEARCH_NORMAL, 3, 50};
  request.game.SetFromFen("r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1");
  search.RunSearch(request, nullptr);
  return 0;
}
