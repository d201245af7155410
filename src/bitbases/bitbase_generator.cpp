#include "bitbases/bitbase_generator.h"

#include <cstring>
#include <initializer_list>

#include "bitbases/bitbase_files.h"
#include "bitbases/bitbase_probes.h"
#include "board/bitboard.h"
#include "frame/memory_mapped_file.h"
#include "frame/tee_stream.h"
#include "tablebases/tablebase_probe.h"

namespace ZephrinGenerator {

namespace {

constexpr int WIN = 3;
constexpr int LOSS = 1;

struct Man {
  Square square;
  Piece piece;
};

// The position of the men with `side` to move, or false when two share a square or it is no legal
// position.
bool Place(Board& board, Color side, std::initializer_list<Man> men) {
  Piece squares[64] = {};
  for (const Man& man : men) {
    if (squares[man.square] != 0) return false;
    squares[man.square] = man.piece;
  }
  return board.SetPosition(squares, side, 0, 0);
}

const Piece WK = MakePiece(WHITE, KING), BK = MakePiece(BLACK, KING);
const Piece WP = MakePiece(WHITE, PAWN), BP = MakePiece(BLACK, PAWN);

// Both sides to move of the ending's probe position must be in the tablebases.
void Preflight(std::initializer_list<Man> men, const char* ending) {
  for (Color side : {WHITE, BLACK}) {
    Board board;
    Place(board, side, men);
    int score = 0;
    switch (ProbeTablebases(board, score)) {
      case TB_NOT_LOADED: throw GenerationFailed("tablebases not loaded");
      case TB_NOT_FOUND: throw GenerationFailed(std::string("endgame ") + ending + " not available");
      case TB_QUEUED: throw GenerationFailed("internal error: lookup queued");
      case TB_FOUND: break;
    }
  }
}

// The tablebase score of a position being generated; anything but an answer is a failure.
int GenerationProbe(const Board& board, bool show_corrupt) {
  int score = 0;
  switch (ProbeTablebases(board, score)) {
    case TB_FOUND: return score;
    case TB_NOT_LOADED: throw GenerationFailed("Internal error: returned ptrDisabled");
    case TB_QUEUED: throw GenerationFailed("Internal error: lookup queued");
    case TB_NOT_FOUND: break;
  }
  if (show_corrupt) Out << "Corrupted position found:\n" << board.DisplayText(true);
  throw GenerationFailed("Tablebase corruption detected");
}

int ValueOf(int score) { return score > 0 ? WIN : score < 0 ? LOSS : 0; }

void Store(std::uint8_t* table, BitbaseSlot slot, int value) {
  table[slot.byte] = std::uint8_t(table[slot.byte] | (value << slot.shift));
}

// A mapped target of the given size with every byte cleared; I/O errors become failures.
template <typename Walk>
void WriteTable(const std::string& path, std::size_t size, Walk walk) {
  try {
    ZephrinUtils::MemoryMappedFile file(path, size);
    std::memset(file.data(), 0, size);
    walk(file.data());
  } catch (const ZephrinUtils::MemoryMappedFile::IOException&) {
    throw GenerationFailed("IO error");
  }
}

// What the tablebases say of a position being verified.
int VerificationProbe(const Board& board, const char* ending, const char* queued) {
  int score = 0;
  switch (ProbeTablebases(board, score)) {
    case TB_FOUND: return score;
    case TB_NOT_LOADED: throw VerificationFailed("tablebases not loaded");
    case TB_NOT_FOUND: throw VerificationFailed(std::string("endgame ") + ending + " not available");
    case TB_QUEUED: throw VerificationFailed(queued);
  }
  return score;
}

bool SameSign(int a, int b) { return (a > 0) == (b > 0) && (a < 0) == (b < 0); }

// One position of a verification walk: false when the walk is to end with `result`.
struct Verifier {
  VerificationHandler& handler;
  const char* ending;
  const char* queued;
  const char* disabled;
  VERIFY_RESULT result = VERIFY_PASSED;

  bool Check(const Board& board, int raw_value = 0) {
    const int expected = VerificationProbe(board, ending, queued);
    int score = 0;
    switch (ProbeBitbases(board, score)) {
      case BB_DISABLED: throw VerificationFailed(disabled);
      case BB_NOT_FOUND:
        result = VERIFY_FAILED;
        if (handler.position_not_found(board)) return true;
        result = VERIFY_SKIPPED;
        return false;
      case BB_FOUND: break;
    }
    if (SameSign(score, expected) && (raw_value == 0 || raw_value == LOSS || raw_value == WIN)) {
      handler.position_verified(board);
      return true;
    }
    result = VERIFY_FAILED;
    return handler.wrong_result(board);
  }
};

VERIFY_RESULT Finish(VerificationHandler& handler, const char* name, VERIFY_RESULT result) {
  handler.finish(name, result);
  return result;
}

}  // namespace

bool SilentVerificationHandler::wrong_result(const Board& board) {
  ReportVerificationFailure(board, "invalid result");
  return false;
}

bool SilentVerificationHandler::position_not_found(const Board& board) {
  ReportVerificationFailure(board, "position not found");
  return false;
}

void ReportVerificationFailure(const Board& board, const std::string& reason) {
  Out << "Verification failed (reason: " << reason << "):\n" << board.DisplayText(true);
}

// White to move only: the probe turns a position with Black to move into this form.
void GenerateTwoPawns(const std::string& path) {
  Preflight({{4, WK}, {12, WP}, {60, BK}, {52, BP}}, "king+pawn vs king+pawn");
  WriteTable(path, ZephrinBitbases::TWO_PAWNS_SIZE, [](std::uint8_t* table) {
    Board board;
    for (int rank = 1; rank <= 6; ++rank)
      for (int file = 0; file < 4; ++file)
        for (Square black_pawn = 8; black_pawn < 56; ++black_pawn)
          for (Square white_king = 0; white_king < 64; ++white_king)
            for (Square black_king = 0; black_king < 64; ++black_king) {
              const Square white_pawn = Square(rank * 8 + file);
              if (!Place(board, WHITE, {{white_king, WK}, {black_king, BK}, {white_pawn, WP}, {black_pawn, BP}}))
                continue;
              const int value = ValueOf(GenerationProbe(board, false));
              Store(table, TwoPawnsSlot(white_king, black_king, white_pawn, black_pawn), value);
            }
  });
}

// Values from White's view, the owner of the two pawns: a win for White is 3 with either side to move.
void GenerateRammedPawn(const std::string& path) {
  Preflight({{4, WK}, {12, WP}, {11, WP}, {60, BK}, {52, BP}}, "king+pawn+pawn vs king+pawn");
  WriteTable(path, ZephrinBitbases::RAMMED_PAWN_SIZE, [](std::uint8_t* table) {
    Board board;
    for (Color side : {WHITE, BLACK})
      for (Square free = 8; free < 56; ++free)
        for (int rank = 1; rank <= 6; ++rank)
          for (int file = 0; file < 4; ++file)
            for (Square white_king = 0; white_king < 64; ++white_king)
              for (Square black_king = 0; black_king < 64; ++black_king) {
                const Square ram = Square(rank * 8 + file);
                if (ram + 8 > 63 ||
                    !Place(board, side,
                           {{white_king, WK}, {black_king, BK}, {free, WP}, {ram, WP}, {Square(ram + 8), BP}}))
                  continue;
                const int score = GenerationProbe(board, true);
                Store(table, RammedPawnSlot(side, white_king, black_king, free, ram),
                      ValueOf(side == WHITE ? score : -score));
              }
  });
}

VERIFY_RESULT VerifySinglePawn(VerificationHandler& handler) {
  const char* name = "single_pawn";
  handler.start(name);
  Verifier verifier{handler, "king+pawn vs king", "Internal error: lookup queued", "single pawn bitbases disabled"};
  Board board;
  for (Color side : {WHITE, BLACK})
    for (Square pawn = 8; pawn < 56; ++pawn)
      for (Square white_king = 0; white_king < 64; ++white_king)
        for (Square black_king = 0; black_king < 64; ++black_king) {
          if (!Place(board, side, {{white_king, WK}, {black_king, BK}, {pawn, WP}})) continue;
          if (!verifier.Check(board)) return verifier.result;
        }
  return Finish(handler, name, verifier.result);
}

VERIFY_RESULT VerifyTwoPawns(VerificationHandler& handler) {
  const char* name = "two_pawns";
  handler.start(name);
  Verifier verifier{handler, "king+pawn vs king+pawn", "Internal error", "two pawns bitbases disabled"};
  Board board;
  for (Color side : {WHITE, BLACK})
    for (Square white_pawn = 8; white_pawn < 56; ++white_pawn)
      for (Square black_pawn = 8; black_pawn < 56; ++black_pawn)
        for (Square white_king = 0; white_king < 64; ++white_king)
          for (Square black_king = 0; black_king < 64; ++black_king) {
            if (!Place(board, side, {{white_king, WK}, {black_king, BK}, {white_pawn, WP}, {black_pawn, BP}}))
              continue;
            const int raw = ZephrinBitbases::TwoPawnsData() == nullptr
                                ? 0
                                : TwoPawnsRawValue(side, white_king, black_king, white_pawn, black_pawn);
            if (!verifier.Check(board, raw)) return verifier.result;
          }
  return Finish(handler, name, verifier.result);
}

VERIFY_RESULT VerifyRammedPawn(VerificationHandler& handler) {
  const char* name = "rammed_pawn";
  handler.start(name);
  Verifier verifier{handler, "king+pawn+pawn vs king+pawn", "Internal error", "rammed pawn bitbases disabled"};
  Board board;
  for (Color side : {WHITE, BLACK})
    for (Square free = 8; free < 56; ++free)
      for (Square ram = 8; ram < 48; ++ram)
        for (Square white_king = 0; white_king < 64; ++white_king)
          for (Square black_king = 0; black_king < 64; ++black_king) {
            if (!Place(board, side,
                       {{white_king, WK}, {black_king, BK}, {free, WP}, {ram, WP}, {Square(ram + 8), BP}}))
              continue;
            if (!verifier.Check(board)) return verifier.result;
          }
  return Finish(handler, name, verifier.result);
}

}  // namespace ZephrinGenerator
