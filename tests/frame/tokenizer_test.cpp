#include "frame/tokenizer.h"

#include <gtest/gtest.h>

using Tokens = std::vector<std::string>;

TEST(Tokenizer, SplitsAtSeparatorsJoinsQuotedPartsAndRefusesUnterminatedOnes) {
  EXPECT_EQ(TokenizeLine("").tokens, Tokens{});
  EXPECT_EQ(TokenizeLine(" \t\r\n ").tokens, Tokens{});
  EXPECT_EQ(TokenizeLine("  level 40\t5  0\r\n").tokens, (Tokens{"level", "40", "5", "0"}));
  EXPECT_EQ(TokenizeLine("name \"two words\"").tokens, (Tokens{"name", "two words"}));
  EXPECT_EQ(TokenizeLine("a\"b c\"d e").tokens, (Tokens{"ab cd", "e"}));
  EXPECT_EQ(TokenizeLine("say 'it \"is\" so'").tokens, (Tokens{"say", "it \"is\" so"}));
  EXPECT_EQ(TokenizeLine("\"\" x").tokens, (Tokens{"", "x"}));
  EXPECT_EQ(TokenizeLine("\"a\"'b'\"c d\"").tokens, (Tokens{"abc d"}));
  EXPECT_EQ(TokenizeLine("x\"\"").tokens, (Tokens{"x"}));
  EXPECT_EQ(TokenizeLine("ping 7").raw, "ping 7");
  EXPECT_THROW(TokenizeLine("name don't"), ZephrinUtils::unterminated_embedded_string_exception);
  EXPECT_THROW(TokenizeLine("\""), ZephrinUtils::tokenize_exception);
  EXPECT_THROW(TokenizeLine("a \"b c"), ZephrinUtils::tokenize_exception);
  // The closing mark must be the one of the opening mark.
  EXPECT_THROW(TokenizeLine("'abc\""), ZephrinUtils::tokenize_exception);
}

TEST(Tokenizer, JobListsKeepBracketsAndGroupBracesAndLongLines) {
  EXPECT_EQ(TokenizeJobList("kp_kp [a b] {c d} e"), (Tokens{"kp_kp", "[a b]", "c d", "e"}));
  EXPECT_EQ(TokenizeJobList("x[1 2]y"), (Tokens{"x[1 2]y"}));
  EXPECT_THROW(TokenizeJobList("[a b"), ZephrinUtils::tokenize_exception);
  // Long lines of marks don't exhaust the stack.
  std::string text;
  for (int i = 0; i < 200000; ++i) text += "\"a\"";
  const Tokens tokens = TokenizeLine(text).tokens;
  ASSERT_EQ(tokens.size(), 1u);
  EXPECT_EQ(tokens[0], std::string(200000, 'a'));
}
