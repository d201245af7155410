#include "interfaces/commands.h"

#include <algorithm>

#include "frame/control_exceptions.h"
#include "frame/tee_stream.h"
#include "hash/hash.h"
#include "interfaces/basic_protocol.h"
#include "interfaces/console_protocol.h"
#include "interfaces/game.h"
#include "interfaces/xboard_protocol.h"

namespace ZephrinInterfaces {

// The one place that refuses the commands whose parts of the program don't exist yet.
void RaiseNotAvailableYet(const Command& command) {
  throw ErrorCommand(ErrorCommand::ERROR, "not available yet", command.input);
}

void RequireForceMode(const Command& command, const Game& game) {
  if (game.game_mode != GAME_MODE_FORCE) throw ErrorCommand(ErrorCommand::ERROR, "must be in force mode", command.input);
}

namespace {

[[noreturn]] void Refuse(const Command& command, const std::string& reason) {
  throw ErrorCommand(ErrorCommand::ERROR, reason, command.input);
}

}  // namespace

void Command_DoNothing::Execute(Game&) { done = true; }

// --- Protocol commands ---

// The game, the clocks and a running search go on untouched under the new protocol.
void Command_InstallNewProtocol::Execute(Game& game) {
  game.ReplaceProtocol(CreateProtocol());
  game.Protocol().Activate();
  done = true;
}

std::unique_ptr<BasicProtocol> Command_Xboard::CreateProtocol() const { return std::make_unique<XBoardProtocol_1>(); }
std::unique_ptr<BasicProtocol> Command_Protover2::CreateProtocol() const { return std::make_unique<XBoardProtocol_2>(); }
std::unique_ptr<BasicProtocol> Command_Fritz::CreateProtocol() const { return std::make_unique<XBoardFritzAdapter>(); }
std::unique_ptr<BasicProtocol> Command_Console::CreateProtocol() const { return std::make_unique<ConsoleProtocol>(); }

// --- Game commands ---

void Command_New::Execute(Game&) { RaiseNotAvailableYet(*this); }

void Command_Force::Execute(Game& game) {
  game.AbortSearch(true);
  game.clock.Stop();
  game.white.engine_plays = false;
  game.black.engine_plays = false;
  game.game_mode = GAME_MODE_FORCE;
  done = true;
}

void Command_Go::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_Playother::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_SetSide::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_Analyze::Execute(Game&) { RaiseNotAvailableYet(*this); }

// The check runs once: after the abort the command runs again with no search going.
void Command_Exit::Execute(Game& game) {
  if (!validated) {
    if (game.search_state != SEARCH_STATE_ANALYZING) Refuse(*this, "must be in analyze mode");
    validated = true;
  }
  game.AbortSearch(true);
  game.game_mode = GAME_MODE_FORCE;
  done = true;
}

// Ends a search for a move as if its time were up, so that the best move so far is played.
void Command_MoveNow::Execute(Game& game) {
  done = true;
  if (game.search_state == SEARCH_STATE_THINKING) {
    game.AbortSearch(false);
  } else {
    game.Protocol().ShowCommandIgnored("no search running");
  }
}

void Command_Move::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_Undo::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_Remove::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_Next::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_Result::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_Draw::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_Hint::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_SetupBoardCommands::Execute(Game&) { RaiseNotAvailableYet(*this); }

void Command_Quit::Execute(Game& game) {
  game.AbortSearch(true);
  done = true;
  throw quit_command_received_exception();
}

// --- Clock commands ---

void Command_Level::Execute(Game&) {
  if (moves < 0 || base_seconds < 1 || increment_seconds < 0) Refuse(*this, "argument out of bounds");
  RaiseNotAvailableYet(*this);
}

void Command_Tc::Execute(Game&) { RaiseNotAvailableYet(*this); }

void Command_st::Execute(Game& game) {
  game.st_limit = static_cast<std::int32_t>(std::min<std::int64_t>(std::int64_t{seconds} * 1000, INT32_MAX));
  done = true;
}

void Command_sd::Execute(Game& game) {
  if (depth < 0) Refuse(*this, "argument out of bounds");
  game.sd_limit = depth;
  done = true;
}

void Command_Time::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_Otim::Execute(Game&) { RaiseNotAvailableYet(*this); }

// --- Engine set-up commands ---

void Command_DisplayHashtableStatus::Execute(Game& game) {
  game.Protocol().DisplayHashTables(true);
  done = true;
}

void Command_ResizeHashtable::Execute(Game& game) {
  const std::string refusal = ResizeHashTableByCommand(type, size, game.game_mode == GAME_MODE_FORCE);
  if (!refusal.empty()) Refuse(*this, refusal);
  done = true;
}
void Command_DisplayTablebasesStatus::Execute(Game&) { RaiseNotAvailableYet(*this); }

void Command_InitTablebases::Execute(Game& game) {
  RequireForceMode(*this, game);
  RaiseNotAvailableYet(*this);
}

void Command_Contempt::Execute(Game& game) {
  RequireForceMode(*this, game);
  RaiseNotAvailableYet(*this);
}

void Command_DisplayPersonality::Execute(Game& game) {
  game.Protocol().DisplayPersonality();
  done = true;
}

void Command_SetPersonality::Execute(Game& game) {
  RequireForceMode(*this, game);
  const std::int32_t limited = std::clamp(value, -1000, 1000);
  if (limited != game.Protocol().personality) RaiseNotAvailableYet(*this);
  done = true;
}

// Turning pondering off ends a running ponder search without a move.
void Command_SetPondering::Execute(Game& game) {
  if (!pondering && game.search_state == SEARCH_STATE_PONDERING) game.AbortSearch(true);
  game.pondering = pondering;
  done = true;
}

void Command_SetOutput::Execute(Game& game) {
  game.Protocol().post = post;
  done = true;
}

void Command_Computer::Execute(Game& game) {
  game.tracker.opponent_is_computer = true;
  done = true;
}

// The opponent's record takes the name only if it still carries the default one.
void Command_Name::Execute(Game& game) {
  try {
    game.EngineAndOpponent().second->name = name;
  } catch (const no_match_engine_vs_standard_opponent&) {
  }
  Game::SetDefaultOpponentName(name);
  done = true;
}

void Command_Rating::Execute(Game& game) {
  if (engine_rating < 0 || opponent_rating < 0) Refuse(*this, "argument out of bounds");
  try {
    const auto [engine, opponent] = game.EngineAndOpponent();
    engine->rating = engine_rating;
    opponent->rating = opponent_rating;
  } catch (const no_match_engine_vs_standard_opponent&) {
  }
  Game::SetDefaultRatings(engine_rating, opponent_rating);
  done = true;
}

void Command_Id::Execute(Game& game) {
  game.Protocol().id = id;
  done = true;
}

void Command_ModifySettingVariables::Execute(Game& game) {
  RequireForceMode(*this, game);
  RaiseNotAvailableYet(*this);
}

void Command_ReadSearchSettings::Execute(Game& game) {
  RequireForceMode(*this, game);
  RaiseNotAvailableYet(*this);
}

void Command_WriteSearchSettings::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_DisplaySettingVariables::Execute(Game&) { RaiseNotAvailableYet(*this); }

// --- Information commands ---

void Command_SendSearchStatus::Execute(Game& game) {
  game.Protocol().ShowSearchStatus(game.RunningSearchReport());
  done = true;
}

void Command_Display::Execute(Game& game) {
  game.Protocol().DisplayBoard(game, true);
  done = true;
}
void Command_Eval::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_Help::Execute(Game& game) {
  game.Protocol().PrintHelp();
  done = true;
}

void Command_Version::Execute(Game& game) {
  game.Protocol().PrintVersion();
  done = true;
}

void Command_Ping::Execute(Game&) {
  Out << "pong " << argument << "\n";
  Out.Flush();
  done = true;
}

void Command_Probe::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_OptimizePiece::Execute(Game&) { RaiseNotAvailableYet(*this); }

// --- File commands ---

void Command_ReadFEN::Execute(Game& game) {
  RequireForceMode(*this, game);
  RaiseNotAvailableYet(*this);
}

void Command_ReadPGN::Execute(Game& game) {
  RequireForceMode(*this, game);
  RaiseNotAvailableYet(*this);
}

void Command_WriteFEN::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_WritePGN::Execute(Game&) { RaiseNotAvailableYet(*this); }

// --- Endgame database jobs ---

void Command_Generate::Execute(Game&) { RaiseNotAvailableYet(*this); }
void Command_Verify::Execute(Game&) { RaiseNotAvailableYet(*this); }

}  // namespace ZephrinInterfaces
