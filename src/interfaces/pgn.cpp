#include "interfaces/pgn.h"

#include <cctype>
#include <limits>
#include <vector>

#include "interfaces/fen.h"
#include "interfaces/move_text.h"

namespace ZephrinInterfaces {

namespace {

constexpr std::size_t LINE_WIDTH = 70;
constexpr std::streamsize COMMENT_SKIP_LIMIT = 1000;

void WriteTag(std::ostream& out, const char* name, const std::string& value) {
  out << '[' << name << " \"" << value << "\"]\n";
}

// "1. e4 ", "1... e5 " or "e5 ": the move with its number where one belongs.
std::string MoveToken(const GameBoard& board, Move move, int number, bool first) {
  std::string token;
  if (board.side_to_move == WHITE) token = std::to_string(number) + ". ";
  if (board.side_to_move == BLACK && first) token = std::to_string(number) + "... ";
  return token + MoveToText(board, move, NOTATION_SAN) + ' ';
}

// Turns on exceptions for failures of the stream and restores the caller's setting afterwards.
class ThrowingStream {
 public:
  explicit ThrowingStream(std::istream& in) : in_(in), saved_(in.exceptions()) {
    in_.exceptions(std::ios::failbit | std::ios::badbit);
  }
  ~ThrowingStream() {
    in_.exceptions(std::ios::goodbit);
    if ((in_.rdstate() & saved_) == 0) in_.exceptions(saved_);  // restoring must not throw
  }
  ThrowingStream(const ThrowingStream&) = delete;
  ThrowingStream& operator=(const ThrowingStream&) = delete;

 private:
  std::istream& in_;
  std::ios::iostate saved_;
};

std::string TrimRight(std::string text) {
  while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.pop_back();
  return text;
}

std::string* TagField(PgnTags& tags, const std::string& key) {
  if (key == "Event") return &tags.event;
  if (key == "Site") return &tags.site;
  if (key == "Date") return &tags.date;
  if (key == "Round") return &tags.round;
  if (key == "White") return &tags.white;
  if (key == "Black") return &tags.black;
  if (key == "TimeControl") return &tags.time_control;
  if (key == "FEN") return &tags.fen;
  return nullptr;
}

// Files saved by some editors begin with the UTF-8 byte order mark.
void SkipByteOrderMark(std::istream& in) {
  static const std::string mark = "\xEF\xBB\xBF";
  for (char c : mark) {
    if (in.peek() != static_cast<unsigned char>(c)) return;
    in.get();
  }
}

void ReadTags(std::istream& in, PgnTags& tags) {
  SkipByteOrderMark(in);
  while ((in >> std::ws).peek() == '[') {
    in.get();
    std::string key, value;
    in >> key;
    in.get();
    std::getline(in, value);
    value = TrimRight(value);
    if (value.size() < 3 || value.front() != '"' || value.compare(value.size() - 2, 2, "\"]") != 0) {
      throw UserBoard::io_error();
    }
    if (std::string* field = TagField(tags, key)) *field = value.substr(1, value.size() - 3);
  }
}

// "12.e4" and "12...e5" lose their number; "12." and "12..." stay as they are.
std::string WithoutMoveNumber(const std::string& word) {
  std::size_t digits = 0;
  while (digits < word.size() && std::isdigit(static_cast<unsigned char>(word[digits]))) ++digits;
  std::size_t dots = 0;
  while (digits + dots < word.size() && dots < 3 && word[digits + dots] == '.') ++dots;
  if (digits == 0 || dots == 0 || digits + dots == word.size()) return word;
  return word.substr(digits + dots);
}

bool IsResultWord(const std::string& word) {
  return word == "1-0" || word == "0-1" || word == "1/2-1/2" || word == "*";
}

// A variation opened by the word: passes over everything up to its closing parenthesis, nested
// variations and comments included.
void SkipVariation(std::istream& in, const std::string& word) {
  int depth = 0;
  bool in_comment = false;
  const auto feed = [&](char c) {
    if (in_comment) {
      in_comment = c != '}';
    } else if (c == '{') {
      in_comment = true;
    } else if (c == '(') {
      ++depth;
    } else if (c == ')') {
      --depth;
    }
  };
  for (char c : word) feed(c);
  while (depth > 0) feed(char(in.get()));
}

// "e4!", "Nf3?!": the move without its annotation marks.
std::string WithoutAnnotation(std::string word) {
  while (word.size() > 1 && (word.back() == '!' || word.back() == '?')) word.pop_back();
  return word;
}

void ReadMoves(std::istream& in, UserBoard& game) {
  for (;;) {
    std::string word;
    in >> word;
    word = WithoutMoveNumber(word);
    if (IsResultWord(word)) {
      if (!in.eof()) in.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
      return;
    }
    if (word.front() == ';') {
      in.ignore(COMMENT_SKIP_LIMIT, '\n');
    } else if (word.front() == '{') {
      if (word.find('}') == std::string::npos) in.ignore(COMMENT_SKIP_LIMIT, '}');
    } else if (word.front() == '(') {
      SkipVariation(in, word);
    } else if (word.back() != '.' && word.front() != '$') {
      Move move = MOVE_INVALID;
      if (ParseMove(game.Current(), WithoutAnnotation(word), move) != PARSE_OK) {
        throw UserBoard::invalid_move();
      }
      game.PlayMove(move);
    }
  }
}

}  // namespace

// A game from anywhere but the standard start carries its first position in SetUp and FEN tags,
// as other programs need them to replay it; its move numbers continue the FEN's full move number.
void WritePgn(const UserBoard& game, std::ostream& out, const PgnTags& tags) {
  int number = game.FirstPly() / 2 + 1;
  const std::string start_fen = BoardToFen(game.Initial(), number);
  WriteTag(out, "Event", tags.event);
  WriteTag(out, "Site", tags.site);
  WriteTag(out, "Date", tags.date);
  WriteTag(out, "Round", tags.round);
  WriteTag(out, "White", tags.white);
  WriteTag(out, "Black", tags.black);
  WriteTag(out, "Result", ResultText(game.Current().result));
  if (start_fen != BoardToFen(Board(), 1)) {
    WriteTag(out, "SetUp", "1");
    WriteTag(out, "FEN", start_fen);
  }
  WriteTag(out, "TimeControl", tags.time_control);
  out << '\n';

  GameBoard board(game.Initial());
  std::vector<std::uint64_t> keys;
  std::size_t width = 0;
  for (std::size_t i = 0; i < game.Moves().size(); ++i) {
    const Move move = game.Moves()[i];
    const std::string token = MoveToken(board, move, number, i == 0);
    width += token.size();
    if (width > LINE_WIDTH) {
      out << '\n';
      width = token.size();
    }
    out << token;
    if (board.side_to_move == BLACK) ++number;
    board.PlayAndCheck(move, keys);
  }
  out << '\n' << ResultText(game.Current().result) << '\n';
}

void ReadPgn(UserBoard& game, std::istream& in, PgnTags& tags) {
  UserBoard read;
  PgnTags read_tags;
  try {
    ThrowingStream throwing(in);
    ReadTags(in, read_tags);
    if (!read_tags.fen.empty()) read.SetFromFen(read_tags.fen);
    ReadMoves(in, read);
  } catch (const UserBoard::user_exception&) {
    throw;
  } catch (const std::exception&) {
    // Stream failures; caught by their base, since the library may throw a failure type of
    // another ABI than the one this code names.
    throw UserBoard::io_error();
  }
  read.UndoAll();
  game = read;
  tags = read_tags;
}

}  // namespace ZephrinInterfaces
