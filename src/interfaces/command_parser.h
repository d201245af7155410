// The one parser of all protocols: a tokenized line becomes a command, or an ErrorCommand.
#pragma once

#include <memory>

#include "frame/tokenizer.h"
#include "interfaces/command.h"

namespace ZephrinInterfaces {

class BasicProtocol;

// `line` has at least one token. The protocol hears of ignored words.
std::unique_ptr<Command> ParseCommand(BasicProtocol& protocol, const TokenizedLine& line);

}  // namespace ZephrinInterfaces
