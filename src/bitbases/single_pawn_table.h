// King and pawn against king, solved when the program is built (tools/single_pawn).
#pragma once

#include "board/types.h"

namespace ZephrinBitbases {

// [who][pawn square][strong king square]: a bitboard over the weak king's squares with a bit set
// for every legal position that is a draw. The pawn is White's; who is 0 when the pawn's side is
// to move. A clear bit is a win, or a position that can't arise.
extern const Bitboard SINGLE_PAWN_TABLE[2][64][64];

}  // namespace ZephrinBitbases
