// What the rest of the program sees of the endgame databases: one probe of the bitbases and one of
// the tablebases. Both store a score from the side to move's view, 0 for a draw; the caller adds
// its own ply to place a mate. Neither throws: what they can't answer is not found.
#pragma once

#include "board/board.h"
#include "frame/zephrin_exception.h"

enum TB_RESULT {
  TB_NOT_LOADED = 0,  // no tablebases are initialised
  TB_FOUND = 1,
  TB_NOT_FOUND = 2,   // not covered, or its file is missing or broken
  TB_QUEUED = 3,      // never returned; callers treat it as an internal error
};

enum BITBASE_RESULT {
  BB_FOUND = 0,
  BB_NOT_FOUND = 1,  // not covered, or the table isn't loaded
  BB_DISABLED = 2,   // never returned by these bitbases
};

// Set once an initialisation of the tablebases has succeeded.
extern bool tablebases_loaded;

namespace ZephrinTablebases {

// A failed initialisation, with the text that the tb command reports.
class TB_Exception : public ZephrinException {
 public:
  using ZephrinException::ZephrinException;
};

}  // namespace ZephrinTablebases

TB_RESULT ProbeTablebases(const Board& board, int& score);
BITBASE_RESULT ProbeBitbases(const Board& board, int& score);

// Whether the tablebases know the position and the mate is more than 29 score units away: the
// resign and draw logic leaves such a game to play on.
bool IsLongTablebaseResult(const Board& board);
