// The game as the running program holds it: the game record, and what belongs to the running
// program: the protocol in force, the clocks, who plays which side, the game mode and the state of
// the search. Commands execute against this object.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "board/types.h"
#include "interfaces/basic_protocol.h"
#include "interfaces/draw_resign_tracker.h"
#include "interfaces/game_clock.h"
#include "interfaces/user_board.h"
#include "search/search.h"

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

// What a search is asked to do.
enum class SearchKind { normal, analyze, pondering, puzzle };

struct Player {
  std::string name;
  std::int32_t rating = 0;
  bool is_engine = false;
  bool engine_plays = false;  // the engine makes this side's moves now
};

struct not_exactly_one_player_is_played_by_engine {};
struct no_match_engine_vs_standard_opponent {};

class Game : public UserBoard {
 public:
  explicit Game(std::unique_ptr<BasicProtocol> initial_protocol);
  Game(const Game&) = delete;
  Game& operator=(const Game&) = delete;

  BasicProtocol& Protocol() const { return *protocol_; }
  // The new protocol takes over from the old one, which is deleted; the caller activates it.
  void ReplaceProtocol(std::unique_ptr<BasicProtocol> new_protocol);

  // Prints the current position through Out.
  void DisplayPosition(bool verbose) const;

  // Replaces the game record as a whole: a new position or a game read from a file.
  void ReplaceGame(const UserBoard& game) { static_cast<UserBoard&>(*this) = game; }

  // Plays a move of the current position: its text in SAN, which is returned, the clocks switch
  // sides, and the hint is forgotten.
  std::string PlayGameMove(Move move);
  // The same, and the move goes to the front end.
  void PlayEngineMove(Move move);
  // The same, and the move goes to the log.
  void PlayOpponentMove(Move move);

  // Raises search_request_received_exception with a request of the kind for `board`, by default
  // the current game.
  [[noreturn]] void RequestSearch(SearchKind kind);
  [[noreturn]] void RequestSearch(SearchKind kind, const UserBoard& board);
  // The end of each search: plays the move found, decides about draws and resigning, and may ask
  // for the next search (pondering). With `stopped_by_command` nothing is played.
  void SearchFinished(bool stopped_by_command);
  // Starts the search on the opponent's time: a hint search when no reply is known, else a ponder
  // search on the position after the expected reply.
  void StartPondering();
  // The opponent played the move the ponder search expected: it goes on as a search for a move.
  void PonderHit();

  // What `.` reports: the running search once its iterations have begun, else null.
  const SearchReport* RunningSearchReport() const;

  // Raises search_aborted_exception if a search is running; does nothing otherwise.
  void AbortSearch(bool stopped_by_command) const;

  // Stores the record of the side to move and the other one, and sets the game mode from them.
  void InstallPlayers(const Player& to_move, const Player& other, bool analyze);
  Player& PlayerOf(Color color) { return color == WHITE ? white : black; }
  // A fresh record for the engine, with or without the move, and one for the default opponent.
  static Player EngineRecord(bool engine_plays);
  static Player OpponentRecord();
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
  std::uint64_t node_limit = 0;  // a normal search stops at its first poll past it; 0 for none
  Move hint = HINT_NONE;
  DrawResignTracker tracker;
  Search search;

 private:
  void MoveFound();
  void ReportBestMove();
  void HintFound();
  void PonderOn(Move expected_reply);

  std::unique_ptr<BasicProtocol> protocol_;
};

}  // namespace ZephrinInterfaces
