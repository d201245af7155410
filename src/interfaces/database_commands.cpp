// The commands of the endgame databases: tb, probe, and the optimize_piece aid.
#include <string>

#include "bitbases/bitbase_files.h"
#include "frame/input.h"
#include "frame/tee_stream.h"
#include "interfaces/basic_protocol.h"
#include "interfaces/commands.h"
#include "interfaces/game.h"
#include "interfaces/optimize_piece.h"
#include "tablebases/tablebase_probe.h"

namespace ZephrinInterfaces {

namespace {

std::string LoadedText(const void* data) { return data != nullptr ? "loaded" : "not loaded"; }

std::string BitbaseProbeText(const Board& board) {
  int score = 0;
  if (ProbeBitbases(board, score) != BB_FOUND) return "not found";
  return "result=" + std::to_string(score);
}

std::string TablebaseProbeText(const Board& board) {
  int score = 0;
  switch (ProbeTablebases(board, score)) {
    case TB_FOUND: return "result=" + std::to_string(score);
    case TB_NOT_LOADED: return "disabled (not loaded)";
    case TB_NOT_FOUND: return "not found";
    default: return "queued (this should never happen!)";
  }
}

// The first word of a line, or the empty text.
std::string FirstWord(const std::string& line) {
  const std::size_t start = line.find_first_not_of(" \t");
  if (start == std::string::npos) return "";
  return line.substr(start, line.find_first_of(" \t", start) - start);
}

}  // namespace

void Command_DisplayTablebasesStatus::Execute(Game&) {
  Out << "Supported bitbases/tablebases:\n"
      << "Nalimov tablebases (type=nalimov)\n"
      << "King+pawn vs king bitbases (built-in)\n"
      << "King+pawn vs king+pawn bitbases (" << LoadedText(ZephrinBitbases::TwoPawnsData()) << ")\n"
      << "King+pawn+pawn vs king+pawn with pawn ram bitbases (" << LoadedText(ZephrinBitbases::RammedPawnData())
      << ")\n";
  Out.Flush();
  done = true;
}

// A failed initialisation is passed over at start-up: a bad path stops nothing.
void Command_InitTablebases::Execute(Game& game) {
  RequireForceMode(*this, game);
  const std::unique_ptr<Initializer> initializer = ZephrinTablebases::MakeTablebaseInitializer(type);
  if (!initializer) RaiseNotAvailableYet(*this);
  try {
    initializer->initialize(path, size);
  } catch (const ZephrinTablebases::TB_Exception& error) {
    throw IgnorableErrorCommand(error.Text(), input);
  }
  done = true;
}

void Command_Probe::Execute(Game&) {
  if (!validated) {
    try {
      position.SetFromFen(fen);
    } catch (const UserBoard::io_error&) {
      throw ErrorCommand(ErrorCommand::ERROR, "input inconsistent with FEN standard", input);
    } catch (const UserBoard::invalid_position&) {
      throw ErrorCommand(ErrorCommand::ERROR, "Illegal position", input);
    }
    validated = true;
  }
  const Board& board = position.Current();
  board.Display(true);
  Out << "\nProbing bitbases: " << BitbaseProbeText(board) << "\nProbing tablebases: " << TablebaseProbeText(board)
      << "\n";
  Out.Flush();
  done = true;
}

void Command_OptimizePiece::Execute(Game& game) {
  Out << "Piece:\n";
  Out.Flush();
  OptimizePiece(game.Current(), game.Protocol().personality, FirstWord(ReadLine()));
  done = true;
}

}  // namespace ZephrinInterfaces
