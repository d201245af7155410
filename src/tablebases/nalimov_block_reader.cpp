// A stand-in reader for plain table files only, without a cache: each value is read from the file.
#include "tablebases/nalimov_block_reader.h"

#include <cstdio>
#include <cstdlib>

#include "tablebases/nalimov_ending.h"

namespace NalimovTablebases {

namespace {

std::FILE* files[ENDING_COUNT + 1][2];
std::size_t slots = 0;

}  // namespace

bool OpenTableFile(const std::string& directory, const char* ending_name, int id, int side,
                   std::uint64_t expected_size, bool) {
  if (files[id][side] != nullptr) return true;
  std::string name = directory;
  if (name.empty() || name.back() != '/') name += '/';
  name += std::string(ending_name) + (side == 0 ? ".nbw" : ".nbb");
  std::FILE* file = std::fopen(name.c_str(), "rb");
  if (file == nullptr) return false;
  if (std::fseek(file, 0, SEEK_END) != 0) {
    std::printf("*** Seek in %s failed\n", name.c_str());
    std::exit(1);
  }
  const long found = std::ftell(file);
  if (found < 0 || std::uint64_t(found) != expected_size) {
    std::printf("*** %s corrupted %lu %lu %lu\n", name.c_str(), (unsigned long)expected_size,
                (unsigned long)expected_size, (unsigned long)found);
    std::exit(1);
  }
  files[id][side] = file;
  return true;
}

bool TableExists(int id, int side) { return files[id][side] != nullptr; }

void CloseTableFiles() {
  for (auto& ending : files) {
    for (std::FILE*& file : ending) {
      if (file != nullptr) std::fclose(file);
      file = nullptr;
    }
  }
}

// Files stay registered: this reader keeps no name to open them by again.
bool ResetCache(void*, std::size_t size) {
  if (size < 56) return false;
  slots = size / 8284;
  return true;
}

int ReadValue(int id, int side, std::uint64_t index) {
  if (Ending(id).flags & TB_SYMMETRIC) side = 0;
  std::FILE* file = files[id][side];
  if (slots == 0 || file == nullptr || index >= Ending(id).sizes[side]) return NOT_READ;
  if (std::fseek(file, long(index), SEEK_SET) != 0) return NOT_READ;
  const int c = std::fgetc(file);
  if (c == EOF) return NOT_READ;
  const int b = static_cast<signed char>(c);
  if (b == 0) return 0;
  return b < 0 ? b - 32640 : b + 32640;
}

}  // namespace NalimovTablebases
