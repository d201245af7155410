// A running engine that is talked to line by line: the next command is written only after the
// answer to the last one has come, which a single batch of input can't do.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

class EngineSession {
 public:
  using Deadline = std::chrono::steady_clock::time_point;

  EngineSession();
  ~EngineSession();
  EngineSession(const EngineSession&) = delete;
  EngineSession& operator=(const EngineSession&) = delete;

  bool Started() const { return pid_ > 0 && in_ >= 0; }
  void Send(const std::string& text);
  // The next whole line of output without its newline; false on end of output or timeout.
  bool ReadLine(std::string& line, Deadline deadline);
  // The lines up to and with the first that starts with `prefix`; empty on end of output or timeout.
  std::vector<std::string> ReadUntil(const std::string& prefix, Deadline deadline);
  // Closes standard input and waits for the exit status; -1 when the engine didn't exit normally.
  int Finish(Deadline deadline);

 private:
  pid_t pid_ = -1;
  int in_ = -1;
  int out_ = -1;
  int status_ = -2;  // -2 while running
  std::string buffer_;
};
