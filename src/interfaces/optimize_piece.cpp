#include "interfaces/optimize_piece.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "board/bitboard.h"
#include "board/static_exchange.h"
#include "evaluation/evaluation.h"
#include "frame/string_conversions.h"
#include "frame/tee_stream.h"

namespace ZephrinInterfaces {

namespace {

constexpr int WORST_LOSS = -10;
constexpr Bitboard LIGHT_SQUARES = 0x55aa55aa55aa55aaULL;

// The squares worth a try for the piece on `from`.
Bitboard Candidates(const Board& board, Square from) {
  const Piece piece = board.squares[from];
  const Bitboard empty = ~board.occupied;
  switch (TypeOf(piece)) {
    case PAWN: return SquareBit(from) | (Tables.front_span[ColorOf(piece)][from] & empty);
    case BISHOP: return (SquareBit(from) & LIGHT_SQUARES ? LIGHT_SQUARES : ~LIGHT_SQUARES) & empty;
    default: return empty;
  }
}

// The piece moved from `from` to `to`, or false when that position isn't legal. Castling and en
// passant are left out of every try alike.
bool Relocated(const Board& board, Square from, Square to, Board& result) {
  Piece squares[64];
  std::copy(std::begin(board.squares), std::end(board.squares), squares);
  const Piece piece = squares[from];
  squares[from] = 0;
  squares[to] = piece;
  return result.SetPosition(squares, board.side_to_move, 0, 0);
}

bool SafeSquare(const Board& board, Square from, Square to) {
  if (from == to) return true;
  Bitboard involved = 0;
  return StaticExchange(board, MakeMoveWord(from, to, TypeOf(board.squares[from])), involved) >= WORST_LOSS;
}

}  // namespace

void OptimizePiece(const Board& board, int personality, const std::string& square_text) {
  const std::optional<Square> square = ParseSquare(square_text);
  if (!square || board.squares[*square] == 0) {
    Out << "Error: Invalid square\n";
    Out.Flush();
    return;
  }
  const Square from = *square;
  const Color owner = ColorOf(board.squares[from]);
  int best_value = -32768;
  Square best_square = from;
  Board trial;
  for (Bitboard candidates = Candidates(board, from); candidates != 0;) {
    const Square to = PopFirstBit(candidates);
    if (!Relocated(board, from, to, trial) || !SafeSquare(board, from, to)) continue;
    int value = StaticEvaluation(trial, personality);
    if (trial.side_to_move != owner) value = -value;
    if (value <= best_value) continue;
    best_value = value;
    best_square = to;
    Out << "New best square: " << SquareText(to) << " (val=" << std::int32_t(value) << ")\n";
  }
  Out << "Best square: " << SquareText(best_square) << " (val=" << std::int32_t(best_value) << ")\n";
  Out.Flush();
}

}  // namespace ZephrinInterfaces
