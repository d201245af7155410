// Compresses a table of signed bytes into the compressed table file format that the engine reads:
// blocks of 8192 bytes, each by LZ77 over 24 match distances chosen for the table and one
// canonical Huffman code over 1024 symbols, or stored when that doesn't pay.
#pragma once

#include <vector>

// The whole file, header and blocks. The table must not be empty.
std::vector<unsigned char> CompressTable(const std::vector<signed char>& table);
