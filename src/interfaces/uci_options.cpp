#include "interfaces/uci_options.h"

#include <algorithm>
#include <cctype>
#include <functional>

#include "evaluation/evaluation_settings.h"
#include "evaluation/personalities.h"
#include "frame/string_conversions.h"
#include "hash/hash.h"
#include "interfaces/command.h"
#include "interfaces/game.h"
#include "interfaces/personality_names.h"

namespace ZephrinInterfaces {

namespace {

constexpr std::int32_t MAX_HASH_MB = 65536;
constexpr std::int32_t MAX_CONTEMPT = 32767;

using Setter = std::function<void(Game&, const Command&, const std::string&)>;

struct UciOption {
  std::string name;
  Setter set;
};

[[noreturn]] void Refuse(const Command& command, const std::string& reason) {
  throw ErrorCommand(ErrorCommand::ERROR, reason, command.input);
}

std::string Lower(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

std::int32_t IntegerIn(const Command& command, const std::string& value, std::int32_t low, std::int32_t high) {
  if (value.empty()) Refuse(command, "missing parameters");
  std::int32_t number = 0;
  try {
    number = ToInt(value);
  } catch (const string_conversion_error&) {
    Refuse(command, "integer argument expected");
  }
  if (number < low || number > high) Refuse(command, "argument out of bounds");
  return number;
}

void SetHash(Game&, const Command& command, const std::string& value) {
  const std::int32_t megabytes = IntegerIn(command, value, 1, MAX_HASH_MB);
  const std::string refusal = ResizeHashTableByCommand("trans", ToText(megabytes) + "M", true);
  if (!refusal.empty()) Refuse(command, refusal);
}

void ClearHash(Game&, const Command&, const std::string&) {
  TranspositionTable.Clear();
  PawnHashTable.Clear();
  EvaluationHashTable.Clear();
}

// The front end tells whether it will ask for ponder searches; the engine keeps it as its own
// pondering switch.
void SetPonder(Game& game, const Command& command, const std::string& value) {
  if (value != "true" && value != "false") Refuse(command, "invalid argument(s)");
  game.pondering = value == "true";
}

void SetContempt(Game& game, const Command& command, const std::string& value) {
  const std::int32_t contempt = IntegerIn(command, value, -MAX_CONTEMPT, MAX_CONTEMPT);
  if (contempt == game.tracker.contempt) return;
  game.search.SetDrawScore(contempt);
  game.tracker.SetContempt(contempt);
}

void SetPersonalityOption(Game& game, const Command& command, const std::string& value) {
  std::int32_t personality = 0;
  if (!ParsePersonality(value, personality)) Refuse(command, "could not parse personality");
  const int limited = LimitPersonality(personality);
  if (limited == game.Protocol().personality) return;
  SetPersonality(EvalSettings, limited);
  game.Protocol().personality = static_cast<std::int16_t>(limited);
}

const std::vector<UciOption>& Options() {
  static const std::vector<UciOption> options = {
      {"Hash", SetHash}, {"Clear Hash", ClearHash}, {"Ponder", SetPonder},
      {"Contempt", SetContempt}, {"Personality", SetPersonalityOption},
  };
  return options;
}

}  // namespace

std::vector<std::string> UciOptionLines(std::int32_t personality) {
  const std::uint64_t hash_mb = std::max<std::uint64_t>(TranspositionTable.MemorySize() >> 20, 1);
  std::string personalities = "option name Personality type combo default " + PersonalityName(personality);
  for (const std::string& name : PersonalityNames()) personalities += " var " + name;
  return {
      "option name Hash type spin default " + ToText(hash_mb) + " min 1 max " + ToText(MAX_HASH_MB),
      "option name Clear Hash type button",
      "option name Ponder type check default false",
      "option name Contempt type spin default 0 min " + ToText(-MAX_CONTEMPT) + " max " + ToText(MAX_CONTEMPT),
      personalities,
  };
}

void SetUciOption(Game& game, const Command& command, const std::string& name, const std::string& value) {
  for (const UciOption& option : Options()) {
    if (Lower(option.name) == Lower(name)) return option.set(game, command, value);
  }
  Refuse(command, "unknown option " + name);
}

}  // namespace ZephrinInterfaces
