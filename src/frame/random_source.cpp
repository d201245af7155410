#include "frame/random_source.h"

#include <cstdint>
#include <ctime>

#include "frame/tee_stream.h"

int NonDeterministicRand_16bit() {
  static bool seeded = false;
  static std::uint32_t state = 0;
  static int calls = 0;
  if (!seeded) {
    state = static_cast<std::uint32_t>(std::time(nullptr)) & 0xffff;
    seeded = true;
  }
  if (calls <= 10 && ++calls == 11) {
    Out.WriteLogOnly(
        "Note: NonDeterministicRand_16bit seems to be used more often than originally intended. "
        "This could be a problem, because its implementation is bad.");
  }
  state = state * 1103515245u + 12345u;
  return static_cast<int>((state >> 16) & 0x7fff);
}
