#include "bitbases/bitbase_files.h"

#include <sys/stat.h>

#include <memory>

#include "frame/command_line.h"
#include "frame/memory_mapped_file.h"
#include "frame/tee_stream.h"

namespace ZephrinBitbases {

namespace {

using ZephrinUtils::ReadOnlyMemoryMappedFile;

// The loaded state: one owned mapping per file.
std::unique_ptr<ReadOnlyMemoryMappedFile> two_pawns;
std::unique_ptr<ReadOnlyMemoryMappedFile> rammed_pawn;

std::unique_ptr<ReadOnlyMemoryMappedFile> MapFile(const std::string& path, std::size_t size) {
  try {
    return std::make_unique<ReadOnlyMemoryMappedFile>(path, size);
  } catch (const ReadOnlyMemoryMappedFile::IOException&) {
    throw CouldNotOpenFileException("Could not open file '" + path + "'");
  }
}

bool FileExists(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0;
}

// The texts of one file's report.
struct FileReport {
  const char* not_found;
  const char* not_found_end;
  const char* found;
  const char* failed;
};

void LoadFile(std::unique_ptr<ReadOnlyMemoryMappedFile>& table, const std::string& path, std::size_t size,
              const FileReport& report) {
  if (!FileExists(path)) {
    Out << report.not_found << path << report.not_found_end << "\n";
    return;
  }
  try {
    table = MapFile(path, size);
    Out << report.found << "\n";
  } catch (const CouldNotOpenFileException&) {
    Out << report.failed << "\n";
  }
}

const std::uint8_t* DataOf(const std::unique_ptr<ReadOnlyMemoryMappedFile>& table) {
  return table ? table->data() : nullptr;
}

}  // namespace

const std::uint8_t* TwoPawnsData() { return DataOf(two_pawns); }
const std::uint8_t* RammedPawnData() { return DataOf(rammed_pawn); }

}  // namespace ZephrinBitbases

void LoadBitbases() { LoadBitbasesFrom(ExecutableDirectory()); }

void LoadBitbasesFrom(const std::string& directory) {
  using namespace ZephrinBitbases;
  LogOnlySection log_only;
  Out << "Loading bitbases (executables directory='" << directory << "'):\n";
  LoadFile(two_pawns, directory + "/" + TWO_PAWNS_FILE, TWO_PAWNS_SIZE,
           {"- two pawns bitbases not found ('", "')", "- two pawns bitbases found",
            "Warning: Failed to open two pawns bitbases."});
  LoadFile(rammed_pawn, directory + "/" + RAMMED_PAWN_FILE, RAMMED_PAWN_SIZE,
           {"- rammed pawn bitbases not found ('", "').", "- rammed pawn bitbases found",
            "Warning: Failed to open rammed pawn bitbases"});
  Out << "- generic bitbases disabled\n";
  Out.Flush();
}

void UnloadBitbases() {
  ZephrinBitbases::two_pawns.reset();
  ZephrinBitbases::rammed_pawn.reset();
}
