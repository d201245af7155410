#include "tablebases/nalimov_block_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "tablebases/nalimov_cache.h"
#include "tablebases/nalimov_decoder.h"
#include "tablebases/nalimov_ending.h"

namespace NalimovTablebases {

namespace {

// One side of an ending: the file found for it, open or not, and its decoder when compressed.
// An empty name means no file, or one that failed and is not to be tried again.
struct TableFile {
  std::string name;
  std::FILE* file = nullptr;
  std::unique_ptr<TB_DECODER> decoder;
  std::uint64_t size = 0;  // entries
};

TableFile table_files[ENDING_COUNT + 1][2];
bool symmetric_ending[ENDING_COUNT + 1];
unsigned char* decode_input = nullptr;  // one compressed block, shared by all files

constexpr int KPPKP_ID = 36;
constexpr std::uint64_t KPPKP_WRONG_ENTRIES[] = {0x362bc7c, 0x362de44, 0x3637648, 0x3639810,
                                                 0x38d4f29, 0x40a2cab, 0x43c778c};
constexpr int KPPKP_WRONG_VALUE = -32639;
constexpr int STORED_OFFSET = 32640;

[[noreturn]] __attribute__((format(printf, 1, 2))) void Fatal(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::vprintf(format, arguments);
  va_end(arguments);
  std::fflush(stdout);
  std::exit(1);
}

[[noreturn]] void Unreadable(const std::string& name, const char* reason) {
  Fatal("*** Unable to read %s - %s\n", name.c_str(), reason);
}

void CheckSize(const std::string& name, std::uint64_t expected, std::uint64_t found) {
  if (found != expected)
    Fatal("*** %s corrupted %lu %lu %lu\n", name.c_str(), static_cast<unsigned long>(expected),
          static_cast<unsigned long>(expected), static_cast<unsigned long>(found));
}

std::uint64_t FileLength(std::FILE* file, const std::string& name) {
  if (std::fseek(file, 0, SEEK_END) != 0) Fatal("*** Seek in %s failed\n", name.c_str());
  const long length = std::ftell(file);
  if (length < 0) Fatal("*** Seek in %s failed\n", name.c_str());
  return std::uint64_t(length);
}

// The five names of one side's file: the plain one, then four spellings of the compressed one.
std::string VariantName(const char* ending_name, int side, int variant) {
  const std::string suffix = side == 0 ? "nbw" : "nbb";
  static const char* const forms[5][3] = {
      {".", "", ""}, {".", ".emd", ""}, {"_", ".emd", ""}, {"_", "_emd", ""}, {"", ".emd", ""}};
  return std::string(ending_name) + forms[variant][0] + suffix + forms[variant][1];
}

std::unique_ptr<TB_DECODER> ReadCompressedHeader(std::FILE* file, const std::string& name) {
  unsigned char start[HEADER_START_SIZE];
  if (std::fread(start, 1, sizeof start, file) != sizeof start) Unreadable(name, "read error");
  std::uint32_t header_size = 0;
  if (!CheckHeaderStart(start, header_size) || header_size > FileLength(file, name))
    Unreadable(name, "file broken");
  std::unique_ptr<unsigned char, decltype(&std::free)> header(
      static_cast<unsigned char*>(std::malloc(header_size)), &std::free);
  std::unique_ptr<TB_DECODER> decoder(new (std::nothrow) TB_DECODER);
  if (!header || !decoder) Unreadable(name, "out of memory");
  std::memcpy(header.get(), start, sizeof start);
  if (std::fseek(file, sizeof start, SEEK_SET) != 0) Fatal("*** Seek in %s failed\n", name.c_str());
  if (std::fread(header.get() + sizeof start, 1, header_size - sizeof start, file) != header_size - sizeof start)
    Unreadable(name, "file broken");
  bool read = false;
  try {
    read = ReadHeader(header.get(), header_size, *decoder);
  } catch (const std::bad_alloc&) {
    Unreadable(name, "out of memory");
  }
  if (!read) Unreadable(name, "file broken");
  if (decoder->block_size != BLOCK_SIZE)
    Fatal("*** %s: Unsupported block size %d\n", name.c_str(), decoder->block_size);
  return decoder;
}

void RegisterFile(TableFile& side_file, std::FILE* file, const std::string& name, bool compressed,
                  std::uint64_t expected_size) {
  if (compressed) {
    side_file.decoder = ReadCompressedHeader(file, name);
    const TB_DECODER& decoder = *side_file.decoder;
    CheckSize(name, expected_size, (decoder.block_count - 1ull) * BLOCK_SIZE + decoder.last_block_size);
    if (!decode_input) {
      decode_input = static_cast<unsigned char*>(std::malloc(BLOCK_SIZE + CACHE_SLACK_BYTES));
      if (!decode_input) Fatal("*** Cannot allocate decode block: error code %d\n", errno);
    }
  } else {
    CheckSize(name, expected_size, FileLength(file, name));
  }
  try {
    side_file.name = name;
  } catch (const std::bad_alloc&) {
    Fatal("*** Cannot allocate %d bytes of memory\n", int(name.size() + 1));
  }
  side_file.file = file;
  side_file.size = expected_size;
}

void CloseFile(TableFile& side_file) {
  if (side_file.file) std::fclose(side_file.file);
  side_file.file = nullptr;
}

void CloseOpenFiles() {
  for (auto& sides : table_files)
    for (TableFile& side_file : sides) CloseFile(side_file);
}

// Files are opened again by name when a block is needed. A failure may mean that the process ran
// out of file handles, so every file is closed before the one retry.
bool EnsureOpen(TableFile& side_file) {
  if (side_file.file) return true;
  side_file.file = std::fopen(side_file.name.c_str(), "rb");
  if (!side_file.file) {
    CloseOpenFiles();
    side_file.file = std::fopen(side_file.name.c_str(), "rb");
  }
  if (side_file.file) std::setvbuf(side_file.file, nullptr, _IONBF, 0);
  return side_file.file != nullptr;
}

bool ReadAt(std::FILE* file, std::uint64_t offset, unsigned char* target, std::size_t size) {
  return std::fseek(file, long(offset), SEEK_SET) == 0 && std::fread(target, 1, size, file) == size;
}

// A plain block is the file's bytes; only the last one may be short.
bool ReadPlainBlock(const TableFile& side_file, std::uint32_t block, unsigned char* data) {
  const std::uint64_t offset = std::uint64_t(block) * BLOCK_SIZE;
  if (offset >= side_file.size) return false;
  const std::uint64_t size = std::min<std::uint64_t>(BLOCK_SIZE, side_file.size - offset);
  return ReadAt(side_file.file, offset, data, size);
}

// A block whose compressed size is its full size is stored as it is; any other is decoded.
bool ReadCompressedBlock(const TableFile& side_file, std::uint32_t block, unsigned char* data) {
  const TB_DECODER& decoder = *side_file.decoder;
  if (block >= decoder.block_count) return false;
  const int expected = block == decoder.block_count - 1 ? decoder.last_block_size : BLOCK_SIZE;
  const std::uint32_t size = CompressedBlockSize(decoder, block);
  if (size > std::uint32_t(BLOCK_SIZE)) return false;
  if (size == std::uint32_t(expected)) return ReadAt(side_file.file, BlockOffset(decoder, block), data, size);
  return ReadAt(side_file.file, BlockOffset(decoder, block), decode_input, size) &&
         DecodeBlock(decoder, decode_input, size, data, expected);
}

bool FillSlot(TableFile& side_file, std::uint32_t block, unsigned char* data) {
  if (!EnsureOpen(side_file)) return false;
  return side_file.decoder ? ReadCompressedBlock(side_file, block, data) : ReadPlainBlock(side_file, block, data);
}

bool ValidSide(int id, int side) { return id >= 1 && id <= ENDING_COUNT && (side == 0 || side == 1); }

}  // namespace

bool OpenTableFile(const std::string& directory, const char* ending_name, int id, int side,
                   std::uint64_t expected_size, bool symmetric) {
  if (!ValidSide(id, side)) return false;
  symmetric_ending[id] = symmetric;
  TableFile& side_file = table_files[id][symmetric ? 0 : side];
  if (!side_file.name.empty()) return true;
  const std::string folder = directory.empty() || directory.back() != '/' ? directory + "/" : directory;
  for (int variant = 0; variant < 5; ++variant) {
    const std::string name = folder + VariantName(ending_name, side, variant);
    std::FILE* file = std::fopen(name.c_str(), "rb");
    if (!file) continue;
    std::setvbuf(file, nullptr, _IONBF, 0);
    RegisterFile(side_file, file, name, variant > 0, expected_size);
    return true;
  }
  return false;
}

bool TableExists(int id, int side) {
  return ValidSide(id, side) && !table_files[id][symmetric_ending[id] ? 0 : side].name.empty();
}

void CloseTableFiles() {
  DetachCache();  // blocks of the old files must not answer for new ones
  for (auto& sides : table_files) {
    for (TableFile& side_file : sides) {
      CloseFile(side_file);
      side_file = TableFile{};
    }
  }
}

bool ResetCache(void* memory, std::size_t size) {
  CloseOpenFiles();
  return LayOutCache(memory, size);
}

// A block that can't be read or decoded drops its file for good: the probe reads as not found,
// and later probes don't pay for the same failure again.
int ReadValue(int id, int side, std::uint64_t index) {
  if (!ValidSide(id, side)) return NOT_READ;
  if (symmetric_ending[id]) side = 0;
  if (id == KPPKP_ID && side == 1) {
    for (std::uint64_t wrong : KPPKP_WRONG_ENTRIES)
      if (index == wrong) return KPPKP_WRONG_VALUE;
  }
  TableFile& side_file = table_files[id][side];
  if (CacheSlotCount() == 0 || side_file.name.empty() || index >= side_file.size) return NOT_READ;
  const auto block = std::uint32_t(index >> BLOCK_BITS);
  TB_CACHE_BLOCK* slot = FindCachedBlock(id, side, block);
  if (!slot) {
    slot = TakeCacheSlot();
    if (!FillSlot(side_file, block, slot->data)) {
      ReleaseCacheSlot(slot);
      CloseFile(side_file);
      side_file.name.clear();
      return NOT_READ;
    }
    InsertCachedBlock(slot, id, side, block);
  }
  const int stored = static_cast<signed char>(slot->data[index & (BLOCK_SIZE - 1)]);
  if (stored == 0) return 0;
  return stored < 0 ? stored - STORED_OFFSET : stored + STORED_OFFSET;
}

}  // namespace NalimovTablebases
