#include "interfaces/help_screen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <set>

#include "frame/command_line.h"
#include "frame/input.h"
#include "frame/tee_stream.h"

namespace ZephrinHelpScreen {

namespace {

bool CaselessLess(const std::string& a, const std::string& b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
    return std::tolower(static_cast<unsigned char>(x)) < std::tolower(static_cast<unsigned char>(y));
  });
}

// The key, then the fill of the key column for the terminal only.
void WriteKey(const std::string& key, int width, char fill) {
  Out << key;
  if (static_cast<int>(key.size()) < width) Out.WriteConsoleOnly(std::string(width - key.size(), fill));
}

const std::vector<HelpEntry> EDIT_TABLE = {
    {"cancel", "Leaves edit mode and discards the changes that were made"},
    {"#", "Clears the board"},
    {"\".\"", "Leaves edit mode and confirms the changes that were made"},
    {"restore", "Undos all changes and restores the original position"},
    {"c", "Changes current piece color"},
    {"s", "Changes side to move"},
    {"verify", "Checks if the current position is legal"},
    {"help", "Displays this help screen"},
    {"display", "Displays the current board"},
    {"quit", "Leaves the program"},
};

}  // namespace

const std::vector<HelpEntry>& HelpTable() {
  static const std::vector<HelpEntry> table = {
    {"analyze", "Enters analyze mode"},
    {"contempt", "Sets the contempt value. A positive value will encourage the engine to draw, where a negative value will force the engine to avoid draws."},
    {"display", "Displays the current board"},
    {"draw", "Accept a draw offer, or propose a draw if no offer has been received"},
    {"eval", "Evaluates the current position"},
    {"exit", "Leaves analyze mode"},
    {"force", "Enters force mode"},
    {"generate", "Generates zephrin bitbases by using the results from the tablebases. Therefore, tablebases must be loaded, otherwise the command will fail. The generated bitbases will be stored in the executable's directory (*.zbb). They will be automatically loaded during startup.\nIf given no parameters, a list of all types of bitbases, which are supported by the generator, will be displayed. To generate all supported bitbases, use \"generate all\"."},
    {"go", "Engine plays side on move and begins thinking immediately"},
    {"hash", "If given no parameters, it will display the status of all hashtables (used memory, fill percentage). Otherwise it modifies the size of the specified table (trans, pawn, eval).\nExample: \"hash trans 256M\""},
    {"help", "Displays this help screen"},
    {"hint", "Makes the engine propose a move"},
    {"id", "Overwrites the engine's id (for testing only)"},
    {"?", "Forces the engine to move immediately"},
    {"name", "Set the name of the engine's opponent"},
    {"new", "Starts a new game"},
    {"next", "Makes the next move in the previous move buffer (if there is one). Additionally, \"next all\" will make all moves  at once, and \"next <number>\" will make up to <number> moves."},
    {"otim", "Sets the remaining time of the side which has not to move next"},
    {"personality", "Controls the engine's personality:\nA positive (integer) value will make the engine play more reckless, where a negative value will result in a more positional and material playing style. Reasonable values are between -20 and 20. 0 is the default value, which is the best compromise, because the engine will adjust according to the situation.\nThere are some predefined personalities that you can use: \"Fenx\" likes to sacrifice material and will attack the enemy king at all costs. \"Ondrith\", in contrast, prefers to keep things simple. He will try to achieve small positional advantages without much risk and generally keeps a solid pawn structure without weaknesses. \"Random\" will choose a random personality between -20 and 20."},
    {"ping", "The engine will respond by sending \"pong\""},
    {"probe", "Probes bitbases and tablebases for the given (FEN-)position"},
    {"playother", "Makes the engine switch sides"},
    {"quit", "Leaves the program"},
    {"rating", "Sets the rating of the engine's opponent"},
    {"read_fen", "Reads a FEN-position and sets it as the current position"},
    {"read_pgn", "Reads a PGN-position into the previous moves buffer"},
    {"remove", "Undos the last two moves"},
    {"result", "Sets the result of the current game"},
    {"sd", "Sets a bound for the maximum depth of the engine"},
    {"\".\"", "Sends a request for the current search status"},
    {"st", "Sets a bound for the maximum thinking time of the engine (in seconds)"},
    {"time", "Sets the remaining time of the side which has to move next"},
    {"undo", "Undos the last move and save it into the previous moves buffer.\nExtensions: \"undo all\" will undo all moves at once, furthermore \"undo <number>\" will undo up to <number> moves."},
    {"verify", "Verifies loaded bitbases by comparing their results with the results from the tablebases. Therefore, it is required that tablebases are available, otherwise the command will fail.\nTo verify all bitbases, use \"verify all\", but it is also possible to verify only specific bitbases:\n\"verify <type1> <type2> ...\"\nIf given no parameters, \"verify\" will list of all available verification jobs."},
    {"version", "Displays informations about the current program version"},
    {"write_fen", "Saves the current position as FEN"},
    {"write_pgn", "Saves the current game as PGN"},
    {"black", "Sets Black on move. Sets the engine to play White. Stop clocks."},
    {"white", "Sets White on move. Sets the engine to play Black. Stop clocks."},
    {"easy", "Turns off pondering"},
    {"hard", "Turns on pondering"},
    {"nopost", "Turns off thinking/pondering output"},
    {"post", "Turns on thinking/pondering output"},
    {"usermove", "Can be used to send a move to the engine (e.g. \"usermove Nf3\")"},
    {"edit", "Enters edit mode"},
    {"setboard", "Sets up a new (FEN-)position"},
    {"level", "Sets time controls"},
    {"tb", "If given no parameters, it will display the status of all available tablebases and bitbases. Otherwise \"tb <type> <size> <path>\" initializes (or resizes) a tablebase or bitbase of the given <type> (nalimov), where <size> controls how much memory is being allocated (0 turns off caching, but will prevent then engine from accessing tablebases that are not loaded into memory) and <path> specifies the location on the disk.\nExample: \"tb nalimov 8M path/to/nalimov_tb\""},
    {"tc", "Sets time controls (this command is not included in the xboard protocol)"},
    {"modify_settings", "Modifies one or more search settings"},
    {"display_settings", "Displays the current values of one or more search settings"},
    {"read_settings", "Reads search settings from a file"},
    {"write_settings", "Writes search settings to a file"},
    {"console", "Enters console mode"},
    {"xboard", "Enters XBoard mode (protocol 1)"},
    {"protover", "Enters XBoard mode using the given protocol (e.g., \"protover 2\")."},
    {"uci", "Enters UCI mode, as a UCI program (tournament manager, analysis board) does with its first command"},
    {"fritz", "Activates Fritz mode (not really supported)"},
    {"accepted", "unsupported (will be ignored for compatibility reasons)"},
    {"random", "unsupported (will be ignored for compatibility reasons)"},
    {"rejected", "unsupported (will be ignored for compatibility reasons)"},
    {"computer", "unsupported (will be ignored for compatibility reasons)"},
  };
  return table;
}

AbstractHelpScreenFormatter::AbstractHelpScreenFormatter(std::vector<HelpEntry> table) : entries(std::move(table)) {
  std::stable_sort(entries.begin(), entries.end(),
                   [](const HelpEntry& a, const HelpEntry& b) { return CaselessLess(a.command, b.command); });
  std::set<std::string> seen;
  std::erase_if(entries, [&seen](const HelpEntry& entry) { return !seen.insert(entry.command).second; });
  for (const HelpEntry& entry : entries) {
    key_width = std::max(key_width, static_cast<int>(entry.command.size()));
    text_width = std::max(text_width, static_cast<int>(entry.description.size()));
  }
}

std::pair<std::string, int> FormatDescription(const std::string& description, int key_width, int columns) {
  std::string new_line(key_width + 2, ' ');  // a line break, then the key column and its dot
  new_line[0] = '\n';
  std::string text;
  int lines = 1;
  int length = 0;
  std::size_t i = 0;
  while (i < description.size()) {
    const char c = description[i];
    if (c == '\n') {
      text += new_line;
      ++lines;
      length = 0;
      ++i;
    } else if (c == ' ') {
      ++i;
    } else {
      const std::size_t end = std::min(description.find_first_of(" \n", i), description.size());
      const int word_length = static_cast<int>(end - i);
      if (key_width + length + word_length >= columns - 1) {
        text += new_line;
        ++lines;
        length = 0;
      } else if (length > 0) {
        text += ' ';
        ++length;
      }
      text.append(description, i, end - i);
      length += word_length;
      i = end;
    }
  }
  return {text, lines};
}

void SimpleHelpScreenFormatter::ShowSized(int rows, int columns) {
  const int width = std::max(key_width, 10);
  WriteKey("command", width, ' ');
  Out << " description\n";
  int line_count = 0;
  for (const HelpEntry& entry : entries) {
    const auto [text, lines] = FormatDescription(entry.description, width, columns);
    line_count += lines;
    if (paging && rows > 0 && line_count >= rows - 1) {
      Out << "press enter to continue...";
      Out.Flush();
      ReadLine();  // the end of input ("quit") only ends the waiting
      line_count = lines;
    }
    WriteKey(entry.command, width, '.');
    Out << "." << text << "\n";
  }
  Out.Flush();
}

// Output that isn't a terminal gets no paging and a width of 80 columns.
void SimpleHelpScreenFormatter::Show() {
  winsize size{};
  if (isatty(1) && ioctl(1, TIOCGWINSZ, &size) == 0 && size.ws_row > 1 && size.ws_col > 20) {
    ShowSized(size.ws_row, size.ws_col);
  } else {
    ShowSized(0, 80);
  }
}

namespace {

SimpleHelpScreenFormatter& HelpScreen() {
  static SimpleHelpScreenFormatter screen(HelpTable());
  return screen;
}

SimpleHelpScreenFormatter& EditHelpScreen() {
  static SimpleHelpScreenFormatter screen(EDIT_TABLE);
  return screen;
}

SimpleHelpScreenFormatter& StartupHelpScreen() {
  static SimpleHelpScreenFormatter screen([] {
    std::vector<HelpEntry> table;
    for (const HelpEntry& entry : HelpTable()) {
      if (IsStartupCommand(entry.command)) table.push_back(entry);
    }
    return table;
  }());
  return screen;
}

}  // namespace

void ShowHelp() { HelpScreen().Show(); }
void ShowEditHelp() { EditHelpScreen().Show(); }
// Under the start-up commands: how a front end runs the engine.
void ShowStartupHelp() {
  StartupHelpScreen().Show();
  Out << "\nFront ends start the engine without arguments and choose the protocol with their first\n"
         "command. XBoard and WinBoard send \"xboard\" (xboard -fcp /path/to/zephrin); a UCI program\n"
         "(tournament manager, analysis board, bot bridge) sends \"uci\". In a terminal,\n"
         "the engine speaks its own console protocol; \"help\" lists the commands.\n";
  Out.Flush();
}

}  // namespace ZephrinHelpScreen
