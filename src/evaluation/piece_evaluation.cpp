#include "evaluation/piece_evaluation.h"

#include "board/bitboard.h"
#include "evaluation/side_view.h"

namespace {

// A piece of the colour on a square named for White.
bool On(const Board& board, Color colour, PieceType type, const char* name) {
  return Has(colour, board.sides[colour].Pieces(type), SquareBit(Sq(name)));
}

// A piece of the colour's enemy on a square named from the colour's side.
bool EnemyOn(const Board& board, Color colour, PieceType type, const char* name) {
  return Has(colour, board.sides[colour ^ 1].Pieces(type), SquareBit(Sq(name)));
}

// A knight and a bishop that haven't left their squares on one wing, for one colour.
ScorePair MinorsAtHome(EvaluationRecord& record, const Board& board, Color colour) {
  ScorePair pair;
  if (On(board, colour, KNIGHT, "b1") && On(board, colour, BISHOP, "c1")) {
    pair -= ScorePair(18, 45);
    AddAttack(record, colour, WING_QUEENSIDE, -4);
    AddDefence(record, colour, WING_QUEENSIDE, -8);
  }
  if (On(board, colour, KNIGHT, "g1") && On(board, colour, BISHOP, "f1")) {
    pair -= ScorePair(14, 40);
    AddAttack(record, colour, WING_KINGSIDE, -4);
    AddDefence(record, colour, WING_KINGSIDE, -6);
  }
  return pair;
}

// A pawn stepped to g3 or b3 while the bishop that should go to g2 or b2 is still at home.
ScorePair FianchettoNotDone(EvaluationRecord& record, const Board& board, Color colour) {
  auto pawn = [&](const char* name) { return On(board, colour, PAWN, name); };
  ScorePair pair;
  if (On(board, colour, BISHOP, "f1") && !pawn("g2") && pawn("g3") && (pawn("f2") || pawn("h2"))) {
    pair -= ScorePair(8, 14);
    AddDefence(record, colour, WING_KINGSIDE, -4);
  }
  if (On(board, colour, BISHOP, "c1") && !pawn("b2") && pawn("b3") && (pawn("a2") || pawn("c2"))) {
    pair -= ScorePair(5, 8);
    AddDefence(record, colour, WING_QUEENSIDE, -3);
  }
  return pair;
}

// Opening: knights on c3 and f3 in front of their unmoved pawns, worse still when the own e-pawn
// has stepped to e3 against a pawn on d5.
ScorePair KnightsBeforePawns(EvaluationRecord& record, const Board& board, Color colour) {
  if (board.sides[colour].knights != RelativeSet(colour, SquareSet({"c3", "f3"}))) return ScorePair();
  if (!On(board, colour, PAWN, "c2") || !On(board, colour, PAWN, "f2")) return ScorePair();
  ScorePair pair(-4, -8);
  AddAttack(record, colour, WING_CENTRE, -3);
  AddDefence(record, colour, WING_CENTRE, 3);
  if (On(board, colour, PAWN, "e3") && EnemyOn(board, colour, PAWN, "d5")) {
    bool locked = On(board, colour, PAWN, "d4") && EnemyOn(board, colour, PAWN, "e4");
    pair -= locked ? ScorePair(25, 35) : ScorePair(10, 20);
  }
  return pair;
}

// The squares of a colour's attacks within a set named for White.
int AttacksIn(const EvaluationRecord& record, Color colour, Bitboard set) {
  return PopCount(record.side_facts[colour].attacks & RelativeSet(colour, set));
}

// Whether a colour's attacks reach the far ranks of each wing.
void WingPresence(EvaluationRecord& record, Color colour) {
  constexpr Bitboard FAR_WINGS[2] = {Rectangle('a', 'c', 6, 8), Rectangle('f', 'h', 6, 8)};
  for (int wing : {WING_QUEENSIDE, WING_KINGSIDE}) {
    int n = AttacksIn(record, colour, FAR_WINGS[wing]);
    if (n == 0) {
      AddAttack(record, colour, wing, -4);
      AddDefence(record, colour ^ 1, wing, 6);
    } else {
      AddAttack(record, colour, wing, n == 1 ? 4 : n == 2 ? 6 : 8);
    }
  }
}

// Pieces at home on the other wing take from the attack on a wing, pieces in the enemy half add.
void PiecePlacement(EvaluationRecord& record, const Board& board, Color colour) {
  const BoardSide& own = board.sides[colour];
  Bitboard rooks_on_third = own.rooks & RelativeSet(colour, RankMask(2));
  Bitboard at_home = (own.all & ~SquareBit(own.king_square) & ~rooks_on_third) & RelativeSet(colour, Rectangle('a', 'h', 1, 3));
  Bitboard advanced = own.all & RelativeSet(colour, Rectangle('a', 'h', 5, 8));
  const Bitboard QUEENSIDE_FILES = Rectangle('a', 'd', 1, 8);
  const Bitboard KINGSIDE_FILES = Rectangle('e', 'h', 1, 8);
  AddAttack(record, colour, WING_QUEENSIDE,
            -2 * PopCount(at_home & KINGSIDE_FILES) + 2 * PopCount(advanced & QUEENSIDE_FILES));
  AddAttack(record, colour, WING_KINGSIDE,
            -2 * PopCount(at_home & QUEENSIDE_FILES) + 2 * PopCount(advanced & KINGSIDE_FILES));
}

}  // namespace

ScorePair EvaluateDevelopment(EvaluationRecord& record, const Board& board, EvaluationVariant variant) {
  ScorePair pair = MinorsAtHome(record, board, WHITE) - MinorsAtHome(record, board, BLACK);
  pair += FianchettoNotDone(record, board, WHITE) - FianchettoNotDone(record, board, BLACK);

  const Color mover = board.side_to_move;
  pair += mover == WHITE ? ScorePair(6, 14) : ScorePair(-6, -14);
  AddAttack(record, mover, WING_CENTRE, 4);
  AddDefence(record, mover, WING_CENTRE, 6);

  if (variant == EvaluationVariant::OPENING) {
    pair += KnightsBeforePawns(record, board, WHITE) - KnightsBeforePawns(record, board, BLACK);
  }
  return pair;
}

ScorePair EvaluateSpace(EvaluationRecord& record, const Board& board) {
  const int wa = PopCount(record.side_facts[WHITE].attacks);
  const int ba = PopCount(record.side_facts[BLACK].attacks);
  const ScorePair pair(2 * (wa - ba), 4 * (wa - ba));

  if (wa > ba && 20 * wa > 21 * ba) {
    AddAttack(record, WHITE, WING_CENTRE, 7 * wa > 8 * ba ? 20 : 12);
  } else if (wa <= ba && 20 * ba > 21 * wa) {
    AddAttack(record, BLACK, WING_CENTRE, 7 * ba > 8 * wa ? 20 : 12);
  }
  for (Color c : {WHITE, BLACK}) {
    WingPresence(record, c);
    PiecePlacement(record, board, c);
  }
  return pair;
}
