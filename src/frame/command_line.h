// The start-up commands given on the command line as --name[=value] [arguments].
#pragma once

#include <optional>
#include <string>
#include <vector>

struct MainLoop;

// Runs the options in order, each executed at once. Returns the exit status when the program is
// to end here: 0 after --help, --version or --quit, 1 after a failed or unknown option.
std::optional<int> HandleCommandLine(MainLoop& loop, const std::vector<std::string>& arguments);

// Whether the name is one of the commands that the command line accepts.
bool IsStartupCommand(const std::string& name);

// The directory of the program, from argv[0] at the first call; later calls pass nothing.
const std::string& ExecutableDirectory(const std::string& argv0 = "");
