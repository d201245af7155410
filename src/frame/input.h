// Reading standard input: whole lines, a non-blocking test for waiting input, and raw mode.
#pragma once

#include <string>

// Blocks for one line of standard input. End of input, or a failing stream, reads as "quit".
std::string ReadLine();
// Whether a line has begun to arrive: buffered characters, or a readable descriptor 0.
bool InputAvailable();
// Switches the terminal out of line mode and makes stdin unbuffered; only the first call acts.
void SetRawStdin();

// Where the main loop takes its lines from: standard input in the program, a script in tests.
class InputSource {
 public:
  virtual ~InputSource() = default;
  virtual std::string ReadLine() = 0;
  virtual bool InputAvailable() = 0;
};

class StandardInput : public InputSource {
 public:
  std::string ReadLine() override { return ::ReadLine(); }
  bool InputAvailable() override { return ::InputAvailable(); }
};
