// The command: one parsed input line, executed against the game, and the error that a command
// raises when it can't be parsed or carried out.
#pragma once

#include <string>
#include <utility>

#include "frame/zephrin_exception.h"

namespace ZephrinInterfaces {

class Game;

class Command {
 public:
  explicit Command(std::string raw_input) : input(std::move(raw_input)) {}
  virtual ~Command() = default;
  Command(const Command&) = delete;
  Command& operator=(const Command&) = delete;

  // May be called again after it raised a search abort or request without setting `done`;
  // it then starts over from its beginning.
  virtual void Execute(Game& game) = 0;

  std::string input;  // the raw line, for error messages
  bool done = false;  // nothing left to do; the main loop deletes the command
};

// A failed command. Its text, "Error (reason): line" or "Illegal move: line", is what the user reads.
class ErrorCommand : public ZephrinException {
 public:
  static constexpr int ILLEGAL_MOVE = 0;
  static constexpr int ERROR = 1;

  ErrorCommand(int kind, const std::string& reason, const std::string& input);

  int kind;
  std::string reason;
  std::string input;
};

// A failure that start-up may pass over with a warning.
class IgnorableErrorCommand : public ErrorCommand {
 public:
  IgnorableErrorCommand(const std::string& error_reason, const std::string& raw_input)
      : ErrorCommand(ERROR, error_reason, raw_input) {}
};

}  // namespace ZephrinInterfaces
