// Endings by name: "kqkr" is a white king and queen against a black king and rook. The side named
// first (white here) is the stronger: more men, or the stronger man when the counts are equal, and
// within a side the stronger man comes first. A capture or a promotion turns an ending into
// another one, its successor; these names say which.
#pragma once

#include <string>
#include <vector>

#include "small_position.h"

namespace ZephrinTablegen {

// The men of a name in slot order: the two kings, the first side's men as white, the second
// side's as black. False for anything that is not "k", men, "k", men with at most four men.
bool ParseEndingName(const std::string& name, Material& material);

// The name of the ending of these men, and whether its first side is black (the board must then
// be reflected top to bottom and the colours exchanged to read it). "kk" for the bare kings.
std::string NormalEndingName(const Material& material, bool& colours_exchanged);

// The distinct endings, other than the bare kings, that the captures and promotions of an
// ending lead to.
std::vector<std::string> SuccessorEndings(const Material& material);

// The men left after a man of `material` captures the one in slot `captured` (-1 none) and, if
// it is a pawn, becomes `promotion` (NO_PIECE none); slots keep their order.
Material MaterialAfter(const Material& material, int man, int captured, PieceType promotion);

}  // namespace ZephrinTablegen
