#include "tablebases/tablebase_initializer.h"

#include <utility>
#include <vector>

#include "frame/tee_stream.h"
#include "tablebases/nalimov_tablebases.h"
#include "tablebases/tablebase_probe.h"

namespace ZephrinTablebases {

namespace {

using Factory = std::unique_ptr<Initializer> (*)();

constexpr std::uint64_t LARGEST_CACHE = 0x7fffffff;

class NalimovInitializer : public Initializer {
 public:
  // A cache size past 31 bits is cut to the largest that fits, with a word in the log.
  void initialize(const std::string& path, std::uint64_t cache_size) override {
    if (cache_size > LARGEST_CACHE) {
      Out.WriteLogOnly(
          "NalimovInitializer: Cannot allocate the requested memory, because of an integer overflow. Allocating "
          "maximum memory instead.");
      cache_size = LARGEST_CACHE;
    }
    try {
      NalimovTablebases::InitNalimovTablebases(path, cache_size);
    } catch (const NalimovTablebases::NalimovException& error) {
      throw TB_Exception("Could not initialize Nalimov tablebases.\nReason: " + error.Text());
    }
    tablebases_loaded = true;
  }
};

std::unique_ptr<Initializer> MakeNalimovInitializer() { return std::make_unique<NalimovInitializer>(); }

// The tablebase types by their word in the tb command, each with the function that makes its
// initializer.
const std::vector<std::pair<std::string, Factory>>& TablebaseTypes() {
  static const std::vector<std::pair<std::string, Factory>> types = {{"nalimov", &MakeNalimovInitializer}};
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
