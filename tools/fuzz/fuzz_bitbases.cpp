// The bitbase files: any bytes under either file name, of any length or padded to the exact
// size, are loaded and probed on positions the input also chooses.
#include <filesystem>
#include <vector>

#include "bitbases/bitbase_files.h"
#include "fuzz_input.h"
#include "tablebases/tablebase_probe.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ZephrinFuzz::PrepareProgram();
  if (size < 1) return 0;
  const bool rammed = data[0] & 1, exact = data[0] & 2;
  std::vector<std::uint8_t> bytes(data + 1, data + size);
  if (exact) bytes.resize(rammed ? ZephrinBitbases::RAMMED_PAWN_SIZE : ZephrinBitbases::TWO_PAWNS_SIZE);
  const std::string path = ZephrinFuzz::WriteScratchFile(
      rammed ? ZephrinBitbases::RAMMED_PAWN_FILE : ZephrinBitbases::TWO_PAWNS_FILE, bytes.data(), bytes.size());
  UnloadBitbases();
  LoadBitbasesFrom(std::filesystem::path(path).parent_path().string());
  // Positions of kings and pawns from the input's bytes, and the pawn endings' usual shapes.
  for (std::size_t i = 1; i + 5 <= size && i < 200; i += 5) {
    Piece squares[64] = {};
    const Square white_king = data[i] & 63, black_king = data[i + 1] & 63;
    squares[white_king] = MakePiece(WHITE, KING);
    squares[black_king] = MakePiece(BLACK, KING);
    for (int p = 0; p < (rammed ? 3 : 2); ++p) {
      const Square s = Square(8 + data[i + 2 + p] % 48);
      if (squares[s] == 0) squares[s] = MakePiece(p == 1 ? BLACK : WHITE, PAWN);
    }
    Board board;
    if (!board.SetPosition(squares, data[i + 4] & 1, 0, 0)) continue;
    int score = 0;
    ProbeBitbases(board, score);
  }
  return 0;
}
