#include "tablebases/nalimov_decoder.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace NalimovTablebases {

const unsigned char BANNER[64] =
    "Compressed by DATACOMP v 1.0 (c) 1991--1998 Andrew Kadatch\r\n\0\0\0";

namespace {

void Refill(BitReader& reader) {
  while (reader.count <= 56) {
    const std::uint64_t byte = reader.position < reader.size ? reader.data[reader.position] : 0;
    ++reader.position;
    reader.buffer |= byte << (56 - reader.count);
    reader.count += 8;
  }
}

void SkipBits(BitReader& reader, int bits) {
  reader.buffer <<= bits;
  reader.count -= bits;
  reader.consumed += std::uint64_t(bits);
}

std::uint32_t ReadBig32(const unsigned char* bytes) {
  return std::uint32_t(bytes[0]) << 24 | std::uint32_t(bytes[1]) << 16 | std::uint32_t(bytes[2]) << 8 |
         bytes[3];
}

// Extra bits of a length or run: more than 16 are read in two steps, which is the same stream.
std::uint32_t ReadExtraBits(BitReader& reader, int bits) {
  if (bits <= 16) return ReadBits(reader, bits);
  const std::uint32_t high = ReadBits(reader, 16);
  return high << (bits - 16) | ReadBits(reader, bits - 16);
}

bool ReadPlainCodeLengths(BitReader& reader, std::uint8_t* out, int count) {
  const int width = int(ReadBits(reader, 5));
  int written = 0;
  while (written < count) {
    const std::uint32_t value = ReadBits(reader, width);
    if (value > MAX_CODE_LENGTH) return false;
    out[written++] = std::uint8_t(value);
    if (value != 0) continue;
    const int zeros = int(ReadBits(reader, 4));
    if (zeros > count - written) return false;
    std::fill_n(out + written, zeros, 0);
    written += zeros;
  }
  return true;
}

// Lengths coded by two meta codes, A for the values and B for the lengths of runs.
bool ReadCodedCodeLengths(BitReader& reader, std::uint8_t* out, int count) {
  std::uint8_t meta_lengths[2 * META_SYMBOL_COUNT];
  if (!ReadCodeLengths(reader, meta_lengths, 2 * META_SYMBOL_COUNT)) return false;
  std::int16_t values[META_TABLE_SIZE], runs[META_TABLE_SIZE];
  if (!BuildDecoderTable(meta_lengths, META_SYMBOL_COUNT, META_PRIMARY_BITS, values, META_TABLE_SIZE) ||
      !BuildDecoderTable(meta_lengths + META_SYMBOL_COUNT, META_SYMBOL_COUNT, META_PRIMARY_BITS, runs,
                         META_TABLE_SIZE))
    return false;
  int written = 0;
  while (written < count) {
    const int value = DecodeSymbol(reader, values, META_PRIMARY_BITS);
    if (value < 0) return false;
    if (value < 32) {
      out[written++] = std::uint8_t(value);
      continue;
    }
    const int run_code = DecodeSymbol(reader, runs, META_PRIMARY_BITS);
    if (run_code < 0) return false;
    std::uint64_t run = std::uint64_t(run_code);
    if (run_code > 31) {
      const int extra = run_code - 32;
      run = (std::uint64_t(1) << extra) + ReadExtraBits(reader, extra) + 31;
    }
    run += 2;
    if (run > std::uint64_t(count - written)) return false;
    std::fill_n(out + written, int(run), std::uint8_t(value & 31));
    written += int(run);
  }
  return true;
}

// The length of a match from its code; longer matches carry extra bits.
int MatchLength(BitReader& reader, int length_code) {
  if (length_code < 15) return length_code + 1;
  const int extra = length_code - 14;
  return (1 << extra) + int(ReadExtraBits(reader, extra)) + 14;
}

std::array<std::uint32_t, 256> MakeCrcTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t value = i;
    for (int bit = 0; bit < 8; ++bit) value = value & 1 ? value >> 1 ^ 0xedb88320u : value >> 1;
    table[i] = value;
  }
  return table;
}

// Offsets as a running sum of the block sizes from the end of the header; a base per 16 blocks,
// and per block a 16-bit distance from the base before it (blocks 0-7 of a group) or after it
// (blocks 8-15). Eight full blocks make a distance of 65536, kept as 0.
bool SetBlockOffsets(TB_DECODER& decoder, const std::vector<std::uint32_t>& sizes, std::uint32_t header_size) {
  const std::uint32_t n = decoder.block_count;
  std::vector<std::uint64_t> offsets(n + 1);
  offsets[0] = header_size;
  for (std::uint32_t i = 0; i < n; ++i) offsets[i + 1] = offsets[i] + sizes[i];
  if (offsets[n] > 0xffffffffu) return false;
  decoder.block_offset_base.resize(n / 16 + 2);
  for (std::uint32_t j = 0; j < decoder.block_offset_base.size(); ++j)
    decoder.block_offset_base[j] = std::uint32_t(offsets[std::min<std::uint64_t>(16ull * j, n)]);
  decoder.block_offset_delta.resize(n + 1);
  for (std::uint32_t i = 0; i <= n; ++i) {
    const std::uint64_t delta = i & 8 ? decoder.block_offset_base[i / 16 + 1] - offsets[i]
                                      : offsets[i] - decoder.block_offset_base[i / 16];
    decoder.block_offset_delta[i] = std::uint16_t(delta);
  }
  return true;
}

}  // namespace

void StartBitReader(BitReader& reader, const unsigned char* data, std::size_t size) {
  reader = BitReader{data, size, 0, 0, 0, 0};
  Refill(reader);
}

std::uint32_t ReadBits(BitReader& reader, int bits) {
  if (bits == 0) return 0;
  Refill(reader);
  const auto value = std::uint32_t(reader.buffer >> (64 - bits));
  SkipBits(reader, bits);
  return value;
}

bool RanPastEnd(const BitReader& reader) { return reader.consumed > 8 * std::uint64_t(reader.size); }

bool BuildDecoderTable(const std::uint8_t* lengths, int count, int primary_bits, std::int16_t* table,
                       int table_size) {
  std::fill_n(table, table_size, NO_CODE);
  int per_length[MAX_CODE_LENGTH + 1] = {};
  int used = 0, last_used = 0;
  for (int symbol = 0; symbol < count; ++symbol) {
    if (lengths[symbol] > MAX_CODE_LENGTH) return false;
    if (lengths[symbol] == 0) continue;
    ++per_length[lengths[symbol]];
    ++used;
    last_used = symbol;
  }
  if (used == 0) return true;
  const int primary = 1 << primary_bits;
  if (used == 1 && lengths[last_used] == 1) {  // the one symbol costs no bits
    std::fill_n(table, primary, std::int16_t(last_used * 32));
    return true;
  }
  std::uint64_t kraft = 0;
  for (int length = 1; length <= MAX_CODE_LENGTH; ++length)
    kraft += std::uint64_t(per_length[length]) << (MAX_CODE_LENGTH - length);
  if (kraft != std::uint64_t(1) << MAX_CODE_LENGTH) return false;

  std::uint32_t next_code[MAX_CODE_LENGTH + 1] = {};
  std::uint32_t code = 0;
  for (int length = 1; length <= MAX_CODE_LENGTH; ++length) {
    code = (code + std::uint32_t(per_length[length - 1])) << 1;
    next_code[length] = code;
  }
  int next_node = primary;
  for (int symbol = 0; symbol < count; ++symbol) {
    const int length = lengths[symbol];
    if (length == 0) continue;
    const std::uint32_t symbol_code = next_code[length]++;
    const auto entry = std::int16_t(symbol * 32 + length);
    if (length <= primary_bits) {
      const int shift = primary_bits - length;
      std::fill(table + (symbol_code << shift), table + ((symbol_code + 1) << shift), entry);
      continue;
    }
    std::int16_t* slot = &table[symbol_code >> (length - primary_bits)];
    for (int bit = length - primary_bits - 1; bit >= 0; --bit) {
      if (*slot == NO_CODE) {
        if (next_node + 2 > table_size) return false;
        *slot = std::int16_t(-next_node);
        next_node += 2;
      }
      if (*slot >= 0) return false;
      slot = &table[-*slot + int(symbol_code >> bit & 1)];
    }
    if (*slot != NO_CODE) return false;
    *slot = entry;
  }
  return true;
}

int DecodeSymbol(BitReader& reader, const std::int16_t* table, int primary_bits) {
  Refill(reader);
  int entry = table[reader.buffer >> (64 - primary_bits)];
  if (entry >= 0) {
    SkipBits(reader, entry & 31);
    return entry >> 5;
  }
  SkipBits(reader, primary_bits);
  while (entry != NO_CODE) {
    entry = table[-entry + int(ReadBits(reader, 1))];
    if (entry >= 0) return entry >> 5;
  }
  return -1;
}

bool ReadCodeLengths(BitReader& reader, std::uint8_t* out, int count) {
  if (ReadBits(reader, 1) == 1) {
    std::fill_n(out, count, 0);
    return true;
  }
  return count <= 2 * META_SYMBOL_COUNT ? ReadPlainCodeLengths(reader, out, count)
                                        : ReadCodedCodeLengths(reader, out, count);
}

std::uint32_t Crc32(const unsigned char* data, std::size_t size) {
  static const std::array<std::uint32_t, 256> table = MakeCrcTable();
  std::uint32_t crc = 0;
  for (std::size_t i = 0; i < size; ++i) crc = table[(crc ^ data[i]) & 0xff] ^ crc >> 8;
  return crc;
}

bool CheckHeaderStart(const unsigned char* start, std::uint32_t& header_size) {
  if (std::memcmp(start, BANNER, sizeof BANNER) != 0) return false;
  header_size = ReadBig32(start + 0x40);
  const int bits = start[0x46];
  const std::uint64_t blocks = ReadBig32(start + 0x48);
  return header_size > 0x53 && bits >= 1 && bits <= 16 && start[0x47] == DISTANCE_COUNT &&
         ReadBig32(start + 0x4c) == FORMAT_NUMBER && blocks > 0 &&
         HEADER_START_SIZE + 8 * blocks + 4 <= header_size;
}

bool ReadHeader(const unsigned char* header, std::uint32_t header_size, TB_DECODER& decoder) {
  if (Crc32(header, header_size - 4) != ReadBig32(header + header_size - 4)) return false;
  decoder.bits = header[0x46];
  decoder.block_size = 1 << decoder.bits;
  decoder.block_count = ReadBig32(header + 0x48);
  const std::uint32_t n = decoder.block_count;

  const std::size_t streams = HEADER_START_SIZE + 8 * std::size_t(n);
  BitReader reader;
  StartBitReader(reader, header + streams, header_size - 4 - streams);
  std::vector<std::uint32_t> sizes(n);
  for (std::uint32_t& size : sizes) {
    size = ReadBits(reader, decoder.bits);
    if (size == 0) size = std::uint32_t(decoder.block_size);
  }
  decoder.last_block_size = int(ReadBits(reader, decoder.bits));
  if (decoder.last_block_size == 0) decoder.last_block_size = decoder.block_size;
  for (std::int32_t& distance : decoder.distances) distance = -std::int32_t(ReadBits(reader, decoder.bits));

  const std::size_t lengths_start = streams + ((std::size_t(n) + 25) * std::size_t(decoder.bits) + 7) / 8;
  if (RanPastEnd(reader) || lengths_start > header_size - 4) return false;
  StartBitReader(reader, header + lengths_start, header_size - 4 - lengths_start);
  std::uint8_t lengths[SYMBOL_COUNT];
  if (!ReadCodeLengths(reader, lengths, SYMBOL_COUNT) || RanPastEnd(reader) ||
      !BuildDecoderTable(lengths, SYMBOL_COUNT, PRIMARY_BITS, decoder.table, DECODER_TABLE_SIZE))
    return false;
  if (!SetBlockOffsets(decoder, sizes, header_size)) return false;
  decoder.magic = DECODER_MAGIC;
  return true;
}

std::uint32_t BlockOffset(const TB_DECODER& decoder, std::uint32_t block) {
  const std::uint32_t delta = decoder.block_offset_delta[block];
  if ((block & 8) == 0) return decoder.block_offset_base[block / 16] + delta;
  return decoder.block_offset_base[block / 16 + 1] - (delta != 0 ? delta : 0x10000);
}

// The last block ends at the file's end, the extra base entry: its own delta may be 0, which for a
// real block in the second half of a group means a full 65536 bytes.
std::uint32_t CompressedBlockSize(const TB_DECODER& decoder, std::uint32_t block) {
  const std::uint32_t end =
      block + 1 == decoder.block_count ? decoder.block_offset_base.back() : BlockOffset(decoder, block + 1);
  return end - BlockOffset(decoder, block);
}

bool DecodeBlock(const TB_DECODER& decoder, const unsigned char* input, std::size_t input_size,
                 unsigned char* output, int expected_size) {
  BitReader reader;
  StartBitReader(reader, input, input_size);
  int written = 0;
  while (written < expected_size) {
    const int symbol = DecodeSymbol(reader, decoder.table, PRIMARY_BITS);
    if (symbol < 0) return false;
    if (symbol < LITERAL_COUNT) {
      output[written++] = std::uint8_t(symbol);
      continue;
    }
    const int match = symbol - LITERAL_COUNT;
    const int length = MatchLength(reader, match & 31);
    const int distance = -decoder.distances[match >> 5];
    if (distance <= 0 || distance > written || length > expected_size - written) return false;
    unsigned char* target = output + written;
    if (distance >= length) {
      std::memcpy(target, target - distance, std::size_t(length));
    } else {
      for (int i = 0; i < length; ++i) target[i] = target[i - distance];  // overlapping: repeats
    }
    written += length;
  }
  return true;
}

}  // namespace NalimovTablebases
