#include "frame/tee_stream.h"

#include <ctime>
#include <iostream>
#include <sstream>

TeeStream Out;

void TeeStream::Write(const std::string& text) {
  if (console) std::cout << text;
  if (log_ && to_log) *log_ << text;
}

TeeStream& TeeStream::operator<<(const std::string& text) {
  Write(text);
  return *this;
}
TeeStream& TeeStream::operator<<(const char* text) { return *this << std::string(text); }
TeeStream& TeeStream::operator<<(char c) { return *this << std::string(1, c); }
TeeStream& TeeStream::operator<<(std::int16_t value) { return *this << std::to_string(value); }
TeeStream& TeeStream::operator<<(std::int32_t value) { return *this << std::to_string(value); }
TeeStream& TeeStream::operator<<(std::uint32_t value) { return *this << std::to_string(value); }
TeeStream& TeeStream::operator<<(std::int64_t value) { return *this << std::to_string(value); }
TeeStream& TeeStream::operator<<(std::uint64_t value) { return *this << std::to_string(value); }
TeeStream& TeeStream::operator<<(double value) {
  std::ostringstream text;
  text << value;
  return *this << text.str();
}

void TeeStream::Flush() {
  std::cout.flush();
  if (log_ && to_log) log_->flush();
}

void TeeStream::WriteLogOnly(const std::string& text) {
  const bool saved = console;
  console = false;
  Write(text + " (not sent to xboard)\n");
  console = saved;
  Flush();
}

void TeeStream::WriteConsoleOnly(const std::string& text) {
  const bool saved = to_log;
  to_log = false;
  Write(text);
  to_log = saved;
}

bool TeeStream::OpenLog(const std::string& name) {
  log_.reset();
  log_name_.clear();
  if (name.empty()) return true;
  try {
    auto file = std::make_unique<std::ofstream>();
    file->exceptions(std::ios::failbit | std::ios::badbit);
    file->open(name, std::ios::out | std::ios::trunc);
    const std::time_t now = std::time(nullptr);
    *file << "Zephrin logfile created at: " << std::ctime(&now) << '\n';
    file->flush();
    file->exceptions(std::ios::goodbit);
    log_ = std::move(file);
    log_name_ = name;
    return true;
  } catch (const std::exception&) {
    return false;
  }
}
