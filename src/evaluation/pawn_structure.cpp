#include "evaluation/pawn_structure.h"

#include <algorithm>

#include "board/bitboard.h"
#include "evaluation/passed_pawns.h"
#include "evaluation/position_type.h"

// Opening variant positional half, by square for White, rank one first.
const std::int16_t OPENING_PAWN_POSITIONAL[64] = {
      0,   0,   0,   0,   0,   0,   0,   0,
    -13,  -4,  -8,   4,   4,  -4,  -4, -13,
    -14,  -4,   3,  10,  10,   3,  -4, -14,
    -14,  -6,  10,  22,  22,   6,  -6, -14,
    -13,  -4,   7,  14,  14,   5,  -6, -13,
    -12,  -2,   8,  22,  22,   6,  -6, -12,
      8,  10,  10,  -6,  -6,  10,  10,   8,
      0,   0,   0,   0,   0,   0,   0,   0,
};

// Opening variant dynamic half, by square for White, rank one first.
const std::int16_t OPENING_PAWN_DYNAMIC[64] = {
      0,   0,   0,   0,   0,   0,   0,   0,
    -20, -15,  -8,   6,   6,  -6, -15, -20,
    -24, -15,  -3,  16,  16,  -3, -15, -24,
    -22, -15,  10,  34,  34,   6, -15, -22,
    -20, -14,   5,  28,  28,   5, -15, -20,
    -18, -14,   6,  32,  32,   6, -14, -18,
      8,  10,  12,   0,   0,  10,  10,   8,
      0,   0,   0,   0,   0,   0,   0,   0,
};

// Middlegame variant positional half, by square for White, rank one first.
const std::int16_t MIDDLEGAME_PAWN_POSITIONAL[64] = {
      0,   0,   0,   0,   0,   0,   0,   0,
    -15,  -6,  -6,   8,   8,  -4,  -6, -15,
    -14,  -7,   3,  12,  12,   3,  -7, -14,
    -14,  -6,   6,  18,  18,   6,  -6, -14,
    -13,  -4,   5,  21,  21,   5,  -6, -13,
    -12,  -2,   6,  21,  21,   6,  -6, -12,
      8,  10,  10,  -6,  -6,  10,  10,   8,
      0,   0,   0,   0,   0,   0,   0,   0,
};

// Middlegame variant dynamic half, by square for White, rank one first.
const std::int16_t MIDDLEGAME_PAWN_DYNAMIC[64] = {
      0,   0,   0,   0,   0,   0,   0,   0,
    -25, -18,  -6,   0,   0,  -6, -15, -25,
    -25, -17,  -3,   6,   6,  -3, -17, -25,
    -23, -13,   4,  28,  28,   6, -13, -23,
    -21, -12,   3,  28,  28,   5, -13, -21,
    -19, -12,   4,  26,  26,   6, -12, -19,
      8,  10,  10,   0,   0,  10,  10,   8,
      0,   0,   0,   0,   0,   0,   0,   0,
};


namespace {

// Bonuses of pawns side by side and of pawns guarded by a pawn, by square for White, rank one
// first. A pawn on rank seven always leads its file's passed pawns and a pawn on rank two is
// never guarded, so those rows are never read.
constexpr std::int16_t DUO_POSITIONAL[64] = {
     0,  0,  0,  0,  0,  0,  0,  0,
     6,  6,  4,  0,  0,  4,  6,  6,
     0,  0,  1,  3,  3,  1,  0,  0,
     2,  2,  6,  9,  9,  8,  2,  2,
     3,  4,  8, 10, 10,  8,  4,  3,
     7, 10, 12, 16, 16, 12, 10,  7,
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
};
constexpr std::int16_t DUO_DYNAMIC[64] = {
     0,  0,  0,  0,  0,  0,  0,  0,
     2,  2,  1,  0,  0,  1,  2,  2,
     0,  0,  1,  4,  4,  1,  0,  0,
     2,  6, 10, 12, 12, 10,  6,  2,
     3,  8, 10, 14, 14, 10,  8,  3,
    10, 14, 18, 24, 24, 18, 14, 10,
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
};
constexpr std::int16_t DEFENDED_POSITIONAL[64] = {
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
     4,  5,  4,  3,  3,  4,  5,  4,
     4,  4,  4,  5,  5,  4,  4,  4,
     4,  5,  7,  7,  7,  6,  4,  4,
     6,  6,  9, 10, 10,  9,  6,  6,
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
};
constexpr std::int16_t DEFENDED_DYNAMIC[64] = {
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  2,  5,  5,  2,  0,  0,
     0,  0,  6,  7,  7,  6,  0,  0,
     2,  4,  9, 12, 12,  9,  4,  2,
     0,  0,  0,  0,  0,  0,  0,  0,
     0,  0,  0,  0,  0,  0,  0,  0,
};

// A weak backward pawn by its distance to the next stop ahead (2 to 5; 1 can't occur).
constexpr ScorePair WEAK_BACKWARD_PENALTY[6] = {{15, 12}, {6, 6}, {6, 6}, {8, 8}, {9, 9}, {11, 10}};
// Two isolated pawns on a file by the distance ahead of the front one.
constexpr ScorePair DOUBLED_ISOLATED_PENALTY[6] = {{50, 30}, {30, 10}, {34, 14},
                                                   {36, 15}, {39, 17}, {42, 20}};
// Connected passed pawns: by the rank gap, and by the higher pawn's rank (rank two is 1).
constexpr int CONNECTED_GAP_FACTOR[6] = {10, 9, 7, 5, 3, 2};
constexpr ScorePair CONNECTED_RANK_VALUE[7] = {{0, 0},   {15, 10}, {16, 11}, {20, 18},
                                               {32, 35}, {44, 50}, {100, 110}};
// Majority pawns off the passed ones, by rank from the owner's side (rank three is 2).
constexpr int MAJORITY_PAWN_DYNAMIC[6] = {0, 0, 2, 6, 8, 10};
// The isolated queen's pawn by phase: 59 and more, 49 to 58, 39 to 48, 29 to 38, below 29.
constexpr ScorePair ISOLATED_QUEEN_PAWN_BY_PHASE[5] = {{0, 25}, {-6, 10}, {0, 0}, {-12, -4}, {-18, -16}};

// Squares named for White; Black reads them through RelativeSquare.
constexpr Square D1 = 3, C2 = 10, D2 = 11, E2 = 12, F2 = 13, G2 = 14, C3 = 18, D3 = 19, E3 = 20,
                 F3 = 21, C4 = 26, D4 = 27, E4 = 28, F4 = 29, C5 = 34, D5 = 35, E5 = 36, C6 = 42,
                 D6 = 43, E6 = 44, D7 = 51;
constexpr Bitboard FILES_B_TO_E = FileMask(1) | FileMask(2) | FileMask(3) | FileMask(4);

using Potentials = std::int16_t[2][WING_COUNT][2];

void AddPotentials(Potentials& potential, Color c, int wing, int attack, int defence) {
  potential[c][wing][POTENTIAL_ATTACK] = std::int16_t(potential[c][wing][POTENTIAL_ATTACK] + attack);
  potential[c][wing][POTENTIAL_DEFENCE] = std::int16_t(potential[c][wing][POTENTIAL_DEFENCE] + defence);
}

// The working state of EvaluatePawnStructure.
struct StructureWork {
  const EvaluationRecord& record;
  const Board& board;
  Potentials& potential;     // the record's `pawn_summary.potential`
  ScorePair own[2];          // each colour's pair from its own point of view
  int ahead[64];             // per pawn square: ranks to the nearest stop ahead, 0 for none
};

bool Has(Bitboard set, Square s) { return (set & SquareBit(s)) != 0; }

Bitboard OwnPawns(const Board& board, Color c) { return board.sides[c].pawns; }
Bitboard AllPawns(const Board& board) { return board.sides[WHITE].pawns | board.sides[BLACK].pawns; }

void PawnBackward(StructureWork& work, Square s, int d, Color c) {
  const PawnFacts& facts = work.record.pawns[c];
  int wing = WING_OF_FILE[FileOf(s)];
  if (Has(facts.backward_weak, s)) {
    work.own[c] -= WEAK_BACKWARD_PENALTY[d];
    AddPotentials(work.potential, c, wing, d == 0 ? -3 : -1, d == 0 ? -8 : -4);
    return;
  }
  work.own[c] -= d == 0 ? ScorePair(10, 5) : ScorePair(3, 3);
  AddPotentials(work.potential, c, wing, Has(facts.duos, s) ? 0 : -1, d == 0 ? -3 : -1);
}

// An isolated pawn on d4 with no enemy pawn in front of it or beside its stop square.
void IsolatedQueenPawnFile(StructureWork& work, Color c) {
  Bitboard enemy = OwnPawns(work.board, c ^ 1);
  for (Square s : {D7, D6, C5, D5, E5}) {
    if (Has(enemy, RelativeSquare(s, c))) return;
  }
  ScorePair pair(-8, 12);
  int attack = 8;
  bool e6 = Has(enemy, RelativeSquare(E6, c));
  if (e6 || Has(enemy, RelativeSquare(C6, c))) {
    pair += ScorePair(-2, -3);
    AddPotentials(work.potential, c ^ 1, WING_CENTRE, 0, 3);
    attack = e6 ? 5 : 6;
  }
  work.own[c] += pair;
  AddPotentials(work.potential, c, WING_CENTRE, attack, -10);
}

void PawnIsolated(StructureWork& work, Square s, int d, Color c) {
  work.own[c] -= d == 0 ? ScorePair(18, 6) : ScorePair(14, 4);
  AddPotentials(work.potential, c, WING_OF_FILE[FileOf(s)], 0, d == 0 ? -4 : -2);
  if (RelativeSquare(s, c) == D4) IsolatedQueenPawnFile(work, c);
}

void ScorePawn(StructureWork& work, Square s, Color c, const std::int16_t positional_table[64],
               const std::int16_t dynamic_table[64]) {
  const PawnFacts& facts = work.record.pawns[c];
  Square r = RelativeSquare(s, c);
  work.own[c] += ScorePair(positional_table[r], dynamic_table[r]);
  int d = DistanceAhead(work.record, work.board, s, c);
  work.ahead[s] = d;
  if (Has(facts.backward, s)) PawnBackward(work, s, d, c);
  if (Has(facts.isolated, s) && !Has(facts.doubled, s)) {
    PawnIsolated(work, s, d, c);
    return;
  }
  if (Has(facts.passed_front, s)) return;
  if (Has(facts.duos, s)) work.own[c] += ScorePair(DUO_POSITIONAL[r], DUO_DYNAMIC[r]);
  if (Has(facts.defended, s)) work.own[c] += ScorePair(DEFENDED_POSITIONAL[r], DEFENDED_DYNAMIC[r]);
}

// Doubled and tripled pawns, judged by the file's front pawn.
void ScoreFile(StructureWork& work, int file, Color c) {
  const PawnFacts& facts = work.record.pawns[c];
  int count = facts.file_counts[file];
  if (count < 2) return;
  Bitboard on_file = OwnPawns(work.board, c) & FileMask(file);
  Square front = c == WHITE ? LastBit(on_file) : FirstBit(on_file);
  int d = work.ahead[front];
  bool iso = (facts.isolated & FileMask(file)) != 0;
  int wing = WING_OF_FILE[file];
  if (count > 2) {
    static constexpr ScorePair PENALTY[2][2] = {{{70, 70}, {65, 67}}, {{90, 90}, {85, 82}}};
    work.own[c] -= PENALTY[iso][d > 0];
    AddPotentials(work.potential, c, wing, -2, -8);
  } else if (!iso) {
    work.own[c] -= ScorePair(16, 6);
    AddPotentials(work.potential, c, wing, -2, -3);
  } else {
    work.own[c] -= DOUBLED_ISOLATED_PENALTY[d];
    AddPotentials(work.potential, c, wing, d == 0 ? -2 : -1, d == 0 ? -10 : -7);
  }
}

// Passed pawns that lead neighbouring files, the closer in rank the better.
void ScoreConnectedPassers(StructureWork& work, Color c) {
  ForEachConnectedPasserPair(work.record.pawns[c].passed_front, c, [&](int file, int high_rank, int gap) {
    int m = CONNECTED_GAP_FACTOR[gap];
    ScorePair t = CONNECTED_RANK_VALUE[high_rank];
    work.own[c] += ScorePair(m * t.Positional() / 8, m * t.Dynamic() / 8);
    int wing = KNIGHT_WING_OF_FILE[file];
    AddPotentials(work.potential, c, wing, 3, 0);
    AddPotentials(work.potential, c ^ 1, wing, 0, -5);
  });
}

// Pawn chains: a guard that is itself guarded, in a duo or on an edge file is a sound base.
void ScoreChains(StructureWork& work, Color c) {
  ForEachChainGuard(work.record.pawns[c], OwnPawns(work.board, c), c, [&](Bitboard guard, bool sound) {
    int wing = WING_OF_FILE[FileOf(FirstBit(guard))];
    if (sound) {
      work.own[c] += ScorePair(3, 0);
      AddPotentials(work.potential, c, wing, 0, 1);
    } else {
      work.own[c] -= ScorePair(8, 2);
      AddPotentials(work.potential, c, wing, 0, -2);
    }
  });
}

// The pawns of a wing majority: the majority itself, and its pawns that can still advance.
void ScoreMajorityPawns(StructureWork& work, int wing) {
  const WingMajority& majority = work.record.majority[wing];
  if (majority.owner == 0) return;
  Color c = Color(majority.owner - 1);
  const PawnFacts& facts = work.record.pawns[c];
  work.own[c] += ScorePair(18, 10);
  AddPotentials(work.potential, c, wing, 2, 0);
  Bitboard held = work.record.rammed | facts.backward;
  Bitboard pawns = MajorityAdvancers(work.record, work.board, wing, c);
  while (pawns != 0) {
    Square s = PopFirstBit(pawns);
    int r = RelativeRank(s, c);
    work.own[c] += ScorePair(0, MAJORITY_PAWN_DYNAMIC[r]);
    if (Has(held, s)) {
      work.own[c] -= ScorePair(2, 7);
      AddPotentials(work.potential, c ^ 1, wing, 0, 3);
      AddPotentials(work.potential, c, wing, -4, 0);
    } else {
      AddPotentials(work.potential, c, wing, r - 1, 0);
    }
  }
}

// Fixed patterns of the centre pawns, told for White.
void ScoreCentrePatterns(StructureWork& work, Color c) {
  Bitboard own = OwnPawns(work.board, c);
  Bitboard all = AllPawns(work.board);
  Bitboard enemy = OwnPawns(work.board, c ^ 1);
  auto mine = [&](Square s) { return Has(own, RelativeSquare(s, c)); };
  auto any = [&](Square s) { return Has(all, RelativeSquare(s, c)); };
  auto theirs = [&](Square s) { return Has(enemy, RelativeSquare(s, c)); };
  ScorePair& pair = work.own[c];
  auto add = [&](ScorePair p, int wing, int attack, int defence) {
    pair += p;
    AddPotentials(work.potential, c, wing, attack, defence);
  };

  if (mine(D2) && mine(E2)) add({-8, -20}, WING_CENTRE, -6, -4);
  if (mine(D2)) {
    if (any(D3)) add({-12, -20}, WING_CENTRE, -6, -6);
    else add({0, 0}, WING_CENTRE, -4, -2);
  }
  if (mine(E2)) {
    if (any(E3)) add({-12, -20}, WING_CENTRE, -6, -6);
    else if (mine(D2) || mine(G2)) add({-7, -14}, WING_CENTRE, -5, -4);
  }
  if (mine(D4)) {
    if (mine(C2)) {
      if (theirs(D5)) add({-12, -20}, WING_CENTRE, -6, 0);
      else add({-2, -14}, WING_CENTRE, -3, 0);
    } else {
      Bitboard b_to_e = own & FILES_B_TO_E;
      Bitboard c3_d4 = SquareBit(RelativeSquare(C3, c)) | SquareBit(RelativeSquare(D4, c));
      Bitboard c4_d4 = SquareBit(RelativeSquare(C4, c)) | SquareBit(RelativeSquare(D4, c));
      if (b_to_e == c3_d4 || b_to_e == c4_d4) {
        add({-6, 2}, WING_CENTRE, 0, -2);
      } else {
        if (mine(C3)) add({10, 8}, WING_CENTRE, 0, 3);
        if (mine(C4)) add({8, 12}, WING_CENTRE, 3, 0);
      }
    }
  }
  if (mine(E4)) {
    if (mine(F2)) {
      if (theirs(E5)) add({-3, -16}, WING_KINGSIDE, -4, 0);
      else add({0, -8}, WING_KINGSIDE, -3, 0);
    }
    if (mine(F3)) add({3, 4}, WING_CENTRE, 0, 2);
    if (mine(F4)) add({3, 10}, WING_KINGSIDE, 6, 0);
  }
}

// Who holds the four centre squares, now or once the pawns advance.
void ScoreCentreSquares(StructureWork& work) {
  const PawnFacts* pawns = work.record.pawns;
  Bitboard all = AllPawns(work.board);
  for (Square s : {D4, E4, D5, E5}) {
    if (Has(all, s)) continue;
    bool attacked[2] = {Has(pawns[WHITE].attacks, s), Has(pawns[BLACK].attacks, s)};
    bool reachable[2] = {Has(pawns[WHITE].advance_attacks, s), Has(pawns[BLACK].advance_attacks, s)};
    if (attacked[WHITE] && attacked[BLACK]) continue;
    if (attacked[WHITE] || attacked[BLACK]) {
      Color c = attacked[WHITE] ? WHITE : BLACK;
      bool contested = reachable[c ^ 1];
      work.own[c] += contested ? ScorePair(2, 4) : ScorePair(4, 12);
      AddPotentials(work.potential, c, WING_CENTRE, contested ? 4 : 6, 0);
      continue;
    }
    for (Color c : {WHITE, BLACK}) {
      if (reachable[c] && !reachable[c ^ 1]) {
        work.own[c] += ScorePair(2, 1);
        AddPotentials(work.potential, c, WING_CENTRE, 0, 2);
      }
    }
  }
  int d_and_e[2];
  for (Color c : {WHITE, BLACK}) {
    d_and_e[c] = PopCount(OwnPawns(work.board, c) & (FileMask(3) | FileMask(4)));
  }
  if (d_and_e[WHITE] != d_and_e[BLACK]) {
    Color c = d_and_e[WHITE] > d_and_e[BLACK] ? WHITE : BLACK;
    work.own[c] += ScorePair(2, 2);
    AddPotentials(work.potential, c, WING_CENTRE, 1, 0);
  }
}

}  // namespace

void EvaluatePawnStructure(EvaluationRecord& record, const Board& board,
                           const std::int16_t positional_table[64], const std::int16_t dynamic_table[64]) {
  PawnSummary& summary = record.pawn_summary;
  StructureWork work{record, board, summary.potential, {}, {}};
  for (Color c : {WHITE, BLACK}) {
    const PawnFacts& facts = record.pawns[c];
    for (int i = 0; i < facts.pawn_count; ++i) {
      ScorePawn(work, facts.pawn_squares[i], c, positional_table, dynamic_table);
    }
  }
  for (int file = 0; file < 8; ++file) {
    for (Color c : {WHITE, BLACK}) ScoreFile(work, file, c);
  }
  for (Color c : {WHITE, BLACK}) {
    ScoreConnectedPassers(work, c);
    ScoreChains(work, c);
  }
  ScoreMajorityPawns(work, WING_QUEENSIDE);
  ScoreMajorityPawns(work, WING_KINGSIDE);
  for (Color c : {WHITE, BLACK}) ScoreCentrePatterns(work, c);
  ScoreCentreSquares(work);

  ScorePair pair = work.own[WHITE] - work.own[BLACK];
  summary.positional = std::int16_t(pair.Positional());
  summary.dynamic = std::int16_t(pair.Dynamic());
}

namespace {

// A wing majority against the enemy king: far from it the majority makes a passed pawn; next to
// it a four-against-three majority is an attack.
ScorePair MajoritiesAgainstKing(EvaluationRecord& record, const Board& board, Color c, int& endgame) {
  ScorePair pair;
  int king_wing = FileOf(board.sides[c ^ 1].king_square) <= 3 ? WING_QUEENSIDE : WING_KINGSIDE;
  for (int wing : {WING_QUEENSIDE, WING_KINGSIDE}) {
    const WingMajority& majority = record.majority[wing];
    if (majority.owner != std::uint32_t(c + 1)) continue;
    if (king_wing != wing) {
      pair += ScorePair(20, 7);
      AddPotentials(record.potential, c, wing, 2, 0);
      endgame += 12;
    } else if (majority.owner_files == 4 && majority.other_pawns == 3) {
      pair += ScorePair(5, 14);
      AddPotentials(record.potential, c, wing, 5, 0);
      endgame += 20;
    }
  }
  return pair;
}

// Centre pawns that can't leave their second rank, and a piece in front of the c-pawn.
ScorePair BlockedCentrePawns(EvaluationRecord& record, const Board& board, Color c) {
  ScorePair pair;
  Bitboard own = board.sides[c].pawns;
  for (Square s : {D2, E2}) {
    if (Has(own, RelativeSquare(s, c)) && Has(board.occupied, RelativeSquare(s + 8, c))) {
      pair -= ScorePair(18, 28);
      AddPotentials(record.potential, c, WING_CENTRE, -6, -4);
    }
  }
  Square c3 = RelativeSquare(C3, c);
  bool own_piece_on_c3 = Has(board.sides[c].all & ~own, c3);
  if (Has(own, RelativeSquare(C2, c)) && own_piece_on_c3) {
    bool locked = Has(own, RelativeSquare(D4, c)) && Has(board.sides[c ^ 1].pawns, RelativeSquare(D5, c));
    pair -= locked ? ScorePair(25, 25) : ScorePair(8, 10);
    AddPotentials(record.potential, c, WING_CENTRE, locked ? -4 : -2, 0);
  }
  return pair;
}

bool HasIsolatedQueenPawn(const EvaluationRecord& record, const Board& board, Color c) {
  Square s = RelativeSquare(D4, c);
  const PawnFacts& facts = record.pawns[c];
  return Has(board.sides[c].pawns & facts.isolated & ~facts.doubled, s);
}

// The isolated queen's pawn of colour c, from its owner's view: good with many pieces, bad in the
// endgame; a bishop of its colour and a rook behind it help.
ScorePair IsolatedQueenPawn(EvaluationRecord& record, const Board& board, Color c) {
  int phase = board.phase;
  int index = phase >= 59 ? 0 : phase >= 49 ? 1 : phase >= 39 ? 2 : phase >= 29 ? 3 : 4;
  ScorePair pair = ISOLATED_QUEEN_PAWN_BY_PHASE[index];
  Square s = RelativeSquare(D4, c);
  Bitboard square_colour = Has(DARK_SQUARES, s) ? DARK_SQUARES : LIGHT_SQUARES;
  Bitboard bishops = board.sides[c].bishops & square_colour;
  if (bishops != 0) {
    bool guards = false;
    for (Bitboard b = bishops; b != 0;) guards |= Has(board.BishopAttacks(PopFirstBit(b)), s);
    pair += guards ? ScorePair(0, -2) : ScorePair(0, 1);
    AddPotentials(record.potential, c, WING_CENTRE, 0, guards ? 2 : 1);
  }
  Bitboard behind = SquareBit(RelativeSquare(D1, c)) | SquareBit(RelativeSquare(D2, c)) |
                    SquareBit(RelativeSquare(D3, c));
  if ((board.sides[c].rooks & behind) != 0) {
    pair += ScorePair(6, 6);
    AddPotentials(record.potential, c, WING_CENTRE, 0, 2);
  }
  return pair;
}

}  // namespace

ScorePair EvaluatePawnExtras(EvaluationRecord& record, const Board& board) {
  ScorePair own[2];
  int endgame[2] = {0, 0};
  for (Color c : {WHITE, BLACK}) {
    own[c] += MajoritiesAgainstKing(record, board, c, endgame[c]);
    own[c] += BlockedCentrePawns(record, board, c);
  }
  bool isolated_queen_pawn[2] = {HasIsolatedQueenPawn(record, board, WHITE),
                                 HasIsolatedQueenPawn(record, board, BLACK)};
  if (isolated_queen_pawn[WHITE] && isolated_queen_pawn[BLACK]) {
    for (Color c : {WHITE, BLACK}) AddPotentials(record.potential, c, WING_CENTRE, 0, -6);
  } else {
    for (Color c : {WHITE, BLACK}) {
      if (isolated_queen_pawn[c]) own[c] += IsolatedQueenPawn(record, board, c);
    }
  }
  for (Color c : {WHITE, BLACK}) {
    for (int file = 0; file < 8; ++file) {
      if ((record.pawns[c].passed_front & FileMask(file)) != 0) {
        own[c] += PassedPawnDetails(record, board, c, file);
      }
    }
  }
  record.endgame_term = std::int16_t(record.endgame_term + endgame[WHITE] - endgame[BLACK]);
  return own[WHITE] - own[BLACK];
}
