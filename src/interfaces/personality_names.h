// The names of personalities: reading a personality from text and naming a value.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// A known name ("Fenx", "Default", ...), "Random", or a number; a first letter in lower case is
// accepted for names. Returns false when the text gives no value.
bool ParsePersonality(const std::string& text, std::int32_t& value);

// The name a value is shown under: each name covers the values from its own towards 0.
std::string PersonalityName(std::int32_t value);

// Every name that ParsePersonality knows but "Default", which is another name of "Zephrin".
std::vector<std::string> PersonalityNames();
