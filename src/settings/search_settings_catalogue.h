// The typed description of the search settings, in file order: name, type, size, range, default
// and the address of the global. The settings file and commands work through it; the search never
// does.
#pragma once

#include <array>
#include <string_view>

#include "settings/search_settings.h"

enum class SettingType { boolean, integer };

constexpr int SEARCH_SETTING_COUNT = 173;
constexpr int MAX_SETTING_VALUES = 6;  // the longest integer array

struct SearchSettingDescription {
  std::string_view name;
  SettingType type;
  int size;  // number of values, 1 unless the setting is an array
  int min;   // integers only; every value lies within min..max
  int max;
  std::array<int, MAX_SETTING_VALUES> defaults;  // booleans as 0 and 1
  bool* boolean;  // the global of a boolean, else null
  int* integer;   // the first value of an integer global, else null
};

#define ZEPHRIN_BOOLEAN(name, value) \
  SearchSettingDescription{#name, SettingType::boolean, 1, 0, 1, {value}, &name, nullptr},
#define ZEPHRIN_INTEGER(name, value, min, max) \
  SearchSettingDescription{#name, SettingType::integer, 1, min, max, {value}, nullptr, &name},
#define ZEPHRIN_INTEGER_ARRAY(name, size, min, max, ...) \
  SearchSettingDescription{#name, SettingType::integer, size, min, max, {__VA_ARGS__}, nullptr, name},
inline constexpr std::array<SearchSettingDescription, SEARCH_SETTING_COUNT> SEARCH_SETTINGS = {
#include "settings/search_settings.inc"
};
#undef ZEPHRIN_BOOLEAN
#undef ZEPHRIN_INTEGER
#undef ZEPHRIN_INTEGER_ARRAY

// The index of the setting with exactly this name, or -1.
int FindSearchSetting(std::string_view name);

// Gives every search setting its default value again.
void RestoreSearchSettingDefaults();
