#include "search/move_picker.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "board/board_test_helpers.h"
#include "search/quiescence.h"

namespace {

using namespace board_test;

TEST(TacticalValue, ExamplesOfCapturesAndChecks) {
  Board queen_capture = FromFen("4k3/8/4p3/3q4/4P3/8/8/4K3 w - - 0 1");
  int value = TacticalValue(queen_capture, FindMove(queen_capture, "e4d5"), 0);  // exd5, defended
  EXPECT_EQ(value, 325 + 10 + 115 + 15);

  Board pawn_capture = FromFen("4k3/8/2p5/3p4/8/4N3/8/4K3 w - - 0 1");
  EXPECT_EQ(TacticalValue(pawn_capture, FindMove(pawn_capture, "e3d5"), 0), 325 + 4 - 12 - 8);  // Nxd5

  Board queen_check = FromFen("4k3/8/8/8/6Q1/8/8/3RK3 w - - 0 1");
  Move qd7 = FindMove(queen_check, "g4d7");
  EXPECT_EQ(TacticalValue(queen_check, qd7, 0), 325 + 15 + 75);
  EXPECT_EQ(TacticalValue(queen_check, qd7, 32000), 325 + 15 + 75 + 55);  // playing for mate
}

TEST(SortMoves, SortsByWordHighestFirst) {
  std::vector<Move> words = {5, 1u << 30, 7, 3u << 23, 7, 0, 1u << 31, 2};
  std::vector<Move> expected = words;
  std::sort(expected.begin(), expected.end(), std::greater<Move>());
  SortMoves(words.data(), words.data() + words.size());
  EXPECT_EQ(words, expected);
}

struct PickedRegion {
  std::vector<Move> moves;  // without sort bits
  bool final;
};

std::vector<Move> AllMoves(const Board& board) {
  Move list[MAX_MOVES];
  return {list, GenerateMoves(list, board, GEN_ALL)};
}

// The regions that the picker hands out, in order, for the moves of the context's position.
std::vector<PickedRegion> PickAll(const PickerContext& context) {
  std::vector<Move> moves = AllMoves(context.board);
  std::vector<PickedRegion> regions;
  MovePickerState state(moves.data(), moves.data() + moves.size());
  MoveRegion region;
  do {
    MovePicker(state, context, region);
    PickedRegion picked{{}, region.final};
    for (Move* m = region.first; m < region.last; ++m) picked.moves.push_back(*m & MOVE_MASK);
    regions.push_back(picked);
  } while (!region.final && regions.size() < 10);
  return regions;
}

std::vector<Move> Sorted(std::vector<Move> moves) {
  std::sort(moves.begin(), moves.end());
  return moves;
}

// A middlegame with captures of every kind, checks and many quiet moves.
const char* const BUSY = "r1bqk2r/ppp2ppp/2np1n2/2b1p1B1/2B1P3/2NP1N2/PPP2PPP/R2QK2R w KQkq - 0 6";

TEST(MovePicker, LazyPickerGivesEveryMoveOnceStageByStage) {
  Board board = FromFen(BUSY);
  const std::vector<Move> all = AllMoves(board);
  Move quiet_killer = FindMove(board, "e1g1");      // O-O
  Move losing_capture = FindMove(board, "c4f7");  // Bxf7+, a losing capture with check
  Move history_move = FindMove(board, "a1b1");      // Rb1
  HistoryTable history;
  history.NewHistoryGeneration();
  history.UpdateHistory(history_move, WHITE, 320, 2);
  PickerContext context{board, 640, 0, 0, 1, {losing_capture, quiet_killer}, history, 1};

  std::vector<PickedRegion> regions = PickAll(context);
  std::vector<Move> picked;
  for (const PickedRegion& r : regions) picked.insert(picked.end(), r.moves.begin(), r.moves.end());
  EXPECT_EQ(Sorted(picked), Sorted(all));
  ASSERT_EQ(regions.size(), 4u);  // promising with killers, other tacticals, history, the rest
  EXPECT_TRUE(regions.back().final);

  // Region A: the promising tacticals with killer one among them, and killer two last. Killer
  // one goes first if it is promising itself, else behind at most two promising moves.
  const std::vector<Move>& a = regions[0].moves;
  ASSERT_GE(a.size(), 2u);
  EXPECT_EQ(a.back(), quiet_killer);
  std::ptrdiff_t promising = std::ptrdiff_t(a.size()) - 2;
  std::ptrdiff_t killer_place = std::find(a.begin(), a.end(), losing_capture) - a.begin();
  if (TacticalValue(board, losing_capture, 0) >= 350) {
    EXPECT_EQ(killer_place, 0);
  } else {
    EXPECT_EQ(killer_place, std::min<std::ptrdiff_t>(promising, 2));
  }
  for (Move m : a) {
    if (m != losing_capture && m != quiet_killer) {
      EXPECT_GE(TacticalValue(board, m, 0), 350);
    }
  }
  for (Move m : regions[1].moves) {
    EXPECT_TRUE(IsTactical(m));
    EXPECT_LT(TacticalValue(board, m, 0), 350);
  }
  EXPECT_EQ(regions[2].moves, std::vector<Move>{history_move});
  for (Move m : regions[3].moves) EXPECT_FALSE(IsTactical(m));
}

TEST(MovePicker, EagerPickerRemovesTheHashMoveAndSortsEachStage) {
  Board board = FromFen(BUSY);
  std::vector<Move> all = AllMoves(board);
  Move hash_move = FindMove(board, "f3e5");  // Nxe5
  HistoryTable history;
  history.NewHistoryGeneration();
  PickerContext context{board, 640, 0, hash_move, 1, {}, history, 1};
  std::vector<PickedRegion> regions = PickAll(context);
  ASSERT_EQ(regions.size(), 1u);  // with a hash move the picker is eager
  EXPECT_TRUE(regions[0].final);
  all.erase(std::find(all.begin(), all.end(), hash_move));
  EXPECT_EQ(Sorted(regions[0].moves), Sorted(all));
  // Tacticals (values 256 and up) come before every quiet move (values below 256).
  bool quiet_seen = false;
  for (Move m : regions[0].moves) {
    if (!IsTactical(m)) quiet_seen = true;
    else EXPECT_FALSE(quiet_seen);
  }
}

TEST(MovePicker, AllNodesAndShortListsAreEager) {
  Board board = FromFen("4k3/8/8/8/8/8/4P3/4K3 w - - 0 1");
  ASSERT_LT(AllMoves(board).size(), 7u);
  HistoryTable history;
  EXPECT_EQ(PickAll(PickerContext{board, 640, 0, 0, 1, {}, history, 15}).size(), 1u);
  Board busy = FromFen(BUSY);
  EXPECT_EQ(PickAll(PickerContext{busy, 640, 0, 0, -1, {}, history, 1}).size(), 1u);  // an all node
}

TEST(ScoreQuiescenceMoves, RemovesHashMoveAndFavoursKillersAndBigGains) {
  Board board = FromFen(BUSY);
  Move list[MAX_MOVES];
  Move* end = GenerateMoves(list, board, 0x1f);
  Move hash_move = FindMove(board, "g5f6");  // Bxf6
  Move killer = FindMove(board, "c4f7");     // Bxf7+
  std::size_t count = std::size_t(end - list);
  Move* new_end = ScoreQuiescenceMoves(list, end, hash_move, {killer, 0}, 0, board);
  ASSERT_EQ(std::size_t(new_end - list), count - 1);
  Move best = SelectBest(list, new_end);
  EXPECT_EQ(best & MOVE_MASK, killer);
  for (Move* m = list; m < new_end; ++m) {
    EXPECT_NE(*m & MOVE_MASK, hash_move);
    EXPECT_GE(SortValueOf(*m), 256);
    EXPECT_LE(SortValueOf(*m), 511);
  }
}

TEST(QuiescenceFilter, ExchangeRulesAndChecks) {
  // Pawn takes queen passes without an exchange look; queen takes a pawn defended by a pawn fails.
  Board board = FromFen("4k3/8/2p5/1p1q4/2P5/8/8/3QK3 w - - 0 1");
  EXPECT_TRUE(QuiescenceFilter(board, FindMove(board, "c4d5"), 0, 0, 1));  // cxd5
  Board greedy = FromFen("4k3/8/2p5/1p6/8/8/8/1Q2K3 w - - 0 1");
  EXPECT_FALSE(QuiescenceFilter(greedy, FindMove(greedy, "b1b5"), 0, -500, 1));  // Qxb5 loses the queen
  // A double check is searched at any distance.
  Board discovered = FromFen("4k3/8/8/8/8/8/4N3/K3R3 w - - 0 1");
  Move nd4 = FindMove(discovered, "e2d4");  // discovers the rook, no direct check
  EXPECT_TRUE(QuiescenceFilter(discovered, nd4, -16, 0, 1));
  EXPECT_EQ(GenerationSet(-200, 32000, false), 0);
  EXPECT_EQ(GenerationSet(-100, 32000, false), GEN_CHECKS);
  EXPECT_EQ(GenerationSet(-100, 0, false), 0x1f);
  EXPECT_EQ(GenerationSet(-200, 0, false), 0x11);
  EXPECT_EQ(GenerationSet(-200, 0, true), 0x1f);
}

}  // namespace
