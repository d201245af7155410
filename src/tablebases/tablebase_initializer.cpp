#include "tablebases/tablebase_initializer.h"

#include <utility>

namespace ZephrinTablebases {

namespace {

using Factory = std::unique_ptr<Initializer> (*)();

// The tablebase types by their word in the tb command. The Nalimov reader, type "nalimov", isn't
// part of the program yet; it registers here.
constexpr std::pair<const char*, Factory> TABLEBASE_TYPES[] = {
    {"", nullptr},
};

}  // namespace

std::unique_ptr<Initializer> MakeTablebaseInitializer(const std::string& type) {
  for (const auto& [word, factory] : TABLEBASE_TYPES) {
    if (factory != nullptr && type == word) return factory();
  }
  return nullptr;
}

}  // namespace ZephrinTablebases
