#include "interfaces/command_parser.h"

#include <functional>
#include <map>

#include "frame/string_conversions.h"
#include "frame/tee_stream.h"
#include "interfaces/basic_protocol.h"
#include "interfaces/commands.h"
#include "interfaces/personality_names.h"
#include "interfaces/uci_commands.h"

namespace ZephrinInterfaces {

namespace {

// The arguments of a line: the tokens behind the keyword.
class Arguments {
 public:
  explicit Arguments(const TokenizedLine& line) : line_(line) {}

  std::size_t Count() const { return line_.tokens.size() - 1; }
  const std::string& operator[](std::size_t index) const { return line_.tokens[index + 1]; }
  const std::string& Raw() const { return line_.raw; }

  [[noreturn]] void Refuse(const std::string& reason) const {
    throw ErrorCommand(ErrorCommand::ERROR, reason, line_.raw);
  }
  void ExpectNone() const {
    if (Count() != 0) Refuse("too many parameters");
  }
  void ExpectExactly(std::size_t count) const {
    if (Count() != count) Refuse("wrong number of arguments");
  }
  void ExpectAtLeast(std::size_t count) const {
    if (Count() < count) Refuse("missing parameters");
  }
  std::int32_t Int(std::size_t index) const { return Converted(index, ToInt, "integer argument expected"); }
  // A time control's base, minutes[:seconds], and its increment, seconds; both may carry a decimal
  // fraction of a second and are read to the millisecond.
  std::int64_t BaseMs(std::size_t index) const { return Converted(index, ToMilliseconds, "integer argument expected"); }
  std::int64_t IncrementMs(std::size_t index) const {
    return Converted(index, ToDecimalMilliseconds, "integer argument expected");
  }
  std::uint64_t MemorySize(std::size_t index) const {
    return Converted(index, ToMemorySize, "could not parse new size");
  }
  // The arguments from `first` on, joined by single blanks.
  std::string Joined(std::size_t first) const {
    std::string text;
    for (std::size_t i = first; i < Count(); ++i) text += (i == first ? "" : " ") + (*this)[i];
    return text;
  }

 private:
  // The argument at `index` read by `convert`; text that it can't read is refused with `reason`.
  template <typename Value>
  Value Converted(std::size_t index, Value (*convert)(const std::string&), const char* reason) const {
    try {
      return convert((*this)[index]);
    } catch (const string_conversion_error&) {
      Refuse(reason);
    }
  }

  const TokenizedLine& line_;
};

using Parser = std::function<std::unique_ptr<Command>(BasicProtocol&, const Arguments&)>;

// A command of no arguments.
template <typename CommandClass>
Parser Plain() {
  return [](BasicProtocol&, const Arguments& arguments) -> std::unique_ptr<Command> {
    arguments.ExpectNone();
    return std::make_unique<CommandClass>(arguments.Raw());
  };
}

// A command of exactly one argument, kept as text.
template <typename CommandClass>
Parser OneText() {
  return [](BasicProtocol&, const Arguments& arguments) -> std::unique_ptr<Command> {
    arguments.ExpectExactly(1);
    return std::make_unique<CommandClass>(arguments.Raw(), arguments[0]);
  };
}

// A command of exactly one integer argument.
template <typename CommandClass>
Parser OneInt() {
  return [](BasicProtocol&, const Arguments& arguments) -> std::unique_ptr<Command> {
    arguments.ExpectExactly(1);
    return std::make_unique<CommandClass>(arguments.Raw(), arguments.Int(0));
  };
}

// A command of all arguments joined, with at least `minimum` of them (0: any number).
template <typename CommandClass>
Parser JoinedText(std::size_t minimum) {
  return [minimum](BasicProtocol&, const Arguments& arguments) -> std::unique_ptr<Command> {
    arguments.ExpectAtLeast(minimum);
    return std::make_unique<CommandClass>(arguments.Raw(), arguments.Joined(0));
  };
}

Parser Unsupported() {
  return [](BasicProtocol&, const Arguments& arguments) -> std::unique_ptr<Command> {
    arguments.Refuse("command is not supported");
  };
}

Parser Ignored() {
  return [](BasicProtocol& protocol, const Arguments& arguments) -> std::unique_ptr<Command> {
    protocol.ShowCommandIgnored("command is not supported");
    return std::make_unique<Command_DoNothing>(arguments.Raw());
  };
}

// `undo` and `next`: no argument for one move, a number, or `all`.
template <typename CommandClass>
Parser MoveCount() {
  return [](BasicProtocol&, const Arguments& arguments) -> std::unique_ptr<Command> {
    if (arguments.Count() > 1) arguments.Refuse("wrong number of arguments");
    std::int32_t count = 1;
    if (arguments.Count() == 1) count = arguments[0] == "all" ? ALL_MOVES : arguments.Int(0);
    return std::make_unique<CommandClass>(arguments.Raw(), count);
  };
}

std::unique_ptr<Command> ParseProtover(BasicProtocol&, const Arguments& arguments) {
  arguments.ExpectExactly(1);
  const std::int32_t version = arguments.Int(0);
  if (version < 2) {
    Out.WriteLogOnly("Unexpected xboard protocol version. Executing command \"xboard\" instead");
    return std::make_unique<Command_Xboard>(arguments.Raw());
  }
  if (version > 2) Out.WriteLogOnly("Future XBoard protocol version not support, falling back to version 2");
  return std::make_unique<Command_Protover2>(arguments.Raw());
}

std::unique_ptr<Command> ParseResult(BasicProtocol&, const Arguments& arguments) {
  arguments.ExpectAtLeast(1);
  const std::string& result = arguments[0];
  if (result != "1-0" && result != "0-1" && result != "1/2-1/2" && result != "*") {
    arguments.Refuse("invalid argument(s)");
  }
  return std::make_unique<Command_Result>(arguments.Raw(), result);
}

std::unique_ptr<Command> ParseLevel(BasicProtocol&, const Arguments& arguments) {
  arguments.ExpectExactly(3);
  return std::make_unique<Command_Level>(arguments.Raw(), arguments.Int(0), arguments.BaseMs(1),
                                         arguments.IncrementMs(2));
}

std::unique_ptr<Command> ParseSt(BasicProtocol&, const Arguments& arguments) {
  arguments.ExpectExactly(1);
  const std::int32_t seconds = arguments.Int(0);
  if (seconds < 0) arguments.Refuse("argument out of bounds");
  return std::make_unique<Command_st>(arguments.Raw(), seconds);
}

bool IsHashTableType(const std::string& type) { return type == "trans" || type == "pawn" || type == "eval"; }

std::unique_ptr<Command> ParseHash(BasicProtocol&, const Arguments& arguments) {
  if (arguments.Count() == 0) return std::make_unique<Command_DisplayHashtableStatus>(arguments.Raw());
  arguments.ExpectExactly(2);
  if (!IsHashTableType(arguments[0])) arguments.Refuse("unknown hashtable type");
  arguments.MemorySize(1);  // only checked here: the command reads the size again
  return std::make_unique<Command_ResizeHashtable>(arguments.Raw(), arguments[0], arguments[1]);
}

std::unique_ptr<Command> ParseTb(BasicProtocol&, const Arguments& arguments) {
  if (arguments.Count() == 0) return std::make_unique<Command_DisplayTablebasesStatus>(arguments.Raw());
  arguments.ExpectAtLeast(3);
  if (arguments[0] != "nalimov") arguments.Refuse("could not parse type");
  const std::uint64_t size = arguments.MemorySize(1);
  return std::make_unique<Command_InitTablebases>(arguments.Raw(), arguments[0], size, arguments.Joined(2));
}

std::unique_ptr<Command> ParsePersonalityCommand(BasicProtocol&, const Arguments& arguments) {
  if (arguments.Count() == 0) return std::make_unique<Command_DisplayPersonality>(arguments.Raw());
  arguments.ExpectExactly(1);
  std::int32_t value = 0;
  if (!ParsePersonality(arguments[0], value)) arguments.Refuse("could not parse personality");
  return std::make_unique<Command_SetPersonality>(arguments.Raw(), value);
}

std::unique_ptr<Command> ParseRating(BasicProtocol&, const Arguments& arguments) {
  arguments.ExpectExactly(2);
  return std::make_unique<Command_Rating>(arguments.Raw(), arguments.Int(0), arguments.Int(1));
}

std::unique_ptr<Command> ParseDisplaySettings(BasicProtocol&, const Arguments& arguments) {
  const std::string names = arguments.Count() == 0 ? "all" : arguments.Joined(0);
  return std::make_unique<Command_DisplaySettingVariables>(arguments.Raw(), names);
}

// Takes any arguments and ignores them.
std::unique_ptr<Command> ParseOptimizePiece(BasicProtocol&, const Arguments& arguments) {
  return std::make_unique<Command_OptimizePiece>(arguments.Raw());
}

const std::map<std::string, Parser>& Keywords() {
  static const std::map<std::string, Parser> keywords = {
      // protocols
      {"xboard", Plain<Command_Xboard>()},
      {"protover", ParseProtover},
      {"fritz", Plain<Command_Fritz>()},
      {"console", Plain<Command_Console>()},
      {"uci", Plain<Command_Uci>()},
      // the game
      {"new", Plain<Command_New>()},
      {"force", Plain<Command_Force>()},
      {"go", Plain<Command_Go>()},
      {"playother", Plain<Command_Playother>()},
      {"white", Plain<Command_White>()},
      {"black", Plain<Command_Black>()},
      {"analyze", Plain<Command_Analyze>()},
      {"exit", Plain<Command_Exit>()},
      {"?", Plain<Command_MoveNow>()},
      {"usermove", OneText<Command_UsermoveNewStyle>()},
      {"undo", MoveCount<Command_Undo>()},
      {"remove", Plain<Command_Remove>()},
      {"next", MoveCount<Command_Next>()},
      {"result", ParseResult},
      {"draw", Plain<Command_Draw>()},
      {"hint", Plain<Command_Hint>()},
      {"setboard", JoinedText<Command_Setboard>(1)},
      {"edit", Plain<Command_Edit>()},
      {"quit", Plain<Command_Quit>()},
      // clocks
      {"level", ParseLevel},
      {"tc", JoinedText<Command_Tc>(0)},
      {"st", ParseSt},
      {"sd", OneInt<Command_sd>()},
      {"time", OneInt<Command_Time>()},
      {"otim", OneInt<Command_Otim>()},
      // engine set-up
      {"hash", ParseHash},
      {"tb", ParseTb},
      {"contempt", OneInt<Command_Contempt>()},
      {"personality", ParsePersonalityCommand},
      {"easy", Plain<Command_Easy>()},
      {"hard", Plain<Command_Hard>()},
      {"post", Plain<Command_Post>()},
      {"nopost", Plain<Command_Nopost>()},
      {"computer", Plain<Command_Computer>()},
      {"name", JoinedText<Command_Name>(1)},
      {"rating", ParseRating},
      {"id", JoinedText<Command_Id>(0)},
      {"modify_settings", JoinedText<Command_ModifySettingVariables>(1)},
      {"read_settings", OneText<Command_ReadSearchSettings>()},
      {"write_settings", OneText<Command_WriteSearchSettings>()},
      {"display_settings", ParseDisplaySettings},
      // information
      {".", Plain<Command_SendSearchStatus>()},
      {"display", Plain<Command_Display>()},
      {"eval", Plain<Command_Eval>()},
      {"help", Plain<Command_Help>()},
      {"version", Plain<Command_Version>()},
      {"ping", OneText<Command_Ping>()},
      {"probe", JoinedText<Command_Probe>(1)},
      {"optimize_piece", ParseOptimizePiece},
      // files
      {"read_fen", OneText<Command_ReadFEN>()},
      {"read_pgn", OneText<Command_ReadPGN>()},
      {"write_fen", OneText<Command_WriteFEN>()},
      {"write_pgn", OneText<Command_WritePGN>()},
      // endgame database jobs
      {"generate", JoinedText<Command_Generate>(0)},
      {"verify", JoinedText<Command_Verify>(0)},
      // refused words
      {"bk", Unsupported()},
      {"ics", Unsupported()},
      {"pause", Unsupported()},
      {"resume", Unsupported()},
      {"variant", Unsupported()},
      {"random", Ignored()},
      {"accepted", Ignored()},
      {"rejected", Ignored()},
  };
  return keywords;
}

}  // namespace

std::unique_ptr<Command> ParseCommand(BasicProtocol& protocol, const TokenizedLine& line) {
  const Arguments arguments(line);
  const auto keyword = Keywords().find(line.tokens[0]);
  if (keyword != Keywords().end()) return keyword->second(protocol, arguments);
  // Any other single word is taken for a move.
  if (arguments.Count() != 0) arguments.Refuse("unrecognized command");
  return std::make_unique<Command_UsermoveOldStyle>(line.raw, line.tokens[0]);
}

}  // namespace ZephrinInterfaces
