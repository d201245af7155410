#include "interfaces/console_protocol.h"

#include <cstdlib>

#include "frame/tee_stream.h"
#include "interfaces/edit_board.h"
#include "interfaces/game.h"
#include "interfaces/game_files.h"
#include "interfaces/game_result_text.h"

namespace ZephrinInterfaces {

namespace {

// Writes text to the terminal only, not to the log.
void WriteToTerminal(const std::string& text) {
  const bool saved = Out.to_log;
  Out.to_log = false;
  Out << text;
  Out.to_log = saved;
}

}  // namespace

std::string ConsoleProtocol::MakeGreeting() {
  static const char* const GREETINGS[] = {"Hallo", "Guten Tag", "Welcome", "Zephrin welcomes you",
                                          "Zephrin ist bereit", "Ave und beim Jupiter"};
  std::string greeting = GREETINGS[std::rand() % 6];
  const std::string& opponent = Game::DefaultOpponentName();
  if (opponent != "Incognito") greeting += ", " + opponent;
  return greeting + "!";
}

void ConsoleProtocol::Activate() { WriteLine(MakeGreeting()); }

void ConsoleProtocol::ShowHint(const std::string& move) {
  if (move.empty()) {
    WriteLine("Hint request could not be responded, because no legal move was found");
  } else {
    WriteLine("Zephrin suggests " + move);
  }
}

void ConsoleProtocol::ShowEngineMove(const std::string& move) { WriteLine("Zephrin played: " + move); }

void ConsoleProtocol::ShowGameResult(int result, int reason, int) {
  WriteLine("game over: " + ResultText(result) + " (" + ReasonText(result, reason) + ")");
}

void ConsoleProtocol::ShowPredictedMove(const std::string& move) {
  WriteLine("Predicted move made (" + move + ")");
}

void ConsoleProtocol::ShowCommandIgnored(const std::string& reason) {
  WriteLine("Command ignored (" + reason + ")");
}

void ConsoleProtocol::ShowEditAborted() { WriteLine("Edit mode aborted"); }

// The leading " \r" wipes a progress line that may stand on the terminal.
void ConsoleProtocol::ShowPrompt(const Game& game) {
  WriteToTerminal(" \r");
  Out << (game.SideToMove() == 0 ? "White" : "Black") << " " << std::to_string(game.FullMoveNumber()) << "> ";
  Out.Flush();
}

void ConsoleProtocol::AcknowledgeEmptyLine() { WriteLine("OK."); }

void ConsoleProtocol::ShowSearchStatus(const SearchReport* search) {
  if (search == nullptr) {
    ShowCommandIgnored("no search running");
  } else {
    BasicProtocol::ShowSearchStatus(search);
  }
}

void ConsoleProtocol::ReportNewBestMove(const std::string& move) {
  if (post) WriteToTerminal("!? " + move + " ");
  WriteLogOnlyText("New move found: " + move);
}

void ConsoleProtocol::ReportSearchInstability() { WriteLine("#warning: Search instability found!"); }

void ConsoleProtocol::AcceptDraw() { WriteLine("Zephrin accepts draw offer"); }

void ConsoleProtocol::Resign() { WriteLine("Congratulations! Zephrin resigns."); }

void ConsoleProtocol::OfferDraw() { WriteLine("Zephrin offers draw. (Note: type \"draw\" to accept)"); }

void ConsoleProtocol::BoardChanged(const Game& game) {
  game.DisplayPosition(false);
  Out.Flush();
}

void ConsoleProtocol::ShowEditBoard(const EditBoard& board) {
  Out << board.DisplayText(true);
  Out.Flush();
}

void ConsoleProtocol::ShowPgnTags(const PgnTags& tags) {
  Out << PgnTagsText(tags);
  Out.Flush();
}

void ConsoleProtocol::TellUser(const std::string& text) { WriteLine(text); }

void ConsoleProtocol::ShowEditPrompt() {
  Out << "edit mode> ";
  Out.Flush();
}

void ConsoleProtocol::WriteThinkingLine(const SearchReport& search) {
  WriteToTerminal("\r");
  Out << "Depth: " << std::to_string(search.depth) << ". ";
  for (const std::string& move : search.pv) Out << move << " ";
  Out << "(" << ScoreText(search.score) << ")\n";
  if (search.nodes > 100000) Out << std::to_string(search.nodes / 1000) << " knodes searched\n";
  Out.Flush();
}

void ConsoleProtocol::WriteDepth(int depth) {
  Out << "Depth: " << std::to_string(depth) << ".";
  {
    LogOnlySection log_only;
    Out << " (not sent to xboard)\n";
  }
  Out.Flush();
}

}  // namespace ZephrinInterfaces
