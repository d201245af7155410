// What a quiescence node (distance 0 or less, not in check) generates and which of the generated
// moves it searches. There is no separate quiescence function: the node function runs these.
#pragma once

#include "board/board.h"

// By PositionType: the average positional bonus that a capture must make up for.
constexpr int QUIESCENCE_MARGIN[18] = {285, 275, 300, 300, 300, 400, 400, 400, 400,
                                       400, 500, 600, 600, 600, 1000, 3000, 5000, 700};
// By PieceType: the weight of a piece in an exchange; a pawn counts nothing.
constexpr int EXCHANGE_POINTS[8] = {0, 0, 3, 3, 5, 9, 0, 0};

// The lowest distance at which quiescence still follows a line of queen checks.
constexpr int PERPETUAL_LINE_FLOOR = -256;

// The generator mask for a quiescence node that is not in check. Checks are generated down to a
// distance, and below it only along a line of queen checks (queen_check_line) that may be perpetual.
int GenerationSet(int distance, int gamma, bool queen_check_line);

// Whether a move generated at a quiescence node is worth searching.
bool QuiescenceFilter(const Board& board, Move move, int distance, int gamma, int position_type);

// What the moved piece could take next from its new square, by exchange value; 0 if nothing.
int FollowUpGain(const Board& board, Move move);
