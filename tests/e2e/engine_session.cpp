#include "e2e/engine_session.h"

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

EngineSession::EngineSession() {
  int to_engine[2], from_engine[2];
  if (pipe(to_engine) != 0 || pipe(from_engine) != 0) return;
  pid_ = fork();
  if (pid_ == 0) {
    dup2(to_engine[0], 0);
    dup2(from_engine[1], 1);
    for (int fd : {to_engine[0], to_engine[1], from_engine[0], from_engine[1]}) close(fd);
    execl(ZEPHRIN_BINARY, ZEPHRIN_BINARY, static_cast<char*>(nullptr));
    _exit(127);
  }
  close(to_engine[0]);
  close(from_engine[1]);
  signal(SIGPIPE, SIG_IGN);
  in_ = to_engine[1];
  out_ = from_engine[0];
}

EngineSession::~EngineSession() {
  if (pid_ > 0 && status_ == -2) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
  if (in_ >= 0) close(in_);
  if (out_ >= 0) close(out_);
}

void EngineSession::Send(const std::string& text) {
  std::size_t written = 0;
  while (written < text.size()) {
    const ssize_t n = write(in_, text.data() + written, text.size() - written);
    if (n <= 0) return;
    written += static_cast<std::size_t>(n);
  }
}

bool EngineSession::ReadLine(std::string& line, Deadline deadline) {
  while (true) {
    const std::size_t end = buffer_.find('\n');
    if (end != std::string::npos) {
      line = buffer_.substr(0, end);
      buffer_.erase(0, end + 1);
      return true;
    }
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
    if (left <= 0) return false;
    pollfd fd{out_, POLLIN, 0};
    if (poll(&fd, 1, static_cast<int>(left)) <= 0) return false;
    char chunk[4096];
    const ssize_t n = read(out_, chunk, sizeof chunk);
    if (n <= 0) return false;
    buffer_.append(chunk, static_cast<std::size_t>(n));
  }
}

std::vector<std::string> EngineSession::ReadUntil(const std::string& prefix, Deadline deadline) {
  std::vector<std::string> lines;
  for (std::string line; ReadLine(line, deadline);) {
    lines.push_back(line);
    if (line.rfind(prefix, 0) == 0) return lines;
  }
  return {};
}

int EngineSession::Finish(Deadline deadline) {
  close(in_);
  in_ = -1;
  while (std::chrono::steady_clock::now() < deadline) {
    int status = 0;
    if (waitpid(pid_, &status, WNOHANG) == pid_) {
      status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      return status_;
    }
    usleep(10000);
  }
  return -2;
}
