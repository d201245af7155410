#include "settings/settings.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "settings/boolean.h"
#include "settings/integer.h"
#include "settings/search_settings_catalogue.h"
#include "settings/settings_commands.h"
#include "e2e/engine_process.h"
#include "interfaces/game_test_helpers.h"

namespace {

using namespace OptimizeInterface;

using test_helpers::CapturedOutput;

std::string CurrentText() { return Settings(Settings::current).AllText(); }

std::vector<std::string> DefaultLines() {
  std::ifstream file(std::string(ZEPHRIN_SOURCE_DIR) + "/tests/settings/default_search_settings.txt");
  std::vector<std::string> lines;
  for (std::string line; std::getline(file, line);) lines.push_back(line);
  return lines;
}

class SettingsTest : public ::testing::Test {
 protected:
  void SetUp() override { RestoreSearchSettingDefaults(); }
  void TearDown() override { RestoreSearchSettingDefaults(); }

  std::string WriteLines(const std::vector<std::string>& lines) {
    std::ofstream file(path_);
    for (const std::string& line : lines) file << line << "\n";
    return path_;
  }

  const TemporaryDirectory directory_;
  const std::string path_ = directory_.File("settings.txt");
};

TEST_F(SettingsTest, ValuesParseStrictlyAndFailuresKeepTheOldValue) {
  EXPECT_THROW(Boolean("b", 0), DataType::DataTypeException);
  Integer bonus("bonus", 3, -5, 5);
  EXPECT_EQ(bonus.Describe(), "bonus : integer[3] {-5..5}");
  EXPECT_FALSE(bonus.Initialized());
  EXPECT_THROW(bonus.Value(0), DataType::DataTypeException);
  bonus.Parse(" 1\t-2  005 ");
  EXPECT_TRUE(bonus.Initialized());
  EXPECT_EQ(bonus.ToString(), "1 -2 5");
  const std::vector<std::pair<std::string, std::string>> failures = {
      {"1 2", "invalid size"}, {"1 2 3 4", "invalid size"}, {"", "invalid size"},
      {"1 +2 3", "could not parse integer: +2"}, {"1 2 3x", "could not parse integer: 3x"},
      {"1 2 6", "value out of bounds"}, {"-6 2 3", "value out of bounds"},
  };
  for (const auto& [text, reason] : failures) {
    try {
      bonus.Parse(text);
      ADD_FAILURE() << text;
    } catch (const DataType::DataTypeException& error) {
      EXPECT_EQ(error.Text(), reason) << text;
    }
    EXPECT_EQ(bonus.ToString(), "1 -2 5") << text;
  }
  EXPECT_THROW(bonus.Value(3), DataType::DataTypeException);

  Boolean flags("flags", 2);
  EXPECT_EQ(flags.Describe(), "flags : boolean[2] {false..true}");
  flags.Parse("true false");
  EXPECT_EQ(flags.ToString(), "true false");
  EXPECT_THROW(flags.Parse("true True"), DataType::DataTypeException);
  EXPECT_THROW(flags.Parse("true 1"), DataType::DataTypeException);
  EXPECT_EQ(flags.ToString(), "true false");
}

TEST_F(SettingsTest, EmptyFormCanNotBeApplied) {
  const Settings empty;
  ASSERT_EQ(empty.Count(), SEARCH_SETTING_COUNT);
  const int bonus = FindSearchSetting("capture_move_sorting_bonus");
  EXPECT_EQ(empty.Variable(bonus).Describe(), "capture_move_sorting_bonus : integer[6] {-511..511}");
  EXPECT_THROW(empty.Apply(), DataType::DataTypeException);
  const Settings current(Settings::current);
  EXPECT_EQ(current.GetInteger(bonus, 5), 10);
  EXPECT_THROW(current.GetInteger(bonus, 6), DataType::DataTypeException);
  EXPECT_THROW(current.GetBool(bonus), DataType::DataTypeException);
}

// Changing, showing, writing and reading back are tested end to end; here every refusal.
TEST_F(SettingsTest, ModifyChangesAllVariablesOrNone) {
  EXPECT_EQ(OptimizeInterface::ModifySearchSettings("capture_move_sorting_bonus='1 2 3 4 5 6'; enable_ettc=false"),
            std::nullopt);
  EXPECT_EQ(capture_move_sorting_bonus[5], 6);
  EXPECT_FALSE(enable_ettc);

  const std::string before = CurrentText();
  const std::vector<std::pair<std::string, std::string>> failures = {
      {"limited_razoring_margin=0", "could not parse new value: value out of bounds"},
      {"capture_move_sorting_bonus=0 4 5", "could not parse new value: invalid size"},
      {"root_distance_multiplier=12x", "could not parse new value: could not parse integer: 12x"},
      {"foo=1", "unknown variable: foo"}, {"enable_ettc", "seperator missing (';')"}, {";", "seperator missing (';')"},
      {"enable_ettc='false", "could not tokenize the input string"},
      // Earlier assignments of a failing command are not applied either.
      {"enable_ettc=false;min_ply_for_null_move=7;foo=1", "unknown variable: foo"},
  };
  for (const auto& [text, reason] : failures) {
    EXPECT_EQ(OptimizeInterface::ModifySearchSettings(text), reason) << text;
    EXPECT_EQ(CurrentText(), before) << text;
  }
  RestoreSearchSettingDefaults();
  EXPECT_EQ(capture_move_sorting_bonus[5], 10);
  EXPECT_TRUE(enable_ettc);
}

TEST_F(SettingsTest, ShortFileKeepsCurrentValuesOfTheMissingVariables) {
  std::vector<std::string> lines = DefaultLines();
  ASSERT_EQ(lines.size(), 173u);
  lines.resize(100);
  lines[0] = "root_distance_multiplier=128";
  score_checking_move_should_neglect_trade_knight_vs_bishop = false;  // the last variable, not in the file
  capture_move_sorting_bonus[0] = -3;
  WriteLines(lines);

  CapturedOutput output;
  EXPECT_EQ(OptimizeInterface::ReadSearchSettings(path_), std::nullopt);
  const std::string log = output.Text();
  EXPECT_TRUE(log.starts_with("Expected variable: " + std::string(SEARCH_SETTINGS[100].name) +
                              ";\nReceived variable: invalid\nWarning: Initialized missing variable <" +
                              std::string(SEARCH_SETTINGS[100].name) + "> with default value ('"))
      << log;
  EXPECT_NE(log.find("Warning: Initialized missing variable <capture_move_sorting_bonus> with default value "
                     "('-3 4 5 5 6 10')\n"),
            std::string::npos);
  int warnings = 0;
  for (std::size_t at = log.find("Warning:"); at != std::string::npos; at = log.find("Warning:", at + 1)) ++warnings;
  EXPECT_EQ(warnings, 73);
  EXPECT_EQ(log.find("Expected variable", 1), std::string::npos);
  EXPECT_EQ(root_distance_multiplier, 128);
  EXPECT_FALSE(score_checking_move_should_neglect_trade_knight_vs_bishop);
  EXPECT_EQ(capture_move_sorting_bonus[0], -3);
}

TEST_F(SettingsTest, FileIsReadStrictlyInOrder) {
  // Lines 3 and 4 are gone: their variables are filled in, and reading goes on in step.
  std::vector<std::string> lines = DefaultLines();
  lines.erase(lines.begin() + 2, lines.begin() + 4);
  lines.back() = "score_checking_move_should_neglect_trade_knight_vs_bishop=false";
  lines.push_back("not even a setting");  // behind the last variable: never read
  WriteLines(lines);
  {
    CapturedOutput output;
    EXPECT_EQ(OptimizeInterface::ReadSearchSettings(path_), std::nullopt);
    EXPECT_EQ(output.Text(),
              "Expected variable: min_depth_for_search_extensions_if_searching_pv_move;\n"
              "Received variable: full_extension_minimum_depth\n"
              "Warning: Initialized missing variable <min_depth_for_search_extensions_if_searching_pv_move> with "
              "default value ('1')\n"
              "Warning: Initialized missing variable <min_depth_for_search_extensions_if_not_searching_pv_move> with "
              "default value ('32')\n");
  }
  EXPECT_FALSE(score_checking_move_should_neglect_trade_knight_vs_bishop);

  // A blank line counts as a line with no name.
  lines = DefaultLines();
  lines.insert(lines.begin() + 1, "   ");
  WriteLines(lines);
  CapturedOutput output;
  EXPECT_EQ(OptimizeInterface::ReadSearchSettings(path_), std::nullopt);
  EXPECT_TRUE(output.Text().starts_with("Expected variable: enable_search_extensions;\nReceived variable: invalid\n"));
}

TEST_F(SettingsTest, BadFilesChangeNothing) {
  root_distance_multiplier = 100;
  const std::string before = CurrentText();
  std::vector<std::string> lines = DefaultLines();
  lines[0] = "root_distance_multiplier=64";  // would change a value if the file were applied
  lines[7] = "just some words";
  WriteLines(lines);
  EXPECT_EQ(OptimizeInterface::ReadSearchSettings(path_), "seperator missing ('=')");
  EXPECT_EQ(CurrentText(), before);

  if (std::filesystem::exists("/dev/full")) {
    EXPECT_EQ(OptimizeInterface::WriteSearchSettings("/dev/full"),
              "could not write search settings file: could not write file: /dev/full");
  }
  EXPECT_EQ(CurrentText(), before);
}

}  // namespace
