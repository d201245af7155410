// The help screens: every command with its description, in two columns that fit the terminal.
#pragma once

#include <string>
#include <vector>

namespace ZephrinHelpScreen {

struct HelpEntry {
  std::string command;
  std::string description;
};

class AbstractHelpScreenFormatter {
 public:
  // Sorts the entries by command, ignoring case, and keeps the first of equal commands.
  explicit AbstractHelpScreenFormatter(std::vector<HelpEntry> table);
  virtual ~AbstractHelpScreenFormatter() = default;
  virtual void Show() = 0;

  std::vector<HelpEntry> entries;
  int key_width = 0;   // the longest command
  int text_width = 0;  // the longest description
  bool paging = true;  // stop after each screen
};

class SimpleHelpScreenFormatter : public AbstractHelpScreenFormatter {
 public:
  using AbstractHelpScreenFormatter::AbstractHelpScreenFormatter;
  // Writes the table for a terminal of the given size; `rows` 0 means no paging at all.
  void ShowSized(int rows, int columns);
  void Show() override;
};

// The description wrapped behind a key column of `key_width`, and the number of lines it takes.
std::pair<std::string, int> FormatDescription(const std::string& description, int key_width, int columns);

// The screens of `help`, of `help` in edit mode, and of --help.
void ShowHelp();
void ShowEditHelp();
void ShowStartupHelp();

// The rows of the `help` screen, in the order in which they are made.
const std::vector<HelpEntry>& HelpTable();

}  // namespace ZephrinHelpScreen
