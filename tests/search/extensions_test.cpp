#include "search/extensions.h"

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <string>
#include <tuple>
#include <utility>

#include "board/board_test_helpers.h"
#include "hash/hash.h"
#include "search/search.h"
#include "search/search_tree.h"
#include "settings/search_settings.h"

namespace {

using namespace board_test;

std::tuple<bool, int, int> Fields(const NodeExtensionResult& node) { return {node.full, node.delayed, node.kinds}; }

class ExtensionsTest : public ::testing::Test {
 protected:
  void SetUp() override { TranspositionTable.Resize(1 << 20); }

  // Starts a search tree at the position and plays the moves as nodes would.
  void Start(const std::string& fen, std::initializer_list<const char*> moves = {}) {
    tree().Reset(board_test::FromFen(fen));
    for (const char* move : moves) Play(move);
  }

  // The pin recorded at a ply as {pinned square, pinner square, pinner side}.
  std::array<int, 3> Pin(int ply) {
    const PinRecord& pin = tree().pin_records[ply];
    return {pin.pinned_square, pin.pinner_square, pin.pinner_side};
  }

  SearchTree& tree() { return *search.tree; }

  // Plays a move as the node would: the line, the move, then the pin and perpetual tests.
  void Play(const std::string& text) {
    Board& board = tree().board;
    Move move = FindMove(board, text);
    tree().line[board.ply] = move;
    board.MakeMove(move);
    int ply = board.ply;
    pin_code = ply > 1 ? DetectPinThreat(tree(), tree().line[ply - 1], tree().line[ply - 2]) : -3;
    perpetual = false;
    if (board.InCheck()) {
      const Move* line = tree().line;
      auto queen_check = [](Move m) { return MoveMoved(m) == QUEEN && MoveGivesCheck(m); };
      if (ply >= 3 && queen_check(line[ply - 1]) && queen_check(line[ply - 3])) {
        perpetual = DetectPerpetualCheck(tree());
      } else {
        tree().perpetual_records[ply] = PerpetualRecord{};
      }
    }
  }

  Search search;
  int pin_code = -3;
  bool perpetual = false;
};

TEST_F(ExtensionsTest, MoveBonusesFollowTheMeasureAndTheCaps) {
  const NodeExtensionResult full{0, true, 0}, limited{0, false, 0};
  int kinds = 0;
  auto extend = [&](Move move, const NodeExtensionResult& node, int threat = 0) {
    return std::pair{MoveExtension(tree(), move, 0, threat, node, kinds), kinds};
  };
  // Ne4-d6 checks twice, Ne4-c3 only by discovery.
  Start("4k3/8/8/8/4N3/8/8/K3R3 w - - 0 1");
  Move both = FindMove(tree().board, "e4d6");
  Move discovered = FindMove(tree().board, "e4c3");
  Move direct = FindMove(tree().board, "a1b1");
  ASSERT_EQ(both & MOVE_CHECK_FLAGS, MOVE_CHECK_FLAGS);
  ASSERT_EQ(discovered & MOVE_CHECK_FLAGS, MOVE_DISCOVERED_CHECK);
  EXPECT_EQ(extend(both, full), std::pair(15, EXTEND_DOUBLE_CHECK));
  EXPECT_EQ(extend(both, limited).first, 7);
  EXPECT_EQ(extend(discovered, full), std::pair(6, EXTEND_DISCOVERED_CHECK));
  EXPECT_EQ(extend(discovered, limited).first, 3);
  EXPECT_EQ(extend(direct, full), std::pair(0, 0));
  // As the single reply: 7 + 20 = 27 within the instant cap; with a delayed 28, the total cap.
  EXPECT_EQ(extend(both, limited, THREAT_SINGLE_MOVE).first, 27);
  EXPECT_EQ(extend(both, NodeExtensionResult{28, false, EXTEND_MATE_THREAT}, THREAT_SINGLE_MOVE),
            std::pair(50, EXTEND_MATE_THREAT | EXTEND_DOUBLE_CHECK | EXTEND_SINGLE_REPLY));
  // The node's bonus alone goes to a quiet move too.
  EXPECT_EQ(extend(direct, NodeExtensionResult{8, false, EXTEND_MATE_THREAT}).first, 8);

  // Rooks and pawns to the seventh and sixth, at an endgame type (25 in full for a pawn to the seventh).
  struct Row { const char* fen; const char* move; int extension, kinds; };
  const Row rows[] = {
      {"4k3/8/1p2P3/R7/8/8/1R6/4K3 w - - 0 1", "a5a7", 2, EXTEND_ROOK_7TH},  // the king behind
      {"4k3/8/1p2P3/R7/8/8/1R6/4K3 w - - 0 1", "e6e7", 25, EXTEND_PAWN_7TH},
      {"4k3/1R6/1p6/R1P5/8/8/8/4K3 w - - 0 1", "b7c7", 0, 0},  // along the seventh
      {"4k3/1R6/1p6/R1P5/8/8/8/4K3 w - - 0 1", "c5b6", 0, 0},  // to the sixth by a capture
      {"4k3/1R6/1p6/R1P5/8/8/8/4K3 w - - 0 1", "c5c6", 15, EXTEND_PASSER_6TH},
      {"4k3/2p5/8/2P5/8/8/8/4K3 w - - 0 1", "c5c6", 0, 0},  // an enemy pawn ahead: not passed
  };
  for (const Row& row : rows) {
    Start(row.fen);
    tree().position_types[0] = 2;
    EXPECT_EQ(extend(FindMove(tree().board, row.move), full), std::pair(row.extension, row.kinds)) << row.move;
  }

  // A recapture on the same square, unless the parent's double check forbade it.
  Start("4k3/8/3p4/4n3/8/5N2/8/4K3 w - - 0 1", {"f3e5"});
  Move recapture = FindMove(tree().board, "d6e5");
  EXPECT_EQ(extend(recapture, full), std::pair(6, EXTEND_RECAPTURE));
  EXPECT_EQ(MoveExtension(tree(), recapture, NODE_NO_RECAPTURE_EXTENSION, 0, full, kinds), 0);
}

TEST_F(ExtensionsTest, NodeMeasureAndThreatBonuses) {
  // The white queen is attacked by a knight.
  Start("4k3/8/8/8/2n5/8/1Q6/4K3 w - - 0 1");
  search.iteration = 4;
  int threat = 0;
  NodeExtensionResult node = NodeExtension(tree(), 320, NODE_PV, 0, -3, 0, threat);
  EXPECT_EQ(Fields(node), std::tuple(true, 3, EXTEND_QUEEN_ATTACKED));
  EXPECT_EQ(threat, THREAT_QUEEN_ATTACKED);
  // A known answer is not asked again: a transposition that says "safe" keeps it.
  threat = THREAT_QUEEN_SAFE;
  EXPECT_EQ(NodeExtension(tree(), 320, NODE_PV, 0, -3, 0, threat).delayed, 0);
  EXPECT_EQ(threat, THREAT_QUEEN_SAFE);
  // Below the threshold of a non-PV node nothing at all.
  threat = THREAT_MATE;
  node = NodeExtension(tree(), 31, NODE_CUT, 0, -3, 0, threat);
  EXPECT_EQ(std::pair(node.delayed, node.kinds), std::pair(0, 0));
  // In quiescence always limited.
  min_depth_for_search_extensions_if_not_searching_pv_move = -64;
  threat = THREAT_MATE | THREAT_QUEEN_SAFE;
  node = NodeExtension(tree(), 0, NODE_CUT, 0, -3, 0, threat);
  min_depth_for_search_extensions_if_not_searching_pv_move = 32;
  EXPECT_FALSE(node.full);
  EXPECT_EQ(node.delayed, 8);

  // Iteration 4: full up to ply 3 * 4 / 2 + 2 = 8.
  Start("4k3/8/8/8/8/8/8/4K3 w - - 0 1");
  for (int i = 0; i < 8; ++i) tree().board.MakeNullMove();
  threat = THREAT_MATE | THREAT_PERPETUAL | THREAT_PIN;
  node = NodeExtension(tree(), 320, NODE_CUT, 0, 1, 0, threat);
  EXPECT_EQ(Fields(node), std::tuple(true, 20 + 5 + 8, EXTEND_MATE_THREAT | EXTEND_PERPETUAL | EXTEND_PIN));
  tree().board.MakeNullMove();
  threat = THREAT_MATE | THREAT_PERPETUAL | THREAT_PIN;
  node = NodeExtension(tree(), 320, NODE_CUT, 0, 2, 0, threat);
  EXPECT_FALSE(node.full);
  EXPECT_EQ(node.delayed, 8 + 2 + 4);
  threat = THREAT_PIN;
  EXPECT_EQ(NodeExtension(tree(), 320, NODE_CUT, 0, 0, 0, threat).delayed, 5);  // a hashed pin
  // The delayed cap of the measure.
  full_mate_threat_extension_bonus = 200;
  threat = THREAT_MATE;
  tree().board.UnmakeNullMove();
  EXPECT_EQ(NodeExtension(tree(), 320, NODE_CUT, 0, -3, 0, threat).delayed, 120);
  full_mate_threat_extension_bonus = 20;
}

TEST_F(ExtensionsTest, PinsAreFoundFollowedAndEnded) {
  // A bishop interposed on a rook's check is pinned; the pin goes on, tightens, then ends.
  Start("4k3/3b4/8/8/3P4/8/K7/7R w - - 0 1", {"h1e1", "d7e6"});
  EXPECT_EQ(pin_code, 1);
  EXPECT_EQ(Pin(2), (std::array<int, 3>{At("e6"), At("e1"), WHITE}));
  EXPECT_FALSE(PinIsThreat(tree(), pin_code));  // a bishop held by a rook wins nothing
  Play("a2b2");
  EXPECT_EQ(pin_code, 0);
  Play("e8f8");  // the king steps off the line
  EXPECT_EQ(pin_code, -2);
  Play("d4d5");
  EXPECT_EQ(pin_code, -3);

  Start("4k3/3b4/8/8/3P4/8/K7/7R w - - 0 1", {"h1e1", "d7e6", "d4d5"});  // the pawn attacks the pinned bishop
  EXPECT_EQ(pin_code, 2);
  EXPECT_TRUE(PinIsThreat(tree(), pin_code));
  Play("e8d8");  // the king steps off
  EXPECT_EQ(pin_code, -2);

  // At the root the most valuable pinned piece: the rook on d7, not the knight on d2.
  Start("4k3/3r4/8/8/Bb6/8/3N4/4K3 w - - 0 1");
  EXPECT_EQ(Pin(0), (std::array<int, 3>{At("d7"), At("a4"), WHITE}));
}

TEST_F(ExtensionsTest, PinnedQueenIsRealOnlyIfThePinnerHangs) {
  using board_test::FromFen;
  // Queen e5 pinned by the rook e1 (undefended), by the rook e2 defended by the king.
  EXPECT_TRUE(PinIsReal(FromFen("4k3/8/8/4q3/8/8/8/K3R3 w - - 0 1"), At("e1"), At("e5"), WHITE));
  EXPECT_FALSE(PinIsReal(FromFen("4k3/8/8/4q3/8/8/3KR3/8 w - - 0 1"), At("e2"), At("e5"), WHITE));
  // A bishop held by a queen on a file can't take it; on the diagonal it can.
  EXPECT_TRUE(PinIsReal(FromFen("4k3/8/8/4b3/8/8/8/K3Q3 w - - 0 1"), At("e1"), At("e5"), WHITE));
  EXPECT_FALSE(PinIsReal(FromFen("7k/8/8/4b3/8/8/1Q6/K7 w - - 0 1"), At("b2"), At("e5"), WHITE));
}

TEST_F(ExtensionsTest, PerpetualCheckNeedsMoreChecksWhenMaterialWasWon) {
  Start("7k/6p1/7p/8/8/8/8/3Q2K1 w - - 0 1");
  const char* series[] = {"d1d8", "h8h7", "d8d3", "h7h8", "d3d8", "h8h7"};
  bool found[6];
  for (int i = 0; i < 6; ++i) {
    Play(series[i]);
    found[i] = perpetual;
  }
  EXPECT_FALSE(found[2]);  // the first counted check
  EXPECT_TRUE(found[4]);
  EXPECT_EQ(tree().perpetual_records[5].count, 2);

  // The same series after the checked side won a rook meanwhile: four checks are needed.
  Start("7k/6p1/7p/8/8/8/8/3Q2K1 w - - 0 1", {"d1d8", "h8h7", "d8d3", "h7h8"});
  int count = 0;
  tree().perpetual_records[3].material = std::int16_t(tree().perpetual_records[3].material - 500);
  const char* more[] = {"d3d8", "h8h7", "d8d3", "h7h8", "d3d8", "h8h7"};
  for (const char* text : more) {
    Play(text);
    if (tree().board.InCheck()) {
      ++count;
      EXPECT_EQ(perpetual, count == 3) << text;
    }
  }
}

}  // namespace
