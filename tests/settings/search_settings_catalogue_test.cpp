#include "settings/search_settings_catalogue.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

// That names, order and defaults give the settings file is tested end to end, by display_settings.
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
