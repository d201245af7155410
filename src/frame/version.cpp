#include "frame/version.h"

std::string ProgramName() { return "Zephrin"; }
std::string ProgramVersion() { return "0.1"; }
