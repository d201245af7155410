#include "interfaces/game_result_text.h"

namespace ZephrinInterfaces {

std::string ResultText(int result) {
  switch (result) {
    case 1: return "1-0";
    case 2: return "0-1";
    case 3: return "1/2-1/2";
    default: return "*";
  }
}

std::string ReasonText(int result, int reason) {
  switch (reason) {
    case 0: return result == 1 ? "White mates" : "Black mates";
    case 1: return result == 1 ? "Black resigns" : "White resigns";
    case 2: return "Lost on time";
    case 3: return "Stalemate";
    case 4: return "Insufficient material";
    case 5: return "Threefold repetition";
    case 6: return "Mutual agreement";
    case 7: return "Fifthy move rule";
    case 8: return "aborted";
    default: return "unknown reason";
  }
}

}  // namespace ZephrinInterfaces
