// A compressed table file: the header (with its check sum made right, so that the fuzzer gets past
// it to the code lengths and the offsets) and every block it describes, decoded as a probe would.
#include <cstring>
#include <memory>
#include <vector>

#include "fuzz_input.h"
#include "tablebases/nalimov_decoder.h"

using namespace NalimovTablebases;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < std::size_t(HEADER_START_SIZE)) return 0;
  std::vector<unsigned char> file(data, data + size);
  std::memcpy(file.data(), BANNER, sizeof BANNER);  // the banner alone would stop every input
  std::uint32_t header_size = 0;
  if (!CheckHeaderStart(file.data(), header_size) || header_size > size) return 0;
  const std::uint32_t crc = Crc32(file.data(), header_size - 4);
  for (int i = 0; i < 4; ++i) file[header_size - 4 + i] = (unsigned char)(crc >> (24 - 8 * i));
  auto decoder = std::make_unique<TB_DECODER>();
  if (!ReadHeader(file.data(), header_size, *decoder)) return 0;
  static unsigned char output[BLOCK_SIZE + 64];
  for (std::uint32_t block = 0; block < decoder->block_count && block < 64; ++block) {
    const std::uint64_t offset = BlockOffset(*decoder, block);
    const std::uint32_t length = CompressedBlockSize(*decoder, block);
    if (offset > size || length > size - offset || length > std::uint32_t(BLOCK_SIZE)) continue;
    const int expected = block + 1 == decoder->block_count ? decoder->last_block_size : BLOCK_SIZE;
    DecodeBlock(*decoder, file.data() + offset, length, output, expected);
  }
  return 0;
}
