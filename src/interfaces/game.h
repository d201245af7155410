// The game as the running program holds it: the game record, the protocol in force, the clocks,
// who plays which side, the game mode and the state of the search, and what the engine decides
// when a search is over. Commands execute against this object.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "board/types.h"
#include "interfaces/basic_protocol.h"
#include "interfaces/draw_resign_tracker.h"
#include "interfaces/game_clock.h"
#include "interfaces/user_board.h"
#include "search/search_request.h"

namespace ZephrinInterfaces {

constexpr int GAME_MODE_FORCE = 0;
constexpr int GAME_MODE_PLAY = 1;
constexpr int GAME_MODE_BOTH = 2;  // the engine plays both sides; no command reaches it
constexpr int GAME_MODE_ANALYZE = 3;

constexpr int SEARCH_STATE_IDLE = 0;
constexpr int SEARCH_STATE_THINKING = 1;
constexpr int SEARCH_STATE_PONDERING = 2;
constexpr int SEARCH_STATE_ANALYZING = 3;
constexpr int SEARCH_STATE_HINT = 4;

// Values of `hint` below the first real move word.
constexpr Move HINT_NONE = 0;
constexpr Move HINT_NO_MOVE_KNOWN = 1;
constexpr Move HINT_REQUESTED = 2;

struct Player {
  std::string name;
  std::int32_t rating = 0;
  bool is_engine = false;
  bool engine_plays = false;  // the engine makes this side's moves now
};

struct not_exactly_one_player_is_played_by_engine {};
struct no_match_engine_vs_standard_opponent {};

// What a finished search leaves for the game to act on.
struct SearchOutcome {
  Move best_move = MOVE_INVALID;  // 0 when there was no legal move
  std::int32_t score = 0;         // from the view of the side to move at the root
  std::vector<Move> pv;           // the principal variation, best_move first
};

class Game : public UserBoard {
 public:
  explicit Game(std::unique_ptr<BasicProtocol> initial_protocol);
  Game(const Game&) = delete;
  Game& operator=(const Game&) = delete;

  BasicProtocol& Protocol() const { return *protocol_; }
  // The new protocol takes over from the old one, which is deleted; the caller activates it.
  void ReplaceProtocol(std::unique_ptr<BasicProtocol> new_protocol);

  // Replaces the whole game record: moves, next moves and result.
  void SetBoard(const UserBoard& board) { UserBoard::operator=(board); }
  // Prints the current position through Out.
  void DisplayPosition(bool verbose) const;
  // The active clock belongs to the side to move again, after moves were taken back or replayed.
  void FollowSideToMove();

  // What `.` reports: the running search once its iterations have begun, else null.
  const SearchReport* RunningSearchReport() const;

  // Raises search_aborted_exception if a search is running; does nothing otherwise.
  void AbortSearch(bool stopped_by_command) const;
  // Raises search_request_received_exception with a request of the given SearchMode for a copy of
  // `board`, with the limits of this game's clocks.
  [[noreturn]] void RequestSearch(int mode, const UserBoard& board) const;
  [[noreturn]] void RequestSearch(int mode) const { RequestSearch(mode, *this); }
  // A search on the opponent's time: for the predicted move if one is known, else first a short
  // search to find one.
  void StartPondering() const;
  // The opponent played the move that the ponder search assumed: it goes on as a normal search.
  void PonderHit();

  // Plays a move of the current position with the clock switch; returns its SAN text.
  std::string PlayGameMove(Move move);
  // The move goes out through the protocol.
  void PlayEngineMove(Move move);
  // The move goes to the log only.
  void PlayOpponentMove(Move move);

  // Acts on the end of a search: plays the move, answers a draw offer, resigns or offers a draw,
  // stores a hint, and may request the next search (pondering).
  void SearchFinished(bool stopped_by_command, const SearchOutcome& outcome);

  // Stores the record of the side to move and the other one, and sets the game mode from them.
  void InstallPlayers(const Player& to_move, const Player& other, bool analyze);
  Player& PlayerOf(Color color) { return color == WHITE ? white : black; }
  const Player& PlayerOf(Color color) const { return color == WHITE ? white : black; }
  // A fresh record for the engine, with or without the move, and one for the default opponent.
  static Player EngineRecord(bool engine_plays);
  static Player OpponentRecord();
  // No side is played by the engine, in force mode.
  void ReleaseBothSides();
  // The colour whose record is the engine's; raises not_exactly_one_player_is_played_by_engine
  // unless exactly one is.
  Color EngineColor() const;
  // The engine's record and the opponent's, if exactly one side is the engine and the other carries
  // the default opponent name; raises no_match_engine_vs_standard_opponent otherwise.
  std::pair<Player*, Player*> EngineAndOpponent();

  // Program-wide defaults for records made later; `name` and `rating` change them.
  static const std::string& DefaultOpponentName();
  static void SetDefaultOpponentName(const std::string& name);
  static std::int32_t DefaultEngineRating();
  static std::int32_t DefaultOpponentRating();
  static void SetDefaultRatings(std::int32_t engine, std::int32_t opponent);

  GameClock clock;
  Player white;
  Player black;
  bool pondering = false;
  int search_state = SEARCH_STATE_IDLE;
  int game_mode = GAME_MODE_PLAY;
  std::int32_t st_limit = 0;   // milliseconds, 0 for none
  std::int32_t sd_limit = 0;   // iterations, 0 for none
  std::int32_t hint_time = 1000;
  Move hint = HINT_NONE;       // or the hint move, which is also the move pondered on
  DrawResignTracker tracker;

 private:
  void MoveSearchFinished(const SearchOutcome& outcome);
  void HintSearchFinished(const SearchOutcome& outcome);
  // Ends the game by agreement or resignation, as an interactive protocol does itself.
  void EndGame(int result, int reason);

  std::unique_ptr<BasicProtocol> protocol_;
};

}  // namespace ZephrinInterfaces
