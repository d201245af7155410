#include "interfaces/bitbase_jobs.h"

#include <cstdio>
#include <sys/stat.h>

#include "bitbases/bitbase_files.h"
#include "frame/command_line.h"
#include "frame/tee_stream.h"
#include "frame/tokenizer.h"
#include "interfaces/command.h"

namespace ZephrinInterfaces {

using namespace ZephrinGenerator;

const char* const ALL_GENERATION_JOBS = "two_pawns rammed_pawn";
const char* const ALL_VERIFICATION_JOBS = "single_pawn two_pawns rammed_pawn";

namespace {

bool FileExists(const std::string& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0;
}

// Makes its file beside the executable unless it is there; a failed generation leaves no file, so
// that a later run doesn't take a half file for a finished one.
class GenerateBitbasesJob : public AbstractJob {
 public:
  GenerateBitbasesJob(const char* file, void (*generate)(const std::string&), const char* text)
      : path_(ExecutableDirectory() + "/" + file), generate_(generate), description_(text) {}
  bool execute() override {
    if (FileExists(path_)) return true;
    try {
      generate_(path_);
    } catch (const GenerationFailed& failure) {
      std::remove(path_.c_str());
      throw JobFailedException(failure.what());
    }
    return false;
  }
  std::string description() const override { return description_; }

 private:
  std::string path_;
  void (*generate_)(const std::string&);
  std::string description_;
};

class GenerateTwoPawnsBitbasesJob : public GenerateBitbasesJob {
 public:
  GenerateTwoPawnsBitbasesJob()
      : GenerateBitbasesJob(ZephrinBitbases::TWO_PAWNS_FILE, GenerateTwoPawns,
                            "Generating king+pawn vs king+pawn bitbases data file") {}
};

class GenerateRammedPawnBitbasesJob : public GenerateBitbasesJob {
 public:
  GenerateRammedPawnBitbasesJob()
      : GenerateBitbasesJob(ZephrinBitbases::RAMMED_PAWN_FILE, GenerateRammedPawn,
                            "Generating rammed pawn bitbases data file") {}
};

class VerifyBitbasesJob : public AbstractJob {
 public:
  bool execute() override {
    DefaultVerificationHandler handler;
    try {
      return verify(handler) != VERIFY_FAILED;
    } catch (const VerificationFailed& failure) {
      throw JobFailedException(failure.what());
    }
  }
  virtual VERIFY_RESULT verify(VerificationHandler& handler) = 0;
};

class VerifySinglePawnBitbasesJob : public VerifyBitbasesJob {
 public:
  std::string description() const override { return "single_pawn"; }
  VERIFY_RESULT verify(VerificationHandler& handler) override { return VerifySinglePawn(handler); }
};

class VerifyTwoPawnsBitbasesJob : public VerifyBitbasesJob {
 public:
  std::string description() const override { return "two_pawns"; }
  VERIFY_RESULT verify(VerificationHandler& handler) override { return VerifyTwoPawns(handler); }
};

class VerifyRammedPawnBitbasesJob : public VerifyBitbasesJob {
 public:
  std::string description() const override { return "rammed_pawn"; }
  VERIFY_RESULT verify(VerificationHandler& handler) override { return VerifyRammedPawn(handler); }
};

[[noreturn]] void Refuse(const std::string& reason, const std::string& input) {
  throw ErrorCommand(ErrorCommand::ERROR, reason, input);
}

std::vector<std::string> JobWords(const std::string& words, const char* all) {
  return TokenizeJobList(words == "all" ? std::string(all) : words);
}

}  // namespace

std::vector<std::unique_ptr<AbstractJob>> MakeGenerationJobs(const std::string& words, const std::string& input) {
  std::vector<std::unique_ptr<AbstractJob>> jobs;
  for (const std::string& word : JobWords(words, ALL_GENERATION_JOBS)) {
    if (word == "two_pawns") jobs.push_back(std::make_unique<GenerateTwoPawnsBitbasesJob>());
    else if (word == "rammed_pawn") jobs.push_back(std::make_unique<GenerateRammedPawnBitbasesJob>());
    else if (word == "single_pawn") Refuse("Support for single pawn bitbase generation disabled", input);
    else if (word == "generic") Refuse("Support for generic bitbase generation disabled", input);
    else Refuse("Could not parse generation job description '" + word + "'", input);
  }
  return jobs;
}

std::vector<std::unique_ptr<AbstractJob>> MakeVerificationJobs(const std::string& words, const std::string& input) {
  std::vector<std::unique_ptr<AbstractJob>> jobs;
  for (const std::string& word : JobWords(words, ALL_VERIFICATION_JOBS)) {
    if (word == "single_pawn") jobs.push_back(std::make_unique<VerifySinglePawnBitbasesJob>());
    else if (word == "two_pawns") jobs.push_back(std::make_unique<VerifyTwoPawnsBitbasesJob>());
    else if (word == "rammed_pawn") jobs.push_back(std::make_unique<VerifyRammedPawnBitbasesJob>());
    else if (word == "generic") Refuse("Generic bitbases verification not supported", input);
    else Refuse("Could not parse verify job description '" + word + "'", input);
  }
  return jobs;
}

void DefaultVerificationHandler::start(const std::string& name) {
  count_ = 0;
  name_ = name;
  Out << "Verifying bitbase '" << name << "'...";
}

void DefaultVerificationHandler::finish(const std::string&, VERIFY_RESULT result) {
  if (result == VERIFY_PASSED) Out << "passed (" << count_ << " positions)\n";
  else if (result == VERIFY_FAILED) Out << "failed\n";
  else Out << "skipped\n";
}

bool DefaultVerificationHandler::wrong_result(const Board& board) {
  Out << "Error in " << name_ << " bitbase.\nPosition reports wrong result.\n" << board.DisplayText(true);
  finish(name_, VERIFY_FAILED);
  return false;
}

bool DefaultVerificationHandler::position_not_found(const Board& board) {
  Out << "Error in " << name_ << " bitbase.\nPosition not found.\n" << board.DisplayText(true);
  finish(name_, VERIFY_SKIPPED);
  return false;
}

void DefaultVerificationHandler::aborted() { Out << "aborted\n"; }

}  // namespace ZephrinInterfaces
