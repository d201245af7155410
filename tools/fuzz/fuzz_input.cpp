#include "fuzz_input.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "board/attack_tables.h"
#include "hash/hash.h"
#include "settings/search_settings_catalogue.h"

namespace ZephrinFuzz {

void PrepareProgram() {
  static const bool prepared = [] {
    InitAttackTables();
    ResizeHashTablesToDefaults();
    TranspositionTable.Resize(1 << 20);
    return true;
  }();
  (void)prepared;
  RestoreSearchSettingDefaults();
}

std::string Text(const std::uint8_t* data, std::size_t size) {
  return std::string(reinterpret_cast<const char*>(data), size);
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

std::string WriteScratchFile(const std::string& name, const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path directory = [] {
    auto path = std::filesystem::temp_directory_path() / ("zephrin_fuzz_" + std::to_string(getpid()));
    std::filesystem::create_directories(path);
    return path;
  }();
  const std::string path = (directory / name).string();
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(data), std::streamsize(size));
  return path;
}

}  // namespace ZephrinFuzz
