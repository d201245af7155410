#include "frame/string_conversions.h"

#include <limits>
#include <sstream>

std::int32_t ToInt(const std::string& text) {
  if (text.empty()) throw string_conversion_error();
  if (text.size() > 1 && text[0] == '-' && text.find('-', 1) == std::string::npos) {
    return -ToInt(text.substr(1));
  }
  if (text.size() > 1 && text[0] == '0' && text.find('-', 1) == std::string::npos) {
    const std::size_t first = text.find_first_not_of('0');
    if (first == std::string::npos) return 0;
    return ToInt(text.substr(first));
  }
  std::istringstream stream(text);
  std::int32_t value = 0;
  stream >> value;
  if (stream.fail() || ToText(value) != text) throw string_conversion_error();
  return value;
}

std::uint64_t ToUnsigned(const std::string& text) {
  if (text.empty() || (text.size() > 1 && text[0] == '0')) throw string_conversion_error();
  std::uint64_t value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') throw string_conversion_error();
    const std::uint64_t digit = static_cast<std::uint64_t>(c - '0');
    if (value > (std::numeric_limits<std::uint64_t>::max() - digit) / 10) throw string_conversion_error();
    value = value * 10 + digit;
  }
  return value;
}

std::uint64_t ToMemorySize(const std::string& text) {
  if (text.empty()) throw string_conversion_error();
  std::uint64_t unit = 1;
  switch (text.back()) {
    case 'k': case 'K': unit = 1ull << 10; break;
    case 'm': case 'M': unit = 1ull << 20; break;
    case 'g': case 'G': unit = 1ull << 30; break;
    case 't': case 'T': unit = 1ull << 40; break;
    default: break;
  }
  const std::uint64_t number = ToUnsigned(unit == 1 ? text : text.substr(0, text.size() - 1));
  if (number > std::numeric_limits<std::uint64_t>::max() / unit) throw string_conversion_error();
  return number * unit;
}

std::int64_t ToDecimalMilliseconds(const std::string& text) {
  const std::size_t point = text.find('.');
  if (point == std::string::npos) return std::int64_t{ToInt(text)} * 1000;
  const bool negative = StartsWith(text, "-");
  const std::string whole = text.substr(negative ? 1 : 0, point - (negative ? 1 : 0));
  const std::string fraction = text.substr(point + 1);
  const auto all_digits = [](const std::string& part) {
    return !part.empty() && part.find_first_not_of("0123456789") == std::string::npos;
  };
  if (!all_digits(whole) || !all_digits(fraction)) throw string_conversion_error();
  std::int64_t ms = std::int64_t{ToInt(whole)} * 1000;
  for (std::size_t i = 0, scale = 100; i < 3 && i < fraction.size(); ++i, scale /= 10) {
    ms += (fraction[i] - '0') * std::int64_t(scale);
  }
  return negative ? -ms : ms;
}

// The sum is formed in 64 bits so that a huge number of minutes fails instead of overflowing.
std::int64_t ToMilliseconds(const std::string& text) {
  if (text == "0") return 10000;
  std::int64_t ms = 0;
  const std::size_t colon = text.find(':');
  if (colon == std::string::npos) {
    ms = std::int64_t{ToInt(text)} * 60000;
  } else {
    ms = std::int64_t{ToInt(text.substr(0, colon))} * 60000 + ToDecimalMilliseconds(text.substr(colon + 1));
  }
  constexpr std::int64_t limit = std::int64_t{std::numeric_limits<std::int32_t>::max()} * 1000;
  if (ms > limit || ms < -limit) throw string_conversion_error();
  return ms;
}

std::string ToText(std::uint64_t value) { return std::to_string(value); }

std::string ToText(std::int64_t value) {
  if (value >= 0) return ToText(static_cast<std::uint64_t>(value));
  std::string text = ToText(0 - static_cast<std::uint64_t>(value));
  text.insert(text.begin(), '-');
  return text;
}

std::string ToText(std::int32_t value) { return ToText(std::int64_t{value}); }

std::string MemorySizeText(std::uint64_t bytes) {
  if (bytes < 1024) return ToText(bytes) + " byte";
  std::uint64_t unit = 1024;
  const char* word = "kilobyte";
  if (bytes >= 0x40000000) {
    unit = 1073741824;
    word = "gigabyte";
  } else if (bytes >= 1048576) {
    unit = 1048576;
    word = "megabyte";
  }
  // bytes * 100 / unit without overflowing 64 bits
  const std::uint64_t hundredths = bytes / unit * 100 + bytes % unit * 100 / unit;
  const std::uint64_t fraction = hundredths % 100;
  return ToText(hundredths / 100) + "." + (fraction < 10 ? "0" : "") + ToText(fraction) + " " + word;
}

std::string ReplaceChar(std::string text, char from, char to) {
  for (char& c : text) {
    if (c == from) c = to;
  }
  return text;
}

std::string Trim(const std::string& text, const std::string& characters) {
  const std::size_t first = text.find_first_not_of(characters);
  if (first == std::string::npos) return "";
  const std::size_t last = text.find_last_not_of(characters);
  return text.substr(first, last - first + 1);
}

bool StartsWith(const std::string& text, const std::string& prefix) {
  return text.size() >= prefix.size() && text.compare(0, prefix.size(), prefix) == 0;
}

std::optional<Square> ParseSquare(const std::string& text) {
  if (text.size() != 2) return std::nullopt;
  const char file = static_cast<char>(text[0] | 0x20);
  const char rank = text[1];
  if (file < 'a' || file > 'h' || rank < '1' || rank > '8') return std::nullopt;
  return MakeSquare(file - 'a', rank - '1');
}

std::string SquareText(Square square) {
  return {static_cast<char>('a' + FileOf(square)), static_cast<char>('1' + RankOf(square))};
}
