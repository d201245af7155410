// The options that a UCI front end sees and sets: the lines that announce them, and `setoption`.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ZephrinInterfaces {

class Command;
class Game;

// The `option` lines, with the current hash size and personality as defaults.
std::vector<std::string> UciOptionLines(std::int32_t personality);

// Sets the option of that name (in any case) to the value; raises ErrorCommand for `command` with
// the reason when the name is unknown or the value doesn't fit, and then changes nothing.
void SetUciOption(Game& game, const Command& command, const std::string& name, const std::string& value);

}  // namespace ZephrinInterfaces
