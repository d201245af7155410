#include "interfaces/console_protocol.h"

#include <cstdlib>

#include "frame/tee_stream.h"
#include "interfaces/edit_board.h"
#include "interfaces/game.h"
#include "interfaces/game_files.h"

namespace ZephrinInterfaces {

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
  WriteLine(GameOverText(result, reason));
}

void ConsoleProtocol::ShowPredictedMove(const std::string& move) { WriteLine(PredictedMoveText(move)); }

void ConsoleProtocol::ShowCommandIgnored(const std::string& reason) { WriteLine(CommandIgnoredText(reason)); }

void ConsoleProtocol::ShowEditAborted() { WriteLine("Edit mode aborted"); }

// The leading " \r" wipes a progress line that may stand on the terminal.
void ConsoleProtocol::ShowPrompt(const Game& game) {
  Out.WriteConsoleOnly(" \r");
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
  if (post) Out.WriteConsoleOnly("!? " + move + " ");
  WriteLogOnlyText("New move found: " + move);
}

void ConsoleProtocol::ReportSearchInstability() { WriteLine("#warning: Search instability found!"); }

void ConsoleProtocol::AcceptDraw() { WriteLine("Zephrin accepts draw offer"); }

void ConsoleProtocol::Resign() { WriteLine("Congratulations! Zephrin resigns."); }

void ConsoleProtocol::OfferDraw() { WriteLine("Zephrin offers draw. (Note: type \"draw\" to accept)"); }

void ConsoleProtocol::BoardChanged(const Game& game) { DisplayBoard(game, false); }

void ConsoleProtocol::ShowEditBoard(const EditBoard& board) { WriteText(board.DisplayText(true)); }

void ConsoleProtocol::ShowPgnTags(const PgnTags& tags) { WriteText(PgnTagsText(tags)); }

void ConsoleProtocol::TellUser(const std::string& text) { WriteLine(text); }

void ConsoleProtocol::ShowEditPrompt() { WriteText("edit mode> "); }

void ConsoleProtocol::WriteThinkingLine(const SearchReport& search) {
  Out.WriteConsoleOnly("\r");
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
