// The one path by which the loop, the commands, the game and the search tell the outside what
// happens. Each protocol class decides what a person or a front end sees of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "board/types.h"
#include "frame/tokenizer.h"
#include "interfaces/search_report.h"

namespace ZephrinInterfaces {

class Command;
class Game;
struct EditBoard;
struct PgnTags;

class BasicProtocol {
 public:
  explicit BasicProtocol(bool post_on) : post(post_on) {}
  virtual ~BasicProtocol() = default;
  BasicProtocol(const BasicProtocol&) = delete;
  BasicProtocol& operator=(const BasicProtocol&) = delete;

  // Carries `personality` and `id` over from the protocol being replaced; `post` stays.
  virtual void TakeOverFrom(const BasicProtocol& old);
  // An interactive protocol ends the game itself after a resignation or an agreed draw.
  virtual bool IsInteractive() const = 0;
  virtual bool AnalyzesFinishedGames() const = 0;
  // The front end keeps the game and only asks for searches (UCI): the engine plays no move on
  // its own board, and every search ends in ShowBestMove.
  virtual bool FrontEndKeepsGame() const { return false; }
  // Runs once, when the protocol is installed by a command.
  virtual void Activate() {}

  virtual void ShowHint(const std::string& move) = 0;
  virtual void ShowEngineMove(const std::string& move) = 0;
  virtual void ShowGameResult(int result, int reason, int game_mode) = 0;
  virtual void ShowPredictedMove(const std::string& move) = 0;
  virtual void ShowCommandIgnored(const std::string& reason) = 0;
  virtual void ShowEditAborted() = 0;
  virtual void ReportError(const std::string& text);
  virtual void ShowPrompt(const Game& game) = 0;
  virtual void AcknowledgeEmptyLine() {}
  // Null when no search is running.
  virtual void ShowSearchStatus(const SearchReport* search);
  virtual void ReportLine(const SearchReport& search);
  virtual void ReportDepth(int depth);
  virtual void ReportNewBestMove(const std::string& move);
  // The first move fell below the window of its bisection: its value is at most the bound so far.
  // Only protocols that show bounds report it.
  virtual void ReportUpperBound(int, int) {}
  virtual void ReportSearchInstability();
  virtual void ShowSearchSummary(const SearchReport& search);
  // The end of a search when the front end keeps the game: the move found and the reply expected
  // to it, MOVE_INVALID where there is none.
  virtual void ShowBestMove(Move, Move) {}
  virtual void AcceptDraw() = 0;
  virtual void RejectDraw(bool opponent_is_computer);
  virtual void Resign() = 0;
  virtual void OfferDraw() = 0;
  virtual void ConsiderDraw(bool opponent_is_computer);
  virtual void PrintHelp();
  virtual void PrintStartupHelp();
  virtual void PrintEditHelp();
  virtual void PrintVersion();
  virtual void DisplayBoard(const Game& game, bool verbose);
  virtual void DisplayPersonality();
  virtual void DisplayHashTables(bool detailed);
  virtual void BoardChanged(const Game& game) = 0;
  // The position being set up in edit mode, after each change.
  virtual void ShowEditBoard(const EditBoard& board) = 0;
  // The tags of a game just read from a PGN file.
  virtual void ShowPgnTags(const PgnTags& tags) = 0;
  virtual void TellUser(const std::string& text) = 0;
  // The engine's name with personality and id, in double quotation marks.
  virtual std::string FullName() const;
  virtual std::string ShortName() const;
  // Turns a line with at least one token into a command, or raises ErrorCommand.
  virtual std::unique_ptr<Command> ParseLine(const TokenizedLine& line);
  virtual void ShowEditPrompt() = 0;
  virtual void WriteThinkingLine(const SearchReport& search) = 0;
  virtual void WriteDepth(int depth) = 0;

  // Tokenizes and parses one input line; an empty line is acknowledged and does nothing.
  std::unique_ptr<Command> ParseText(const std::string& text);
  // Reads standard input until a word of the edit vocabulary arrives and returns its code;
  // square and piece are filled for the codes that put or clear a piece.
  int ReadEditCommand(EditBoard& board, Square& square, PieceType& piece);

  bool post;                       // thinking lines are shown
  std::int16_t personality = 0;    // the value set by `personality`
  std::string id;                  // set by `id`; "##Name" replaces the engine's name

 protected:
  // Writes the text with a newline, flushed.
  static void WriteLine(const std::string& text);
  // Writes the text as it stands, flushed.
  static void WriteText(const std::string& text);
  // Writes the text, then the log-only mark, with the console side off.
  static void WriteLogOnlyText(const std::string& text);

  // Notes that the console shows and the XBoard protocols only log.
  static std::string GameOverText(int result, int reason);
  static std::string PredictedMoveText(const std::string& move);
  static std::string CommandIgnoredText(const std::string& reason);
};

// "#2" for a mate in two, the plain number otherwise.
std::string ScoreText(std::int32_t score);
// The time since the start of the search, in hundredths of a second.
std::int64_t CentisecondsSince(const TimeStamp& start);

}  // namespace ZephrinInterfaces
