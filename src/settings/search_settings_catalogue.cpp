#include "settings/search_settings_catalogue.h"

int FindSearchSetting(std::string_view name) {
  for (int i = 0; i < SEARCH_SETTING_COUNT; ++i) {
    if (SEARCH_SETTINGS[i].name == name) return i;
  }
  return -1;
}

void RestoreSearchSettingDefaults() {
  for (const SearchSettingDescription& setting : SEARCH_SETTINGS) {
    if (setting.type == SettingType::boolean) {
      *setting.boolean = setting.defaults[0] != 0;
    } else {
      for (int i = 0; i < setting.size; ++i) setting.integer[i] = setting.defaults[i];
    }
  }
}
