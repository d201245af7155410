// Entry point of the engine.
#include "board/attack_tables.h"
#include "board/board.h"
#include "frame/tee_stream.h"

int main() {
  InitAttackTables();
  Board board;
  board.Display(true);
  Out.Flush();
  return 0;
}
