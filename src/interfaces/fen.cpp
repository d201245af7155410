#include "interfaces/fen.h"

#include "frame/string_conversions.h"
#include "frame/tokenizer.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace ZephrinInterfaces {

namespace {

// ToInt's strict reading; anything it refuses is malformed FEN text.
std::int64_t ReadNumber(const std::string& text, const char* what) {
  try {
    return ToInt(text);
  } catch (const string_conversion_error&) {
    throw fen_io_error(std::string("bad ") + what + " in FEN: " + text);
  }
}

int PieceFromLetter(char letter) {
  switch (letter) {
    case 'P': return 1;
    case 'N': return 2;
    case 'B': return 3;
    case 'R': return 4;
    case 'Q': return 5;
    case 'K': return 6;
    case 'p': return -1;
    case 'n': return -2;
    case 'b': return -3;
    case 'r': return -4;
    case 'q': return -5;
    case 'k': return -6;
    default: return 0;
  }
}

// Squares are filled from a8: a digit skips squares, and "/" takes the index 16 back, which from
// the end of a full rank is the a-file of the next one. Ranks aren't counted or measured: a piece
// is refused only when it falls off the rank that the "/" signs reached, so a short last rank
// reads, and squares not described stay empty. The index is wide enough for any text length.
void ReadPlacement(const std::string& field, Piece squares[64]) {
  for (int s = 0; s < 64; ++s) squares[s] = 0;
  std::int64_t square = 56, rank = 7;
  for (char ch : field) {
    if (ch == '/') {
      square -= 16;
      --rank;
    } else if (ch >= '0' && ch <= '9') {
      square += ch - '0';
    } else if (int piece = PieceFromLetter(ch)) {
      if (square < 0 || square > 63 || square / 8 != rank) throw fen_io_error("piece off its rank in FEN");
      squares[square++] = Piece(piece);
    } else {
      throw fen_io_error(std::string("bad character in FEN placement: ") + ch);
    }
  }
}

int ReadCastling(const std::string& field) {
  if (field == "-") return 0;
  static const char kOrder[] = "KQkq";
  int rights = 0, next = 0;
  for (char ch : field) {
    while (next < 4 && kOrder[next] != ch) ++next;
    if (next == 4) throw fen_io_error("bad castling field in FEN: " + field);
    rights |= 1 << next++;
  }
  return rights;
}

}  // namespace

FenCounts ReadFen(const std::string& text, Board& board) {
  std::vector<std::string> fields;
  try {
    fields = TokenizeLine(text).tokens;
  } catch (const ZephrinUtils::tokenize_exception&) {
    throw fen_io_error("unterminated quotation in FEN");
  }
  if (fields.size() != 6) throw fen_io_error("FEN needs six fields");
  Piece squares[64];
  ReadPlacement(fields[0], squares);
  if (fields[1] != "w" && fields[1] != "b") throw fen_io_error("bad side to move in FEN: " + fields[1]);
  const int side = fields[1] == "w" ? WHITE : BLACK;
  const int castling = ReadCastling(fields[2]);
  int ep = 0;
  if (fields[3] != "-") {
    std::optional<Square> square = ParseSquare(fields[3]);
    if (!square) throw fen_io_error("bad en-passant square in FEN: " + fields[3]);
    ep = *square;
  }
  const std::int64_t half_moves = ReadNumber(fields[4], "half-move count");
  if (half_moves < 0 || half_moves > 100) throw fen_io_error("bad half-move count in FEN: " + fields[4]);
  // The move number is limited so that the ply count stays a 32-bit number.
  const std::int64_t full_moves = ReadNumber(fields[5], "move number");
  if (full_moves < 0 || full_moves > 1000000000) throw fen_io_error("bad move number in FEN: " + fields[5]);

  Board result;
  if (!result.SetPosition(squares, side, ep, castling)) throw fen_invalid_position("Illegal position");
  result.SetReversibleCount(int(half_moves));
  FenCounts counts;
  counts.half_move_count = int(half_moves);
  counts.full_move_number = full_moves == 0 ? 1 : int(full_moves);
  counts.first_ply = 2 * (counts.full_move_number - 1) + side;
  board.CopyFrom(result);
  return counts;
}

std::string BoardToFen(const Board& board, int full_move_number) {
  static const char kLetters[] = "kqrbnp.PNBRQK";
  std::string text;
  for (int rank = 7; rank >= 0; --rank) {
    int empty = 0;
    for (int file = 0; file < 8; ++file) {
      Piece p = board.squares[MakeSquare(file, rank)];
      if (p == 0) {
        ++empty;
        continue;
      }
      if (empty) text += char('0' + empty);
      empty = 0;
      text += kLetters[p + 6];
    }
    if (empty) text += char('0' + empty);
    if (rank) text += '/';
  }
  const BoardPlyState& state = board.plies[board.ply];
  text += board.side_to_move == WHITE ? " w " : " b ";
  text += state.castling ? board.CastlingText() : "-";
  text += ' ';
  text += state.ep_square ? SquareText(state.ep_square) : "-";
  text += ' ' + std::to_string(state.reversible_count) + ' ' + std::to_string(full_move_number);
  return text;
}

}  // namespace ZephrinInterfaces
