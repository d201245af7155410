#include "evaluation/evaluation_record.h"

#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "board/bitboard.h"
#include "board/board.h"
#include "evaluation/position_type.h"

static_assert(std::is_trivially_copyable_v<EvaluationRecord>, "cleared with memset");

void ClearEvaluationRecord(EvaluationRecord& record) {
  EvaluationSettings* settings = record.settings;
  bool allow_lazy_exits = record.allow_lazy_exits;
  // Every other field starts at zero. Cleared in place: assigning a fresh record built a
  // temporary and copied it, twice the memory traffic on every evaluation.
  std::memset(static_cast<void*>(&record), 0, sizeof record);
  record.settings = settings;
  record.allow_lazy_exits = allow_lazy_exits;
}

void BuildPawnSquares(EvaluationRecord& record, const Board& board) {
  for (Color c : {WHITE, BLACK}) {
    PawnFacts& facts = record.pawns[c];
    int count = 0;
    for (Bitboard pawns = board.sides[c].pawns; pawns != 0 && count < MAX_PAWN_SQUARES;) {
      facts.pawn_squares[count++] = std::uint16_t(PopFirstBit(pawns));
    }
    facts.pawn_count = std::uint16_t(count);
  }
}

void FindPassedPawns(EvaluationRecord& record, const Board& board) {
  for (Color c : {WHITE, BLACK}) {
    PawnFacts& facts = record.pawns[c];
    Bitboard enemy_pawns = board.sides[c ^ 1].pawns;
    facts.passed = 0;
    for (Bitboard pawns = board.sides[c].pawns; pawns != 0;) {
      Square s = PopFirstBit(pawns);
      if ((Tables.front_span[c][s] & enemy_pawns) == 0) facts.passed |= SquareBit(s);
    }
    facts.passed_count = std::uint16_t(PopCount(facts.passed));
  }
}

void ComputeFileSets(EvaluationRecord& record, const Board& board) {
  int open_files = 0;
  int open_file = -1;
  for (Color c : {WHITE, BLACK}) {
    record.files_without_pawn[c] = 0;
    record.files_without_pawn_count[c] = 0;
  }
  for (int file = 0; file < 8; ++file) {
    bool lacks[2];
    for (Color c : {WHITE, BLACK}) {
      lacks[c] = (board.sides[c].pawns & FileMask(file)) == 0;
      if (lacks[c]) {
        record.files_without_pawn[c] |= std::uint16_t(1 << file);
        ++record.files_without_pawn_count[c];
      }
    }
    if (lacks[WHITE] && lacks[BLACK]) {
      ++open_files;
      open_file = file;
    }
  }
  record.single_open_file = std::int16_t(open_files == 1 ? open_file : -1);
}

void SetBishopPairs(EvaluationRecord& record, const Board& board) {
  for (Color c : {WHITE, BLACK}) {
    Bitboard bishops = board.sides[c].bishops;
    record.side_facts[c].bishop_pair = (bishops & LIGHT_SQUARES) != 0 && (bishops & DARK_SQUARES) != 0;
  }
}

void StartSideFacts(EvaluationRecord& record, const Board& board) {
  for (Color c : {WHITE, BLACK}) {
    Square king = board.sides[c].king_square;
    record.side_facts[c].king_wing = WING_OF_FILE[FileOf(king)];
    record.side_facts[c].attacks = Tables.king_attacks[king];
  }
}

bool TakeLazyExit(EvaluationRecord& record, int bound, int estimate, int margin, int& answer) {
  int d = bound - estimate;
  if (!record.allow_lazy_exits || std::abs(d) <= margin) return false;
  record.lazy = true;
  answer = d >= 1 ? bound - 1 : bound;
  return true;
}
