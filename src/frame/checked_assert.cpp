#include "frame/checked_assert.h"

#include <cstdlib>

#include "frame/tee_stream.h"

void CheckedAssertFailed(const char* condition, const char* file, int line, const std::string& message) {
  Out << "CHECKED_ASSERT failed:\n" << condition << "\nfile: " << file << ", line: " << std::to_string(line) << "\n"
      << message << "\n\n";
  Out.Flush();
  std::abort();
}
