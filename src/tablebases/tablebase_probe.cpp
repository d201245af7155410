#include "tablebases/tablebase_probe.h"

#include <cstdlib>

#include "bitbases/bitbase_files.h"
#include "bitbases/bitbase_probes.h"
#include "board/bitboard.h"
#include "tablebases/nalimov_tablebases.h"

bool tablebases_loaded = false;

namespace {

constexpr int MATE = 32767;
constexpr int LONG_RESULT_DISTANCE = 29;

// The one place where ProbeTablebases asks the tables.
bool LookUpNalimov(const Board& board, int& score) { return NalimovTablebases::LookupTablebase(board, score); }

// A white pawn directly behind a black one.
bool HasRam(const Board& board) {
  return ((board.sides[WHITE].pawns << 8) & board.sides[BLACK].pawns) != 0;
}

}  // namespace

TB_RESULT ProbeTablebases(const Board& board, int& score) {
  if (!tablebases_loaded) return TB_NOT_LOADED;
  // The tables know neither en passant nor castling.
  if (board.State().ep_square != 0 || board.State().castling != 0) return TB_NOT_FOUND;
  return LookUpNalimov(board, score) ? TB_FOUND : TB_NOT_FOUND;
}

BITBASE_RESULT ProbeBitbases(const Board& board, int& score) {
  if (board.phase != 0) return BB_NOT_FOUND;
  const Bitboard white = board.sides[WHITE].pawns;
  const Bitboard black = board.sides[BLACK].pawns;
  switch (PopCount(white | black)) {
    case 1:
      score = ProbeSinglePawn(board);
      return BB_FOUND;
    case 2:
      // En passant is left aside: the table doesn't know it.
      if (ZephrinBitbases::TwoPawnsData() == nullptr || white == 0 || black == 0) return BB_NOT_FOUND;
      score = ProbeTwoPawns(board);
      return BB_FOUND;
    case 3:
      if (ZephrinBitbases::RammedPawnData() == nullptr || !HasRam(board) || board.State().ep_square != 0) {
        return BB_NOT_FOUND;
      }
      score = ProbeRammedPawn(board);
      return BB_FOUND;
    default:
      return BB_NOT_FOUND;
  }
}

bool IsLongTablebaseResult(const Board& board) {
  int score = 0;
  return ProbeTablebases(board, score) == TB_FOUND && MATE - std::abs(score) > LONG_RESULT_DISTANCE;
}
