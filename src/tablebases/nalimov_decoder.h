// The compressed form of a Nalimov table file: a header with block sizes, match distances and the
// code lengths of one canonical Huffman code over 1024 symbols, then blocks of 8192 bytes, each
// compressed on its own by LZ77 with the header's 24 distances, or stored.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace NalimovTablebases {

constexpr int SYMBOL_COUNT = 1024;   // 256 literals, then 24 distances x 32 length codes
constexpr int LITERAL_COUNT = 256;
constexpr int DISTANCE_COUNT = 24;
constexpr int MAX_CODE_LENGTH = 31;
constexpr int PRIMARY_BITS = 13;     // codes up to this long resolve with one look-up
constexpr int META_PRIMARY_BITS = 8;  // the same for the two codes that carry the code lengths
constexpr int META_SYMBOL_COUNT = 64;
constexpr int BLOCK_BITS = 13;
constexpr int BLOCK_SIZE = 1 << BLOCK_BITS;
constexpr int HEADER_START_SIZE = 0x50;
constexpr std::uint32_t FORMAT_NUMBER = 0x4001f5;
constexpr std::uint32_t DECODER_MAGIC = 0x5abc947f;

// Every compressed file starts with these 64 bytes.
extern const unsigned char BANNER[64];

// A decoder table: 2^primary_bits entries for the next bits of the stream, symbol * 32 + code
// length for a code that fits; a negative entry -n is a tree whose node is the pair at n, indexed
// by the next bit. NO_CODE marks bits that start no code.
constexpr std::int16_t NO_CODE = -1;
constexpr int TREE_ENTRIES = 2 * SYMBOL_COUNT;  // a complete code needs at most one pair a symbol
constexpr int DECODER_TABLE_SIZE = (1 << PRIMARY_BITS) + TREE_ENTRIES;
constexpr int META_TABLE_SIZE = (1 << META_PRIMARY_BITS) + 2 * META_SYMBOL_COUNT;

// Bits most significant first, bytes in order; past the end of the data it reads zeros and
// counts them, so that a caller can tell a stream that ran out.
struct BitReader {
  const unsigned char* data;
  std::size_t size;
  std::size_t position;   // next byte to enter the buffer
  std::uint64_t buffer;   // the valid bits at the top
  int count;              // number of valid bits
  std::uint64_t consumed;
};

void StartBitReader(BitReader& reader, const unsigned char* data, std::size_t size);
std::uint32_t ReadBits(BitReader& reader, int bits);  // 0 to 32 bits
bool RanPastEnd(const BitReader& reader);

// Builds the decoder table of a canonical code from its lengths. False unless the lengths form
// a complete code (all zeros and a single code of length 1 are allowed too).
bool BuildDecoderTable(const std::uint8_t* lengths, int count, int primary_bits,
                       std::int16_t* table, int table_size);

// The next symbol, or -1 when the bits start no code.
int DecodeSymbol(BitReader& reader, const std::int16_t* table, int primary_bits);

// Code lengths as the header stores them; false on a run past count or a length above 31.
bool ReadCodeLengths(BitReader& reader, std::uint8_t* out, int count);

// Reflected polynomial 0xedb88320, initial value 0, no final inversion.
std::uint32_t Crc32(const unsigned char* data, std::size_t size);

struct TB_DECODER {
  std::int16_t table[DECODER_TABLE_SIZE];
  std::int32_t distances[DISTANCE_COUNT];  // negative byte offsets
  std::vector<std::uint32_t> block_offset_base;   // per 16 blocks, and the end of the data
  std::vector<std::uint16_t> block_offset_delta;  // per block, and one for the end
  int bits;
  int block_size;
  int last_block_size;
  std::uint32_t block_count;
  std::uint32_t magic;
};

// Checks the first 0x50 bytes: banner, header size, block size, distance count, format number.
// Gives the header size, or false for a broken file.
bool CheckHeaderStart(const unsigned char* start, std::uint32_t& header_size);

// Reads the whole header (its first 0x50 bytes already checked) into a decoder: the CRC, the block
// sizes, the distances, the code and the block offsets. False for a broken file.
bool ReadHeader(const unsigned char* header, std::uint32_t header_size, TB_DECODER& decoder);

// File offset and compressed size of a block below block_count.
std::uint32_t BlockOffset(const TB_DECODER& decoder, std::uint32_t block);
std::uint32_t CompressedBlockSize(const TB_DECODER& decoder, std::uint32_t block);

// Decodes one compressed block of exactly `expected_size` bytes into output, which has 36 bytes of
// slack behind them. False when the data don't decode to that size.
bool DecodeBlock(const TB_DECODER& decoder, const unsigned char* input, std::size_t input_size,
                 unsigned char* output, int expected_size);

}  // namespace NalimovTablebases
