#include "interfaces/commands.h"

#include <algorithm>
#include <cctype>

#include "evaluation/evaluation.h"
#include "evaluation/evaluation_settings.h"
#include "evaluation/personalities.h"
#include "frame/checked_assert.h"
#include "frame/control_exceptions.h"
#include "frame/input.h"
#include "frame/tee_stream.h"
#include "hash/hash.h"
#include "bitbases/bitbase_files.h"
#include "frame/time_stamp.h"
#include "interfaces/basic_protocol.h"
#include "interfaces/bitbase_jobs.h"
#include "interfaces/console_protocol.h"
#include "interfaces/edit_mode.h"
#include "interfaces/game.h"
#include "interfaces/game_files.h"
#include "interfaces/move_text.h"
#include "interfaces/time_control.h"
#include "interfaces/xboard_protocol.h"
#include "settings/settings_commands.h"

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

// The engine plays neither side any more, and the game goes on in `mode`.
void ReleaseBothSides(Game& game, int mode) {
  game.white.engine_plays = false;
  game.black.engine_plays = false;
  game.game_mode = mode;
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

void Command_New::Execute(Game& game) {
  game.AbortSearch(true);
  game.Reset();
  game.clock.Reset(WHITE);
  game.tracker.Reset();
  game.hint = HINT_NONE;
  game.st_limit = 0;
  game.sd_limit = 0;
  game.Protocol().BoardChanged(game);
  if (game.game_mode == GAME_MODE_ANALYZE) {
    game.InstallPlayers(Game::EngineRecord(false), Game::OpponentRecord(), true);
    done = true;
    game.RequestSearch(SearchKind::analyze);
  }
  game.white = Game::OpponentRecord();
  game.black = Game::EngineRecord(true);
  game.game_mode = GAME_MODE_PLAY;
  done = true;
}

void Command_Force::Execute(Game& game) {
  game.AbortSearch(true);
  game.clock.Stop();
  ReleaseBothSides(game, GAME_MODE_FORCE);
  done = true;
}

void Command_Go::Execute(Game& game) {
  if (game.search_state == SEARCH_STATE_THINKING || game.search_state == SEARCH_STATE_ANALYZING) {
    Refuse(*this, "command not legal now");
  }
  game.AbortSearch(true);
  game.InstallPlayers(Game::EngineRecord(true), Game::OpponentRecord(), false);
  game.clock.Start();
  game.tracker.Reset();
  done = true;
  game.RequestSearch(SearchKind::normal);
}

void Command_Playother::Execute(Game& game) {
  if (game.IsFinished()) Refuse(*this, "game over");
  game.AbortSearch(true);
  game.InstallPlayers(Game::OpponentRecord(), Game::EngineRecord(true), false);
  game.clock.Start();
  game.tracker.Reset();
  done = true;
  if (game.pondering) game.StartPondering();
}

// `white` means White to move with the engine playing Black, and the clocks stopped.
void Command_SetSide::Execute(Game& game) {
  const bool change = side != game.SideToMove();
  UserBoard changed;
  if (change) {
    try {
      changed = game.WithSideChanged();
    } catch (const UserBoard::invalid_board_after_changing_side&) {
      Refuse(*this, "cannot change sides");
    }
  }
  game.AbortSearch(true);
  if (change) {
    game.ReplaceGame(changed);
    game.hint = HINT_NONE;
  }
  game.clock.Stop();
  game.clock.active = side;
  game.InstallPlayers(Game::OpponentRecord(), Game::EngineRecord(true), false);
  done = true;
}

void Command_Analyze::Execute(Game& game) {
  if (game.IsFinished() && !game.Protocol().AnalyzesFinishedGames()) {
    game.Protocol().ShowCommandIgnored("game over");
    done = true;
    return;
  }
  game.AbortSearch(true);
  game.clock.Stop();
  ReleaseBothSides(game, GAME_MODE_ANALYZE);
  done = true;
  game.RequestSearch(SearchKind::analyze);
}

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

// A running search works on its own copy of the game, so the move is played at once; a search
// that didn't expect it is aborted and the command runs again without playing it twice.
void Command_Move::Execute(Game& game) {
  if (!validated) {
    if (ParseMove(game.Current(), move_text, move) != PARSE_OK) {
      throw ErrorCommand(ErrorCommand::ILLEGAL_MOVE, "", input);
    }
    if (game.search_state == SEARCH_STATE_THINKING) Refuse(*this, "it is not your turn now");
    expected = game.hint;
    game.PlayOpponentMove(move);
    game.Protocol().BoardChanged(game);
    if (game.game_mode == GAME_MODE_PLAY) game.clock.Start();
    validated = true;
  }
  if (game.IsFinished()) {
    game.AbortSearch(true);
    game.Protocol().ShowGameResult(game.Current().result, game.Current().reason, game.game_mode);
    game.clock.Stop();
    done = true;
    if (game.game_mode == GAME_MODE_ANALYZE && game.Protocol().AnalyzesFinishedGames()) {
      game.RequestSearch(SearchKind::analyze);
    }
    ReleaseBothSides(game, GAME_MODE_FORCE);
    return;
  }
  if (game.search_state == SEARCH_STATE_PONDERING && move == expected) {
    game.PonderHit();
    game.Protocol().ShowPredictedMove(move_text);
    done = true;
    return;
  }
  game.AbortSearch(true);
  done = true;
  if (game.game_mode == GAME_MODE_PLAY) game.RequestSearch(SearchKind::normal);
  if (game.game_mode == GAME_MODE_ANALYZE) game.RequestSearch(SearchKind::analyze);
}

namespace {

bool InForceOrAnalyzeMode(const Game& game) {
  return game.game_mode == GAME_MODE_FORCE || game.game_mode == GAME_MODE_ANALYZE;
}

}  // namespace

void Command_Undo::Execute(Game& game) {
  if (game.Moves().empty()) Refuse(*this, "no move to undo");
  if (count <= 0) Refuse(*this, "argument out of bounds");
  if (!InForceOrAnalyzeMode(game)) Refuse(*this, "must be in force mode");
  game.AbortSearch(true);
  if (count == ALL_MOVES) {
    game.UndoAll();
  } else {
    for (std::int32_t left = count; left > 0; --left) {
      if (game.Moves().empty()) {
        game.Protocol().TellUser("could not undo " + std::to_string(left) +
                                 " move(s), because start position has been reached");
        break;
      }
      game.UndoMove();
    }
  }
  game.clock.active = game.SideToMove();  // the active clock is the side to move's
  game.hint = HINT_NONE;
  game.Protocol().BoardChanged(game);
  done = true;
  if (game.game_mode == GAME_MODE_ANALYZE) game.RequestSearch(SearchKind::analyze);
}

// Two moves back: legal when the engine isn't to move.
void Command_Remove::Execute(Game& game) {
  if (!validated) {
    const bool engine_to_move = game.PlayerOf(game.SideToMove()).engine_plays;
    if (game.game_mode != GAME_MODE_FORCE && (game.game_mode != GAME_MODE_PLAY || engine_to_move)) {
      Refuse(*this, "command not legal now");
    }
    if (game.Moves().size() < 2) Refuse(*this, "no moves to remove");
    game.UndoTwoMoves();
    game.hint = HINT_NONE;
    game.Protocol().BoardChanged(game);
    validated = true;
  }
  game.AbortSearch(true);
  done = true;
  if (game.game_mode == GAME_MODE_PLAY && game.pondering) game.StartPondering();
}

void Command_Next::Execute(Game& game) {
  if (game.NextMoves().empty()) Refuse(*this, "next move buffer is empty");
  if (count <= 0) Refuse(*this, "argument out of bounds");
  if (!InForceOrAnalyzeMode(game)) Refuse(*this, "must be in force mode");
  game.AbortSearch(true);
  if (count == ALL_MOVES) {
    game.PlayAllNext();
  } else {
    for (std::int32_t left = count; left > 0; --left) {
      if (game.NextMoves().empty()) {
        game.Protocol().TellUser(std::to_string(left) + " move(s) could not be made, because next move buffer is empty");
        break;
      }
      game.PlayNext();
    }
  }
  game.clock.active = game.SideToMove();
  game.Protocol().BoardChanged(game);
  if (game.game_mode == GAME_MODE_ANALYZE) {
    if (!game.IsFinished()) {
      done = true;
      game.RequestSearch(SearchKind::analyze);
    }
    game.clock.Stop();
    ReleaseBothSides(game, GAME_MODE_FORCE);
  }
  done = true;
}

namespace {

// The reason of a result, from the comment in braces of the raw line.
int ResultReason(const std::string& result, const std::string& line) {
  if (result == "*") return REASON_ABORTED;
  const std::size_t open = line.find('{');
  if (open == std::string::npos) return REASON_UNKNOWN;
  const std::size_t close = line.find('}', open + 1);
  if (close == std::string::npos || close - open >= 512) return REASON_UNKNOWN;
  std::string comment = line.substr(open + 1, close - open - 1);
  for (char& c : comment) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const auto has = [&comment](const char* word) { return comment.find(word) != std::string::npos; };
  if (result == "1/2-1/2" && (has("agree") || has("mutal"))) return REASON_AGREEMENT;
  if (has("time")) return REASON_TIME;
  if (has("resign")) return REASON_RESIGNATION;
  return REASON_UNKNOWN;
}

int ResultCode(const std::string& result) {
  if (result == "1-0") return RESULT_WHITE_WINS;
  if (result == "0-1") return RESULT_BLACK_WINS;
  if (result == "1/2-1/2") return RESULT_DRAW;
  return RESULT_UNFINISHED;
}

}  // namespace

void Command_Result::Execute(Game& game) {
  game.AbortSearch(true);
  game.clock.Stop();
  ReleaseBothSides(game, GAME_MODE_FORCE);
  if (game.IsFinished()) {
    game.Protocol().ShowCommandIgnored("game over");
  } else {
    game.SetResult(ResultCode(result), ResultReason(result, input));
  }
  done = true;
}

void Command_Draw::Execute(Game& game) {
  if (game.IsFinished()) Refuse(*this, "game over");
  if (game.game_mode != GAME_MODE_PLAY) Refuse(*this, "command not legal now");
  game.Protocol().ConsiderDraw(game.tracker.opponent_is_computer);
  game.tracker.draw_offered = true;
  done = true;
}

// A hint comes from the reply that the last search expected, or from a short search of its own,
// after which this command runs again to show it.
void Command_Hint::Execute(Game& game) {
  if (game.hint == HINT_NONE && game.search_state != SEARCH_STATE_IDLE) Refuse(*this, "command not legal now");
  CHECKED_ASSERT(game.hint != HINT_REQUESTED, "commands", "Unfinished hint request detected!");
  if (game.hint == HINT_NONE) {
    game.hint = HINT_REQUESTED;
    game.RequestSearch(SearchKind::puzzle);
  }
  game.Protocol().ShowHint(game.hint == HINT_NO_MOVE_KNOWN ? "" : MoveToText(game.Current(), game.hint));
  done = true;
}

void Command_SetupBoardCommands::Execute(Game& game) {
  if (outcome < 0) {
    if (!InForceOrAnalyzeMode(game)) Refuse(*this, "must be in force mode");
    outcome = PrepareBoard(game, board);
  }
  if (outcome == CANCELLED) {
    game.Protocol().ShowEditAborted();
  } else if (outcome == INVALID && game.Protocol().IsInteractive()) {
    game.Protocol().ShowCommandIgnored("Illegal position");
  } else if (outcome == INVALID) {
    // A front end expects the position to change: it becomes the two kings alone.
    game.AbortSearch(true);
    game.Protocol().TellUser("Illegal position");
    UserBoard kings;
    kings.SetFromFen(game.SideToMove() == WHITE ? "4k3/8/8/8/8/8/8/4K3 w - - 0 1" : "4k3/8/8/8/8/8/8/4K3 b - - 0 1");
    game.ReplaceGame(kings);
    game.hint = HINT_NONE;
  } else {
    game.AbortSearch(true);
    game.ReplaceGame(board);
    game.hint = HINT_NONE;
    game.tracker.Reset();
    game.Protocol().BoardChanged(game);
    game.clock.Reset(game.SideToMove());
    done = true;
    if (game.game_mode == GAME_MODE_ANALYZE) game.RequestSearch(SearchKind::analyze);
  }
  done = true;
}

int Command_Setboard::PrepareBoard(Game& game, UserBoard& prepared) {
  try {
    prepared.SetFromFen(fen);
    return ACCEPTED;
  } catch (const UserBoard::io_error&) {
    game.Protocol().ShowCommandIgnored("input inconsistent with FEN standard");
  } catch (const UserBoard::invalid_position&) {
  }
  return INVALID;
}

static_assert(Command_SetupBoardCommands::ACCEPTED == SETUP_ACCEPTED && Command_SetupBoardCommands::INVALID == SETUP_INVALID &&
              Command_SetupBoardCommands::CANCELLED == SETUP_CANCELLED);

// Nothing else runs while the edit loop reads its own lines.
int Command_Edit::PrepareBoard(Game& game, UserBoard& prepared) {
  return RunEditLoop(game.Protocol(), game.Current(), prepared, [] { return ::ReadLine(); });
}

void Command_Quit::Execute(Game& game) {
  game.AbortSearch(true);
  done = true;
  throw quit_command_received_exception();
}

// --- Clock commands ---

void Command_Level::Execute(Game& game) {
  try {
    const TimeControlList controls = LevelControls(moves, base_ms, increment_ms);
    game.clock.SetControls(controls, controls, game.SideToMove());
  } catch (const time_control_error& error) {
    Refuse(*this, error.what());
  }
  done = true;
}

void Command_Tc::Execute(Game& game) {
  try {
    const TimeControlPair controls = ParseTimeControlText(text);
    game.clock.SetControls(controls.white, controls.black, game.SideToMove());
  } catch (const time_control_error& error) {
    Refuse(*this, error.what());
  }
  done = true;
}

void Command_st::Execute(Game& game) {
  game.st_limit = static_cast<std::int32_t>(std::min<std::int64_t>(std::int64_t{seconds} * 1000, INT32_MAX));
  done = true;
}

void Command_sd::Execute(Game& game) {
  if (depth < 0) Refuse(*this, "argument out of bounds");
  game.sd_limit = depth;
  done = true;
}

namespace {

// The clock of the engine, or of the side to move when the engine doesn't play exactly one side.
Color EngineClockColor(const Game& game) {
  try {
    return game.EngineColor();
  } catch (const not_exactly_one_player_is_played_by_engine&) {
    return game.SideToMove();
  }
}

// Sets a clock's time from centiseconds; a running stopwatch and a running search are left alone.
void SetClockTime(Game& game, Color color, std::int32_t centiseconds) {
  game.clock.clocks[color].ms_left = std::int64_t{centiseconds} * 10;
  Out.WriteLogOnly(ClockStateText(game.clock, game.white.engine_plays, game.black.engine_plays));
}

}  // namespace

void Command_Time::Execute(Game& game) {
  SetClockTime(game, EngineClockColor(game), centiseconds);
  done = true;
}

void Command_Otim::Execute(Game& game) {
  SetClockTime(game, EngineClockColor(game) ^ 1, centiseconds);
  done = true;
}

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

void Command_Contempt::Execute(Game& game) {
  RequireForceMode(*this, game);
  const std::int32_t limited = std::clamp(value, -32767, 32767);
  if (limited != game.tracker.contempt) {
    game.search.SetDrawScore(limited);
    game.tracker.SetContempt(limited);
  }
  done = true;
}

void Command_DisplayPersonality::Execute(Game& game) {
  game.Protocol().DisplayPersonality();
  done = true;
}

void Command_SetPersonality::Execute(Game& game) {
  RequireForceMode(*this, game);
  const int limited = LimitPersonality(value);
  if (limited != game.Protocol().personality) {
    SetPersonality(EvalSettings, limited);
    game.Protocol().personality = static_cast<std::int16_t>(limited);
  }
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
  if (const auto failure = OptimizeInterface::ModifySearchSettings(text)) Refuse(*this, *failure);
  done = true;
}

void Command_ReadSearchSettings::Execute(Game& game) {
  RequireForceMode(*this, game);
  if (const auto failure = OptimizeInterface::ReadSearchSettings(file)) Refuse(*this, *failure);
  done = true;
}

void Command_WriteSearchSettings::Execute(Game&) {
  if (const auto failure = OptimizeInterface::WriteSearchSettings(file)) Refuse(*this, *failure);
  done = true;
}

void Command_DisplaySettingVariables::Execute(Game&) {
  if (const auto failure = OptimizeInterface::DisplaySearchSettings(text)) Refuse(*this, *failure);
  done = true;
}

// --- Information commands ---

void Command_SendSearchStatus::Execute(Game& game) {
  game.Protocol().ShowSearchStatus(game.RunningSearchReport());
  done = true;
}

void Command_Display::Execute(Game& game) {
  game.Protocol().DisplayBoard(game, true);
  done = true;
}
void Command_Eval::Execute(Game& game) {
  Out << EvaluationCommandText(game.Current(), game.Protocol().personality);
  Out.Flush();
  done = true;
}
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


// --- File commands ---

void Command_ReadFEN::Execute(Game& game) {
  RequireForceMode(*this, game);
  try {
    game.ReplaceGame(LoadFen(file));
  } catch (const game_file_error& error) {
    Refuse(*this, error.Text());
  }
  game.hint = HINT_NONE;
  game.Protocol().BoardChanged(game);
  done = true;
}

void Command_ReadPGN::Execute(Game& game) {
  RequireForceMode(*this, game);
  PgnTags tags;
  try {
    game.ReplaceGame(LoadPgn(file, tags));
  } catch (const game_file_error& error) {
    Refuse(*this, error.Text());
  }
  game.hint = HINT_NONE;
  game.Protocol().BoardChanged(game);
  game.Protocol().ShowPgnTags(tags);
  done = true;
}

void Command_WriteFEN::Execute(Game& game) {
  try {
    SaveFen(file, game);
  } catch (const game_file_error& error) {
    Refuse(*this, error.Text());
  }
  done = true;
}

void Command_WritePGN::Execute(Game& game) {
  try {
    SavePgn(file, game, game.white.name, game.black.name);
  } catch (const game_file_error& error) {
    Refuse(*this, error.Text());
  }
  done = true;
}

// --- Endgame database jobs ---

namespace {

// The jobs of a generate or verify command; an empty list prints what there is.
std::vector<std::unique_ptr<AbstractJob>> JobsOf(const Command& command, const Game& game, const std::string& words,
                                                 bool generation) {
  if (words.empty()) return {};
  RequireForceMode(command, game);
  return generation ? MakeGenerationJobs(words, command.input) : MakeVerificationJobs(words, command.input);
}

std::int64_t MillisecondsSince(const TimeStamp& start) {
  TimeStamp now;
  Now(now);
  return MillisecondsBetween(start, now);
}

}  // namespace

// Each job makes one file; the bitbases are loaded again at the end, so that new files count at once.
void Command_Generate::Execute(Game& game) {
  const auto list = JobsOf(*this, game, jobs, true);
  done = true;
  if (list.empty()) {
    Out << "List of available generation jobs:\n" << ALL_GENERATION_JOBS << "\n";
    return;
  }
  for (const auto& job : list) {
    TimeStamp start;
    Now(start);
    Out << job->description() << "...";
    try {
      if (job->execute()) Out << "skipped (file already exists)\n";
      else Out << "done (" << double(MillisecondsSince(start)) * 0.001 << " sec)\n";
    } catch (const AbstractJob::JobFailedException& failure) {
      Out << "failed\n";
      throw ErrorCommand(ErrorCommand::ERROR, failure.what(), input);
    }
  }
  Out << "Generation finished. Reloading bitbases.\n";
  LoadBitbases();
}

void Command_Verify::Execute(Game& game) {
  const auto list = JobsOf(*this, game, jobs, false);
  done = true;
  if (list.empty()) {
    Out << "List of available verification jobs:\n" << ALL_VERIFICATION_JOBS << "\n";
    return;
  }
  TimeStamp start;
  Now(start);
  for (const auto& job : list) {
    try {
      job->execute();
    } catch (const AbstractJob::JobFailedException& failure) {
      Out << "failed\n";
      throw ErrorCommand(ErrorCommand::ERROR, failure.what(), input);
    }
  }
  Out << "Verification finished (" << MillisecondsSince(start) << "ms total).\n";
}

}  // namespace ZephrinInterfaces
