#include "settings/search_settings_catalogue.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace {

std::string DefaultText(const SearchSettingDescription& setting) {
  std::string text;
  for (int i = 0; i < setting.size; ++i) {
    if (i > 0) text += ' ';
    if (setting.type == SettingType::boolean) {
      text += setting.defaults[i] ? "true" : "false";
    } else {
      text += std::to_string(setting.defaults[i]);
    }
  }
  return text;
}

std::string CurrentText(const SearchSettingDescription& setting) {
  if (setting.type == SettingType::boolean) return *setting.boolean ? "true" : "false";
  std::string text;
  for (int i = 0; i < setting.size; ++i) {
    if (i > 0) text += ' ';
    text += std::to_string(setting.integer[i]);
  }
  return text;
}

// The settings file of a program that has changed nothing, one "name=value" line per setting.
std::string ExpectedDefaultFile() {
  std::ifstream file(std::string(ZEPHRIN_SOURCE_DIR) + "/tests/settings/default_search_settings.txt");
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

TEST(SearchSettingsCatalogue, NamesOrderAndDefaultsMatchTheSettingsFile) {
  std::string defaults;
  std::string current;
  for (const SearchSettingDescription& setting : SEARCH_SETTINGS) {
    defaults += std::string(setting.name) + "=" + DefaultText(setting) + "\n";
    current += std::string(setting.name) + "=" + CurrentText(setting) + "\n";
  }
  const std::string expected = ExpectedDefaultFile();
  ASSERT_FALSE(expected.empty());
  EXPECT_EQ(defaults, expected);
  EXPECT_EQ(current, expected);  // the globals start with the catalogue's defaults
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

  // Ranges that the settings commands rely on.
  const SearchSettingDescription& razoring = SEARCH_SETTINGS[FindSearchSetting("limited_razoring_margin")];
  EXPECT_EQ(razoring.min, 1);
  EXPECT_EQ(razoring.max, 32767);
  const SearchSettingDescription& margin = SEARCH_SETTINGS[FindSearchSetting("maximum_material_margin_for_null_move")];
  EXPECT_EQ(margin.min, -32767000);
  EXPECT_EQ(margin.max, 32767000);
  EXPECT_EQ(SEARCH_SETTINGS[FindSearchSetting("max_history_moves_before_remaining_tacticals")].max, 1000);
  EXPECT_EQ(SEARCH_SETTINGS[FindSearchSetting("root_distance_multiplier")].max, 6400);
}

TEST(SearchSettingsCatalogue, TheTableReachesTheGlobals) {
  min_ply_for_null_move = 3;
  enable_ettc = false;
  capture_move_sorting_bonus[5] = -7;
  EXPECT_EQ(*SEARCH_SETTINGS[FindSearchSetting("min_ply_for_null_move")].integer, 3);
  EXPECT_FALSE(*SEARCH_SETTINGS[FindSearchSetting("enable_ettc")].boolean);
  EXPECT_EQ(SEARCH_SETTINGS[FindSearchSetting("capture_move_sorting_bonus")].integer[5], -7);

  *SEARCH_SETTINGS[FindSearchSetting("limited_razoring_margin")].integer = 1;
  EXPECT_EQ(limited_razoring_margin, 1);

  RestoreSearchSettingDefaults();
  EXPECT_EQ(min_ply_for_null_move, 0);
  EXPECT_TRUE(enable_ettc);
  EXPECT_EQ(capture_move_sorting_bonus[5], 10);
  EXPECT_EQ(limited_razoring_margin, 875);
}

}  // namespace
