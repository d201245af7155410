// The three hash tables of the program, shared by the search, the evaluation and the commands, and
// what the `hash` command does with them.
#pragma once

#include <cstdint>
#include <string>

#include "hash/evaluation_hash_table.h"
#include "hash/pawn_hash_table.h"
#include "hash/transposition_table.h"

// Built at their smallest sizes; start-up gives them their default sizes.
extern TRANSPOSITION_TABLE TranspositionTable;
extern PAWN_HASH_TABLE PawnHashTable;
extern EVALUATION_HASH_TABLE EvaluationHashTable;

constexpr std::uint64_t DEFAULT_TRANSPOSITION_TABLE_BYTES = 0x2000000;  // 32 MiB
constexpr std::uint64_t DEFAULT_PAWN_HASH_TABLE_BYTES = 0x400000;        // 4 MiB
constexpr std::uint64_t DEFAULT_EVALUATION_HASH_TABLE_BYTES = 0x400000;  // 4 MiB

// Asks for the transposition and evaluation entries of a position about to be searched, so that
// their memory latencies overlap the work before the probes.
inline void PrefetchHashEntries(std::uint64_t key) {
  TranspositionTable.Prefetch(key);
  EvaluationHashTable.Prefetch(key);
}

// Start-up: the transposition, pawn and evaluation tables, in this order, get their default sizes.
// A table whose memory is refused stays at its smallest size.
void ResizeHashTablesToDefaults();

// The table named by the `hash` command's type word "trans", "pawn" or "eval"; null for others.
ABSTRACT_HASH_TABLE* HashTableByTypeName(const std::string& type);

// Refusals of `hash <type> <size>`.
inline const std::string HASH_UNKNOWN_TYPE = "unknown hashtable type";
inline const std::string HASH_BAD_SIZE = "could not parse new size";
inline const std::string HASH_NOT_IN_FORCE_MODE = "must be in force mode";
inline const std::string HASH_NOT_ENOUGH_MEMORY = "not enough memory, the table keeps its old size";

// `hash <type> <size>` after its argument count is known: checks the type, the size text and force
// mode in this order, then resizes the table, which loses its content. Returns the reason of the
// refusal, or the empty text when the table has its new size. A refused allocation leaves the table
// as it was, content included.
std::string ResizeHashTableByCommand(const std::string& type, const std::string& size_text, bool force_mode);

// The status of the three tables: name and memory size of each, and with `detailed` the total and
// free slots and the fill percentage.
std::string HashTablesStatusText(bool detailed);
