#include "table_compressor.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <queue>
#include <stdexcept>
#include <utility>

namespace {

constexpr int BLOCK_BITS = 13;
constexpr int BLOCK_SIZE = 1 << BLOCK_BITS;
constexpr int DISTANCES = 24;
constexpr int SYMBOLS = 1024;
constexpr int LITERALS = 256;
constexpr int META_SYMBOLS = 64;
constexpr int MAX_CODE_LENGTH = 31;
constexpr int MIN_MATCH = 2;
constexpr std::uint32_t FORMAT_NUMBER = 0x4001f5;
constexpr char BANNER[] = "Compressed by DATACOMP v 1.0 (c) 1991--1998 Andrew Kadatch\r\n";
constexpr int BANNER_SIZE = 64;  // the text and 4 zero bytes

using Distances = std::array<int, DISTANCES>;

// Bits most significant first into bytes.
class BitWriter {
 public:
  void Put(std::uint32_t value, int bits) {
    for (int bit = bits - 1; bit >= 0; --bit) {
      pending_ = std::uint8_t(pending_ << 1 | (value >> bit & 1));
      if (++count_ == 8) Emit();
    }
  }
  std::vector<unsigned char> Finish() {
    if (count_ > 0) {
      pending_ = std::uint8_t(pending_ << (8 - count_));
      Emit();
    }
    return std::move(bytes_);
  }

 private:
  void Emit() {
    bytes_.push_back(pending_);
    pending_ = 0;
    count_ = 0;
  }
  std::vector<unsigned char> bytes_;
  std::uint8_t pending_ = 0;
  int count_ = 0;
};

// A symbol and the extra bits that follow it.
struct Token {
  int symbol;
  std::uint32_t extra;
  int extra_bits;
};

struct Code {
  std::uint32_t bits;
  int length;  // 0 for the only symbol of a one-symbol code
};

// Extra bits above a base: the number of bits e and the value x of 2^e + x = value.
std::pair<int, std::uint32_t> SplitPowerOfTwo(std::uint32_t value) {
  int bits = 0;
  while ((value >> (bits + 1)) != 0) ++bits;
  return {bits, value - (std::uint32_t(1) << bits)};
}

Token MatchToken(int distance_index, int length) {
  const int base = LITERALS + distance_index * 32;
  if (length <= 15) return {base + length - 1, 0, 0};
  const auto [bits, extra] = SplitPowerOfTwo(std::uint32_t(length - 14));
  return {base + 14 + bits, extra, bits};
}

// The 24 distances at which equal bytes are most frequent in a sample of the table, with
// distance 1 always among them for runs.
Distances ChooseDistances(const std::vector<signed char>& table) {
  constexpr std::size_t SAMPLES = 4096;
  const std::size_t stride = std::max<std::size_t>(1, table.size() / SAMPLES);
  std::vector<std::pair<double, int>> scores;
  for (int d = 1; d < BLOCK_SIZE; ++d) {
    std::size_t equal = 0, eligible = 0;
    for (std::size_t p = 0; p < table.size(); p += stride) {
      if (int(p % BLOCK_SIZE) < d) continue;
      ++eligible;
      equal += table[p] == table[p - std::size_t(d)];
    }
    scores.push_back({eligible >= 16 ? double(equal) / double(eligible) : 0.0, d});
  }
  std::stable_sort(scores.begin(), scores.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
  Distances distances{};
  for (int i = 0; i < DISTANCES; ++i) distances[i] = scores[std::size_t(i)].second;
  if (std::find(distances.begin(), distances.end(), 1) == distances.end()) distances[DISTANCES - 1] = 1;
  return distances;
}

// Greedy LZ77 within one block: at each byte the longest match at any of the distances, or a literal.
std::vector<Token> ParseBlock(const unsigned char* block, int size, const Distances& distances) {
  std::vector<Token> tokens;
  int position = 0;
  while (position < size) {
    int best_length = 0, best_index = 0;
    for (int i = 0; i < DISTANCES; ++i) {
      const int d = distances[i];
      if (d > position) continue;
      int length = 0;
      while (position + length < size && block[position + length] == block[position + length - d]) ++length;
      if (length > best_length) best_length = length, best_index = i;
    }
    if (best_length >= MIN_MATCH) {
      tokens.push_back(MatchToken(best_index, best_length));
      position += best_length;
    } else {
      tokens.push_back({block[position], 0, 0});
      ++position;
    }
  }
  return tokens;
}

// Huffman code lengths of at most max_length bits: when the tree is too deep, the frequencies are
// halved (keeping every used symbol) and the tree built again. A single used symbol gets length 1.
std::vector<int> CodeLengths(std::vector<std::uint64_t> frequencies, int max_length) {
  const int count = int(frequencies.size());
  std::vector<int> lengths(std::size_t(count), 0);
  std::vector<int> used;
  for (int s = 0; s < count; ++s)
    if (frequencies[std::size_t(s)] > 0) used.push_back(s);
  if (used.size() == 1) lengths[std::size_t(used[0])] = 1;
  if (used.size() <= 1) return lengths;
  while (true) {
    using Node = std::pair<std::uint64_t, int>;
    std::priority_queue<Node, std::vector<Node>, std::greater<>> queue;
    std::vector<int> parent(2 * used.size(), -1);
    for (std::size_t i = 0; i < used.size(); ++i) queue.push({frequencies[std::size_t(used[i])], int(i)});
    int next = int(used.size());
    while (queue.size() > 1) {
      const Node a = queue.top();
      queue.pop();
      const Node b = queue.top();
      queue.pop();
      parent[std::size_t(a.second)] = parent[std::size_t(b.second)] = next;
      queue.push({a.first + b.first, next++});
    }
    int deepest = 0;
    for (std::size_t i = 0; i < used.size(); ++i) {
      int depth = 0;
      for (int node = int(i); parent[std::size_t(node)] >= 0; node = parent[std::size_t(node)]) ++depth;
      lengths[std::size_t(used[i])] = depth;
      deepest = std::max(deepest, depth);
    }
    if (deepest <= max_length) return lengths;
    for (std::uint64_t& f : frequencies)
      if (f > 0) f = (f + 1) / 2;
  }
}

// Canonical codes: by length, then by symbol, shorter codes numerically lower.
std::vector<Code> CanonicalCodes(const std::vector<int>& lengths) {
  std::vector<Code> codes(lengths.size(), Code{0, 0});
  const auto used = std::count_if(lengths.begin(), lengths.end(), [](int l) { return l > 0; });
  if (used == 1) return codes;  // the one symbol costs no bits
  std::uint32_t code = 0;
  for (int length = 1; length <= MAX_CODE_LENGTH; ++length) {
    for (std::size_t s = 0; s < lengths.size(); ++s)
      if (lengths[s] == length) codes[s] = {code++, length};
    code <<= 1;
  }
  return codes;
}

void PutToken(BitWriter& writer, const std::vector<Code>& codes, const Token& token) {
  const Code& code = codes[std::size_t(token.symbol)];
  writer.Put(code.bits, code.length);
  writer.Put(token.extra, token.extra_bits);
}

// Up to 128 lengths as plain fields of one width, each 0 followed by a 4-bit count of more zeros.
void WritePlainCodeLengths(BitWriter& writer, const std::vector<int>& lengths) {
  const int largest = *std::max_element(lengths.begin(), lengths.end());
  writer.Put(largest == 0 ? 1 : 0, 1);
  if (largest == 0) return;
  int width = 1;
  while ((largest >> width) != 0) ++width;
  writer.Put(std::uint32_t(width), 5);
  for (std::size_t i = 0; i < lengths.size();) {
    const int value = lengths[i++];
    writer.Put(std::uint32_t(value), width);
    if (value != 0) continue;
    std::size_t zeros = 0;
    while (zeros < 15 && i + zeros < lengths.size() && lengths[i + zeros] == 0) ++zeros;
    writer.Put(std::uint32_t(zeros), 4);
    i += zeros;
  }
}

// The 1024 lengths as values and runs of one value, coded by two 64-symbol meta codes whose own
// lengths go first, in the plain form.
void WriteCodeLengths(BitWriter& writer, const std::vector<int>& lengths) {
  if (std::all_of(lengths.begin(), lengths.end(), [](int l) { return l == 0; })) {
    writer.Put(1, 1);
    return;
  }
  writer.Put(0, 1);
  std::vector<Token> values, runs;  // a run has its value symbol and a run symbol
  std::vector<std::uint64_t> value_counts(META_SYMBOLS), run_counts(META_SYMBOLS);
  for (std::size_t i = 0; i < lengths.size();) {
    std::size_t run = 1;
    while (i + run < lengths.size() && lengths[i + run] == lengths[i]) ++run;
    if (run < 3) run = 1;
    Token value{lengths[i], 0, 0}, repeat{-1, 0, 0};
    if (run >= 3) {
      value.symbol += 32;
      const auto r = std::uint32_t(run - 2);
      repeat = {int(r), 0, 0};
      if (r > 31) {
        const auto [bits, extra] = SplitPowerOfTwo(r - 31);
        repeat = {32 + bits, extra, bits};
      }
      ++run_counts[std::size_t(repeat.symbol)];
    }
    ++value_counts[std::size_t(value.symbol)];
    values.push_back(value);
    runs.push_back(repeat);
    i += run;
  }
  std::vector<int> meta = CodeLengths(value_counts, MAX_CODE_LENGTH);
  const std::vector<int> run_lengths = CodeLengths(run_counts, MAX_CODE_LENGTH);
  const std::vector<Code> value_codes = CanonicalCodes(meta), run_codes = CanonicalCodes(run_lengths);
  meta.insert(meta.end(), run_lengths.begin(), run_lengths.end());
  WritePlainCodeLengths(writer, meta);
  for (std::size_t i = 0; i < values.size(); ++i) {
    PutToken(writer, value_codes, values[i]);
    if (runs[i].symbol >= 0) PutToken(writer, run_codes, runs[i]);
  }
}

std::uint32_t Crc(const unsigned char* data, std::size_t size) {
  std::uint32_t crc = 0;
  for (std::size_t i = 0; i < size; ++i) {
    crc ^= data[i];
    for (int bit = 0; bit < 8; ++bit) crc = crc & 1 ? crc >> 1 ^ 0xedb88320u : crc >> 1;
  }
  return crc;
}

void PutBig32(std::vector<unsigned char>& bytes, std::size_t at, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) bytes[at + std::size_t(i)] = std::uint8_t(value >> (24 - 8 * i));
}

}  // namespace

std::vector<unsigned char> CompressTable(const std::vector<signed char>& table) {
  if (table.empty()) throw std::invalid_argument("CompressTable: empty table");
  const Distances distances = ChooseDistances(table);
  const std::size_t block_count = (table.size() + BLOCK_SIZE - 1) / BLOCK_SIZE;
  const auto* data = reinterpret_cast<const unsigned char*>(table.data());
  auto block_length = [&](std::size_t b) { return int(std::min<std::size_t>(BLOCK_SIZE, table.size() - b * BLOCK_SIZE)); };

  std::vector<std::vector<Token>> parsed(block_count);
  std::vector<std::uint64_t> frequencies(SYMBOLS);
  for (std::size_t b = 0; b < block_count; ++b) {
    parsed[b] = ParseBlock(data + b * BLOCK_SIZE, block_length(b), distances);
    for (const Token& token : parsed[b]) ++frequencies[std::size_t(token.symbol)];
  }
  const std::vector<int> lengths = CodeLengths(frequencies, MAX_CODE_LENGTH);
  const std::vector<Code> codes = CanonicalCodes(lengths);

  // A block whose code isn't shorter than the block is stored; a compressed block has at least one
  // byte, since a size of 0 stands for a whole block.
  std::vector<std::vector<unsigned char>> blocks(block_count);
  for (std::size_t b = 0; b < block_count; ++b) {
    BitWriter writer;
    for (const Token& token : parsed[b]) PutToken(writer, codes, token);
    blocks[b] = writer.Finish();
    if (blocks[b].empty()) blocks[b].push_back(0);
    if (int(blocks[b].size()) >= block_length(b))
      blocks[b].assign(data + b * BLOCK_SIZE, data + b * BLOCK_SIZE + block_length(b));
  }

  BitWriter fields;
  for (const auto& block : blocks) fields.Put(std::uint32_t(block.size()) % BLOCK_SIZE, BLOCK_BITS);
  fields.Put(std::uint32_t(block_length(block_count - 1)) % BLOCK_SIZE, BLOCK_BITS);
  for (int d : distances) fields.Put(std::uint32_t(d), BLOCK_BITS);
  BitWriter code_lengths;
  WriteCodeLengths(code_lengths, lengths);

  std::vector<unsigned char> file(0x50 + 8 * block_count, 0);
  std::memcpy(file.data(), BANNER, sizeof BANNER - 1);
  file[0x46] = BLOCK_BITS;
  file[0x47] = DISTANCES;
  PutBig32(file, 0x48, std::uint32_t(block_count));
  PutBig32(file, 0x4c, FORMAT_NUMBER);
  for (const auto& stream : {fields.Finish(), code_lengths.Finish()}) file.insert(file.end(), stream.begin(), stream.end());
  file.resize(file.size() + 4);
  PutBig32(file, 0x40, std::uint32_t(file.size()));
  PutBig32(file, file.size() - 4, Crc(file.data(), file.size() - 4));
  static_assert(sizeof BANNER - 1 + 4 == BANNER_SIZE);
  for (const auto& block : blocks) file.insert(file.end(), block.begin(), block.end());
  return file;
}
