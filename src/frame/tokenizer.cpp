#include "frame/tokenizer.h"

namespace ZephrinUtils {

namespace {

bool Contains(const std::string& set, char c) { return set.find(c) != std::string::npos; }

}  // namespace

// Equivalent to joining each embedded string to the text around it up to the next separator
// outside marks; done iteratively so that no input can exhaust the stack.
std::vector<std::string> Tokenize(const std::string& text, const std::string& separators,
                                  const std::string& opening_marks, const std::string& closing_marks,
                                  const std::string& kept_marks) {
  std::vector<std::string> tokens;
  std::size_t i = 0;
  const std::size_t n = text.size();
  while (true) {
    while (i < n && Contains(separators, text[i])) ++i;
    if (i == n) return tokens;
    std::string token;
    while (i < n && !Contains(separators, text[i])) {
      const std::size_t mark = opening_marks.find(text[i]);
      if (mark == std::string::npos || mark >= closing_marks.size()) {
        token += text[i++];
        continue;
      }
      const char closing = closing_marks[mark];
      const std::size_t end = text.find(closing, i + 1);
      if (end == std::string::npos) throw unterminated_embedded_string_exception();
      if (Contains(kept_marks, text[i])) token += text[i];
      token.append(text, i + 1, end - i - 1);
      if (Contains(kept_marks, closing)) token += closing;
      i = end + 1;
    }
    tokens.push_back(std::move(token));
  }
}

}  // namespace ZephrinUtils

namespace {
const std::string LINE_SEPARATORS = " \t\r\n";
}

TokenizedLine TokenizeLine(const std::string& text) {
  return {text, ZephrinUtils::Tokenize(text, LINE_SEPARATORS, "\"'", "\"'", "")};
}

std::vector<std::string> TokenizeJobList(const std::string& text) {
  return ZephrinUtils::Tokenize(text, LINE_SEPARATORS, "\"'[{", "\"']}", "[]");
}
