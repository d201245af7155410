#include "search/extensions.h"

#include "search/search_tree.h"

NodeExtensionResult NodeExtension(SearchTree&, int, int, int, int, int, int&) {
  return {};  // no node extension yet
}

int MoveExtension(const SearchTree&, Move, int, int, const NodeExtensionResult& node, int& kinds) {
  kinds = node.kinds;  // no move extension yet
  return node.delayed;
}

void DetectRootPin(SearchTree& tree) {
  for (PinRecord& record : tree.pin_records) record = PinRecord{};
}

int DetectPinThreat(SearchTree&, Move, Move) {
  return -3;  // no pin detection yet
}

bool PinIsThreat(const SearchTree&, int) { return false; }

bool DetectPerpetualCheck(SearchTree& tree) {
  tree.perpetual_records[tree.board.ply] = PerpetualRecord{};  // no perpetual detection yet
  return false;
}
