// The commands of the UCI protocol and their parser. The front end keeps the game: `position`
// replaces the engine's game as a whole, and `go` asks for one search with limits taken from the
// clocks that the front end sends with it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "frame/tokenizer.h"
#include "interfaces/commands.h"
#include "interfaces/user_board.h"
#include "search/search_request.h"

namespace ZephrinInterfaces {

class UciProtocol;

// `uci`: installs the UCI protocol from any protocol.
class Command_Uci : public Command_InstallNewProtocol {
 public:
  using Command_InstallNewProtocol::Command_InstallNewProtocol;
  std::unique_ptr<BasicProtocol> CreateProtocol() const override;
};

class Command_IsReady : public Command {
 public:
  Command_IsReady(std::string raw_input, UciProtocol& uci) : Command(std::move(raw_input)), protocol(uci) {}
  void Execute(Game& game) override;
  UciProtocol& protocol;
};

class Command_UciNewGame : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

// `position`: the game, built and checked by the parser, replaces the engine's game.
class Command_Position : public Command {
 public:
  Command_Position(std::string raw_input, UserBoard position) : Command(std::move(raw_input)), game(std::move(position)) {}
  void Execute(Game& target) override;
  UserBoard game;
};

// What `go` asks for; times in milliseconds, 0 where the front end gave nothing.
struct UciGoParameters {
  std::int32_t time_ms[2] = {0, 0};          // wtime, btime
  bool has_time[2] = {false, false};
  std::int32_t increment_ms[2] = {0, 0};     // winc, binc
  std::int32_t moves_to_go = 0;              // 0: the clock runs to the end of the game
  std::int32_t move_time_ms = 0;
  std::int32_t depth = 0;
  std::uint64_t nodes = 0;
  std::int32_t mate = 0;                     // in moves
  bool infinite = false;
  bool ponder = false;
};

class Command_UciGo : public Command {
 public:
  Command_UciGo(std::string raw_input, UciProtocol& uci, const UciGoParameters& go)
      : Command(std::move(raw_input)), protocol(uci), parameters(go) {}
  void Execute(Game& game) override;
  UciProtocol& protocol;
  UciGoParameters parameters;
};

class Command_Stop : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_PonderHit : public Command {
 public:
  using Command::Command;
  void Execute(Game& game) override;
};

class Command_SetOption : public Command {
 public:
  Command_SetOption(std::string raw_input, std::string option_name, std::string option_value)
      : Command(std::move(raw_input)), name(std::move(option_name)), value(std::move(option_value)) {}
  void Execute(Game& game) override;
  std::string name;
  std::string value;
};

// The command of a UCI line. Null for the words that the shared parser reads under every
// protocol (`quit` and the protocol switches); ErrorCommand for anything else UCI doesn't know.
std::unique_ptr<Command> ParseUciCommand(UciProtocol& protocol, const TokenizedLine& line);

// The request of `go` for the game: the side to move's clock, with `movestogo`, gives the limits
// by the same allocation as the engine's own clock; `movetime` is a hard limit alone.
SearchRequest UciSearchRequest(const UciGoParameters& go, const UserBoard& game);

// The front end decides when a game is drawn by rule: a game ended by repetition, fifty moves or
// material goes on, while mate and stalemate stand.
void ReopenDrawByRule(UserBoard& game);

}  // namespace ZephrinInterfaces
