#include "interfaces/game.h"

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

void DrawResignTracker::Reset() {
  const bool computer = opponent_is_computer;
  const std::int32_t kept_contempt = contempt;
  *this = DrawResignTracker();
  opponent_is_computer = computer;
  contempt = kept_contempt;
}

void DrawResignTracker::SetContempt(std::int32_t value) {
  if (value == contempt) return;
  contempt = value;
  Reset();
}

Game::Game(std::unique_ptr<BasicProtocol> initial_protocol)
    : white(OpponentRecord()), black(EngineRecord(true)), protocol_(std::move(initial_protocol)) {
  CHECKED_ASSERT(protocol_ != nullptr, "game", "A game needs a protocol");
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

// Searches arrive with the search driver; until then a request is refused in plain words.
void Game::RequestSearch(SearchKind) { throw ErrorCommand(ErrorCommand::ERROR, "not available yet", "search"); }

void Game::StartPondering() {
  if (hint == HINT_NO_MOVE_KNOWN || hint == HINT_REQUESTED) return;
  RequestSearch(hint == HINT_NONE ? SearchKind::puzzle : SearchKind::pondering);
}

void Game::PonderHit() { search_state = SEARCH_STATE_THINKING; }

void Game::DisplayPosition(bool verbose) const { Current().Display(verbose); }

// No search exists before the search driver is built, so there is never one to report.
const SearchReport* Game::RunningSearchReport() const { return nullptr; }

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
