// The assertion for states that input can't cause: it reports through Out and aborts.
#pragma once

#include <string>

[[noreturn]] void CheckedAssertFailed(const char* condition, const char* file, int line,
                                      const std::string& message);

#define CHECKED_ASSERT(condition, file, message) \
  do {                                           \
    if (!(condition)) CheckedAssertFailed(#condition, file, __LINE__, message); \
  } while (false)
