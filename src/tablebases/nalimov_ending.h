// The Nalimov endings: up to five men, numbered 1 to 110, each with two index functions (one per
// side to move) that turn the men of a position into the entry of its table file. The index of a
// position is fixed by the published files, so these functions are a file format.
#pragma once

#include <cstdint>

namespace NalimovTablebases {

constexpr int ENDING_COUNT = 110;

// The men of one side: slots 0-2 pawns, 3-5 knights, 6-8 bishops, 9-11 rooks, 12-14 queens, 15 the
// king; within a kind in ascending square order. Only the slots of men that exist are set.
struct TB_PIECE_LIST {
  std::int32_t squares[16];
};

constexpr int TB_PAWN_SLOT = 0;
constexpr int TB_KNIGHT_SLOT = 3;
constexpr int TB_BISHOP_SLOT = 6;
constexpr int TB_ROOK_SLOT = 9;
constexpr int TB_QUEEN_SLOT = 12;
constexpr int TB_KING_SLOT = 15;
constexpr int TB_NO_EP_SQUARE = 64;

// Index of a position in one side's table: the strong side's men, the weak side's men, the
// en-passant square (64 for none) and whether the board is seen from black (strong side black).
using IndexFunction = std::uint64_t (*)(const TB_PIECE_LIST& strong, const TB_PIECE_LIST& weak,
                                        int ep_square, bool invert);

constexpr std::uint32_t TB_SYMMETRIC = 1;

struct TB_ENDING {
  std::int32_t id;
  std::uint32_t flags;
  IndexFunction index[2];
  char name[8];
  std::uint64_t sizes[2];  // entries of each side's table
};

// The ending with this id, 1 to 110 (0 is the placeholder kk).
const TB_ENDING& Ending(int id);

// The signed id of the ending with these counts of white pawns, knights, bishops, rooks, queens,
// then black's: +id when the strong side is white, -id when it is black, 0 for none.
int FindEnding(const int counts[10]);

}  // namespace NalimovTablebases
