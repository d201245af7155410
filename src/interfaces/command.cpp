#include "interfaces/command.h"

namespace ZephrinInterfaces {

namespace {

std::string ErrorText(int kind, const std::string& reason, const std::string& input) {
  std::string text = kind == ErrorCommand::ILLEGAL_MOVE ? "Illegal move" : "Error";
  if (!reason.empty()) text += " (" + reason + ")";
  return text + ": " + input;
}

}  // namespace

ErrorCommand::ErrorCommand(int error_kind, const std::string& error_reason, const std::string& raw_input)
    : ZephrinException(ErrorText(error_kind, error_reason, raw_input)),
      kind(error_kind),
      reason(error_reason),
      input(raw_input) {}

}  // namespace ZephrinInterfaces
