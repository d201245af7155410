// The parser turns each keyword form into its command with converted arguments.
#include "interfaces/command_parser.h"

#include <gtest/gtest.h>

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

TEST(CommandParser, KeywordsSelectTheirClasses) {
  EXPECT_NO_THROW(ParseAs<Command_Xboard>("protover 1"));
  EXPECT_NO_THROW(ParseAs<Command_Xboard>("protover -5"));
  EXPECT_NO_THROW(ParseAs<Command_Protover2>("protover 2"));
  EXPECT_NO_THROW(ParseAs<Command_Protover2>("protover 007"));
  EXPECT_NO_THROW(ParseAs<Command_DisplayHashtableStatus>("hash"));
  EXPECT_NO_THROW(ParseAs<Command_DisplayTablebasesStatus>("tb"));
  EXPECT_NO_THROW(ParseAs<Command_DisplayPersonality>("personality"));
  EXPECT_NO_THROW(ParseAs<Command_DoNothing>(""));
  EXPECT_NO_THROW(ParseAs<Command_DoNothing>("random"));
  EXPECT_NO_THROW(ParseAs<Command_White>("white"));
  EXPECT_NO_THROW(ParseAs<Command_Black>("black"));
  EXPECT_NO_THROW(ParseAs<Command_Easy>("easy"));
  EXPECT_NO_THROW(ParseAs<Command_Nopost>("nopost"));
  EXPECT_NO_THROW(ParseAs<Command_SendSearchStatus>("."));
  EXPECT_NO_THROW(ParseAs<Command_Edit>("edit"));
}

TEST(CommandParser, ArgumentsAreConvertedAndJoined) {
  EXPECT_EQ(ParseAs<Command_UsermoveOldStyle>("  e2e4 ").move_text, "e2e4");
  EXPECT_EQ(ParseAs<Command_UsermoveNewStyle>("usermove Nf3").move_text, "Nf3");
  EXPECT_EQ(ParseAs<Command_Undo>("undo").count, 1);
  EXPECT_EQ(ParseAs<Command_Undo>("undo all").count, ALL_MOVES);
  EXPECT_EQ(ParseAs<Command_Next>("next 0").count, 0);  // refused when executed
  EXPECT_EQ(ParseAs<Command_Setboard>("setboard  8/8/8/8/8/8/8/K6k   w - - 0 1").fen, "8/8/8/8/8/8/8/K6k w - - 0 1");
  const auto& level = ParseAs<Command_Level>("level 40 1:30 2");
  EXPECT_EQ(level.moves, 40);
  EXPECT_EQ(level.base_seconds, 90);
  EXPECT_EQ(level.increment_seconds, 2);
  EXPECT_EQ(ParseAs<Command_Level>("level 0 0 0").base_seconds, 10);
  EXPECT_EQ(ParseAs<Command_Tc>("tc 40 5 0 ; 0 10 2").text, "40 5 0 ; 0 10 2");
  EXPECT_EQ(ParseAs<Command_st>("st 0").seconds, 0);
  EXPECT_EQ(ParseAs<Command_sd>("sd -4").depth, -4);  // refused when executed
  const auto& resize = ParseAs<Command_ResizeHashtable>("hash eval 16k");
  EXPECT_EQ(resize.type, "eval");
  EXPECT_EQ(resize.size, "16k");
  const auto& tb = ParseAs<Command_InitTablebases>("tb nalimov 8M /a \"b c\" d");
  EXPECT_EQ(tb.size, 8u << 20);
  EXPECT_EQ(tb.path, "/a b c d");
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
  EXPECT_EQ(text("go now"), "Error (too many parameters): go now");
  EXPECT_EQ(text("level 40 99999999 0"), "Error (integer argument expected): level 40 99999999 0");
  EXPECT_EQ(text("level 40 5 +1"), "Error (integer argument expected): level 40 5 +1");
  EXPECT_EQ(text("personality 1 2"), "Error (wrong number of arguments): personality 1 2");
  EXPECT_EQ(text("personality Morvek1"), "Error (could not parse personality): personality Morvek1");
  EXPECT_EQ(text("hash trans 8M 1"), "Error (wrong number of arguments): hash trans 8M 1");
  EXPECT_EQ(text("tb nalimov 99999999999T x"), "Error (could not parse new size): tb nalimov 99999999999T x");
  EXPECT_EQ(text("contempt 99999999999"), "Error (integer argument expected): contempt 99999999999");
  EXPECT_EQ(text("modify_settings"), "Error (missing parameters): modify_settings");
  EXPECT_EQ(text("write_fen a b"), "Error (wrong number of arguments): write_fen a b");
  EXPECT_EQ(text("probe"), "Error (missing parameters): probe");
  EXPECT_EQ(text("result"), "Error (missing parameters): result");
  EXPECT_EQ(text("result 1-0extra"), "Error (invalid argument(s)): result 1-0extra");
  EXPECT_EQ(text("e2e4 e7e5"), "Error (unrecognized command): e2e4 e7e5");
  EXPECT_EQ(text("name 'x"), "Error (could not tokenize the input string): name 'x");
}

TEST(PersonalityNames, NamesAndValuesBothWays) {
  std::int32_t value = 99;
  EXPECT_TRUE(ParsePersonality("Default", value));
  EXPECT_EQ(value, 0);
  EXPECT_TRUE(ParsePersonality("Zephrin", value));
  EXPECT_EQ(value, 0);
  EXPECT_TRUE(ParsePersonality("fenx", value));
  EXPECT_EQ(value, 1000);
  EXPECT_TRUE(ParsePersonality("007", value));
  EXPECT_EQ(value, 7);
  EXPECT_TRUE(ParsePersonality("-15", value));
  EXPECT_EQ(value, -15);
  EXPECT_FALSE(ParsePersonality("FENX", value));
  EXPECT_FALSE(ParsePersonality("morvek1", value));
  EXPECT_FALSE(ParsePersonality("", value));
  EXPECT_FALSE(ParsePersonality("+5", value));
  for (int i = 0; i < 5; ++i) {
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
