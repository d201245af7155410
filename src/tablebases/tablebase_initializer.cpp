#include "tablebases/tablebase_initializer.h"

#include <utility>
#include <vector>

namespace ZephrinTablebases {

namespace {

using Factory = std::unique_ptr<Initializer> (*)();

// The tablebase types by their word in the tb command, each with the function that makes its
// initializer. None is part of the program yet: the Nalimov reader registers "nalimov" here.
const std::vector<std::pair<std::string, Factory>>& TablebaseTypes() {
  static const std::vector<std::pair<std::string, Factory>> types = {};
  return types;
}

}  // namespace

std::unique_ptr<Initializer> MakeTablebaseInitializer(const std::string& type) {
  for (const auto& [word, factory] : TablebaseTypes()) {
    if (type == word) return factory();
  }
  return nullptr;
}

}  // namespace ZephrinTablebases
