// What the fuzz targets share: the program's tables set up once, the search settings back at their
// defaults before each input, and the input cut into lines.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ZephrinFuzz {

// Attack tables and small hash tables, once; the search settings at their defaults every time.
void PrepareProgram();

// The input as text, and as its lines without line ends.
std::string Text(const std::uint8_t* data, std::size_t size);
std::vector<std::string> Lines(const std::string& text);

// A file of the input's bytes in a directory of the process's own; it stays until overwritten.
std::string WriteScratchFile(const std::string& name, const std::uint8_t* data, std::size_t size);

}  // namespace ZephrinFuzz
