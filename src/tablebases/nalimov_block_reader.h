// The Nalimov table files: plain or compressed in 8192-byte blocks, opened by ending and side,
// read one byte at a time through a cache of decoded blocks shared by all endings.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace NalimovTablebases {

constexpr int NOT_READ = 32767;

// Registers the table file of one side of an ending from a directory, trying the plain name and
// the compressed variants in turn; false if none exists. A broken file ends the program with its
// "*** " message. A side that already has a file keeps it, and the answer is then true.
bool OpenTableFile(const std::string& directory, const char* ending_name, int id, int side,
                   std::uint64_t expected_size, bool symmetric);

// Whether one side of an ending has a registered file.
bool TableExists(int id, int side);

// Closes and forgets every file, and lets go of the cache memory without touching it; probes then
// find nothing until files are registered and the cache is set up again.
void CloseTableFiles();

// Closes all files (they open again when needed) and lays out the cache slots in the given memory.
// False when size is above 0 but below one slot header; a size below one whole slot gives no slots,
// and then nothing can be read.
bool ResetCache(void* memory, std::size_t size);

// The stored byte of an entry, mapped as -32640 + b for a loss and 32640 + b for a win (0 a draw),
// or NOT_READ when the entry can't be read.
int ReadValue(int id, int side, std::uint64_t index);

}  // namespace NalimovTablebases
