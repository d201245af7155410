#include "frame/command_line.h"

#include <algorithm>
#include <array>
#include <iostream>

#include "frame/control_exceptions.h"
#include "frame/main_loop.h"
#include "frame/tee_stream.h"

using ZephrinInterfaces::ErrorCommand;
using ZephrinInterfaces::IgnorableErrorCommand;

namespace {

constexpr std::array<const char*, 24> STARTUP_COMMANDS = {
    "contempt", "easy",     "eval",     "generate",  "hash",          "help",  "id",  "level",
    "modify_settings", "personality", "probe", "protover", "quit", "read_fen", "read_pgn", "read_settings",
    "sd",       "setboard", "st",       "tb",        "tc",            "verify", "version", "xboard"};

constexpr std::array<const char*, 11> FORCE_FIRST_COMMANDS = {
    "contempt", "hash", "tb", "modify_settings", "personality", "read_fen",
    "read_pgn", "read_settings", "setboard", "generate", "verify"};

constexpr std::array<const char*, 2> EXIT_AFTER_COMMANDS = {"help", "version"};

template <std::size_t N>
bool Contains(const std::array<const char*, N>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

// An option word that is no start-up command.
struct could_not_parse_exception {
  std::string word;
};

// One option: its command name and its arguments.
struct Option {
  std::string name;
  std::vector<std::string> arguments;
};

// Reads the option at `cursor` and moves the cursor behind its arguments.
Option ReadOption(const std::vector<std::string>& words, std::size_t& cursor) {
  const std::string& word = words[cursor++];
  std::size_t dashes = 0;
  while (dashes < 2 && dashes < word.size() && word[dashes] == '-') ++dashes;
  if (dashes == 0) std::cerr << "Warning: Expecting '-' before option \"" << word << "\"! Continuing...\n";
  Option option{word.substr(dashes), {}};
  if (option.name.empty()) throw could_not_parse_exception{word};
  while (cursor < words.size() && words[cursor][0] != '-') option.arguments.push_back(words[cursor++]);
  // "name=value": an '=' in first or last place belongs to the name.
  const std::size_t equals = option.name.find('=', 1);
  if (equals != std::string::npos && equals + 1 < option.name.size()) {
    option.arguments.insert(option.arguments.begin(), option.name.substr(equals + 1));
    option.name.erase(equals);
  }
  if (!Contains(STARTUP_COMMANDS, option.name)) throw could_not_parse_exception{word};
  return option;
}

std::string CommandText(const Option& option) {
  std::string line = option.name;
  for (const std::string& argument : option.arguments) line += " " + argument;
  return line;
}

void ExecuteLine(MainLoop& loop, const std::string& line) {
  std::unique_ptr<ZephrinInterfaces::Command> command = loop.game->Protocol().ParseText(line);
  command->Execute(*loop.game);
}

void RunOption(MainLoop& loop, const Option& option) {
  if (Contains(FORCE_FIRST_COMMANDS, option.name)) ExecuteLine(loop, "force");
  const std::string line = CommandText(option);
  Out.WriteLogOnly("Executing startup command: " + line);
  if (option.name == "help") {
    loop.game->Protocol().PrintStartupHelp();
    return;
  }
  try {
    ExecuteLine(loop, line);
  } catch (const IgnorableErrorCommand& error) {
    Out.WriteLogOnly("Execution of the command failed, but it is safe to proceed and ignore this error:\n" +
                     error.Text());
    loop.game->Protocol().TellUser("Warning: Startup command failed!\n" + error.Text());
  }
}

void ReportStop(MainLoop& loop, const std::string& text) {
  loop.game->Protocol().TellUser("Error while parsing startup commands (stopped at \"" + text + "\")");
}

}  // namespace

bool IsStartupCommand(const std::string& name) { return Contains(STARTUP_COMMANDS, name); }

std::optional<int> HandleCommandLine(MainLoop& loop, const std::vector<std::string>& arguments) {
  std::size_t cursor = 0;
  try {
    while (cursor < arguments.size()) {
      const Option option = ReadOption(arguments, cursor);
      RunOption(loop, option);
      if (Contains(EXIT_AFTER_COMMANDS, option.name)) return 0;
    }
  } catch (const could_not_parse_exception& error) {
    ReportStop(loop, error.word);
    return 1;
  } catch (const ErrorCommand& error) {
    ReportStop(loop, error.Text());
    return 1;
  } catch (const quit_command_received_exception&) {
    return 0;
  }
  return std::nullopt;
}

const std::string& ExecutableDirectory(const std::string& argv0) {
  static const std::string directory = [&argv0] {
    const std::size_t slash = argv0.rfind('/');
    if (slash == std::string::npos || slash == 0) return std::string(".");
    return argv0.substr(0, slash);
  }();
  return directory;
}
