#include "interfaces/uci_commands.h"

#include <algorithm>
#include <map>

#include "frame/control_exceptions.h"
#include "frame/string_conversions.h"
#include "hash/hash.h"
#include "interfaces/game.h"
#include "interfaces/game_clock.h"
#include "interfaces/move_text.h"
#include "interfaces/uci_options.h"
#include "interfaces/uci_protocol.h"

namespace ZephrinInterfaces {

namespace {

constexpr std::int32_t DEEPEST_ITERATION = 79;

[[noreturn]] void Refuse(const std::string& raw, const std::string& reason) {
  throw ErrorCommand(ErrorCommand::ERROR, reason, raw);
}

// The front end plays both sides through `position`; the engine plays neither on its own.
void LeaveGameToFrontEnd(Game& game) {
  game.clock.Stop();
  game.white.engine_plays = false;
  game.black.engine_plays = false;
  game.game_mode = GAME_MODE_FORCE;
  game.hint = HINT_NONE;
}

// The tokens from `first` up to the word `end` (or the end of the line), joined by blanks.
std::string JoinedUntil(const TokenizedLine& line, std::size_t first, const std::string& end, std::size_t& stop) {
  std::string text;
  for (stop = first; stop < line.tokens.size() && line.tokens[stop] != end; ++stop) {
    if (!text.empty()) text += ' ';
    text += line.tokens[stop];
  }
  return text;
}

UserBoard PositionFromFen(const TokenizedLine& line, std::string fen) {
  if (fen.empty()) Refuse(line.raw, "missing parameters");
  // Some front ends leave out the two move counters.
  if (std::count(fen.begin(), fen.end(), ' ') == 3) fen += " 0 1";
  UserBoard game;
  try {
    game.SetFromFen(fen);
  } catch (const UserBoard::invalid_position&) {
    Refuse(line.raw, "Illegal position");
  } catch (const UserBoard::user_exception&) {
    Refuse(line.raw, "input inconsistent with FEN standard");
  }
  return game;
}

void PlayMoves(const TokenizedLine& line, std::size_t first, UserBoard& game) {
  for (std::size_t i = first; i < line.tokens.size(); ++i) {
    ReopenDrawByRule(game);
    Move move = MOVE_INVALID;
    if (ParseMove(game.Current(), line.tokens[i], move) != PARSE_OK) Refuse(line.raw, "illegal move " + line.tokens[i]);
    game.PlayMove(move);
  }
}

// position startpos|fen <fen> [moves <move>...]
std::unique_ptr<Command> ParsePosition(UciProtocol&, const TokenizedLine& line) {
  if (line.tokens.size() < 2) Refuse(line.raw, "missing parameters");
  UserBoard game;
  std::size_t rest = 2;
  if (line.tokens[1] == "fen") {
    game = PositionFromFen(line, JoinedUntil(line, 2, "moves", rest));
  } else if (line.tokens[1] != "startpos") {
    Refuse(line.raw, "invalid argument(s)");
  }
  if (rest < line.tokens.size() && line.tokens[rest] != "moves") Refuse(line.raw, "invalid argument(s)");
  PlayMoves(line, rest + 1, game);
  return std::make_unique<Command_Position>(line.raw, game);
}

std::int32_t IntegerAtLeast(const TokenizedLine& line, const std::string& text, std::int32_t minimum) {
  std::int32_t value = 0;
  try {
    value = ToInt(text);
  } catch (const string_conversion_error&) {
    Refuse(line.raw, "integer argument expected");
  }
  if (value < minimum) Refuse(line.raw, "argument out of bounds");
  return value;
}

bool IsGoValueWord(const std::string& word) {
  for (const char* known : {"wtime", "btime", "winc", "binc", "movestogo", "movetime", "depth", "nodes", "mate"}) {
    if (word == known) return true;
  }
  return false;
}

// Reads the value behind one `go` word into the parameters.
void ReadGoValue(const TokenizedLine& line, const std::string& word, const std::string& text, UciGoParameters& go) {
  constexpr std::int32_t ANY = INT32_MIN;
  const std::map<std::string, std::pair<std::int32_t*, std::int32_t>> integers = {
      {"wtime", {&go.time_ms[WHITE], ANY}},     {"btime", {&go.time_ms[BLACK], ANY}},
      {"winc", {&go.increment_ms[WHITE], 0}},   {"binc", {&go.increment_ms[BLACK], 0}},
      {"movestogo", {&go.moves_to_go, 0}},      {"movetime", {&go.move_time_ms, 1}},
      {"depth", {&go.depth, 1}},                {"mate", {&go.mate, 1}},
  };
  if (word == "nodes") {
    try {
      go.nodes = ToUnsigned(text);
    } catch (const string_conversion_error&) {
      Refuse(line.raw, "integer argument expected");
    }
    if (go.nodes == 0) Refuse(line.raw, "argument out of bounds");
    return;
  }
  const auto& [field, minimum] = integers.at(word);
  *field = IntegerAtLeast(line, text, minimum);
  if (word == "wtime" || word == "btime") go.has_time[word == "wtime" ? WHITE : BLACK] = true;
}

std::unique_ptr<Command> ParseGo(UciProtocol& protocol, const TokenizedLine& line) {
  UciGoParameters go;
  for (std::size_t i = 1; i < line.tokens.size(); ++i) {
    const std::string& word = line.tokens[i];
    if (word == "infinite") {
      go.infinite = true;
    } else if (word == "ponder") {
      go.ponder = true;
    } else if (word == "searchmoves") {
      Refuse(line.raw, "command is not supported");
    } else if (!IsGoValueWord(word)) {
      Refuse(line.raw, "invalid argument(s)");
    } else if (i + 1 == line.tokens.size()) {
      Refuse(line.raw, "missing parameters");
    } else {
      ReadGoValue(line, word, line.tokens[++i], go);
    }
  }
  return std::make_unique<Command_UciGo>(line.raw, protocol, go);
}

// setoption name <name> [value <value>]; both may hold blanks.
std::unique_ptr<Command> ParseSetOption(UciProtocol&, const TokenizedLine& line) {
  if (line.tokens.size() < 3) Refuse(line.raw, "missing parameters");
  if (line.tokens[1] != "name") Refuse(line.raw, "invalid argument(s)");
  std::size_t value_word = 0;
  const std::string name = JoinedUntil(line, 2, "value", value_word);
  std::size_t end = 0;
  const std::string value = value_word < line.tokens.size() ? JoinedUntil(line, value_word + 1, "", end) : "";
  if (name.empty()) Refuse(line.raw, "missing parameters");
  return std::make_unique<Command_SetOption>(line.raw, name, value);
}

template <typename CommandClass>
std::unique_ptr<Command> Plain(UciProtocol&, const TokenizedLine& line) {
  if (line.tokens.size() > 1) Refuse(line.raw, "too many parameters");
  return std::make_unique<CommandClass>(line.raw);
}

std::unique_ptr<Command> ParseIsReady(UciProtocol& protocol, const TokenizedLine& line) {
  if (line.tokens.size() > 1) Refuse(line.raw, "too many parameters");
  return std::make_unique<Command_IsReady>(line.raw, protocol);
}

// `debug` and `register` change nothing here.
std::unique_ptr<Command> Ignored(UciProtocol&, const TokenizedLine& line) {
  return std::make_unique<Command_DoNothing>(line.raw);
}

using UciParser = std::unique_ptr<Command> (*)(UciProtocol&, const TokenizedLine&);

const std::map<std::string, UciParser>& UciKeywords() {
  static const std::map<std::string, UciParser> keywords = {
      {"uci", Plain<Command_Uci>},
      {"isready", ParseIsReady},
      {"setoption", ParseSetOption},
      {"ucinewgame", Plain<Command_UciNewGame>},
      {"position", ParsePosition},
      {"go", ParseGo},
      {"stop", Plain<Command_Stop>},
      {"ponderhit", Plain<Command_PonderHit>},
      {"debug", Ignored},
      {"register", Ignored},
  };
  return keywords;
}

bool IsSharedKeyword(const std::string& word) {
  return word == "quit" || word == "xboard" || word == "protover" || word == "console" || word == "fritz";
}

}  // namespace

std::unique_ptr<BasicProtocol> Command_Uci::CreateProtocol() const { return std::make_unique<UciProtocol>(); }

void Command_IsReady::Execute(Game&) {
  protocol.ShowReady();
  done = true;
}

void Command_UciNewGame::Execute(Game& game) {
  game.AbortSearch(true);
  game.Reset();
  game.tracker.Reset();
  LeaveGameToFrontEnd(game);
  TranspositionTable.Clear();
  PawnHashTable.Clear();
  EvaluationHashTable.Clear();
  game.Protocol().BoardChanged(game);
  done = true;
}

void Command_Position::Execute(Game& target) {
  target.AbortSearch(true);
  target.ReplaceGame(game);
  LeaveGameToFrontEnd(target);
  target.Protocol().BoardChanged(target);
  done = true;
}

// A search runs until its `bestmove`; the front end must not start another one before.
void Command_UciGo::Execute(Game& game) {
  if (game.search_state != SEARCH_STATE_IDLE) Refuse(input, "command not legal now");
  const SearchRequest request = UciSearchRequest(parameters, game);
  protocol.SetSearchRoot(request.game);
  game.node_limit = parameters.infinite || parameters.ponder ? 0 : parameters.nodes;
  done = true;
  throw search_request_received_exception{request};
}

// The search ends as if its time were up, so that its best move is sent.
void Command_Stop::Execute(Game& game) {
  done = true;
  game.AbortSearch(false);
}

void Command_PonderHit::Execute(Game& game) {
  if (game.search_state == SEARCH_STATE_PONDERING) game.PonderHit();
  done = true;
}

// Changing the tables or the evaluation under a running search would spoil it.
void Command_SetOption::Execute(Game& game) {
  if (game.search_state != SEARCH_STATE_IDLE) Refuse(input, "command not legal now");
  SetUciOption(game, *this, name, value);
  done = true;
}

std::unique_ptr<Command> ParseUciCommand(UciProtocol& protocol, const TokenizedLine& line) {
  const auto keyword = UciKeywords().find(line.tokens[0]);
  if (keyword != UciKeywords().end()) return keyword->second(protocol, line);
  if (IsSharedKeyword(line.tokens[0])) return nullptr;
  Refuse(line.raw, "unrecognized command");
}

SearchRequest UciSearchRequest(const UciGoParameters& go, const UserBoard& game) {
  SearchRequest request;
  request.game = game;
  ReopenDrawByRule(request.game);
  request.type = go.ponder ? SEARCH_PONDERING : go.infinite ? SEARCH_ANALYZE : SEARCH_NORMAL;
  request.max_depth = go.depth != 0 ? go.depth : std::min(2 * go.mate, DEEPEST_ITERATION);
  const int side = game.SideToMove();
  if (go.move_time_ms != 0) {
    request.max_time_limit = go.move_time_ms;
  } else if (go.has_time[side]) {
    PlayerClock clock;
    clock.ms_left = go.time_ms[side];
    clock.moves_left = go.moves_to_go > 0 ? go.moves_to_go : -1;
    const SearchTimeLimits limits = GameTimeLimits(clock);
    request.max_time_limit = limits.max_time_limit;
    request.variable_time_limit = limits.variable_time_limit;
  }
  return request;
}

void ReopenDrawByRule(UserBoard& game) {
  const int reason = game.Current().reason;
  if (game.IsFinished() && game.Current().result == RESULT_DRAW &&
      (reason == REASON_REPETITION || reason == REASON_FIFTY_MOVES || reason == REASON_INSUFFICIENT_MATERIAL)) {
    game.SetResult(RESULT_NONE, REASON_MATE);
  }
}

}  // namespace ZephrinInterfaces
