// The protocol for a person at a terminal: a prompt, the board after each change, and sentences.
#pragma once

#include "interfaces/basic_protocol.h"

namespace ZephrinInterfaces {

class ConsoleProtocol : public BasicProtocol {
 public:
  ConsoleProtocol() : BasicProtocol(true) {}

  bool IsInteractive() const override { return true; }
  bool AnalyzesFinishedGames() const override { return false; }
  void Activate() override;
  void ShowHint(const std::string& move) override;
  void ShowEngineMove(const std::string& move) override;
  void ShowGameResult(int result, int reason, int game_mode) override;
  void ShowPredictedMove(const std::string& move) override;
  void ShowCommandIgnored(const std::string& reason) override;
  void ShowEditAborted() override;
  void ShowPrompt(const Game& game) override;
  void AcknowledgeEmptyLine() override;
  void ShowSearchStatus(const SearchReport* search) override;
  void ReportNewBestMove(const std::string& move) override;
  void ReportSearchInstability() override;
  void AcceptDraw() override;
  void Resign() override;
  void OfferDraw() override;
  void BoardChanged(const Game& game) override;
  void ShowEditBoard(const EditBoard& board) override;
  void ShowPgnTags(const PgnTags& tags) override;
  void TellUser(const std::string& text) override;
  void ShowEditPrompt() override;
  void WriteThinkingLine(const SearchReport& search) override;
  void WriteDepth(int depth) override;

  // One of six greetings, with the opponent's name when one was given.
  virtual std::string MakeGreeting();
};

}  // namespace ZephrinInterfaces
