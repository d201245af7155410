#include "evaluation/personalities.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>

#include "e2e/engine_process.h"
#include "evaluation/evaluation.h"
#include "evaluation/position_type.h"
#include "evaluation_test_support.h"
#include "hash/hash.h"
#include "interfaces/command.h"
#include "interfaces/commands.h"
#include "interfaces/console_protocol.h"
#include "interfaces/game.h"

namespace {

using evaluation_test::FromFen;
using namespace ZephrinInterfaces;

// Middlegame positions whose two halves lie far apart: a piece for pawns (the positional half
// counts the piece for more), kings castled on opposite wings, and a king still in the centre
// facing an attack.
const char* const SHARP_POSITIONS[] = {
    "r1bq1rk1/pp3ppp/2n5/8/2pP4/2P5/P4PPP/R1BQKB1R w KQ - 0 10",
    "2kr3r/ppp2ppp/2n1bq2/4p3/4P3/2NP1Q2/PPP2PPP/2KR3R w - - 0 12",
    "r1b2rk1/ppq2ppp/2n1p3/3pP3/3P4/P1PB4/2Q2PPP/R1B1K2R b KQ - 0 12",
};

int Exact(const Board& board, int personality) {
  EvaluationSettings settings;
  settings.personality = std::int16_t(personality);
  EvaluationRecord record;
  record.settings = &settings;
  EvaluationHashTable.Clear();
  int score = ExactEvaluation(record, board, ClassifyPosition(board, NO_POSITION_TYPE));
  EvaluationHashTable.Clear();
  return score;
}

TEST(Personalities, EachPointMovesTheScoreASixteenthTowardsTheDynamicHalf) {
  for (const char* fen : SHARP_POSITIONS) {
    Board board = FromFen(fen);
    const PositionType type = ClassifyPosition(board, NO_POSITION_TYPE);
    ASSERT_TRUE(type == POSITION_OPENING || type == POSITION_MIDDLEGAME) << fen;
    const int positional = Exact(board, MIN_PERSONALITY);
    const int dynamic = Exact(board, MAX_PERSONALITY);
    ASSERT_GE(std::abs(dynamic - positional), 48) << fen << ": the halves should differ clearly";
    const double step = (dynamic - positional) / 16.0;

    // The working range reaches both halves: the situation's own mix lies well inside it.
    EXPECT_EQ(Exact(board, -20), positional) << fen;
    EXPECT_EQ(Exact(board, 20), dynamic) << fen;
    int between = 0;
    int previous = Exact(board, -20);
    for (int q = -19; q <= 20; ++q) {
      const int score = Exact(board, q);
      // Monotone from one half to the other, a sixteenth of the distance per point.
      EXPECT_LE(std::abs(score - previous), std::abs(step) + 1) << fen << " personality " << q;
      EXPECT_GE((score - previous) * (dynamic - positional), 0) << fen << " personality " << q;
      if (score != positional && score != dynamic) ++between;
      previous = score;
    }
    // Mixes 1 to 15 lie between the halves; rounding may put one of them on an end.
    EXPECT_GE(between, 14) << fen;
    EXPECT_LE(between, 15) << fen;

  }
}

TEST(Personalities, EndgamesEvaluateAlikeUnderEveryPersonality) {
  const char* const endgames[] = {
      "8/5pk1/8/3n4/8/4B3/5PK1/8 w - - 0 1",          // knight against bishop
      "2r3k1/5ppp/8/3p4/3P4/8/5PPP/2R3K1 b - - 0 1",  // rook ending
      "8/8/4k3/3p4/3P4/4K3/8/8 w - - 0 1",            // pawn ending
  };
  for (const char* fen : endgames) {
    Board board = FromFen(fen);
    ASSERT_GE(ClassifyPosition(board, NO_POSITION_TYPE), POSITION_EQUAL_PIECES) << fen;
    const int score = Exact(board, 0);
    for (int q : {-1000, -20, -7, 9, 20, 1000}) EXPECT_EQ(Exact(board, q), score) << fen << " " << q;
  }
}

// Puts something in each of the three tables.
void FillTables(const Board& board) {
  EvaluationRecord record;
  ExactEvaluation(record, board, ClassifyPosition(board, NO_POSITION_TYPE));
  TranspositionTable.StoreEntry(MakePvEntry(board.Key(), MOVE_INVALID, 1, false, false, false));
}

bool IsEmpty(const ABSTRACT_HASH_TABLE& table) { return table.FreeSlotCount() == table.SlotCount(); }

TEST(Personalities, AChangeDropsTheMixedScoresButKeepsThePawnTable) {
  const EvaluationSettings saved = EvalSettings;
  Board board = FromFen(SHARP_POSITIONS[0]);
  auto protocol = std::make_unique<ConsoleProtocol>();
  ConsoleProtocol& console = *protocol;
  Game game(std::move(protocol));
  game.game_mode = GAME_MODE_FORCE;

  FillTables(board);
  ASSERT_FALSE(IsEmpty(TranspositionTable));
  ASSERT_FALSE(IsEmpty(EvaluationHashTable));
  const std::uint64_t pawn_free = PawnHashTable.FreeSlotCount();
  ASSERT_LT(pawn_free, PawnHashTable.SlotCount());

  Command_SetPersonality(" personality 5000", 5000).Execute(game);
  EXPECT_EQ(EvalSettings.personality, 1000);
  EXPECT_EQ(console.personality, 1000);
  EXPECT_TRUE(IsEmpty(TranspositionTable));
  EXPECT_TRUE(IsEmpty(EvaluationHashTable));
  EXPECT_EQ(PawnHashTable.FreeSlotCount(), pawn_free);

  // The value in force again, once limited: nothing is cleared.
  FillTables(board);
  Command_SetPersonality("personality 1000", 1000).Execute(game);
  EXPECT_FALSE(IsEmpty(TranspositionTable));
  EXPECT_FALSE(IsEmpty(EvaluationHashTable));

  // The refusal outside force mode is tested at the console.
  EvalSettings = saved;
}

// The program's answers to eval after personality commands, and its refusal of an unknown name,
// which leaves the personality in force.
TEST(Personalities, TheCommandReachesTheEvalCommandOfTheProgram) {
  const std::string sharp = SHARP_POSITIONS[1];
  Board board = FromFen(sharp);
  ASSERT_NE(Exact(board, 1000), Exact(board, -1000));
  std::string input = "force\nsetboard " + sharp + "\n";
  for (const char* name : {"Fenx", "ondrith", "-3", "Fenx9"}) input += std::string("personality ") + name + "\neval\n";
  std::istringstream out(RunEngine({}, input).out);
  std::string answers;
  for (std::string line; std::getline(out, line);) {  // the answers follow the console's prompts
    const std::string::size_type at = std::min(line.find("eval: "), line.find("Error"));
    if (at != std::string::npos) answers += line.substr(at) + "\n";
  }
  auto eval = [&](int personality) { return "eval: " + std::to_string(Exact(board, personality)) + "\n"; };
  EXPECT_EQ(answers, eval(1000) + eval(-1000) + eval(-3) +
                         "Error (could not parse personality): personality Fenx9\n" + eval(-3));
}

}  // namespace
