// The file bitbases: king and pawn against king and pawn ("kp_kp.zbb"), and two pawns against one
// that rams one of them ("kpp_kp_ram.zbb"), mapped from the executable's directory. A file that
// isn't there only means that its ending has no bitbase.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "frame/zephrin_exception.h"

namespace ZephrinBitbases {

constexpr const char* TWO_PAWNS_FILE = "kp_kp.zbb";
constexpr const char* RAMMED_PAWN_FILE = "kpp_kp_ram.zbb";
constexpr std::size_t TWO_PAWNS_SIZE = 0x120000;
constexpr std::size_t RAMMED_PAWN_SIZE = 0x1e0000;

class CouldNotOpenFileException : public ZephrinException {
 public:
  using ZephrinException::ZephrinException;
};

// The mapped tables, null while not loaded.
const std::uint8_t* TwoPawnsData();
const std::uint8_t* RammedPawnData();

}  // namespace ZephrinBitbases

// Maps both files from the executable's directory and reports in the log. May run again: a new
// mapping replaces the old one, and a file that fails leaves the table as it was.
void LoadBitbases();
void LoadBitbasesFrom(const std::string& directory);
// Forgets both tables, so that a test can start from none.
void UnloadBitbases();
