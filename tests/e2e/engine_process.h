// Runs the engine binary as a front end or a person would: given arguments and standard input,
// it collects standard output, standard error and the exit status; or talks to it line by line.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>
#include <vector>

struct EngineRun {
  std::string out;
  std::string err;
  int status = -1;         // exit status; -1 when the engine didn't exit normally
  bool timed_out = false;  // the engine was killed after the time limit
};

// Starts ZEPHRIN_BINARY (or `binary`) with `arguments`, writes `input` to its standard input and
// closes it, and waits for the end, at most `timeout_seconds`. With `close_after_ms`, standard
// input stays open that long after the input is written, as with a front end that waits.
EngineRun RunEngine(const std::vector<std::string>& arguments, const std::string& input, int timeout_seconds = 60,
                    int close_after_ms = 0, const std::string& binary = ZEPHRIN_BINARY);

// The prompt of the console protocol as it appears on standard output, e.g. Prompt("White 1").
std::string Prompt(const std::string& side_and_move);

// The whole content of a file; empty if there is none.
std::string ReadFile(const std::string& name);

// A directory of its own for a test that writes files, removed with everything in it at the end.
struct TemporaryDirectory {
  TemporaryDirectory();
  ~TemporaryDirectory();
  std::string File(const std::string& name) const { return path + "/" + name; }
  std::string path;
};

// A running engine that is talked to line by line: the next command is written only after the
// answer to the last one has come, which a single batch of input can't do.
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
