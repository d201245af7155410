#include "interfaces/personality_names.h"

#include <cctype>

#include "frame/random_source.h"
#include "frame/string_conversions.h"

namespace {

struct NamedValue {
  const char* name;
  std::int32_t value;
};

constexpr NamedValue PERSONALITY_VALUES[] = {
    {"Sarquel", 2},   {"Cordavin", 4}, {"Gremlow", 6},   {"Ziravel", 8},  {"Morvek", 11},
    {"Eskarth", 13},  {"Tilvane", 15}, {"Trevane", -2},  {"Haldrune", -4}, {"Yothmer", -6},
    {"Wenstor", -8},  {"Belquist", -10}, {"Nuvrain", -12}, {"Lumbrek", -15}, {"Zephrin", 0},
    {"Default", 0},   {"Fenx", 1000},  {"Ondrith", -1000},
};

// The lowest value that each name covers on the positive side, and the highest on the negative.
constexpr NamedValue POSITIVE_NAMES[] = {
    {"Fenx", 16}, {"Tilvane", 14}, {"Eskarth", 12}, {"Morvek", 9},
    {"Ziravel", 7}, {"Gremlow", 5}, {"Cordavin", 3}, {"Sarquel", 1},
};
constexpr NamedValue NEGATIVE_NAMES[] = {
    {"Ondrith", -16}, {"Lumbrek", -13}, {"Nuvrain", -11}, {"Belquist", -9},
    {"Wenstor", -7}, {"Yothmer", -5}, {"Haldrune", -3}, {"Trevane", -1},
};

}  // namespace

bool ParsePersonality(const std::string& text, std::int32_t& value) {
  if (text == "Random") {
    value = NonDeterministicRand_16bit() % 41 - 20;
    return true;
  }
  for (const NamedValue& entry : PERSONALITY_VALUES) {
    if (text == entry.name) {
      value = entry.value;
      return true;
    }
  }
  try {
    value = ToInt(text);
    return true;
  } catch (const string_conversion_error&) {
  }
  if (!text.empty() && std::islower(static_cast<unsigned char>(text[0]))) {
    std::string capitalized = text;
    capitalized[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return ParsePersonality(capitalized, value);
  }
  return false;
}

std::string PersonalityName(std::int32_t value) {
  if (value > 0) {
    for (const NamedValue& entry : POSITIVE_NAMES) {
      if (value >= entry.value) return entry.name;
    }
  } else if (value < 0) {
    for (const NamedValue& entry : NEGATIVE_NAMES) {
      if (value <= entry.value) return entry.name;
    }
  }
  return "Zephrin";
}

std::vector<std::string> PersonalityNames() {
  std::vector<std::string> names;
  for (const NamedValue& entry : PERSONALITY_VALUES) {
    if (std::string(entry.name) != "Default") names.push_back(entry.name);
  }
  return names;
}
