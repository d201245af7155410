// The program's name and version, and the text that `version` prints.
#pragma once

#include <string>

std::string ProgramName();
std::string ProgramVersion();
// The version line with build date and time, the build description and the author line.
std::string VersionText();
