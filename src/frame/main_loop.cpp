#include "frame/main_loop.h"

#include "frame/control_exceptions.h"
#include "frame/tee_stream.h"
#include "frame/time_stamp.h"

using ZephrinInterfaces::ErrorCommand;

namespace {

void RunGameSearch(MainLoop& loop, const SearchRequest& request) { loop.game->search.RunSearch(request, &loop); }

int SearchStateOfMode(int mode) {
  switch (mode) {
    case SEARCH_NORMAL: return ZephrinInterfaces::SEARCH_STATE_THINKING;
    case SEARCH_ANALYZE: return ZephrinInterfaces::SEARCH_STATE_ANALYZING;
    case SEARCH_PONDERING: return ZephrinInterfaces::SEARCH_STATE_PONDERING;
    default: return ZephrinInterfaces::SEARCH_STATE_HINT;
  }
}

void LogSearchStart(const SearchRequest& request) {
  {
    LogOnlySection log_only;
    Out << "starting search (not sent to xboard)\n";
    request.game.Current().Display(false);
    Out << "FEN: " << PositionToFen(request.game) << "\nsearch settings\n"
        << "type=" << SearchModeText(request.type) << "\n"
        << "max_depth=" << request.max_depth << "\n"
        << "max_time_limit=" << request.max_time_limit << "\n"
        << "variable_time_limit=" << request.variable_time_limit << "\n"
        << "(not sent to xboard)\n";
  }
  Out.Flush();
}

void ReportError(MainLoop& loop, const ErrorCommand& error) { loop.game->Protocol().ReportError(error.Text()); }

}  // namespace

MainLoop::MainLoop(std::unique_ptr<ZephrinInterfaces::Game> owned_game, std::unique_ptr<InputSource> source)
    : game(std::move(owned_game)), input(std::move(source)), run_search(RunGameSearch) {}

// A request is served under the same handlers as the commands, since the end of a search may
// raise the next request (pondering) or an error.
void RunMainLoop(MainLoop& loop) {
  SearchRequest request;
  bool request_pending = false;
  while (true) {
    try {
      if (request_pending) {
        request_pending = false;
        StartSearch(loop, request);
      }
      WaitForInput(loop);
      ParseNextLine(loop);
      ExecuteNextCommand(loop);
    } catch (const ErrorCommand& error) {
      ReportError(loop, error);
    } catch (const search_request_received_exception& received) {
      request = received.request;
      request_pending = true;
    } catch (const search_aborted_exception&) {
      // Only a running search can be aborted; a stray abort leaves nothing to unwind.
      loop.game->search_state = ZephrinInterfaces::SEARCH_STATE_IDLE;
    } catch (const quit_command_received_exception&) {
      return;
    }
  }
}

void WaitForInput(MainLoop& loop) {
  if (!loop.command_queue.empty() || !loop.line_queue.empty()) return;
  loop.game->Protocol().ShowPrompt(*loop.game);
  loop.line_queue.push_back(loop.input->ReadLine());
}

void ParseNextLine(MainLoop& loop) {
  if (!loop.command_queue.empty() || loop.line_queue.empty()) return;
  const std::string line = std::move(loop.line_queue.front());
  loop.line_queue.pop_front();
  try {
    loop.command_queue.push_back(loop.game->Protocol().ParseText(line));
  } catch (const ErrorCommand& error) {
    ReportError(loop, error);
  }
}

void ExecuteNextCommand(MainLoop& loop) {
  if (loop.command_queue.empty()) return;
  ZephrinInterfaces::Command& command = *loop.command_queue.front();
  if (command.done) {
    loop.command_queue.pop_front();
    return;
  }
  try {
    command.Execute(*loop.game);
  } catch (const ErrorCommand& error) {
    ReportError(loop, error);
    loop.command_queue.pop_front();
  }
}

// A node limit counts for a search that thinks for a move, not for one that waits for a command.
void PollInput(MainLoop& loop) {
  const ZephrinInterfaces::Game& game = *loop.game;
  if (game.node_limit != 0 && game.search.running && game.search.mode == SEARCH_NORMAL &&
      game.search.nodes >= game.node_limit) {
    throw search_aborted_exception{false};
  }
  while (true) {
    if (loop.command_queue.empty() && loop.line_queue.empty()) {
      if (!loop.input->InputAvailable()) return;
      loop.line_queue.push_back(loop.input->ReadLine());
      continue;
    }
    ParseNextLine(loop);
    ExecuteNextCommand(loop);
  }
}

// A finished game can't be analysed; the program then only waits for commands, as a front end
// in analyze mode expects.
void StartSearch(MainLoop& loop, const SearchRequest& request) {
  if (request.type == SEARCH_ANALYZE && request.game.IsFinished()) {
    AnalyzeCompatibilityWait(loop);
    return;
  }
  LogSearchStart(request);
  loop.game->search_state = SearchStateOfMode(request.type);
  loop.run_search(loop, request);
}

void SearchFinished(MainLoop& loop, bool stopped_by_command) { loop.game->SearchFinished(stopped_by_command); }

void AnalyzeCompatibilityWait(MainLoop& loop) {
  loop.game->search_state = ZephrinInterfaces::SEARCH_STATE_ANALYZING;
  Out.WriteLogOnly("Entering analyze compatibility mode");
  try {
    while (true) {
      SleepMilliseconds(125);
      PollInput(loop);
    }
  } catch (const search_aborted_exception&) {
    SearchFinished(loop, true);
  }
}
