#include "interfaces/game_files.h"

#include <fstream>

namespace ZephrinInterfaces {

namespace {

constexpr int FEN_FIELDS = 6;

std::ofstream OpenForWriting(const std::string& file_name) {
  std::ofstream out(file_name, std::ios::out | std::ios::trunc);
  if (!out) throw game_file_error("could not open file");
  return out;
}

std::ifstream OpenForReading(const std::string& file_name) {
  std::ifstream in(file_name);
  if (!in) throw game_file_error("could not open file");
  return in;
}

}  // namespace

void WriteFenFile(const UserBoard& game, std::ostream& out) { out << PositionToFen(game) << '\n'; }

void ReadFenFile(UserBoard& game, std::istream& in) {
  std::string fen;
  for (int field = 0; field < FEN_FIELDS; ++field) {
    std::string word;
    if (!(in >> word)) throw UserBoard::io_error();
    fen += (field == 0 ? "" : " ") + word;
  }
  UserBoard read;
  read.SetFromFen(fen);
  game = read;
}

void SaveFen(const std::string& file_name, const UserBoard& game) {
  std::ofstream out = OpenForWriting(file_name);
  WriteFenFile(game, out);
  out.flush();
  if (!out) throw game_file_error("could not write FEN file");
}

UserBoard LoadFen(const std::string& file_name) {
  std::ifstream in = OpenForReading(file_name);
  UserBoard game;
  try {
    ReadFenFile(game, in);
  } catch (const UserBoard::io_error&) {
    throw game_file_error("could not read FEN file");
  } catch (const UserBoard::invalid_position&) {
    throw game_file_error("Illegal position");
  }
  return game;
}

void SavePgn(const std::string& file_name, const UserBoard& game, const std::string& white_name,
             const std::string& black_name) {
  std::ofstream out = OpenForWriting(file_name);
  PgnTags tags;
  tags.white = white_name;
  tags.black = black_name;
  WritePgn(game, out, tags);
  out.flush();
  if (!out) throw game_file_error("could not write PGN file");
}

UserBoard LoadPgn(const std::string& file_name, PgnTags& tags) {
  std::ifstream in = OpenForReading(file_name);
  UserBoard game;
  PgnTags read_tags;
  try {
    ReadPgn(game, in, read_tags);
  } catch (const UserBoard::io_error&) {
    throw game_file_error("could not read PGN file");
  } catch (const UserBoard::invalid_move&) {
    throw game_file_error("Illegal move");
  } catch (const UserBoard::invalid_position&) {
    throw game_file_error("Illegal position");
  }
  tags = read_tags;
  return game;
}

std::string PgnTagsText(const PgnTags& tags) {
  std::string text;
  const auto add = [&text](const char* name, const std::string& value) {
    text += std::string(name) + "\t\"" + value + "\"\n";
  };
  add("Event", tags.event);
  add("Site", tags.site);
  add("Date", tags.date);
  add("Round", tags.round);
  add("White", tags.white);
  add("Black", tags.black);
  add("TimeControl", tags.time_control);
  return text;
}

}  // namespace ZephrinInterfaces
