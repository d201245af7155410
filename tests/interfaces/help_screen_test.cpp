// The help screens: sorting without regard to case and wrapping of descriptions. The screen itself,
// its order and its column of dots, is tested end to end.
#include "interfaces/help_screen.h"

#include <gtest/gtest.h>

using namespace ZephrinHelpScreen;

TEST(HelpScreen, SortedWithoutCaseFirstEntriesWinAndDescriptionsWrap) {
  const SimpleHelpScreenFormatter mixed({{"b", "1"}, {"B", "2"}, {"a", "3"}, {"b", "4"}, {"ab", "5"}});
  ASSERT_EQ(mixed.entries.size(), 4u);
  EXPECT_EQ(mixed.entries[0].command, "a");
  EXPECT_EQ(mixed.entries[1].command, "ab");
  EXPECT_EQ(mixed.entries[2].description, "1");
  EXPECT_EQ(mixed.entries[3].description, "2");
  // Descriptions wrap under their column.
  EXPECT_EQ(FormatDescription("one two", 10, 80), std::make_pair(std::string("one two"), 1));
  EXPECT_EQ(FormatDescription("one\ntwo", 10, 80), std::make_pair("one\n" + std::string(11, ' ') + "two", 2));
  // With 20 columns and a key of 10, a line holds words up to 8 characters in all.
  EXPECT_EQ(FormatDescription("aaaa bbb cc", 10, 20), std::make_pair("aaaa bbb\n" + std::string(11, ' ') + "cc", 2));
  EXPECT_EQ(FormatDescription("  spaced   out  ", 10, 80), std::make_pair(std::string("spaced out"), 1));
}
