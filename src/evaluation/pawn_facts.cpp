#include "evaluation/pawn_facts.h"

#include <algorithm>
#include <cstdlib>

#include "board/attack_tables.h"

namespace {

constexpr Bitboard RANK_2_AND_3[2] = {RankMask(1) | RankMask(2), RankMask(6) | RankMask(5)};
constexpr Bitboard FILES_A_TO_D = FileMask(0) | FileMask(1) | FileMask(2) | FileMask(3);
constexpr Bitboard MAJORITY_FILES[2] = {FILES_A_TO_D, ~FILES_A_TO_D};

// Attack sets, what each side controls, and the pawns that are held up.
void ComputeAttacks(EvaluationRecord& record, const Board& board) {
  for (Color c : {WHITE, BLACK}) {
    PawnFacts& facts = record.pawns[c];
    Bitboard pawns = board.sides[c].pawns;
    Bitboard west = PawnAttacksWest(pawns, c);
    Bitboard east = PawnAttacksEast(pawns, c);
    facts.attacks = west | east;
    facts.attacked_once = west ^ east;
    facts.attacked_twice = west & east;
    facts.defended = pawns & facts.attacks;
    facts.blocked = pawns & StepBack(board.occupied, c);
  }
  for (Color c : {WHITE, BLACK}) {
    PawnFacts& facts = record.pawns[c];
    const PawnFacts& enemy = record.pawns[c ^ 1];
    facts.attack_majority =
        (facts.attacked_twice & enemy.attacked_once) | (facts.attacks & ~enemy.attacks);
    facts.restrained = facts.blocked | (board.sides[c].pawns & StepBack(enemy.attacks, c));
    record.side_facts[c].attacks |= facts.attacks;
  }
}

// Pawns that a pawn directly in front of them holds; a black pawn also when the pawn on its stop
// square is white, which makes both of a rammed pair count.
Bitboard RammedPawns(const Board& board) {
  Bitboard white = board.sides[WHITE].pawns;
  Bitboard black = board.sides[BLACK].pawns;
  return (white & ((white | black) >> 8)) | (black & (white << 8)) | (black & (black << 8));
}

void ComputeFileFacts(EvaluationRecord& record, const Board& board) {
  for (Color c : {WHITE, BLACK}) {
    PawnFacts& facts = record.pawns[c];
    Bitboard pawns = board.sides[c].pawns;
    facts.duos = pawns & (((pawns & ~FILE_A) >> 1) | ((pawns & ~FILE_H) << 1));
    facts.doubled = 0;
    for (int file = 0; file < 8; ++file) {
      Bitboard on_file = pawns & FileMask(file);
      facts.file_counts[file] = std::uint16_t(PopCount(on_file));
      if (facts.file_counts[file] > 1) facts.doubled |= on_file;
    }
  }
}

// Every square a pawn can walk to, up to a pawn or a square the enemy pawns control.
Bitboard SafeAdvance(Bitboard pawns, Bitboard all_pawns, Bitboard enemy_control, Color c) {
  Bitboard stops = all_pawns | enemy_control;
  Bitboard reached = StepForward(pawns, c) & ~stops;
  for (Bitboard front = reached; front != 0;) {
    front = StepForward(front, c) & ~stops;
    reached |= front;
  }
  return reached;
}

Bitboard IsolatedPawns(Bitboard pawns) {
  Bitboard isolated = 0;
  for (int file = 0; file < 8; ++file) {
    Bitboard neighbours = (file > 0 ? FileMask(file - 1) : 0) | (file < 7 ? FileMask(file + 1) : 0);
    if ((pawns & neighbours) == 0) isolated |= pawns & FileMask(file);
  }
  return isolated;
}

// A pawn is backward when its stop square is empty and controlled by the enemy pawns, and no own
// pawn can ever come to guard it. A pawn on its second rank that could step forward is also judged
// from the square ahead. Weak means not part of a duo and still on its second or third rank.
void ComputeBackward(PawnFacts& facts, Bitboard pawns, Bitboard all_pawns, Bitboard enemy_control,
                     Color c) {
  Bitboard second_rank = RelativeRankMask(1, c);
  Bitboard early_ranks = RANK_2_AND_3[c];
  Bitboard candidates = pawns | (StepForward(pawns & second_rank, c) & ~all_pawns);
  candidates &= StepBack(~all_pawns & enemy_control, c);
  Bitboard virtual_squares = candidates & RelativeRankMask(2, c) & ~all_pawns;
  Bitboard unguarded = candidates & ~facts.advance_attacks;
  Bitboard weak = unguarded & ~facts.duos & early_ranks;
  Bitboard plain = unguarded & ~(facts.duos & ~early_ranks);
  facts.backward_weak = (weak & ~virtual_squares) | StepBack(weak & virtual_squares, c);
  facts.backward = (plain & ~virtual_squares) | StepBack(plain & virtual_squares, c);
}

// Walks one wing from its edge file towards the centre, five files at most, until one side has
// more files with pawns than the other has pawns there and on the next file.
WingMajority FindMajority(const EvaluationRecord& record, int wing) {
  int files[2] = {0, 0};
  int sums[2] = {0, 0};
  for (int i = 0; i <= 4; ++i) {
    int file = wing == WING_QUEENSIDE ? i : 7 - i;
    int next = wing == WING_QUEENSIDE ? file + 1 : file - 1;
    for (Color c : {WHITE, BLACK}) {
      int count = record.pawns[c].file_counts[file];
      files[c] += count > 0 ? 1 : 0;
      sums[c] += count;
    }
    if (i == 0) continue;
    if (i == 3 && sums[WHITE] < 2 && sums[BLACK] < 2) break;
    if (i == 4 && sums[WHITE] < 4 && sums[BLACK] < 4) break;
    for (Color c : {WHITE, BLACK}) {
      int against = sums[c ^ 1] + record.pawns[c ^ 1].file_counts[next];
      if (files[c] > against) {
        return WingMajority{std::uint32_t(c + 1), std::uint16_t(files[c]), std::uint16_t(against)};
      }
    }
  }
  return WingMajority{};
}

// 1 to 15: free files open it, pawns and above all central and rammed pawns close it.
int Openness(const EvaluationRecord& record, const Board& board) {
  int x = 12 + std::min<int>(record.files_without_pawn_count[WHITE], 2) +
          std::min<int>(record.files_without_pawn_count[BLACK], 2);
  if ((record.files_without_pawn[WHITE] & record.files_without_pawn[BLACK]) == 0) x -= 2;
  Bitboard all_pawns = board.sides[WHITE].pawns | board.sides[BLACK].pawns;
  x -= PopCount(all_pawns) / 8;
  x -= PopCount(all_pawns & CENTRE_FILES) / 2;
  if (record.rammed != 0) {
    x -= PopCount(record.rammed) - 2;
    x -= 2 * PopCount(record.rammed & CENTRE_FILES);
  }
  return std::clamp(x, 1, 15);
}

// The facts that the pawn table keeps, or that only a miss needs.
void ComputeStoredFacts(EvaluationRecord& record, const Board& board) {
  Bitboard all_pawns = board.sides[WHITE].pawns | board.sides[BLACK].pawns;
  for (Color c : {WHITE, BLACK}) {
    PawnFacts& facts = record.pawns[c];
    Bitboard pawns = board.sides[c].pawns;
    Bitboard enemy_control = record.pawns[c ^ 1].attack_majority;
    facts.safe_advance = SafeAdvance(pawns, all_pawns, enemy_control, c);
    facts.advance_attacks = PawnAttacksOf(facts.safe_advance | pawns, c);
    facts.isolated = IsolatedPawns(pawns);
    ComputeBackward(facts, pawns, all_pawns, enemy_control, c);
  }
  record.majority[WING_QUEENSIDE] = FindMajority(record, WING_QUEENSIDE);
  record.majority[WING_KINGSIDE] = FindMajority(record, WING_KINGSIDE);
  record.openness = std::uint16_t(Openness(record, board));
}

}  // namespace

void ComputePawnFacts(EvaluationRecord& record, const Board& board) {
  ComputeAttacks(record, board);
  record.rammed = RammedPawns(board);
  ComputeFileFacts(record, board);
  if (record.pawn_summary.from_hash == 0) ComputeStoredFacts(record, board);
}

int DistanceAhead(const EvaluationRecord& record, const Board& board, Square s, Color c) {
  Bitboard stops = board.sides[c ^ 1].pawns | record.pawns[c].defended;
  Bitboard ahead = Tables.rays[(c == WHITE ? DIR_NORTH : DIR_SOUTH) - 1][s] & stops;
  if (ahead == 0) return 0;
  Square nearest = c == WHITE ? FirstBit(ahead) : LastBit(ahead);
  return std::abs(RankOf(nearest) - RankOf(s));
}

Bitboard MajorityAdvancers(const EvaluationRecord& record, const Board& board, int wing, Color c) {
  Bitboard middle_ranks = RelativeRankMask(2, c) | RelativeRankMask(3, c) | RelativeRankMask(4, c) |
                          RelativeRankMask(5, c);
  return board.sides[c].pawns & ~record.pawns[c].passed & middle_ranks & MAJORITY_FILES[wing];
}
