#include "board/static_exchange.h"

#include "board/attacks.h"
#include "board/bitboard.h"

namespace {

constexpr int MAX_EXCHANGE = 40;  // more captures than pieces on the board can't happen

// The cheapest piece of side in the set: pawns, knights, bishops, rooks, queens, king; lowest
// square within a kind. -1 if there is none.
Square CheapestAttacker(const BoardSide& side, Bitboard set) {
  const Bitboard kinds[6] = {side.pawns, side.knights, side.bishops, side.rooks, side.queens,
                             SquareBit(side.king_square)};
  for (Bitboard kind : kinds)
    if (kind & set) return FirstBit(kind & set);
  return -1;
}

}  // namespace

int StaticExchange(const Board& board, Move move, Bitboard& involved) {
  const Square from = MoveFrom(move), to = MoveTo(move);
  const Color mover = board.side_to_move;
  Bitboard attackers = Attackers(board, to) & ~SquareBit(from);
  if (int d = Tables.direction[to][from]) attackers |= SlidersOnRay(board, from, d);
  involved = attackers;

  // Values from black's point of view: black's gains count positive.
  int list[MAX_EXCHANGE];
  const PieceType captured = MoveCaptured(move);
  list[0] = captured ? SEE_VALUE[MakePiece(mover ^ 1, captured) + 6] : 0;
  int on_square = SEE_VALUE[MakePiece(mover, MovePromotion(move) ? QUEEN : MoveMoved(move)) + 6];
  int count = 1;
  Color next = mover ^ 1;
  while (attackers && count < MAX_EXCHANGE) {
    const Square s = CheapestAttacker(board.sides[next], attackers);
    if (s < 0) break;
    list[count] = list[count - 1] + on_square;
    ++count;
    on_square = SEE_VALUE[board.squares[s] + 6];
    attackers &= ~SquareBit(s);
    if (int d = Tables.direction[to][s]) {
      const Bitboard hidden = SlidersOnRay(board, s, d);
      attackers |= hidden;
      involved |= hidden;
    }
    next ^= 1;
  }
  // Fold back: whoever made capture i may decline it; black keeps the larger value, white the
  // smaller. Capture 1 is the opponent's, and the colours alternate from there.
  for (int i = count - 1; i > 0; --i) {
    const Color capturer = (i & 1) ? mover ^ 1 : mover;
    list[i - 1] = capturer == BLACK ? (list[i] > list[i - 1] ? list[i] : list[i - 1])
                                    : (list[i] < list[i - 1] ? list[i] : list[i - 1]);
  }
  return mover == BLACK ? list[0] : -list[0];
}
