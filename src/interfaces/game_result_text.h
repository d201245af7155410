// The words for a game's result and the reason it ended.
#pragma once

#include <string>

namespace ZephrinInterfaces {

// "1-0", "0-1", "1/2-1/2"; anything else "*".
std::string ResultText(int result);
// "White mates", "Stalemate", ... for the reason codes of a finished game.
std::string ReasonText(int result, int reason);

}  // namespace ZephrinInterfaces
