// The one output path of the program: text goes to standard output and, when one is open, to a log.
#pragma once

#include <cstdint>
#include <fstream>
#include <memory>
#include <string>

class TeeStream {
 public:
  bool console = true;  // text goes to standard output
  bool to_log = true;   // text goes to the log, if one is open

  TeeStream& operator<<(const std::string& text);
  TeeStream& operator<<(const char* text);
  TeeStream& operator<<(char c);
  TeeStream& operator<<(std::int16_t value);
  TeeStream& operator<<(std::int32_t value);
  TeeStream& operator<<(std::uint32_t value);
  TeeStream& operator<<(std::int64_t value);
  TeeStream& operator<<(std::uint64_t value);
  TeeStream& operator<<(double value);

  void Flush();
  // Writes text + " (not sent to xboard)\n" with the console side off, then flushes.
  void WriteLogOnly(const std::string& text);
  // Writes text to standard output only, not to the log.
  void WriteConsoleOnly(const std::string& text);
  // An empty name closes the log; otherwise the file is created anew with a time-stamped first line.
  bool OpenLog(const std::string& name);
  bool LogIsOpen() const { return log_ != nullptr; }
  const std::string& LogName() const { return log_name_; }

 private:
  void Write(const std::string& text);

  std::unique_ptr<std::ofstream> log_;
  std::string log_name_;
};

extern TeeStream Out;

// Clears `console` for its lifetime and restores the previous value: log-only sections nest.
class LogOnlySection {
 public:
  LogOnlySection() : saved_(Out.console) { Out.console = false; }
  ~LogOnlySection() { Out.console = saved_; }
  LogOnlySection(const LogOnlySection&) = delete;
  LogOnlySection& operator=(const LogOnlySection&) = delete;

 private:
  bool saved_;
};
