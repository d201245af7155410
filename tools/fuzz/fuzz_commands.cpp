// Command lines executed on a game, as the console reads them. Commands that only size memory or
// open databases are left out: they do what they are asked, which is no fault. Every search ends
// at its first poll, since input is always "available": the rest of the script, then quit.
#include <deque>
#include <memory>
#include <set>

#include "frame/main_loop.h"
#include "fuzz_input.h"
#include "interfaces/console_protocol.h"
#include "interfaces/game.h"

namespace {

class ScriptInput : public InputSource {
 public:
  explicit ScriptInput(std::deque<std::string> script) : lines_(std::move(script)) {}
  std::string ReadLine() override {
    if (lines_.empty()) return "quit";
    std::string line = std::move(lines_.front());
    lines_.pop_front();
    return line;
  }
  bool InputAvailable() override { return true; }

 private:
  std::deque<std::string> lines_;
};

bool LeftOut(const std::string& line) {
  static const std::set<std::string> words = {"hash", "tb", "generate", "read_settings", "write_settings",
                                              "write_fen", "write_pgn", "setoption"};
  const auto start = line.find_first_not_of(" \t");
  if (start == std::string::npos) return false;
  return words.count(line.substr(start, line.find_first_of(" \t", start) - start)) != 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ZephrinFuzz::PrepareProgram();
  std::deque<std::string> script;
  for (std::string& line : ZephrinFuzz::Lines(ZephrinFuzz::Text(data, size)))
    if (!LeftOut(line)) script.push_back(std::move(line));
  MainLoop loop(std::make_unique<ZephrinInterfaces::Game>(std::make_unique<ZephrinInterfaces::ConsoleProtocol>()),
                std::make_unique<ScriptInput>(std::move(script)));
  RunMainLoop(loop);
  return 0;
}
