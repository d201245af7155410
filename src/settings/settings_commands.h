// The work of the four settings commands. Each returns the reason for refusing the command, or
// nothing when it succeeded; a refused command leaves every search setting as it was.
#pragma once

#include <optional>
#include <string>

namespace OptimizeInterface {

// Reads a settings file and applies it.
std::optional<std::string> ReadSearchSettings(const std::string& path);
// Writes the current settings to a file.
std::optional<std::string> WriteSearchSettings(const std::string& path);
// Applies "name=value;name=value..." all at once, or nothing if one assignment fails.
std::optional<std::string> ModifySearchSettings(const std::string& assignments);
// Prints the named settings ("a;b"), or all of them for "all", to the log stream.
std::optional<std::string> DisplaySearchSettings(const std::string& names);

}  // namespace OptimizeInterface
