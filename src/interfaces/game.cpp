#include "interfaces/game.h"

#include <algorithm>

#include "frame/checked_assert.h"
#include "frame/control_exceptions.h"
#include "frame/tee_stream.h"
#include "frame/version.h"
#include "interfaces/command.h"
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

}  // namespace

Game::Game(std::unique_ptr<BasicProtocol> initial_protocol)
    : white(OpponentRecord()), black(EngineRecord(true)), protocol_(std::move(initial_protocol)) {
  CHECKED_ASSERT(protocol_ != nullptr, "game", "A game needs a protocol");
  search.search_finished = [this](MainLoop*, bool stopped_by_command) { SearchFinished(stopped_by_command); };
}

void Game::ReplaceProtocol(std::unique_ptr<BasicProtocol> new_protocol) {
  CHECKED_ASSERT(new_protocol != nullptr, "game", "A game needs a protocol");
  new_protocol->TakeOverFrom(*protocol_);
  protocol_ = std::move(new_protocol);
}

std::string Game::PlayGameMove(Move move) {
  const std::string text = MoveToText(Current(), move);
  clock.SwitchSides();
  PlayMove(move);
  hint = HINT_NONE;
  return text;
}

void Game::PlayEngineMove(Move move) { Protocol().ShowEngineMove(PlayGameMove(move)); }

void Game::PlayOpponentMove(Move move) { Out.WriteLogOnly("Opponent played: " + PlayGameMove(move)); }

void Game::RequestSearch(SearchKind kind) { RequestSearch(kind, *this); }

// In a ponder search the opponent is to move, so the engine's clock is the other one.
void Game::RequestSearch(SearchKind kind, const UserBoard& board) {
  search_request_received_exception request;
  SearchRequest& r = request.request;
  r.game = board;
  const auto from_clock = [&](const PlayerClock& player_clock) {
    const SearchTimeLimits limits = GameTimeLimits(player_clock);
    r.max_depth = sd_limit;
    r.max_time_limit = st_limit != 0 ? std::min(limits.max_time_limit, st_limit) : limits.max_time_limit;
    r.variable_time_limit = limits.variable_time_limit;
  };
  switch (kind) {
    case SearchKind::normal:
      r.type = SEARCH_NORMAL;
      from_clock(clock.clocks[clock.active]);
      break;
    case SearchKind::analyze:
      r.type = SEARCH_ANALYZE;
      break;
    case SearchKind::pondering:
      r.type = SEARCH_PONDERING;
      from_clock(clock.clocks[clock.active ^ 1]);
      break;
    case SearchKind::puzzle:
      r.type = SEARCH_PUZZLE;
      r.max_time_limit = hint_time;
      r.variable_time_limit = hint_time * 3 / 4;
      break;
  }
  throw request;
}

void Game::SearchFinished(bool stopped_by_command) {
  const int finished_state = search_state;
  search_state = SEARCH_STATE_IDLE;
  node_limit = 0;
  if (Protocol().FrontEndKeepsGame()) return ReportBestMove();
  if (stopped_by_command) {
    // A hint search that couldn't run (the game is over) leaves no move to show.
    if (finished_state == SEARCH_STATE_HINT && hint == HINT_REQUESTED) hint = HINT_NO_MOVE_KNOWN;
    return;
  }
  if (finished_state == SEARCH_STATE_THINKING) MoveFound();
  if (finished_state == SEARCH_STATE_HINT) HintFound();
}

// The search for the engine's move has ended: draw offers, the move, resigning, pondering.
void Game::MoveFound() {
  if (search.best_move == MOVE_INVALID) return;
  tracker.Update(Current(), search.score);
  if (tracker.draw_offered) {
    if (tracker.ShouldAcceptDraw()) {
      Protocol().AcceptDraw();
      if (Protocol().IsInteractive()) {
        SetResult(RESULT_DRAW, REASON_AGREEMENT);
        Protocol().ShowGameResult(RESULT_DRAW, REASON_AGREEMENT, GAME_MODE_PLAY);
        clock.Stop();
        return;
      }
    } else {
      Out.WriteLogOnly("Engine rejects draw offer");
      Protocol().RejectDraw(tracker.opponent_is_computer);
    }
    tracker.draw_offered = false;
  }
  PlayEngineMove(search.best_move);
  Protocol().BoardChanged(*this);
  if (IsFinished()) {
    Protocol().ShowGameResult(Current().result, Current().reason, GAME_MODE_PLAY);
    clock.Stop();
    return;
  }
  if (tracker.ShouldResign()) {
    Protocol().Resign();
    if (Protocol().IsInteractive()) {
      const int result = white.engine_plays ? RESULT_BLACK_WINS : RESULT_WHITE_WINS;
      SetResult(result, REASON_RESIGNATION);
      Protocol().ShowGameResult(result, REASON_RESIGNATION, GAME_MODE_PLAY);
      clock.Stop();
    }
  } else if (tracker.ShouldOfferDraw()) {
    Protocol().OfferDraw();
    tracker.moves_since_offer = 0;
  }
  if (IsFinished() || !pondering) return;
  if (search.pv.size() < 2) RequestSearch(SearchKind::puzzle);
  hint = search.pv[1].move;
  PonderOn(hint);
}

// When the front end keeps the game, every search ends in its move and the reply it expects, and
// the game stays as the front end set it.
void Game::ReportBestMove() {
  const bool reply_known = search.best_move != MOVE_INVALID && search.pv.size() >= 2 &&
                           search.pv[0].move == search.best_move;
  Protocol().ShowBestMove(search.best_move, reply_known ? search.pv[1].move : MOVE_INVALID);
}

// The hint search has ended: its move is the hint, and with pondering on the search goes on from it.
void Game::HintFound() {
  const Move old_hint = hint;
  hint = search.best_move != MOVE_INVALID ? search.best_move : HINT_NO_MOVE_KNOWN;
  if (old_hint == HINT_REQUESTED || !pondering || hint == HINT_NO_MOVE_KNOWN) return;
  PonderOn(hint);
}

void Game::StartPondering() {
  if (hint == HINT_NONE) RequestSearch(SearchKind::puzzle);
  if (hint == HINT_NO_MOVE_KNOWN || hint == HINT_REQUESTED) return;
  PonderOn(hint);
}

// The ponder search runs on a copy of the game with the expected reply played; there is nothing to
// ponder on if that reply ends the game, or can't be played at all.
void Game::PonderOn(Move expected_reply) {
  UserBoard expected = *this;
  try {
    expected.PlayMove(expected_reply);
  } catch (const UserBoard::invalid_move&) {
    return;
  }
  if (expected.IsFinished()) return;
  RequestSearch(SearchKind::pondering, expected);
}

void Game::PonderHit() {
  search.PonderHit();
  search_state = SEARCH_STATE_THINKING;
}

void Game::DisplayPosition(bool verbose) const { Current().Display(verbose); }

const SearchReport* Game::RunningSearchReport() const {
  if (IsFinished() || search_state == SEARCH_STATE_IDLE || !search.running) return nullptr;
  return &search.Report();
}

void Game::AbortSearch(bool stopped_by_command) const {
  if (search_state != SEARCH_STATE_IDLE) throw search_aborted_exception{stopped_by_command};
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
