#include "frame/memory_mapped_file.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "frame/checked_assert.h"

namespace ZephrinUtils {

namespace {

// Closes the descriptor when the mapping is made or has failed: a mapping outlives its descriptor.
class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return fd_; }

 private:
  int fd_;
};

}  // namespace

ReadOnlyMemoryMappedFile::ReadOnlyMemoryMappedFile(const std::string& path, std::size_t size) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) throw IOException("file not found: " + path);
  Descriptor file(open(path.c_str(), O_RDONLY));
  if (file.get() < 0 || fstat(file.get(), &status) != 0) throw IOException("cannot open " + path);
  if (static_cast<std::size_t>(status.st_size) != size || size == 0) throw IOException("wrong size: " + path);
  void* mapped = mmap(nullptr, size, PROT_READ, MAP_SHARED, file.get(), 0);
  if (mapped == MAP_FAILED) throw IOException("cannot map " + path);
  data_ = static_cast<const std::uint8_t*>(mapped);
  size_ = size;
}

ReadOnlyMemoryMappedFile::~ReadOnlyMemoryMappedFile() { munmap(const_cast<std::uint8_t*>(data_), size_); }

MemoryMappedFile::MemoryMappedFile(const std::string& path, std::size_t size) {
  CHECKED_ASSERT(size > 0, "memory_mapped_file", "no error description available");
  Descriptor file(open(path.c_str(), O_RDWR | O_CREAT, 0644));
  struct stat status {};
  if (file.get() < 0 || fstat(file.get(), &status) != 0) throw IOException("cannot open " + path);
  if (static_cast<std::size_t>(status.st_size) < size) {
    const char zero = 0;
    if (lseek(file.get(), static_cast<off_t>(size - 1), SEEK_SET) < 0 || write(file.get(), &zero, 1) != 1) {
      throw IOException("cannot grow " + path);
    }
  }
  void* mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
  if (mapped == MAP_FAILED) throw IOException("cannot map " + path);
  data_ = static_cast<std::uint8_t*>(mapped);
  size_ = size;
}

MemoryMappedFile::~MemoryMappedFile() {
  msync(data_, size_, MS_SYNC);
  munmap(data_, size_);
}

}  // namespace ZephrinUtils
