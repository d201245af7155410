// Opening the tablebases of one type from a path with a cache size. The tb command finds the
// initializer by its type word, so that a further type only needs an entry in the table of
// MakeTablebaseInitializer.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace ZephrinTablebases {

class Initializer {
 public:
  virtual ~Initializer() = default;
  // Sets tablebases_loaded on success; throws TB_Exception on failure.
  virtual void initialize(const std::string& path, std::uint64_t cache_size) = 0;
};

// The initializer of a type word, or null for a word that names no type.
std::unique_ptr<Initializer> MakeTablebaseInitializer(const std::string& type);

}  // namespace ZephrinTablebases
