// Strict conversions between text and numbers, and small text helpers.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "board/types.h"

// Raised by every conversion that finds its text malformed or out of range.
struct string_conversion_error {};

// A decimal i32 that reads back to exactly the same text (leading zeros aside): "+5", " 5", "5x" fail.
std::int32_t ToInt(const std::string& text);
// A plain decimal u64: no sign, no leading zero, no overflow.
std::uint64_t ToUnsigned(const std::string& text);
// A byte count: a decimal number optionally followed by k/K, m/M, g/G or t/T (powers of 1024).
std::uint64_t ToMemorySize(const std::string& text);
// Seconds with an optional decimal fraction ("2", "0.1", "-2.5"), in milliseconds; digits past
// the third of the fraction are dropped.
std::int64_t ToDecimalMilliseconds(const std::string& text);
// Minutes with optional ":seconds", the seconds possibly decimal ("5", "1:30", "0:08.5"), as time
// controls give their base, in milliseconds; "0" stands for 10 seconds. At most 2^31 - 1 seconds
// either way.
std::int64_t ToMilliseconds(const std::string& text);

std::string ToText(std::int32_t value);
std::string ToText(std::int64_t value);
std::string ToText(std::uint64_t value);

// "512 byte", "4.00 megabyte", ...
std::string MemorySizeText(std::uint64_t bytes);

std::string ReplaceChar(std::string text, char from, char to);
std::string Trim(const std::string& text, const std::string& characters);
bool StartsWith(const std::string& text, const std::string& prefix);

// "e4" (file letter in either case) to a square; nothing for anything else.
std::optional<Square> ParseSquare(const std::string& text);
// The lower-case text of a square.
std::string SquareText(Square square);
