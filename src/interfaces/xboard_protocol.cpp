#include "interfaces/xboard_protocol.h"

#include <csignal>

#include "frame/input.h"
#include "frame/string_conversions.h"
#include "frame/tee_stream.h"
#include "interfaces/edit_board.h"
#include "interfaces/game.h"
#include "interfaces/game_files.h"
#include "interfaces/game_result_text.h"

namespace ZephrinInterfaces {

namespace {

// Whole lines for the log only, the log-only mark on a line of its own after them.
template <typename Write>
void WriteLogOnlyLines(Write write) {
  {
    LogOnlySection log_only;
    write();
    Out << "(not sent to xboard)\n";
  }
  Out.Flush();
}

}  // namespace

void BasicXBoardProtocol::ShowHint(const std::string& move) {
  if (!move.empty()) WriteLine("Hint: " + move);
}

void BasicXBoardProtocol::ShowEngineMove(const std::string& move) { WriteLine("move " + move); }

// The front end learns of results only in a game the engine plays.
void BasicXBoardProtocol::ShowGameResult(int result, int reason, int game_mode) {
  const std::string text = ResultText(result) + " {" + ReasonText(result, reason) + "}";
  if (game_mode == GAME_MODE_PLAY || game_mode == GAME_MODE_BOTH) {
    WriteLine(text);
  } else {
    WriteLogOnlyText(GameOverText(result, reason));
  }
}

void BasicXBoardProtocol::ShowPredictedMove(const std::string& move) { WriteLogOnlyText(PredictedMoveText(move)); }

void BasicXBoardProtocol::ShowCommandIgnored(const std::string& reason) {
  WriteLogOnlyText(CommandIgnoredText(reason));
}

void BasicXBoardProtocol::ShowSearchSummary(const SearchReport& search) {
  LogOnlySection log_only;
  BasicProtocol::ShowSearchSummary(search);
}

void BasicXBoardProtocol::AcceptDraw() { WriteLine("offer draw"); }

void BasicXBoardProtocol::Resign() { WriteLine("resign"); }

void BasicXBoardProtocol::OfferDraw() { WriteLine("offer draw"); }

void BasicXBoardProtocol::BoardChanged(const Game& game) {
  WriteLogOnlyLines([&] { game.DisplayPosition(false); });
}

void BasicXBoardProtocol::ShowEditBoard(const EditBoard& board) {
  WriteLogOnlyLines([&] { Out << board.DisplayText(true); });
}

void BasicXBoardProtocol::ShowPgnTags(const PgnTags& tags) {
  WriteLogOnlyLines([&] { Out << PgnTagsText(tags); });
}

void BasicXBoardProtocol::TellUser(const std::string& text) { WriteLine("telluser " + ReplaceChar(text, '\n', '\t')); }

void BasicXBoardProtocol::WriteThinkingLine(const SearchReport& search) {
  Out << std::to_string(search.depth) << " " << std::to_string(search.score) << " "
      << std::to_string(CentisecondsSince(search.start_time)) << " " << std::to_string(search.nodes) << " ";
  for (const std::string& move : search.pv) Out << move << " ";
  Out << "\n";
  Out.Flush();
}

void BasicXBoardProtocol::PrepareStreams() {
  SetRawStdin();
  std::signal(SIGINT, SIG_IGN);
  std::signal(SIGTERM, SIG_IGN);
}

void XBoardProtocol_1::Activate() { PrepareStreams(); }

void XBoardFritzAdapter::Activate() { PrepareStreams(); }

void XBoardProtocol_2::Activate() {
  PrepareStreams();
  const std::pair<const char*, std::string> features[] = {
      {"analyze", "1"}, {"colors", "0"},   {"draw", "1"},      {"ics", "0"},     {"myname", FullName()},
      {"name", "1"},    {"pause", "0"},    {"ping", "1"},      {"playother", "1"}, {"resume", "0"},
      {"reuse", "1"},   {"san", "1"},      {"setboard", "1"},  {"sigint", "0"},  {"sigterm", "0"},
      {"time", "0"},    {"usermove", "1"}, {"variants", "normal"}, {"done", "1"},
  };
  for (const auto& [name, value] : features) WriteLine("feature " + std::string(name) + "=" + value);
}

}  // namespace ZephrinInterfaces
