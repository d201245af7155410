// The parser turns each keyword form into its command with converted arguments.
#include "interfaces/command_parser.h"

#include <gtest/gtest.h>

#include <tuple>
#include <typeindex>

#include "interfaces/commands.h"
#include "interfaces/xboard_protocol.h"
#include "interfaces/personality_names.h"

using namespace ZephrinInterfaces;

namespace {

// Under XBoard, empty and ignored lines make no output.
std::unique_ptr<Command> Parse(const std::string& line) {
  XBoardProtocol_1 protocol;
  return protocol.ParseText(line);
}

template <typename CommandClass>
const CommandClass& ParseAs(const std::string& line) {
  static std::unique_ptr<Command> keep;
  keep = Parse(line);
  const auto* command = dynamic_cast<const CommandClass*>(keep.get());
  if (command == nullptr) throw std::runtime_error("wrong class for: " + line);
  return *command;
}

}  // namespace

// Which command a keyword selects shows in what the program does, tested end to end, but for these.
TEST(CommandParser, KeywordsSelectTheirClasses) {
  const std::pair<const char*, std::type_index> rows[] = {{"protover -5", typeid(Command_Xboard)},
                                                          {"protover 007", typeid(Command_Protover2)},
                                                          {"nopost", typeid(Command_Nopost)}};
  for (const auto& [line, type] : rows) {
    const std::unique_ptr<Command> command = Parse(line);
    const Command& parsed = *command;
    EXPECT_EQ(std::type_index(typeid(parsed)), type) << line;
  }
}

TEST(CommandParser, ArgumentsAreConvertedAndJoined) {
  EXPECT_EQ(ParseAs<Command_UsermoveOldStyle>("  e2e4 ").move_text, "e2e4");
  EXPECT_EQ(ParseAs<Command_UsermoveNewStyle>("usermove Nf3").move_text, "Nf3");
  EXPECT_EQ(ParseAs<Command_Undo>("undo").count, 1);
  EXPECT_EQ(ParseAs<Command_Undo>("undo all").count, ALL_MOVES);
  EXPECT_EQ(ParseAs<Command_Next>("next 0").count, 0);  // refused when executed
  EXPECT_EQ(ParseAs<Command_Setboard>("setboard  8/8/8/8/8/8/8/K6k   w - - 0 1").fen, "8/8/8/8/8/8/8/K6k w - - 0 1");
  for (const auto& [line, moves, base_ms, increment_ms] : std::initializer_list<std::tuple<const char*, int, int, int>>{
           {"level 40 1:30 2", 40, 90000, 2000}, {"level 0 0 0", 0, 10000, 0},
           {"level 0 0:08 0.1", 0, 8000, 100}, {"level 0 0:08.5 2.5", 0, 8500, 2500}}) {
    const auto& level = ParseAs<Command_Level>(line);
    EXPECT_EQ(std::tuple(level.moves, level.base_ms, level.increment_ms), std::tuple(moves, base_ms, increment_ms))
        << line;
  }
  EXPECT_EQ(ParseAs<Command_Tc>("tc 40 5 0 ; 0 10 2").text, "40 5 0 ; 0 10 2");
  EXPECT_EQ(ParseAs<Command_st>("st 0").seconds, 0);
  EXPECT_EQ(ParseAs<Command_sd>("sd -4").depth, -4);  // refused when executed
  const auto& resize = ParseAs<Command_ResizeHashtable>("hash eval 16k");
  EXPECT_EQ(std::pair(resize.type, resize.size), (std::pair<std::string, std::string>("eval", "16k")));
  const auto& tb = ParseAs<Command_InitTablebases>("tb nalimov 8M /a \"b c\" d");
  EXPECT_EQ(std::pair(tb.size, tb.path), (std::pair<decltype(tb.size), std::string>(8u << 20, "/a b c d")));
  EXPECT_EQ(ParseAs<Command_Contempt>("contempt -20").value, -20);
  EXPECT_EQ(ParseAs<Command_SetPersonality>("personality morvek").value, 11);
  EXPECT_EQ(ParseAs<Command_SetPersonality>("personality 5000").value, 5000);  // limited when executed
  EXPECT_EQ(ParseAs<Command_Name>("name \"Deep\" Thought").name, "Deep Thought");
  EXPECT_EQ(ParseAs<Command_Id>("id").id, "");
  EXPECT_EQ(ParseAs<Command_Id>("id ##Foo bar").id, "##Foo bar");
  EXPECT_EQ(ParseAs<Command_Rating>("rating 2500 007").opponent_rating, 7);
  EXPECT_EQ(ParseAs<Command_DisplaySettingVariables>("display_settings").text, "all");
  EXPECT_EQ(ParseAs<Command_Ping>("ping \"a b\"").argument, "a b");
  EXPECT_EQ(ParseAs<Command_Result>("result 1/2-1/2 {agreed}").result, "1/2-1/2");
  EXPECT_EQ(ParseAs<Command_Generate>("generate").jobs, "");
  EXPECT_EQ(ParseAs<Command_ReadFEN>("read_fen 'my file.fen'").file, "my file.fen");
  EXPECT_EQ(Parse("optimize_piece whatever")->input, "optimize_piece whatever");
}

TEST(CommandParser, ErrorTextsNameKindReasonAndLine) {
  EXPECT_STREQ(ErrorCommand(ErrorCommand::ILLEGAL_MOVE, "", "e2e5").what(), "Illegal move: e2e5");
  EXPECT_STREQ(ErrorCommand(ErrorCommand::ERROR, "", "x").what(), "Error: x");
  EXPECT_STREQ(IgnorableErrorCommand("bad", "tb nalimov 1 /x").what(), "Error (bad): tb nalimov 1 /x");
  const auto text = [](const std::string& line) {
    try {
      Parse(line);
    } catch (const ErrorCommand& error) {
      return error.Text();
    }
    return std::string("parsed");
  };
  const std::pair<const char*, const char*> rows[] = {
      {"go now", "too many parameters"}, {"level 40 99999999 0", "integer argument expected"},
      {"level 40 5 +1", "integer argument expected"},
      {"level 0 0:08 .1", "integer argument expected"}, {"level 0 1.5 0", "integer argument expected"}, {"personality 1 2", "wrong number of arguments"},
      {"personality Morvek1", "could not parse personality"}, {"hash trans 8M 1", "wrong number of arguments"},
      {"tb nalimov 99999999999T x", "could not parse new size"}, {"contempt 99999999999", "integer argument expected"},
      {"modify_settings", "missing parameters"}, {"write_fen a b", "wrong number of arguments"},
      {"probe", "missing parameters"}, {"result", "missing parameters"}, {"result 1-0extra", "invalid argument(s)"},
      {"e2e4 e7e5", "unrecognized command"}, {"name 'x", "could not tokenize the input string"},
      {"help me", "too many parameters"}, {"usermove e2e4 now", "wrong number of arguments"},
      {"protover x", "integer argument expected"}, {"undo 1 2", "wrong number of arguments"},
      {"hash trans", "wrong number of arguments"}, {"tb nalimov 8M", "missing parameters"},
      {"rating a b", "integer argument expected"}, {"result 2-0", "invalid argument(s)"},
      {"ping", "wrong number of arguments"}, {"name", "missing parameters"}, {"setboard", "missing parameters"}};
  for (const auto& [line, reason] : rows) EXPECT_EQ(text(line), "Error (" + std::string(reason) + "): " + line);
}

TEST(PersonalityNames, NamesAndValuesBothWays) {
  std::int32_t value = 99;
  for (const auto& [text, number] : std::initializer_list<std::pair<const char*, int>>{
           {"Default", 0}, {"Zephrin", 0}, {"fenx", 1000}, {"007", 7}, {"-15", -15}}) {
    value = 99;
    EXPECT_TRUE(ParsePersonality(text, value)) << text;
    EXPECT_EQ(value, number) << text;
  }
  for (const char* bad : {"FENX", "morvek1", "", "+5"}) EXPECT_FALSE(ParsePersonality(bad, value)) << bad;
  for (int i = 0; i < 11; ++i) {  // past the tenth draw the generator notes its overuse in the log
    ASSERT_TRUE(ParsePersonality(i % 2 ? "Random" : "random", value));
    EXPECT_GE(value, -20);
    EXPECT_LE(value, 20);
  }
  const std::pair<int, const char*> names[] = {
      {-1000, "Ondrith"}, {-16, "Ondrith"}, {-15, "Lumbrek"}, {-13, "Lumbrek"}, {-12, "Nuvrain"}, {-11, "Nuvrain"},
      {-10, "Belquist"}, {-9, "Belquist"}, {-8, "Wenstor"}, {-5, "Yothmer"}, {-3, "Haldrune"}, {-1, "Trevane"},
      {0, "Zephrin"}, {1, "Sarquel"}, {3, "Cordavin"}, {6, "Gremlow"}, {7, "Ziravel"}, {9, "Morvek"},
      {11, "Morvek"}, {12, "Eskarth"}, {15, "Tilvane"}, {16, "Fenx"}, {1000, "Fenx"}};
  for (const auto& [number, name] : names) EXPECT_EQ(PersonalityName(number), name) << number;
}
