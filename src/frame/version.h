// The program's name and version, as the `version` command and the command line report them.
#pragma once

#include <string>

std::string ProgramName();
std::string ProgramVersion();
