// The XBoard protocols: the front end sees protocol lines only, everything else goes to the log.
#pragma once

#include "interfaces/basic_protocol.h"

namespace ZephrinInterfaces {

class BasicXBoardProtocol : public BasicProtocol {
 public:
  BasicXBoardProtocol() : BasicProtocol(false) {}

  bool IsInteractive() const override { return false; }
  bool AnalyzesFinishedGames() const override { return true; }
  void ShowHint(const std::string& move) override;
  void ShowEngineMove(const std::string& move) override;
  void ShowGameResult(int result, int reason, int game_mode) override;
  void ShowPredictedMove(const std::string& move) override;
  void ShowCommandIgnored(const std::string& reason) override;
  void ShowEditAborted() override {}
  void ShowPrompt(const Game&) override {}
  void ShowSearchSummary(const SearchReport& search) override;
  void AcceptDraw() override;
  void Resign() override;
  void OfferDraw() override;
  void BoardChanged(const Game& game) override;
  void ShowEditBoard(const EditBoard& board) override;
  void ShowPgnTags(const PgnTags& tags) override;
  void TellUser(const std::string& text) override;
  void ShowEditPrompt() override {}
  void WriteThinkingLine(const SearchReport& search) override;
  void WriteDepth(int) override {}

 protected:
  // Raw standard input, and SIGINT and SIGTERM ignored: the front end's interrupts don't disturb us.
  static void PrepareStreams();
};

class XBoardProtocol_1 : public BasicXBoardProtocol {
 public:
  void Activate() override;
};

class XBoardProtocol_2 : public XBoardProtocol_1 {
 public:
  // Also announces the features.
  void Activate() override;
};

// For a Fritz front end; behaves as protocol version 1.
class XBoardFritzAdapter : public XBoardProtocol_1 {
 public:
  void Activate() override;
};

}  // namespace ZephrinInterfaces
