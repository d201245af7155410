// ENDING_LOOKUP: the ending of a set of piece counts, for the endings of up to three men besides
// the kings. FindEnding (nalimov_ending.h) reads it.
#pragma once

namespace NalimovTablebases {

// Parses the men of an ending's name into the counts of both sides and enters +id with the first
// side white, and -id with it black unless the ending is symmetric. False for a name that fits no
// counts.
bool EnterEnding(const char* name, int id, bool symmetric);

}  // namespace NalimovTablebases
