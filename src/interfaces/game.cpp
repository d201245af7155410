#include "interfaces/game.h"

#include <algorithm>

#include "frame/checked_assert.h"
#include "frame/control_exceptions.h"
#include "frame/tee_stream.h"
#include "frame/version.h"
#include "interfaces/move_text.h"

namespace ZephrinInterfaces {

namespace {

// The program-wide defaults for player records made later.
struct PlayerDefaults {
  std::string opponent_name = "Incognito";
  std::int32_t engine_rating = 0;
  std::int32_t opponent_rating = 0;
};

PlayerDefaults& Defaults() {
  static PlayerDefaults defaults;
  return defaults;
}

// A copy of the game record with one more move; false if the move can't be played there.
bool WithMovePlayed(const UserBoard& board, Move move, UserBoard& copy) {
  copy = board;
  try {
    copy.PlayMove(move);
  } catch (const UserBoard::invalid_move&) {
    return false;
  }
  return true;
}

}  // namespace

Game::Game(std::unique_ptr<BasicProtocol> initial_protocol)
    : white(OpponentRecord()), black(EngineRecord(true)), protocol_(std::move(initial_protocol)) {
  CHECKED_ASSERT(protocol_ != nullptr, "game", "A game needs a protocol");
}

void Game::ReplaceProtocol(std::unique_ptr<BasicProtocol> new_protocol) {
  CHECKED_ASSERT(new_protocol != nullptr, "game", "A game needs a protocol");
  new_protocol->TakeOverFrom(*protocol_);
  protocol_ = std::move(new_protocol);
}

void Game::DisplayPosition(bool verbose) const { Current().Display(verbose); }

void Game::FollowSideToMove() { clock.active = SideToMove(); }

// The search driver reports through its own object; until it is part of the game there is never
// a running search to report on.
const SearchReport* Game::RunningSearchReport() const { return nullptr; }

void Game::AbortSearch(bool stopped_by_command) const {
  if (search_state != SEARCH_STATE_IDLE) throw search_aborted_exception{stopped_by_command};
}

void Game::RequestSearch(int mode, const UserBoard& board) const {
  auto request = std::make_shared<SearchRequest>();
  request->type = mode;
  request->game = board;
  const auto limit_by_clock = [this, &request](const PlayerClock& player_clock) {
    const SearchTimeLimits limits = TimeLimits(player_clock);
    request->max_depth = sd_limit;
    request->max_time_limit = limits.max_time_limit;
    if (st_limit != 0) request->max_time_limit = std::min(request->max_time_limit, st_limit);
    request->variable_time_limit = limits.variable_time_limit;
  };
  switch (mode) {
    case SEARCH_NORMAL:
      limit_by_clock(clock.clocks[clock.active]);
      break;
    case SEARCH_PONDERING:
      // The opponent is to move, so the engine's clock is the one not active.
      limit_by_clock(clock.clocks[clock.active ^ 1]);
      break;
    case SEARCH_PUZZLE:
      request->max_time_limit = hint_time;
      request->variable_time_limit = std::int32_t(hint_time * 0.75);
      break;
    default:  // analysis runs until a command ends it
      break;
  }
  throw search_request_received_exception{std::move(request)};
}

void Game::StartPondering() const {
  if (hint == HINT_NONE) RequestSearch(SEARCH_PUZZLE);
  if (hint == HINT_NO_MOVE_KNOWN || hint == HINT_REQUESTED) return;
  UserBoard predicted;
  if (WithMovePlayed(*this, hint, predicted)) RequestSearch(SEARCH_PONDERING, predicted);
}

// The search object joins the game with the search driver; the state already says "thinking".
void Game::PonderHit() { search_state = SEARCH_STATE_THINKING; }

std::string Game::PlayGameMove(Move move) {
  const std::string text = MoveToText(Current(), move, NOTATION_SAN);
  PlayMove(move);
  clock.SwitchSides();
  hint = HINT_NONE;
  return text;
}

void Game::PlayEngineMove(Move move) { protocol_->ShowEngineMove(PlayGameMove(move)); }

void Game::PlayOpponentMove(Move move) { Out.WriteLogOnly(PlayGameMove(move)); }

void Game::SearchFinished(bool stopped_by_command, const SearchOutcome& outcome) {
  const int finished_state = search_state;
  search_state = SEARCH_STATE_IDLE;
  if (stopped_by_command) return;
  if (finished_state == SEARCH_STATE_THINKING) MoveSearchFinished(outcome);
  if (finished_state == SEARCH_STATE_HINT) HintSearchFinished(outcome);
}

void Game::EndGame(int result, int reason) {
  SetResult(result, reason);
  protocol_->ShowGameResult(result, reason, GAME_MODE_PLAY);
  clock.Stop();
}

void Game::MoveSearchFinished(const SearchOutcome& outcome) {
  tracker.Update(Current(), outcome.score);
  if (tracker.draw_offered) {
    if (tracker.ShouldAcceptDraw()) {
      protocol_->AcceptDraw();
      if (protocol_->IsInteractive()) {
        EndGame(RESULT_DRAW, REASON_AGREEMENT);
        return;
      }
    } else {
      Out.WriteLogOnly("Engine rejects draw offer");
      protocol_->RejectDraw(tracker.opponent_is_computer);
    }
    tracker.draw_offered = false;
  }

  PlayEngineMove(outcome.best_move);
  protocol_->BoardChanged(*this);
  if (IsFinished()) {
    protocol_->ShowGameResult(Current().result, Current().reason, GAME_MODE_PLAY);
    clock.Stop();
    return;
  }

  if (tracker.ShouldResign()) {
    protocol_->Resign();
    if (protocol_->IsInteractive()) EndGame(white.engine_plays ? RESULT_BLACK_WINS : RESULT_WHITE_WINS, REASON_RESIGNATION);
  } else if (tracker.ShouldOfferDraw()) {
    protocol_->OfferDraw();
    tracker.moves_since_offer = 0;
  }
  if (IsFinished() || !pondering) return;

  if (outcome.pv.size() < 2) RequestSearch(SEARCH_PUZZLE);
  hint = outcome.pv[1];
  UserBoard predicted;
  if (WithMovePlayed(*this, hint, predicted)) RequestSearch(SEARCH_PONDERING, predicted);
}

void Game::HintSearchFinished(const SearchOutcome& outcome) {
  const Move previous = hint;
  hint = outcome.best_move != MOVE_INVALID ? outcome.best_move : HINT_NO_MOVE_KNOWN;
  // A hint that `hint` waits for is shown by it; pondering needs a move.
  if (previous == HINT_REQUESTED || !pondering || outcome.best_move == MOVE_INVALID) return;
  UserBoard predicted;
  if (!WithMovePlayed(*this, outcome.best_move, predicted) || predicted.IsFinished()) return;
  RequestSearch(SEARCH_PONDERING, predicted);
}

void Game::InstallPlayers(const Player& to_move, const Player& other, bool analyze) {
  PlayerOf(SideToMove()) = to_move;
  PlayerOf(SideToMove() ^ 1) = other;
  const int engines = int{white.engine_plays} + int{black.engine_plays};
  if (analyze) {
    game_mode = GAME_MODE_ANALYZE;
  } else {
    game_mode = engines == 0 ? GAME_MODE_FORCE : engines == 1 ? GAME_MODE_PLAY : GAME_MODE_BOTH;
  }
}

Player Game::EngineRecord(bool engine_plays) {
  return Player{ProgramName(), Defaults().engine_rating, true, engine_plays};
}

Player Game::OpponentRecord() { return Player{Defaults().opponent_name, Defaults().opponent_rating, false, false}; }

void Game::ReleaseBothSides() {
  white.engine_plays = false;
  black.engine_plays = false;
  game_mode = GAME_MODE_FORCE;
}

Color Game::EngineColor() const {
  if (white.is_engine == black.is_engine) throw not_exactly_one_player_is_played_by_engine();
  return white.is_engine ? WHITE : BLACK;
}

std::pair<Player*, Player*> Game::EngineAndOpponent() {
  if (white.is_engine == black.is_engine) throw no_match_engine_vs_standard_opponent();
  Player& engine = white.is_engine ? white : black;
  Player& opponent = white.is_engine ? black : white;
  if (opponent.name != Defaults().opponent_name) throw no_match_engine_vs_standard_opponent();
  return {&engine, &opponent};
}

const std::string& Game::DefaultOpponentName() { return Defaults().opponent_name; }
void Game::SetDefaultOpponentName(const std::string& name) { Defaults().opponent_name = name; }
std::int32_t Game::DefaultEngineRating() { return Defaults().engine_rating; }
std::int32_t Game::DefaultOpponentRating() { return Defaults().opponent_rating; }
void Game::SetDefaultRatings(std::int32_t engine, std::int32_t opponent) {
  Defaults().engine_rating = engine;
  Defaults().opponent_rating = opponent;
}

}  // namespace ZephrinInterfaces
