#include "frame/input.h"

#include <sys/select.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <iostream>

#include "frame/tee_stream.h"

std::string ReadLine() {
  std::string line;
  if (!std::getline(std::cin, line)) return "quit";
  {
    LogOnlySection log_only;
    Out << "Zephrin received input: " << line << "\n";
  }
  Out.Flush();
  return line;
}

bool InputAvailable() {
  std::streambuf* buffer = std::cin.rdbuf();
  if (buffer->in_avail() > 0) return true;
  fd_set descriptors;
  FD_ZERO(&descriptors);
  FD_SET(0, &descriptors);
  timeval no_wait{0, 0};
  return select(1, &descriptors, nullptr, nullptr, &no_wait) > 0;
}

void SetRawStdin() {
  static bool done = false;
  if (done) return;
  done = true;
  termios attributes{};
  tcgetattr(0, &attributes);
  attributes.c_lflag &= ~static_cast<tcflag_t>(ICANON);
  tcsetattr(0, TCSANOW, &attributes);
  setbuf(stdin, nullptr);
  Out.WriteLogOnly("Stdin has been set to raw mode (OS: Unix compatible).");
}
