#include "ending_material.h"

#include <algorithm>
#include <functional>

namespace ZephrinTablegen {

namespace {

constexpr char LETTERS[] = " pnbrqk";

PieceType TypeOfLetter(char letter) {
  for (PieceType type = PAWN; type <= QUEEN; ++type)
    if (LETTERS[type] == letter) return type;
  return NO_PIECE;
}

// A side's men, strongest first.
std::vector<PieceType> MenOf(const Material& material, Color colour) {
  std::vector<PieceType> men;
  for (int i = 2; i < material.count; ++i)
    if (material.colour[i] == colour) men.push_back(material.type[i]);
  std::sort(men.begin(), men.end(), std::greater<>());
  return men;
}

std::string SideLetters(const std::vector<PieceType>& men) {
  std::string letters = "k";
  for (PieceType type : men) letters += LETTERS[type];
  return letters;
}

}  // namespace

bool ParseEndingName(const std::string& name, Material& material) {
  material = Material{};
  if (name.size() < 2 || name[0] != 'k') return false;
  const auto second_king = name.find('k', 1);
  if (second_king == std::string::npos || name.size() > 2 + MAX_MEN - 2) return false;
  for (std::size_t i = 1; i < name.size(); ++i) {
    if (i == second_king) continue;
    const PieceType type = TypeOfLetter(name[i]);
    if (type == NO_PIECE) return false;
    material.type[material.count] = type;
    material.colour[material.count] = i < second_king ? WHITE : BLACK;
    ++material.count;
  }
  bool exchanged = false;
  return NormalEndingName(material, exchanged) == name && !exchanged;
}

std::string NormalEndingName(const Material& material, bool& colours_exchanged) {
  const std::vector<PieceType> white = MenOf(material, WHITE), black = MenOf(material, BLACK);
  colours_exchanged = black.size() > white.size() || (black.size() == white.size() && black > white);
  return colours_exchanged ? SideLetters(black) + SideLetters(white) : SideLetters(white) + SideLetters(black);
}

Material MaterialAfter(const Material& material, int man, int captured, PieceType promotion) {
  Material after;
  after.count = 0;
  for (int i = 0; i < material.count; ++i) {
    if (i == captured) continue;
    after.type[after.count] = i == man && promotion != NO_PIECE ? promotion : material.type[i];
    after.colour[after.count] = material.colour[i];
    ++after.count;
  }
  return after;
}

std::vector<std::string> SuccessorEndings(const Material& material) {
  std::vector<std::string> names;
  auto add = [&](const Material& after) {
    bool exchanged = false;
    const std::string name = NormalEndingName(after, exchanged);
    if (name != "kk" && std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
  };
  for (int captured = 2; captured < material.count; ++captured) add(MaterialAfter(material, -1, captured, NO_PIECE));
  for (int man = 2; man < material.count; ++man) {
    if (material.type[man] != PAWN) continue;
    for (PieceType promotion = KNIGHT; promotion <= QUEEN; ++promotion) {
      add(MaterialAfter(material, man, -1, promotion));
      for (int captured = 2; captured < material.count; ++captured)
        if (material.colour[captured] != material.colour[man]) add(MaterialAfter(material, man, captured, promotion));
    }
  }
  return names;
}

}  // namespace ZephrinTablegen
