#include "frame/version.h"

// Set at build time to describe the target; the defaults are the historical ones.
#ifndef ZEPHRIN_ARCHITECTURE
#define ZEPHRIN_ARCHITECTURE "AMD Athlon 64 compatible"
#endif
#ifndef ZEPHRIN_PLATFORM
#define ZEPHRIN_PLATFORM "cygwin"
#endif

std::string ProgramName() { return "Zephrin"; }
std::string ProgramVersion() { return "2.0.2"; }

std::string VersionText() {
  return ProgramName() + " v" + ProgramVersion() + " (" + __DATE__ + ", " + __TIME__ + ")\n" +
         "build: " + ProgramName() + " with variable search extensions\n" +
         "\ninline assembler:       disabled\n"
         "move generator cache:   disabled\n"
         "tablebase support:      enabled\n"
         "architecture:           " ZEPHRIN_ARCHITECTURE "\n"
         "platform:               " ZEPHRIN_PLATFORM "\n"
         "\nwritten by the Zephrin authors\n";
}
