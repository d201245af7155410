// Entry point: prepares the global tables, runs the command line's commands, then the main loop.
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bitbases/bitbase_files.h"
#include "board/attack_tables.h"
#include "frame/command_line.h"
#include "frame/main_loop.h"
#include "hash/hash.h"
#include "interfaces/console_protocol.h"
#include "interfaces/game.h"

int main(int argc, char* argv[]) {
  // Standard input gets a buffer of its own, so that a line already read into it counts as waiting input.
  std::ios::sync_with_stdio(false);

  InitAttackTables();
  ResizeHashTablesToDefaults();
  ExecutableDirectory(argc > 0 ? argv[0] : "");
  LoadBitbases();

  std::vector<std::string> arguments;
  for (int i = 1; i < argc; ++i) {
    if (argv[i][0] != '\0') arguments.emplace_back(argv[i]);
  }

  // The first console protocol isn't activated: the program doesn't greet at start.
  MainLoop loop(std::make_unique<ZephrinInterfaces::Game>(std::make_unique<ZephrinInterfaces::ConsoleProtocol>()));
  if (const std::optional<int> status = HandleCommandLine(loop, arguments)) return *status;
  RunMainLoop(loop);
  return 0;
}
