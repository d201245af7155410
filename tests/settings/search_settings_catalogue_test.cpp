#include "settings/search_settings_catalogue.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace {

// The value part of a settings line: the catalogue's defaults, or the current values of the globals.
std::string ValueText(const SearchSettingDescription& setting, bool current) {
  std::string text;
  for (int i = 0; i < setting.size; ++i) {
    const int value = !current ? setting.defaults[i] : setting.boolean ? *setting.boolean : setting.integer[i];
    if (i > 0) text += ' ';
    text += setting.type == SettingType::boolean ? (value ? "true" : "false") : std::to_string(value);
  }
  return text;
}

// The settings file of a program that has changed nothing holds one "name=value" line per setting.
TEST(SearchSettingsCatalogue, NamesOrderAndDefaultsMatchTheSettingsFile) {
  std::string defaults;
  std::string current;
  for (const SearchSettingDescription& setting : SEARCH_SETTINGS) {
    defaults += std::string(setting.name) + "=" + ValueText(setting, false) + "\n";
    current += std::string(setting.name) + "=" + ValueText(setting, true) + "\n";
  }
  std::ostringstream expected;
  expected << std::ifstream(std::string(ZEPHRIN_SOURCE_DIR) + "/tests/settings/default_search_settings.txt").rdbuf();
  ASSERT_FALSE(expected.str().empty());
  EXPECT_EQ(defaults, expected.str());
  EXPECT_EQ(current, expected.str());  // the globals start with the catalogue's defaults
}

TEST(SearchSettingsCatalogue, EntriesAreWellFormed) {
  std::set<std::string_view> names;
  for (const SearchSettingDescription& setting : SEARCH_SETTINGS) {
    SCOPED_TRACE(std::string(setting.name));
    EXPECT_TRUE(names.insert(setting.name).second) << "duplicate name";
    EXPECT_GE(setting.size, 1);
    EXPECT_LE(setting.size, MAX_SETTING_VALUES);
    EXPECT_LE(setting.min, setting.max);
    const bool is_boolean = setting.type == SettingType::boolean;
    if (setting.name.starts_with("enable_") || setting.name.starts_with("skip_")) {
      EXPECT_TRUE(is_boolean);
    }
    EXPECT_EQ(is_boolean, setting.boolean != nullptr);
    EXPECT_EQ(is_boolean, setting.integer == nullptr);
    for (int i = 0; i < setting.size; ++i) {
      EXPECT_GE(setting.defaults[i], setting.min);
      EXPECT_LE(setting.defaults[i], setting.max);
    }
    EXPECT_EQ(FindSearchSetting(setting.name), &setting - SEARCH_SETTINGS.data());
  }
  EXPECT_EQ(FindSearchSetting("foo"), -1);
  EXPECT_EQ(FindSearchSetting("enable_ettc "), -1);
}

}  // namespace
