#include "bitbases/bitbase_probes.h"

#include "bitbases/bitbase_files.h"
#include "bitbases/single_pawn_table.h"
#include "board/bitboard.h"

namespace {

using ZephrinBitbases::SINGLE_PAWN_TABLE;

constexpr int SINGLE_PAWN_WIN = 32687;
constexpr int TWO_PAWNS_WIN = 32667;
constexpr int RAMMED_PAWN_LOSS = -32637;
constexpr int TABLE_LOSS = 1;
constexpr int TABLE_WIN = 3;

// Brings a black pawn's side to White's form: the board turned upside down.
constexpr Square FLIP_RANKS = 56;
// Brings a pawn on files e to h to files a to d.
constexpr Square FLIP_FILES = 7;

// The rank of s counted from colour's side: 1 for a pawn on its start rank.
int RankFor(Square s, Color colour) { return RankOf(colour == WHITE ? s : s ^ FLIP_RANKS); }

// The table slot of a pawn on ranks two to seven, files a to d: four slots a rank.
int PawnSlot(Square pawn) { return ((pawn - 8) & 56) / 2 + FileOf(pawn); }

int ReadTwoBits(const std::uint8_t* table, int byte, int shift) { return (table[byte] >> shift) & 3; }

}  // namespace

bool SinglePawnWins(Color colour, Color side_to_move, Square pawn, Square own_king, Square enemy_king) {
  const Square flip = colour == WHITE ? 0 : FLIP_RANKS;
  const int who = side_to_move == colour ? 0 : 1;
  return (SINGLE_PAWN_TABLE[who][pawn ^ flip][own_king ^ flip] & SquareBit(enemy_king ^ flip)) == 0;
}

int ProbeSinglePawn(const Board& board) {
  const Color colour = board.sides[WHITE].pawns != 0 ? WHITE : BLACK;
  const Square pawn = FirstBit(board.sides[colour].pawns);
  const Square own_king = board.sides[colour].king_square;
  const Square enemy_king = board.sides[colour ^ 1].king_square;
  if (!SinglePawnWins(colour, board.side_to_move, pawn, own_king, enemy_king)) return 0;
  const int score = SINGLE_PAWN_WIN + 4 * RankFor(pawn, colour);
  return board.side_to_move == colour ? score : -score;
}

BitbaseSlot TwoPawnsSlot(Square own_king, Square enemy_king, Square own_pawn, Square enemy_pawn) {
  return {((PawnSlot(own_pawn) * 48 + (enemy_pawn - 8)) * 64 + own_king) * 16 + (enemy_king & 15),
          (enemy_king >> 4) * 2};
}

BitbaseSlot RammedPawnSlot(int who, Square strong_king, Square weak_king, Square free, Square ram) {
  return {((PawnSlot(ram) * 48 + (free - 8)) * 64 + strong_king) * 32 + (weak_king & 31),
          who * 2 + (weak_king >> 5) * 4};
}

int TwoPawnsRawValue(Color who, Square white_king, Square black_king, Square white_pawn, Square black_pawn) {
  const Square own_pawn = who == WHITE ? white_pawn : black_pawn;
  Square m = who == WHITE ? 0 : FLIP_RANKS;
  if (FileOf(own_pawn) >= 4) m += FLIP_FILES;
  const Square own_king = (who == WHITE ? white_king : black_king) ^ m;
  const Square enemy_king = (who == WHITE ? black_king : white_king) ^ m;
  const Square enemy_pawn = (who == WHITE ? black_pawn : white_pawn) ^ m;
  const BitbaseSlot slot = TwoPawnsSlot(own_king, enemy_king, own_pawn ^ m, enemy_pawn);
  return ReadTwoBits(ZephrinBitbases::TwoPawnsData(), slot.byte, slot.shift);
}

int ProbeTwoPawns(const Board& board) {
  const BoardSide& white = board.sides[WHITE];
  const BoardSide& black = board.sides[BLACK];
  const Color s = board.side_to_move;
  const int value = TwoPawnsRawValue(s, white.king_square, black.king_square, FirstBit(white.pawns),
                                     FirstBit(black.pawns));
  const int r = RankFor(FirstBit(board.sides[s].pawns), s);
  if (value == TABLE_WIN) return TWO_PAWNS_WIN + 4 * r;
  if (value == TABLE_LOSS) return -(TWO_PAWNS_WIN + 4 * (7 - r));
  return 0;
}

int ProbeRammedPawn(const Board& board) {
  // The strong side owns two pawns; it is brought to White's form, its rammed pawn to files a to d.
  const Color strong = PopCount(board.sides[BLACK].pawns) == 1 ? WHITE : BLACK;
  const BoardSide& own = board.sides[strong];
  const BoardSide& enemy = board.sides[strong ^ 1];
  Square m = strong == WHITE ? 0 : FLIP_RANKS;
  const Square lone = FirstBit(enemy.pawns);
  Square ram = strong == WHITE ? lone - 8 : lone + 8;
  if (FileOf(ram) >= 4) m += FLIP_FILES;
  const Square free = FirstBit(own.pawns & ~SquareBit(ram)) ^ m;
  const Square strong_king = own.king_square ^ m;
  const Square weak_king = enemy.king_square ^ m;
  ram ^= m;
  const int who = board.side_to_move == strong ? 0 : 1;

  const BitbaseSlot slot = RammedPawnSlot(who, strong_king, weak_king, free, ram);
  const int value = ReadTwoBits(ZephrinBitbases::RammedPawnData(), slot.byte, slot.shift);
  int score = 0;
  if (value == TABLE_WIN) score = TWO_PAWNS_WIN + 4 * RankOf(free);
  if (value == TABLE_LOSS) score = RAMMED_PAWN_LOSS + 4 * Tables.king_distance[weak_king][ram];
  return board.side_to_move == strong ? score : -score;
}
