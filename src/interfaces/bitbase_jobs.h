// The jobs of the generate and verify commands: one object per bitbase to make or to check, built
// from the command's list of job words.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "bitbases/bitbase_generator.h"
#include "frame/zephrin_exception.h"

namespace ZephrinInterfaces {

class AbstractJob {
 public:
  class JobFailedException : public ZephrinException {
   public:
    using ZephrinException::ZephrinException;
  };
  virtual ~AbstractJob() = default;
  // Generate jobs: true when the file exists already and nothing was done.
  virtual bool execute() = 0;
  virtual std::string description() const = 0;
};

// The job lists of "all", and the jobs of a list of words; a word that names no job is refused
// with an ErrorCommand for `input`.
extern const char* const ALL_GENERATION_JOBS;
extern const char* const ALL_VERIFICATION_JOBS;
std::vector<std::unique_ptr<AbstractJob>> MakeGenerationJobs(const std::string& words, const std::string& input);
std::vector<std::unique_ptr<AbstractJob>> MakeVerificationJobs(const std::string& words, const std::string& input);

// Counts the positions that agree and reports the first that doesn't.
class DefaultVerificationHandler : public ZephrinGenerator::VerificationHandler {
 public:
  void start(const std::string& name) override;
  void finish(const std::string& name, ZephrinGenerator::VERIFY_RESULT result) override;
  void position_verified(const Board&) override { ++count_; }
  bool wrong_result(const Board& board) override;
  bool position_not_found(const Board& board) override;
  virtual void aborted();

 private:
  std::uint64_t count_ = 0;
  std::string name_;
};

}  // namespace ZephrinInterfaces
