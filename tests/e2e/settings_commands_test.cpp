// The settings commands as a front end and a person use them: changing, showing, writing and
// reading the search settings, and the refusals that leave them as they were.
#include <gtest/gtest.h>

#include <fstream>

#include "e2e/engine_process.h"

namespace {

std::string DefaultSettingsText() {
  return ReadFile(std::string(ZEPHRIN_SOURCE_DIR) + "/tests/settings/default_search_settings.txt");
}

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  const std::size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  if (at != std::string::npos) text.replace(at, from.size(), to);
  return text;
}

}  // namespace

TEST(SettingsEndToEnd, ChangeShowWriteAndReadUnderXBoard) {
  TemporaryDirectory directory;
  ASSERT_FALSE(directory.path.empty());
  const std::string file = directory.path + "/settings.txt";
  const std::string bad = directory.path + "/bad.txt";
  std::ofstream(bad) << Replaced(DefaultSettingsText(), "full_extension_minimum_depth=2\n",
                                 "full_extension_minimum_depth=abc\n");

  const EngineRun run = RunEngine(
      {}, "xboard\nforce\n"
          "modify_settings min_ply_for_null_move=3;enable_ettc=false\n"
          "modify_settings enable_ettc=yes\n"
          "display_settings enable_ettc;min_ply_for_null_move\n"
          "write_settings " + file + "\n"
          "modify_settings enable_ettc=true;min_ply_for_null_move=0\n"
          "read_settings " + file + "\n"
          "read_settings " + bad + "\n"
          "read_settings " + directory.path + "/missing.txt\n"
          "display_settings enable_ettc min_ply_for_null_move\n"
          "new\n"
          "modify_settings enable_ettc=true\n"
          "read_settings " + bad + "\n"
          "display_settings foo\n"
          "write_settings " + directory.path + "/no/such.txt\n"
          "ping 1\n");
  EXPECT_EQ(run.out, Prompt("White 1") +
                         "Error (could not parse new value: could not parse boolean: yes): modify_settings enable_ettc=yes\n"
                         "enable_ettc=false\nmin_ply_for_null_move=3\n"
                         "Error (file contained invalid data:\nParse error in line #5 (could not parse integer: abc)): "
                         "read_settings " + bad + "\n"
                         "Error (could not open file: " + directory.path + "/missing.txt): read_settings " +
                         directory.path + "/missing.txt\n"
                         "enable_ettc=false\nmin_ply_for_null_move=3\n"
                         "Error (must be in force mode): modify_settings enable_ettc=true\n"
                         "Error (must be in force mode): read_settings " + bad + "\n"
                         "Error (unknown variable: foo): display_settings foo\n"
                         "Error (could not write search settings file: could not open file: " + directory.path +
                         "/no/such.txt): write_settings " + directory.path + "/no/such.txt\n"
                         "pong 1\n");
  EXPECT_EQ(run.status, 0);

  EXPECT_EQ(ReadFile(file), Replaced(Replaced(DefaultSettingsText(), "\nmin_ply_for_null_move=0\n",
                                             "\nmin_ply_for_null_move=3\n"),
                                    "\nenable_ettc=true\n", "\nenable_ettc=false\n"));
}

TEST(SettingsEndToEnd, StartupCommandAndDisplayOfAll) {
  const EngineRun run = RunEngine({"--modify_settings=root_distance_multiplier=128"}, "display_settings\n");
  EXPECT_EQ(run.out, Prompt("White 1") +
                         Replaced(DefaultSettingsText(), "root_distance_multiplier=64\n",
                                  "root_distance_multiplier=128\n") +
                         Prompt("White 1"));
  EXPECT_EQ(run.status, 0);
  // A failed start-up command stops the program before it changes anything.
  const EngineRun failed = RunEngine({"--modify_settings=enable_ettc=1"}, "");
  EXPECT_EQ(failed.status, 1);
  EXPECT_NE(failed.out.find("could not parse new value: could not parse boolean: 1"), std::string::npos)
      << failed.out;
}
