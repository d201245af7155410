// The help screens: sorting without regard to case, the key column, and wrapping of descriptions.
#include "interfaces/help_screen.h"

#include <gtest/gtest.h>

#include "interfaces/game_test_helpers.h"

using namespace ZephrinHelpScreen;

TEST(HelpScreen, TablesAreSortedWithoutCaseAndFirstEntriesWin) {
  const SimpleHelpScreenFormatter help(HelpTable());
  EXPECT_EQ(help.entries.size(), 62u);
  EXPECT_EQ(help.key_width, 16);  // display_settings
  for (std::size_t i = 1; i < help.entries.size(); ++i) {
    EXPECT_LT(help.entries[i - 1].command, help.entries[i].command) << i;  // no upper-case keys here
  }
  const SimpleHelpScreenFormatter mixed({{"b", "1"}, {"B", "2"}, {"a", "3"}, {"b", "4"}, {"ab", "5"}});
  ASSERT_EQ(mixed.entries.size(), 4u);
  EXPECT_EQ(mixed.entries[0].command, "a");
  EXPECT_EQ(mixed.entries[1].command, "ab");
  EXPECT_EQ(mixed.entries[2].description, "1");
  EXPECT_EQ(mixed.entries[3].description, "2");
}

TEST(HelpScreen, DescriptionsWrapUnderTheirColumn) {
  EXPECT_EQ(FormatDescription("one two", 10, 80), std::make_pair(std::string("one two"), 1));
  EXPECT_EQ(FormatDescription("one\ntwo", 10, 80), std::make_pair("one\n" + std::string(11, ' ') + "two", 2));
  // With 20 columns and a key of 10, a line holds words up to 8 characters in all.
  EXPECT_EQ(FormatDescription("aaaa bbb cc", 10, 20), std::make_pair("aaaa bbb\n" + std::string(11, ' ') + "cc", 2));
  EXPECT_EQ(FormatDescription("  spaced   out  ", 10, 80), std::make_pair(std::string("spaced out"), 1));
}

TEST(HelpScreen, ShowFillsTheKeyColumnWithDots) {
  test_helpers::CapturedOutput output;
  SimpleHelpScreenFormatter({{"quit", "Leaves the program"}, {"#", "Clears the board"}}).ShowSized(0, 80);
  EXPECT_EQ(output.Text(), "command    description\n#..........Clears the board\nquit.......Leaves the program\n");
}
