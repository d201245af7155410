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
#include <cstring>
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

}  // namespace

EngineRun RunEngine(const std::vector<std::string>& arguments, const std::string& input, int timeout_seconds,
                    int close_after_ms, const std::string& binary) {
  EngineRun run;
  int to_engine[2], from_engine[2], errors[2];
  if (pipe(to_engine) != 0 || pipe(from_engine) != 0 || pipe(errors) != 0) return run;

  const pid_t pid = fork();
  if (pid == 0) {
    dup2(to_engine[0], 0);
    dup2(from_engine[1], 1);
    dup2(errors[1], 2);
    for (int fd : {to_engine[0], to_engine[1], from_engine[0], from_engine[1], errors[0], errors[1]}) close(fd);
    std::vector<char*> argv;
    argv.push_back(const_cast<char*>(binary.c_str()));
    for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execv(binary.c_str(), argv.data());
    _exit(127);
  }
  close(to_engine[0]);
  close(from_engine[1]);
  close(errors[1]);
  signal(SIGPIPE, SIG_IGN);
  fcntl(to_engine[1], F_SETFL, O_NONBLOCK);

  using Clock = std::chrono::steady_clock;
  std::size_t written = 0;
  int input_fd = to_engine[1];
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
    pollfd fds[3] = {{from_engine[0], POLLIN, 0}, {errors[0], POLLIN, 0}, {writing ? input_fd : -1, POLLOUT, 0}};
    const auto wake = std::min(deadline, close_time);
    const int remaining = static_cast<int>(std::max<long long>(
        0, std::chrono::duration_cast<std::chrono::milliseconds>(wake - Clock::now()).count() + 1));
    if (Clock::now() >= deadline) {
      run.timed_out = true;
      kill(pid, SIGKILL);
      break;
    }
    if (poll(fds, 3, remaining) < 0 && errno != EINTR) break;
    if (out_open && (fds[0].revents & (POLLIN | POLLHUP | POLLERR))) out_open = Drain(from_engine[0], run.out);
    if (err_open && (fds[1].revents & (POLLIN | POLLHUP | POLLERR))) err_open = Drain(errors[0], run.err);
    if (writing && (fds[2].revents & (POLLOUT | POLLERR | POLLHUP))) {
      const ssize_t count = write(input_fd, input.data() + written, input.size() - written);
      if (count > 0) written += static_cast<std::size_t>(count);
      if (count < 0 && errno != EAGAIN && errno != EINTR) written = input.size();
      if (written == input.size()) close_time = Clock::now() + std::chrono::milliseconds(close_after_ms);
    }
  }
  if (input_fd >= 0) close(input_fd);
  close(from_engine[0]);
  close(errors[0]);
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
