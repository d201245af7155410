// The search driver: turns one search request into a best move, a score and a principal
// variation. Every call of the node function is a zero-window test; the value of each root move
// is found by a bisection over such tests, and the root moves are ordered best first.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "frame/time_stamp.h"
#include "interfaces/search_report.h"
#include "interfaces/user_board.h"
#include "search/search_request.h"
#include "search/search_tree.h"
#include "search/time_allocator.h"

struct MainLoop;

enum FailState : std::int32_t { FAIL_NONE = 0, FAIL_LOW = 1, FAIL_HIGH = 2 };

// The bisection of a root move may stop when its bounds are within 20 of each other, unless the
// window touches the draw score or the mate range, where only meeting bounds settle the value.
// Gives the value to settle on in `value`.
bool BisectionSettled(int lower, int upper, int draw_score, int& value);

struct RootMove {
  Move move = 0;
  std::string text;         // SAN, made once when the list is built
  std::vector<Move> line;   // the variation last found for this move, the move first
};

struct PvMove {
  Move move = 0;
  std::string text;
};

class Search {
 public:
  Search();
  ~Search();
  Search(const Search&) = delete;
  Search& operator=(const Search&) = delete;

  // Runs the search of the request and tells the owner through SearchFinished. Without an owner
  // (tools, tests) nothing is reported, no input is read and nobody is told.
  void RunSearch(const SearchRequest& request, MainLoop* owner_loop);

  // A new contempt value: handed to the evaluator, and the tables that hold scores are cleared.
  void SetDrawScore(std::int32_t value);
  // The predicted move was played: think on as a normal search.
  void PonderHit();
  // Milliseconds since the start, less 30% of the time spent before a ponder hit.
  std::int64_t ElapsedMs() const;
  // Reads input and asks the clock; renews the countdown if one is given. May throw
  // search_aborted_exception.
  void PollSearch(std::uint64_t* countdown);
  // The tree's poll: its node count is taken over first.
  void PollFromTree();

  // What the protocols report, refreshed at each call.
  const ZephrinInterfaces::SearchReport& Report() const;

  // Told once at the end of each RunSearch, with whether a command ended the search (no move is to
  // be played then). The game layer installs its SearchFinished here.
  std::function<void(MainLoop*, bool)> search_finished;

  bool no_moves = true;
  std::uint16_t move_count = 0;
  std::uint16_t moves_left = 0;
  std::uint16_t depth = 0;
  std::uint64_t nodes = 0;
  std::int32_t fail_state = FAIL_NONE;
  Move current_move = 0;
  std::string current_move_text = "invalid";
  Move best_move = 0;
  std::vector<PvMove> pv;
  std::int32_t score = 0;
  TimeStamp start_time;
  TimeStamp stop_time;
  TimeStamp ponder_hit_time;
  bool running = false;
  std::int32_t mode = SEARCH_NORMAL;
  std::int32_t max_depth = 0;
  std::int32_t max_time_limit = 0;
  std::int32_t variable_time_limit = 0;
  UserBoard game;
  std::int32_t draw_score = 0;
  std::int32_t iteration = 0;
  bool searching_pv_move = false;
  std::vector<std::unique_ptr<RootMove>> root_moves;
  std::unique_ptr<SearchTree> tree;
  TimeAllocator clock;
  MainLoop* owner = nullptr;
  int root_position_type = 0;

 private:
  void ResetResults();
  void BuildRootMoves();
  void IterativeDeepening();
  void RunIterations();
  void SearchIteration();
  void SetCurrentMove(const RootMove& root_move);
  void TryToBeatBest(std::size_t index, int& best);
  int SearchRootMove(RootMove& root_move, int lower, int upper, int guess);
  bool TestRootMove(RootMove& root_move, int best);
  int SearchRootChild(Move move, int g);
  void ExtractPv(RootMove& root_move);
  void RestorePv(const std::vector<Move>& line);
  void RefreshPvText(const std::vector<Move>& line);
  void WaitForCommand();
  void Finish(bool stopped_by_command);

  // The owner's side: input, protocol and the end of the search. All do nothing without an owner.
  void PollOwnerInput();
  void ReportDepth();
  void ReportLine();
  void ReportNewBestMove(const std::string& text);
  void ReportUpperBound(int bound);
  void ReportSearchInstability();
  void ShowSearchSummary();
  void TellSearchFinished(bool stopped_by_command);

  mutable ZephrinInterfaces::SearchReport report_;
};
