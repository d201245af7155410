// The UCI protocol: the front end keeps the game and sends the whole position before each search;
// the engine answers with `info` lines and one `bestmove` per search, and everything else that the
// other protocols show goes to the log. A failed command is told as an `info string`.
#pragma once

#include <string>

#include "interfaces/basic_protocol.h"
#include "interfaces/user_board.h"

namespace ZephrinInterfaces {

class UciProtocol : public BasicProtocol {
 public:
  UciProtocol() : BasicProtocol(true) {}

  // Remembers whether a console prompt stands on the current output line.
  void TakeOverFrom(const BasicProtocol& old) override;
  bool IsInteractive() const override { return false; }
  bool AnalyzesFinishedGames() const override { return true; }
  bool FrontEndKeepsGame() const override { return true; }
  // Names the engine, lists its options and ends with `uciok`.
  void Activate() override;

  void ShowHint(const std::string& move) override;
  void ShowEngineMove(const std::string& move) override;
  void ShowGameResult(int result, int reason, int game_mode) override;
  void ShowPredictedMove(const std::string& move) override;
  void ShowCommandIgnored(const std::string& reason) override;
  void ShowEditAborted() override {}
  void ReportError(const std::string& text) override;
  void ShowPrompt(const Game&) override {}
  void ReportNewBestMove(const std::string& move) override;
  void ReportUpperBound(int depth, int bound) override;
  void ReportSearchInstability() override;
  void ShowSearchSummary(const SearchReport& search) override;
  void ShowBestMove(Move move, Move ponder) override;
  void AcceptDraw() override;
  void Resign() override;
  void OfferDraw() override;
  void BoardChanged(const Game& game) override;
  void ShowEditBoard(const EditBoard& board) override;
  void ShowPgnTags(const PgnTags& tags) override;
  void TellUser(const std::string& text) override;
  std::unique_ptr<Command> ParseLine(const TokenizedLine& line) override;
  void ShowEditPrompt() override {}
  void WriteThinkingLine(const SearchReport& search) override;
  void WriteDepth(int) override {}

  // `readyok`, the answer to `isready`.
  void ShowReady();
  // The position that the next search starts from; the variations of its reports are read on it.
  void SetSearchRoot(const UserBoard& root) { search_root_ = root; }

 private:
  // The SAN moves of a variation from the search root in UCI's coordinate form.
  std::string CoordinateLine(const std::vector<std::string>& san_moves) const;

  bool after_prompt_ = false;  // the console's prompt waits for its line to end
  UserBoard search_root_;
  int last_depth_ = 0;         // of the last reported line
  std::int32_t last_score_ = 0;
};

// A move in UCI's form: "e2e4", "e7e8q", "e1g1" for castling.
std::string UciMoveText(Move move);
// "cp 25" or "mate 3", "mate -2": the score from the side to move, mates in moves.
std::string UciScoreText(std::int32_t score);

}  // namespace ZephrinInterfaces
