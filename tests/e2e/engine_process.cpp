#include "e2e/engine_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

// Appends what is readable on `fd` to `text`; returns false at the end of the stream.
bool Drain(int fd, std::string& text) {
  char buffer[65536];
  const ssize_t count = read(fd, buffer, sizeof buffer);
  if (count > 0) {
    text.append(buffer, static_cast<std::size_t>(count));
    return true;
  }
  return count < 0 && (errno == EINTR || errno == EAGAIN);
}

// Starts `binary` with its standard input and output (and standard error, if `err` is given) on
// pipes; the parent's ends go to `in`, `out` and `err`. Returns the child's id, or -1.
pid_t Spawn(const std::string& binary, const std::vector<std::string>& arguments, int& in, int& out, int* err) {
  int pipes[3][2];
  const int count = err ? 3 : 2;
  for (int i = 0; i < count; ++i)
    if (pipe(pipes[i]) != 0) return -1;
  const pid_t pid = fork();
  if (pid == 0) {
    for (int i = 0; i < count; ++i) {
      dup2(pipes[i][i == 0 ? 0 : 1], i);
      close(pipes[i][0]);
      close(pipes[i][1]);
    }
    std::vector<char*> argv{const_cast<char*>(binary.c_str())};
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execv(binary.c_str(), argv.data());
    _exit(127);
  }
  for (int i = 0; i < count; ++i) close(pipes[i][i == 0 ? 0 : 1]);
  signal(SIGPIPE, SIG_IGN);
  in = pipes[0][1];
  out = pipes[1][0];
  if (err) *err = pipes[2][0];
  return pid;
}

}  // namespace

EngineRun RunEngine(const std::vector<std::string>& arguments, const std::string& input, int timeout_seconds,
                    int close_after_ms, const std::string& binary) {
  EngineRun run;
  int input_fd, out_fd, err_fd;
  const pid_t pid = Spawn(binary, arguments, input_fd, out_fd, &err_fd);
  if (pid <= 0) return run;
  fcntl(input_fd, F_SETFL, O_NONBLOCK);

  using Clock = std::chrono::steady_clock;
  std::size_t written = 0;
  const auto deadline = Clock::now() + std::chrono::seconds(timeout_seconds);
  auto close_time = Clock::time_point::max();
  if (input.empty()) close_time = Clock::now() + std::chrono::milliseconds(close_after_ms);
  bool out_open = true, err_open = true;
  while (out_open || err_open) {
    if (input_fd >= 0 && Clock::now() >= close_time) {
      close(input_fd);
      input_fd = -1;
    }
    const bool writing = input_fd >= 0 && written < input.size();
    pollfd fds[3] = {{out_fd, POLLIN, 0}, {err_fd, POLLIN, 0}, {writing ? input_fd : -1, POLLOUT, 0}};
    const auto wake = std::min(deadline, close_time);
    const int remaining = static_cast<int>(std::max<long long>(
        0, std::chrono::duration_cast<std::chrono::milliseconds>(wake - Clock::now()).count() + 1));
    if (Clock::now() >= deadline) {
      run.timed_out = true;
      kill(pid, SIGKILL);
      break;
    }
    if (poll(fds, 3, remaining) < 0 && errno != EINTR) break;
    if (out_open && (fds[0].revents & (POLLIN | POLLHUP | POLLERR))) out_open = Drain(out_fd, run.out);
    if (err_open && (fds[1].revents & (POLLIN | POLLHUP | POLLERR))) err_open = Drain(err_fd, run.err);
    if (writing && (fds[2].revents & (POLLOUT | POLLERR | POLLHUP))) {
      const ssize_t count = write(input_fd, input.data() + written, input.size() - written);
      if (count > 0) written += static_cast<std::size_t>(count);
      if (count < 0 && errno != EAGAIN && errno != EINTR) written = input.size();
      if (written == input.size()) close_time = Clock::now() + std::chrono::milliseconds(close_after_ms);
    }
  }
  if (input_fd >= 0) close(input_fd);
  close(out_fd);
  close(err_fd);
  int status = 0;
  waitpid(pid, &status, 0);
  if (!run.timed_out && WIFEXITED(status)) run.status = WEXITSTATUS(status);
  return run;
}

std::string Prompt(const std::string& side_and_move) { return std::string(" \r").append(side_and_move).append("> "); }

std::string ReadFile(const std::string& name) {
  std::ostringstream text;
  text << std::ifstream(name, std::ios::binary).rdbuf();
  return text.str();
}

TemporaryDirectory::TemporaryDirectory() {
  char pattern[] = "/tmp/zephrin-test-XXXXXX";
  if (mkdtemp(pattern) != nullptr) path = pattern;
}

TemporaryDirectory::~TemporaryDirectory() {
  if (!path.empty()) std::filesystem::remove_all(path);
}

EngineSession::EngineSession() { pid_ = Spawn(ZEPHRIN_BINARY, {}, in_, out_, nullptr); }

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
