// Files mapped into memory: read-only ones of an exact size, for the file bitbases, and writable
// ones, for making them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "frame/zephrin_exception.h"

namespace ZephrinUtils {

// A whole file mapped read-only. The size is part of the file's identity: a file of any other
// size is refused.
class ReadOnlyMemoryMappedFile {
 public:
  class IOException : public ZephrinException {
   public:
    using ZephrinException::ZephrinException;
  };

  ReadOnlyMemoryMappedFile(const std::string& path, std::size_t size);
  ~ReadOnlyMemoryMappedFile();
  ReadOnlyMemoryMappedFile(const ReadOnlyMemoryMappedFile&) = delete;
  ReadOnlyMemoryMappedFile& operator=(const ReadOnlyMemoryMappedFile&) = delete;

  const std::uint8_t* data() const { return data_; }
  std::size_t size() const { return size_; }

 private:
  const std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
};

// A file of at least `size` bytes, created or grown as needed, mapped for reading and writing.
// The destructor writes the mapping back before it unmaps it.
class MemoryMappedFile {
 public:
  class IOException : public ZephrinException {
   public:
    using ZephrinException::ZephrinException;
  };

  MemoryMappedFile(const std::string& path, std::size_t size);
  ~MemoryMappedFile();
  MemoryMappedFile(const MemoryMappedFile&) = delete;
  MemoryMappedFile& operator=(const MemoryMappedFile&) = delete;

  std::uint8_t* data() const { return data_; }
  std::size_t size() const { return size_; }

 private:
  std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace ZephrinUtils
