// Making the file bitbases from the Nalimov tablebases, and checking every bitbase against them.
// Both walk all positions of an ending in the order of the file's layout.
#pragma once

#include <cstdint>
#include <string>

#include "board/board.h"
#include "frame/zephrin_exception.h"

namespace ZephrinGenerator {

class GenerationFailed : public ZephrinException {
 public:
  using ZephrinException::ZephrinException;
};

class VerificationFailed : public ZephrinException {
 public:
  using ZephrinException::ZephrinException;
};

enum VERIFY_RESULT { VERIFY_FAILED = 0, VERIFY_PASSED = 1, VERIFY_SKIPPED = 2 };

// Told about each position of a verification walk; false from the last two stops the walk.
class VerificationHandler {
 public:
  virtual ~VerificationHandler() = default;
  virtual void start(const std::string&) {}
  virtual void finish(const std::string&, VERIFY_RESULT) {}
  virtual void position_verified(const Board&) {}
  virtual bool wrong_result(const Board& board) = 0;
  virtual bool position_not_found(const Board& board) = 0;
};

// Reports the first failure and stops there.
class SilentVerificationHandler : public VerificationHandler {
 public:
  bool wrong_result(const Board& board) override;
  bool position_not_found(const Board& board) override;
};

// "Verification failed (reason: ...):" and the board.
void ReportVerificationFailure(const Board& board, const std::string& reason);

// Write the two-pawn (0x120000 bytes) or rammed-pawn (0x1e0000 bytes) file at path from the
// tablebases; throw GenerationFailed, leaving the file to the caller to delete.
void GenerateTwoPawns(const std::string& path);
void GenerateRammedPawn(const std::string& path);

// Compare the bitbase with the tablebases over all its positions; throw VerificationFailed when
// the tablebases can't answer.
VERIFY_RESULT VerifySinglePawn(VerificationHandler& handler);
VERIFY_RESULT VerifyTwoPawns(VerificationHandler& handler);
VERIFY_RESULT VerifyRammedPawn(VerificationHandler& handler);

}  // namespace ZephrinGenerator
