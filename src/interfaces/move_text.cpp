#include "interfaces/move_text.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <vector>

#include "board/move_generator.h"

namespace ZephrinInterfaces {

namespace {

constexpr char PIECE_LETTERS[] = " PNBRQK";
constexpr std::size_t PARSE_BUFFER_SIZE = 16;

char FileLetter(Square s) { return char('a' + FileOf(s)); }
char RankDigit(Square s) { return char('1' + RankOf(s)); }
std::string SquareName(Square s) { return {FileLetter(s), RankDigit(s)}; }

bool IsFileLetter(char c) { return c >= 'a' && c <= 'h'; }
bool IsFileLetterAnyCase(char c) { return IsFileLetter(char(std::tolower(static_cast<unsigned char>(c)))); }
bool IsRankDigit(char c) { return c >= '1' && c <= '8'; }
int FileIndex(char c) { return std::tolower(static_cast<unsigned char>(c)) - 'a'; }

bool IsCastling(Move move) {
  const int file_step = FileOf(MoveTo(move)) - FileOf(MoveFrom(move));
  return MoveMoved(move) == KING && (file_step == 2 || file_step == -2);
}

bool HasLegalMove(const Board& board) {
  Move list[MAX_MOVES];
  return GenerateMoves(list, board, GEN_ALL) != list;
}

// "+" for a check, "#" for a mate.
std::string CheckMark(const GameBoard& board, Move move) {
  if (!MoveGivesCheck(move)) return "";
  Board after(board);
  after.MakeMove(move);
  return HasLegalMove(after) ? "+" : "#";
}

std::string CastlingText(Move move) { return FileOf(MoveTo(move)) == 6 ? "O-O" : "O-O-O"; }

std::string PromotionSuffix(Move move) {
  if (MovePromotion(move) == NO_PIECE) return "";
  return std::string("=") + PIECE_LETTERS[MovePromotion(move)];
}

// File, rank or both of the from-square, as far as other pieces of the same kind reaching the
// same square make it necessary.
std::string Disambiguation(const GameBoard& board, Move move) {
  std::vector<Move> moves;
  GenerateLegalMoves(board, moves);
  bool rivals = false, shares_file = false, shares_rank = false;
  const Square from = MoveFrom(move);
  for (Move other : moves) {
    if (MoveMoved(other) != MoveMoved(move) || MoveTo(other) != MoveTo(move) || MoveFrom(other) == from) {
      continue;
    }
    rivals = true;
    shares_file |= FileOf(MoveFrom(other)) == FileOf(from);
    shares_rank |= RankOf(MoveFrom(other)) == RankOf(from);
  }
  if (!rivals) return "";
  if (!shares_file) return {FileLetter(from)};
  if (shares_rank) return {FileLetter(from), RankDigit(from)};
  return {RankDigit(from)};
}

std::string SanText(const GameBoard& board, Move move) {
  if (IsCastling(move)) return CastlingText(move) + (MoveGivesCheck(move) ? "+" : "");
  const PieceType moved = MoveMoved(move);
  const bool capture = MoveCaptured(move) != NO_PIECE;
  std::string text;
  if (moved == PAWN) {
    if (capture) text += FileLetter(MoveFrom(move));
  } else {
    text += PIECE_LETTERS[moved];
    if (moved != KING) text += Disambiguation(board, move);
  }
  if (capture) text += 'x';
  return text + SquareName(MoveTo(move)) + PromotionSuffix(move) + CheckMark(board, move);
}

std::string LongText(const GameBoard& board, Move move) {
  if (IsCastling(move)) return CastlingText(move) + (MoveGivesCheck(move) ? "+" : "");
  return PIECE_LETTERS[MoveMoved(move)] + SquareName(MoveFrom(move)) +
         (MoveCaptured(move) != NO_PIECE ? "x" : "-") + SquareName(MoveTo(move)) +
         PromotionSuffix(move) + CheckMark(board, move);
}

std::string CoordinateText(Move move) {
  std::string text = SquareName(MoveFrom(move)) + SquareName(MoveTo(move));
  const PieceType promotion = MovePromotion(move);
  if (promotion != NO_PIECE && promotion != QUEEN) text += PIECE_LETTERS[promotion];
  return text;
}

// The piece named by a promotion letter, in either case; NO_PIECE for anything else.
PieceType PromotionPiece(char c) {
  switch (std::toupper(static_cast<unsigned char>(c))) {
    case 'B': return BISHOP;
    case 'N': return KNIGHT;
    case 'Q': return QUEEN;
    case 'R': return ROOK;
    default: return NO_PIECE;
  }
}

// The piece named by the first letter of a SAN move: "B" in upper case only, since "b" is a file.
PieceType LeadingPiece(char c) {
  if (c == 'B') return BISHOP;
  switch (std::toupper(static_cast<unsigned char>(c))) {
    case 'K': return KING;
    case 'N': return KNIGHT;
    case 'P': return PAWN;
    case 'Q': return QUEEN;
    case 'R': return ROOK;
    default: return NO_PIECE;
  }
}

bool IsCoordinateSquare(const std::string& buffer, std::size_t at) {
  return IsFileLetterAnyCase(buffer[at]) && IsRankDigit(buffer[at + 1]);
}

Square SquareAt(const std::string& buffer, std::size_t at) {
  return MakeSquare(FileIndex(buffer[at]), buffer[at + 1] - '1');
}

std::optional<Move> ParseCoordinates(const std::string& buffer, const std::vector<Move>& moves) {
  if (!IsCoordinateSquare(buffer, 0) || !IsCoordinateSquare(buffer, 2)) return std::nullopt;
  const Square from = SquareAt(buffer, 0), to = SquareAt(buffer, 2);
  const PieceType asked = PromotionPiece(buffer[4] == '=' ? buffer[5] : buffer[4]);
  for (Move move : moves) {
    if (MoveFrom(move) != from || MoveTo(move) != to) continue;
    const PieceType promotion = MovePromotion(move);
    if (asked != NO_PIECE ? promotion == asked : (promotion == NO_PIECE || promotion == QUEEN)) {
      return move;
    }
  }
  return std::nullopt;
}

// Castling written with "O", "o" or "0"; nothing if the text isn't a castling at all.
std::optional<ParseMoveResult> ParseCastling(const GameBoard& board, const std::string& buffer,
                                             const std::vector<Move>& moves, Move& result) {
  const char mark = buffer[0];
  if ((mark != 'o' && mark != 'O' && mark != '0') || buffer[1] != '-' || buffer[2] != mark) {
    return std::nullopt;
  }
  const bool long_castling = buffer[3] == '-' && buffer[4] == mark;
  const char behind = buffer[long_castling ? 5 : 3];
  if (behind != '\0' && behind != ' ' && behind != '+' && behind != '#') return PARSE_SYNTAX_ERROR;
  const int rank = board.side_to_move == WHITE ? 0 : 7;
  const Square from = MakeSquare(4, rank), to = MakeSquare(long_castling ? 2 : 6, rank);
  for (Move move : moves) {
    if (MoveMoved(move) == KING && MoveFrom(move) == from && MoveTo(move) == to) {
      result = move;
      return PARSE_OK;
    }
  }
  return PARSE_INVALID_MOVE;
}

// What a SAN text says about its move; every field is optional.
struct SanDetails {
  PieceType piece = NO_PIECE;
  PieceType promotion = NO_PIECE;
  int to_file = -1, to_rank = -1, from_file = -1, from_rank = -1;
  bool capture = false;
  bool check = false;

  bool Fits(Move move) const {
    if (piece != NO_PIECE && MoveMoved(move) != piece) return false;
    if (promotion != NO_PIECE && MovePromotion(move) != promotion) return false;
    if (capture && MoveCaptured(move) == NO_PIECE) return false;
    if (check && !MoveGivesCheck(move)) return false;
    const Square from = MoveFrom(move), to = MoveTo(move);
    return (to_file < 0 || FileOf(to) == to_file) && (to_rank < 0 || RankOf(to) == to_rank) &&
           (from_file < 0 || FileOf(from) == from_file) && (from_rank < 0 || RankOf(from) == from_rank);
  }
};

// Takes a rank digit and then a file letter off the end of `text`, where they stand; either may be
// missing, as in "Nbd7" or "R1e2".
void TakeSquareFromBack(std::string& text, int& file, int& rank) {
  if (!text.empty() && IsRankDigit(text.back())) {
    rank = text.back() - '1';
    text.pop_back();
  }
  if (!text.empty() && IsFileLetterAnyCase(text.back())) {
    file = FileIndex(text.back());
    text.pop_back();
  }
}

// Takes the SAN text apart from both ends; false if characters are left that mean nothing.
bool ReadSanDetails(std::string text, SanDetails& details) {
  std::size_t at = text.find('+');
  if (at == std::string::npos) at = text.find('#');
  if (at != std::string::npos) {
    text.erase(at);
    details.check = true;
  }
  at = text.find('x');
  if (at == std::string::npos) at = text.find(':');
  if (at != std::string::npos) {
    text.erase(at, 1);
    details.capture = true;
  }
  const std::size_t equals = text.find('=');
  if (equals != std::string::npos) {
    text.erase(equals, 1);
    if (equals < text.size() && PromotionPiece(text[equals]) != NO_PIECE) {
      details.promotion = PromotionPiece(text[equals]);
      details.piece = PAWN;
      text.erase(equals);
    }
  }
  TakeSquareFromBack(text, details.to_file, details.to_rank);
  if (equals == std::string::npos && !text.empty() && LeadingPiece(text.front()) != NO_PIECE) {
    details.piece = LeadingPiece(text.front());
    text.erase(0, 1);
  }
  TakeSquareFromBack(text, details.from_file, details.from_rank);
  return text.empty();
}

ParseMoveResult ParseSan(const std::string& buffer, const std::vector<Move>& moves, Move& result) {
  SanDetails details;
  if (!ReadSanDetails(buffer.substr(0, buffer.find('\0')), details)) return PARSE_SYNTAX_ERROR;
  std::vector<Move> fitting;
  std::copy_if(moves.begin(), moves.end(), std::back_inserter(fitting),
               [&](Move move) { return details.Fits(move); });
  if (fitting.empty()) return PARSE_NO_MATCH;
  if (fitting.size() == 1) {
    result = fitting.front();
    return PARSE_OK;
  }
  if (details.piece == NO_PIECE) {
    const auto is_pawn_move = [](Move move) { return MoveMoved(move) == PAWN; };
    if (std::count_if(fitting.begin(), fitting.end(), is_pawn_move) == 1) {
      result = *std::find_if(fitting.begin(), fitting.end(), is_pawn_move);
      return PARSE_OK;
    }
  }
  return PARSE_AMBIGUOUS;
}

}  // namespace

ParseMoveResult ParseMove(const GameBoard& board, const std::string& text, Move& move) {
  if (board.IsFinished()) return PARSE_GAME_OVER;
  // A fixed buffer, zero-filled, so that every look a few characters ahead is defined.
  std::string buffer = text.substr(0, PARSE_BUFFER_SIZE);
  buffer.resize(PARSE_BUFFER_SIZE + 2, '\0');
  if (buffer[0] == '\0') return PARSE_SYNTAX_ERROR;

  std::vector<Move> moves;
  GenerateLegalMoves(board, moves);
  if (const std::optional<Move> coordinate = ParseCoordinates(buffer, moves)) {
    move = *coordinate;
    return PARSE_OK;
  }
  if (const std::optional<ParseMoveResult> castling = ParseCastling(board, buffer, moves, move)) {
    return *castling;
  }
  return ParseSan(buffer, moves, move);
}

std::string MoveToText(const GameBoard& board, Move move, MoveNotation notation) {
  switch (notation) {
    case NOTATION_COORDINATE: return CoordinateText(move);
    case NOTATION_LONG: return LongText(board, move);
    default: return SanText(board, move);
  }
}

}  // namespace ZephrinInterfaces
