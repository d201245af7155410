#include "frame/main_loop.h"

#include "frame/control_exceptions.h"
#include "frame/tee_stream.h"
#include "frame/time_stamp.h"

using ZephrinInterfaces::ErrorCommand;

namespace {

// Until the search driver is built, a request can't be served.
void RunSearchNotAvailable(MainLoop& loop, const SearchRequest*) {
  loop.game->search_state = ZephrinInterfaces::SEARCH_STATE_IDLE;
  throw ErrorCommand(ErrorCommand::ERROR, "not available yet", "search");
}

void ReportError(MainLoop& loop, const ErrorCommand& error) { loop.game->Protocol().ReportError(error.Text()); }

}  // namespace

MainLoop::MainLoop(std::unique_ptr<ZephrinInterfaces::Game> owned_game, std::unique_ptr<InputSource> source)
    : game(std::move(owned_game)), input(std::move(source)), run_search(RunSearchNotAvailable) {}

// A request is served under the same handlers as the commands, since the end of a search may
// raise the next request (pondering) or an error.
void RunMainLoop(MainLoop& loop) {
  std::shared_ptr<const SearchRequest> request;
  bool request_pending = false;
  while (true) {
    try {
      if (request_pending) {
        request_pending = false;
        const std::shared_ptr<const SearchRequest> serving = std::move(request);
        StartSearch(loop, serving.get());
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

void PollInput(MainLoop& loop) {
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

void StartSearch(MainLoop& loop, const SearchRequest* request) { loop.run_search(loop, request); }

void AnalyzeCompatibilityWait(MainLoop& loop) {
  loop.game->search_state = ZephrinInterfaces::SEARCH_STATE_ANALYZING;
  Out.WriteLogOnly("Entering analyze compatibility mode");
  try {
    while (true) {
      SleepMilliseconds(125);
      PollInput(loop);
    }
  } catch (const search_aborted_exception&) {
    loop.game->search_state = ZephrinInterfaces::SEARCH_STATE_IDLE;
  }
}
