// Splits input lines into tokens; quoted parts may hold blanks and are joined to their token.
#pragma once

#include <string>
#include <vector>

namespace ZephrinUtils {

struct tokenize_exception {};
struct unterminated_embedded_string_exception : tokenize_exception {};

// Splits `text` at `separators`. An opening mark starts an embedded string that runs to the
// closing mark at the same index; its text joins the surrounding token, without the marks
// unless they are in `kept_marks`. Marks don't nest. Throws unterminated_embedded_string_exception
// when a closing mark is missing.
std::vector<std::string> Tokenize(const std::string& text, const std::string& separators,
                                  const std::string& opening_marks, const std::string& closing_marks,
                                  const std::string& kept_marks);

}  // namespace ZephrinUtils

struct TokenizedLine {
  std::string raw;                  // the text as it came in
  std::vector<std::string> tokens;  // its tokens
};

// A command line: blank, tab, CR and LF separate; " and ' quote.
TokenizedLine TokenizeLine(const std::string& text);

// A job list: like a command line, and [ ] and { } group too; the brackets stay in the token.
std::vector<std::string> TokenizeJobList(const std::string& text);
