#include "frame/string_conversions.h"

#include <gtest/gtest.h>

template <typename Value>
using Rows = std::initializer_list<std::pair<const char*, Value>>;

TEST(StringConversions, ToIntIsStrictInBothDirections) {
  for (const auto& [text, value] : Rows<int>{{"0", 0}, {"-0", 0}, {"007", 7}, {"000", 0}, {"-007", -7},
                                             {"2147483647", 2147483647}, {"-2147483647", -2147483647}}) {
    EXPECT_EQ(ToInt(text), value) << text;
  }
  for (const char* bad : {"", "-", "--5", "+5", "5x", " 5", "5 ", "2147483648", "-2147483648",
                          "99999999999999999999", "0x10", "00-5", "1e3", "5-"}) {
    EXPECT_THROW(ToInt(bad), string_conversion_error) << bad;
  }
}

TEST(StringConversions, ToUnsignedAndMemorySizes) {
  EXPECT_EQ(ToUnsigned("0"), 0u);
  EXPECT_EQ(ToUnsigned("18446744073709551615"), 18446744073709551615ull);
  for (const char* bad : {"", "01", "-1", "+1", "18446744073709551616", "1 ", "a"}) {
    EXPECT_THROW(ToUnsigned(bad), string_conversion_error) << bad;
  }
  for (const auto& [text, size] : Rows<std::uint64_t>{{"512", 512}, {"8k", 8u * 1024}, {"8M", 8u * 1048576},
                                                      {"2g", 2ull << 30}, {"3T", 3ull << 40},
                                                      {"16777215T", 16777215ull << 40}}) {
    EXPECT_EQ(ToMemorySize(text), size) << text;
  }
  for (const char* bad : {"", "M", "8X", "8MM", "08M", "-8M", "16777216T", "8 M"}) {
    EXPECT_THROW(ToMemorySize(bad), string_conversion_error) << bad;
  }
}

TEST(StringConversions, TimeControlTextsToMilliseconds) {
  for (const auto& [text, ms] : Rows<std::int64_t>{{"0", 10000}, {"00", 0}, {"5", 300000}, {"1:30", 90000},
                                                   {"0:05", 5000}, {"0:08.5", 8500}, {"0:00.125", 125},
                                                   {"1:-5", 55000}, {"35791394", 35791394ll * 60000}}) {
    EXPECT_EQ(ToMilliseconds(text), ms) << text;
  }
  for (const char* bad : {"", ":", "1:", ":30", "x", "1:30:00", "99999999", "1.5", "0:08.", "0:.5", "0:8.5x"}) {
    EXPECT_THROW(ToMilliseconds(bad), string_conversion_error) << bad;
  }
  for (const auto& [text, ms] : Rows<std::int64_t>{{"0", 0}, {"3", 3000}, {"0.1", 100}, {"2.5", 2500},
                                                   {"0.0125", 12}, {"-0.5", -500}, {"007.50", 7500}}) {
    EXPECT_EQ(ToDecimalMilliseconds(text), ms) << text;
  }
  for (const char* bad : {"", ".", ".5", "1.", "+1", "+1.5", "1.5.2", "--1.5", "-.5", "1.-5", "1,5", "0x1"}) {
    EXPECT_THROW(ToDecimalMilliseconds(bad), string_conversion_error) << bad;
  }
}

TEST(StringConversions, TextsOfNumbersAndSizes) {
  EXPECT_EQ(ToText(std::int32_t{-2147483647 - 1}), "-2147483648");
  EXPECT_EQ(ToText(std::int64_t{-5}), "-5");
  EXPECT_EQ(ToText(std::uint64_t{18446744073709551615ull}), "18446744073709551615");
  for (const auto& [size, text] : std::initializer_list<std::pair<std::uint64_t, const char*>>{
           {0, "0 byte"}, {1023, "1023 byte"}, {1024, "1.00 kilobyte"}, {1536, "1.50 kilobyte"},
           {4194304, "4.00 megabyte"}, {25165824, "24.00 megabyte"}, {1048575, "1023.99 kilobyte"},
           {0x40000000, "1.00 gigabyte"}, {18446744073709551615ull, "17179869183.99 gigabyte"}}) {
    EXPECT_EQ(MemorySizeText(size), text) << size;
  }
}

TEST(StringConversions, TextHelpersAndSquares) {
  EXPECT_EQ(ReplaceChar("a\nb\n", '\n', '\t'), "a\tb\t");
  EXPECT_EQ(Trim("  x y \t", " \t"), "x y");
  EXPECT_EQ(Trim("   ", " "), "");
  EXPECT_TRUE(StartsWith("##Foo", "##"));
  EXPECT_FALSE(StartsWith("#", "##"));
  for (const auto& [text, square] : Rows<int>{{"a1", 0}, {"H8", 63}, {"e4", 28}}) {
    EXPECT_EQ(ParseSquare(text), square) << text;
  }
  for (const char* bad : {"", "e", "e9", "i1", "e44", "`1", "e0"}) EXPECT_EQ(ParseSquare(bad), std::nullopt) << bad;
  EXPECT_EQ(SquareText(0), "a1");
  EXPECT_EQ(SquareText(63), "h8");
}
