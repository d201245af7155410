#include "settings/settings_commands.h"

#include <vector>

#include "frame/string_conversions.h"
#include "frame/tee_stream.h"
#include "frame/tokenizer.h"
#include "settings/settings.h"

namespace OptimizeInterface {

namespace {

const char* const TOKENIZE_FAILURE = "could not tokenize the input string";

// Splits at `separators`; double quotes and apostrophes quote. Nothing on unterminated quotes.
std::optional<std::vector<std::string>> SplitList(const std::string& text, const std::string& separators) {
  try {
    return ZephrinUtils::Tokenize(text, separators, "\"'", "\"'", "");
  } catch (const ZephrinUtils::tokenize_exception&) {
    return std::nullopt;
  }
}

}  // namespace

std::optional<std::string> ReadSearchSettings(const std::string& path) {
  try {
    Settings::ReadFile(path).Apply();
  } catch (const Settings::InvalidData& error) {
    return std::string("file contained invalid data") + ":\n" + error.Text();
  } catch (const ZephrinException& error) {
    return error.Text();
  }
  return std::nullopt;
}

std::optional<std::string> WriteSearchSettings(const std::string& path) {
  try {
    Settings(Settings::current).WriteFile(path);
  } catch (const ZephrinException& error) {
    return std::string("could not write search settings file") + ": " + error.Text();
  }
  return std::nullopt;
}

std::optional<std::string> ModifySearchSettings(const std::string& assignments) {
  const auto tokens = SplitList(assignments, ";");
  if (!tokens) return TOKENIZE_FAILURE;
  if (tokens->empty()) return "seperator missing (';')";
  try {
    Settings settings(Settings::current);
    for (const std::string& token : *tokens) {
      // Blanks around an assignment, as in "a=1; b=2", are not part of the name.
      const std::string assignment = Trim(token, " \t");
      const std::size_t separator = assignment.find('=');
      if (separator == std::string::npos || separator == 0 || separator + 1 == assignment.size()) {
        return "seperator missing (';')";
      }
      settings.Assign(assignment.substr(0, separator), assignment.substr(separator + 1));
    }
    settings.Apply();
  } catch (const ZephrinException& error) {
    return error.Text();
  }
  return std::nullopt;
}

std::optional<std::string> DisplaySearchSettings(const std::string& names) {
  const auto tokens = SplitList(names, "; \t");
  if (!tokens) return TOKENIZE_FAILURE;
  std::string text;
  try {
    const Settings settings(Settings::current);
    if (tokens->empty() || *tokens == std::vector<std::string>{"all"}) {
      text = settings.AllText();
    } else {
      for (const std::string& name : *tokens) text += name + "=" + settings.ValueText(name) + "\n";
    }
  } catch (const ZephrinException& error) {
    return error.Text();
  }
  Out << text;
  Out.Flush();
  return std::nullopt;
}

}  // namespace OptimizeInterface
