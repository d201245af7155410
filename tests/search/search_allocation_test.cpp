// The node function must not allocate: every allocation of the process is counted while a search
// of the tree runs.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "board/board_test_helpers.h"
#include "hash/hash.h"
#include "search/search.h"

namespace {
std::atomic<bool> counting{false};
std::atomic<long> allocations{0};
}  // namespace

void* operator new(std::size_t size) {
  if (counting) ++allocations;
  if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
  throw std::bad_alloc();
}
void operator delete(void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
// The non-throwing forms too (std::stable_sort uses them), so that every delete meets its own new.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (counting) ++allocations;
  return std::malloc(size == 0 ? 1 : size);
}
void operator delete(void* p, const std::nothrow_t&) noexcept { std::free(p); }

TEST(SearchAllocation, NodesAllocateNothing) {
  TranspositionTable.Resize(1 << 20);
  Search search;
  search.tree->Reset(board_test::FromFen("r1bq1rk1/pp2bppp/2n1pn2/3p4/2PP4/2N1PN2/PP2BPPP/R2QKB1R w KQ - 0 8"));
  search.iteration = 3;
  allocations = 0;
  counting = true;
  int value = 0;
  for (int gamma : {-50, 0, 30, 60}) {
    value = SearchNode(*search.tree, search.tree->move_stack, gamma, 448, NODE_PV, 1, 0x460);
  }
  counting = false;
  EXPECT_EQ(allocations.load(), 0);
  EXPECT_GT(search.nodes + search.tree->local_nodes, 500u);
  EXPECT_GE(value, 59);
  EXPECT_LE(value, 60);
  EXPECT_EQ(search.tree->board.ply, 0);  // the board is as it was
}
