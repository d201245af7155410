// The edit loop: its words, and what it comes to under a person's and a front end's protocol.
#include "interfaces/edit_mode.h"

#include <gtest/gtest.h>

#include <deque>

#include "frame/control_exceptions.h"
#include "interfaces/console_protocol.h"
#include "interfaces/fen.h"
#include "interfaces/game_test_helpers.h"
#include "interfaces/xboard_protocol.h"

using namespace ZephrinInterfaces;

namespace {

// Runs the loop on the start position with scripted lines and keeps what it wrote.
struct EditSession {
  int outcome = -1;
  UserBoard result;
  std::string output;
};

EditSession Edit(BasicProtocol& protocol, std::deque<std::string> lines) {
  EditSession session;
  test_helpers::CapturedOutput output;
  const LineReader read = [&lines] {
    if (lines.empty()) return std::string("quit");
    std::string line = lines.front();
    lines.pop_front();
    return line;
  };
  session.outcome = RunEditLoop(protocol, Board(), session.result, read);
  session.output = output.Text();
  return session;
}

}  // namespace

TEST(EditMode, Vocabulary) {
  Square square = -1;
  PieceType piece = -1;
  const std::pair<const char*, int> words[] = {
      {"#", EDIT_CLEAR_BOARD}, {"c", EDIT_CHANGE_COLOR}, {"restore", EDIT_RESTORE}, {"s", EDIT_CHANGE_SIDE},
      {".", EDIT_FINISH},      {"cancel", EDIT_CANCEL},  {"help", EDIT_HELP},       {"verify", EDIT_VERIFY},
      {"display", EDIT_DISPLAY}, {"quit", EDIT_QUIT},  {"C", EDIT_UNKNOWN},       {"Ze4", EDIT_UNKNOWN},
      {"Pe9", EDIT_UNKNOWN},   {"Pi4", EDIT_UNKNOWN},    {"Pe44", EDIT_UNKNOWN},    {"Ke", EDIT_UNKNOWN},
      {"cancel!", EDIT_UNKNOWN}};
  for (const auto& [word, code] : words) EXPECT_EQ(EditWordCode(word, square, piece), code) << word;

  EXPECT_EQ(EditWordCode("Pe4", square, piece), EDIT_PUT_PIECE);
  EXPECT_EQ(square, 28);
  EXPECT_EQ(piece, PAWN);
  EXPECT_EQ(EditWordCode("nA8", square, piece), EDIT_PUT_PIECE);
  EXPECT_EQ(square, 56);
  EXPECT_EQ(piece, KNIGHT);
  EXPECT_EQ(EditWordCode("Xh1", square, piece), EDIT_CLEAR_SQUARE);
  EXPECT_EQ(square, 7);
}

TEST(EditMode, AtTheConsole) {
  ConsoleProtocol console;
  // Finishing at once gives the same position back, without history.
  EditSession same = Edit(console, {"."});
  EXPECT_EQ(same.outcome, SETUP_ACCEPTED);
  EXPECT_EQ(PositionToFen(same.result), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
  EXPECT_EQ(same.output, "edit mode> ");

  // An illegal position is refused and the loop goes on; odd lines are answered or passed over.
  EditSession kings = Edit(console, {"#", ".", "Ze4", "K e8", "", "say \"hi", "Ke1", "c", "Ke8", "s", "verify", "."});
  EXPECT_EQ(kings.outcome, SETUP_ACCEPTED);
  EXPECT_EQ(PositionToFen(kings.result), "4k3/8/8/8/8/8/8/4K3 b - - 0 1");
  EXPECT_NE(kings.output.find("edit mode> Command ignored (Illegal position)\nedit mode> Error (unknown command): Ze4\n"
                              "edit mode> edit mode> edit mode> Error (could not tokenize the input string): say \"hi\n"),
            std::string::npos)
      << kings.output;
  EXPECT_NE(kings.output.find("edit mode> Current position is valid\nedit mode> "), std::string::npos);

  // restore brings back the game's position; the changes before it are gone.
  EditSession restored = Edit(console, {"xe2", "restore", "Pe1", "verify", "restore", "."});
  EXPECT_EQ(PositionToFen(restored.result), "rnbqkbnr/pppppppp/8/8/8/8/PPPPPPPP/RNBQKBNR w KQkq - 0 1");
  EXPECT_NE(restored.output.find("Current position is invalid\n"), std::string::npos);

  EXPECT_EQ(Edit(console, {"#", "cancel"}).outcome, SETUP_CANCELLED);
  EXPECT_THROW(Edit(console, {"Ke4", "quit"}), quit_command_received_exception);
}

TEST(EditMode, UnderXBoardAnIllegalPositionEndsTheLoop) {
  XBoardProtocol_1 xboard;
  EditSession session = Edit(xboard, {"#", "Pa2", "Ke1", "c", "Ke8", "."});
  EXPECT_EQ(session.outcome, SETUP_ACCEPTED);
  EXPECT_EQ(PositionToFen(session.result), "4k3/8/8/8/8/8/P7/4K3 w - - 0 1");
  EXPECT_EQ(session.output, "");  // no prompt, no board
  EXPECT_EQ(Edit(xboard, {"#", "."}).outcome, SETUP_INVALID);
}
