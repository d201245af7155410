#include "interfaces/basic_protocol.h"

#include <algorithm>
#include <cstdlib>

#include "frame/input.h"
#include "frame/tee_stream.h"
#include "frame/version.h"
#include "hash/hash.h"
#include "interfaces/command.h"
#include "interfaces/command_parser.h"
#include "interfaces/commands.h"
#include "interfaces/edit_mode.h"
#include "interfaces/game.h"
#include "interfaces/game_result_text.h"
#include "interfaces/help_screen.h"
#include "interfaces/personality_names.h"

namespace ZephrinInterfaces {

std::string ScoreText(std::int32_t score) {
  if (score >= -31767 && score <= 31767) return std::to_string(score);
  const std::int32_t moves = (32766 - std::abs(score)) / 2 + 1;
  return (score < 0 ? "-#" : "#") + std::to_string(moves);
}

std::int64_t CentisecondsSince(const TimeStamp& start) {
  TimeStamp now;
  Now(now);
  return MillisecondsBetween(start, now) / 10;
}

void BasicProtocol::WriteLine(const std::string& text) {
  Out << text << "\n";
  Out.Flush();
}

void BasicProtocol::WriteText(const std::string& text) {
  Out << text;
  Out.Flush();
}

void BasicProtocol::WriteLogOnlyText(const std::string& text) { Out.WriteLogOnly(text); }

std::string BasicProtocol::GameOverText(int result, int reason) {
  return "game over: " + ResultText(result) + " (" + ReasonText(result, reason) + ")";
}

std::string BasicProtocol::PredictedMoveText(const std::string& move) {
  return "Predicted move made (" + move + ")";
}

std::string BasicProtocol::CommandIgnoredText(const std::string& reason) { return "Command ignored (" + reason + ")"; }

void BasicProtocol::TakeOverFrom(const BasicProtocol& old) {
  personality = old.personality;
  id = old.id;
}

void BasicProtocol::ReportError(const std::string& text) { WriteLine(text); }

// The stat01 answer; the console protocol shares it.
void BasicProtocol::ShowSearchStatus(const SearchReport* search) {
  if (search == nullptr) {
    WriteLine("stat01: 0 0 0 0 0");
    return;
  }
  WriteLine("stat01: " + std::to_string(CentisecondsSince(search->start_time)) + " " +
            std::to_string(search->nodes) + " " + std::to_string(search->depth) + " " +
            std::to_string(int{search->moves_left} - 1) + " " + std::to_string(search->move_count) + " " +
            search->current_move_text);
}

void BasicProtocol::ReportLine(const SearchReport& search) {
  if (post) {
    const bool saved = Out.console;
    Out.console = true;
    WriteThinkingLine(search);
    Out.console = saved;
  } else {
    LogOnlySection log_only;
    WriteThinkingLine(search);
    Out << " (not sent to xboard)\n";
  }
  Out.Flush();
}

void BasicProtocol::ReportDepth(int depth) {
  const bool saved = Out.console;
  Out.console = post;
  WriteDepth(depth);
  Out.console = saved;
  Out.Flush();
}

void BasicProtocol::ReportNewBestMove(const std::string& move) {
  WriteLogOnlyText("New pv-move candidate found: " + move);
}

void BasicProtocol::ReportSearchInstability() { WriteLogOnlyText("Search instability found!"); }

// The summary in the console's words; the XBoard classes send it to the log only.
void BasicProtocol::ShowSearchSummary(const SearchReport& search) {
  const std::int64_t milliseconds = std::max<std::int64_t>(MillisecondsBetween(search.start_time, search.stop_time), 1);
  Out << "time: " << static_cast<double>(milliseconds) / 1000.0 << " sec ("
      << static_cast<std::uint64_t>(search.nodes / 1000) << " knodes, "
      << static_cast<double>(search.nodes) / static_cast<double>(milliseconds) << " knps)\n";
  Out.Flush();
}

void BasicProtocol::RejectDraw(bool opponent_is_computer) {
  if (!opponent_is_computer) TellUser(ShortName() + " rejects the draw offer and wants to play on.");
}

void BasicProtocol::ConsiderDraw(bool opponent_is_computer) {
  if (!opponent_is_computer) {
    TellUser(ShortName() + " is thinking about the draw offer and will decide after the next move.");
  }
}

void BasicProtocol::DisplayHashTables(bool detailed) { WriteText(HashTablesStatusText(detailed)); }

void BasicProtocol::PrintHelp() { ZephrinHelpScreen::ShowHelp(); }
void BasicProtocol::PrintStartupHelp() { ZephrinHelpScreen::ShowStartupHelp(); }
void BasicProtocol::PrintEditHelp() { ZephrinHelpScreen::ShowEditHelp(); }

void BasicProtocol::PrintVersion() { WriteText(VersionText()); }

void BasicProtocol::DisplayBoard(const Game& game, bool verbose) {
  game.DisplayPosition(verbose);
  Out.Flush();
}

void BasicProtocol::DisplayPersonality() {
  WriteLine("Personality: " + PersonalityName(personality) + " (" + std::to_string(personality) + ")");
}

namespace {

bool ReplacesName(const std::string& id) { return id.size() > 2 && id.compare(0, 2, "##") == 0; }

std::string Quoted(const std::string& text) {
  std::string quoted(1, '"');
  quoted.append(text).push_back('"');
  return quoted;
}

}  // namespace

std::string BasicProtocol::FullName() const {
  if (ReplacesName(id)) return Quoted(id.substr(2));
  std::string name;
  if (personality != 0) name += PersonalityName(personality) + " ";
  name += ProgramName();
  if (!id.empty()) name += " " + id;
  return Quoted(name);
}

std::string BasicProtocol::ShortName() const { return ReplacesName(id) ? id.substr(2) : ProgramName(); }

std::unique_ptr<Command> BasicProtocol::ParseLine(const TokenizedLine& line) { return ParseCommand(*this, line); }

std::unique_ptr<Command> BasicProtocol::ParseText(const std::string& text) {
  TokenizedLine line;
  try {
    line = TokenizeLine(text);
  } catch (const ZephrinUtils::tokenize_exception&) {
    throw ErrorCommand(ErrorCommand::ERROR, "could not tokenize the input string", text);
  }
  if (line.tokens.empty()) {
    AcknowledgeEmptyLine();
    return std::make_unique<Command_DoNothing>(text);
  }
  return ParseLine(line);
}

int BasicProtocol::ReadEditCommand(EditBoard&, Square& square, PieceType& piece) {
  return ReadEditWord(*this, [] { return ::ReadLine(); }, square, piece);
}

}  // namespace ZephrinInterfaces
