#include "hash/hash.h"

#include "frame/string_conversions.h"

TRANSPOSITION_TABLE TranspositionTable;
PAWN_HASH_TABLE PawnHashTable;
EVALUATION_HASH_TABLE EvaluationHashTable;

void ResizeHashTablesToDefaults() {
  TranspositionTable.Resize(DEFAULT_TRANSPOSITION_TABLE_BYTES);
  PawnHashTable.Resize(DEFAULT_PAWN_HASH_TABLE_BYTES);
  EvaluationHashTable.Resize(DEFAULT_EVALUATION_HASH_TABLE_BYTES);
}

ABSTRACT_HASH_TABLE* HashTableByTypeName(const std::string& type) {
  if (type == "trans") return &TranspositionTable;
  if (type == "pawn") return &PawnHashTable;
  if (type == "eval") return &EvaluationHashTable;
  return nullptr;
}

std::string ResizeHashTableByCommand(const std::string& type, const std::string& size_text, bool force_mode) {
  ABSTRACT_HASH_TABLE* table = HashTableByTypeName(type);
  if (table == nullptr) return HASH_UNKNOWN_TYPE;
  std::uint64_t bytes = 0;
  try {
    bytes = ToMemorySize(size_text);
  } catch (const string_conversion_error&) {
    return HASH_BAD_SIZE;
  }
  if (!force_mode) return HASH_NOT_IN_FORCE_MODE;
  return table->Resize(bytes) ? std::string() : HASH_NOT_ENOUGH_MEMORY;
}

namespace {

std::string TableStatusText(const std::string& name, const ABSTRACT_HASH_TABLE& table, bool detailed) {
  std::string text = name + ": " + MemorySizeText(table.MemorySize()) + "\n";
  if (!detailed) return text;
  const std::uint64_t total = table.SlotCount();
  const std::uint64_t free = table.FreeSlotCount();
  const std::uint64_t fill = (total - free) * 10000 / total;  // in hundredths of a percent
  const std::uint64_t hundredths = fill % 100;
  text += "#total slots:    " + ToText(total) + "\n";
  text += "#free  slots:    " + ToText(free) + "\n";
  text += "fill percentage: " + ToText(fill / 100) + "." + (hundredths < 10 ? "0" : "") + ToText(hundredths) +
          "%\n\n";
  return text;
}

}  // namespace

std::string HashTablesStatusText(bool detailed) {
  return TableStatusText("transposition table", TranspositionTable, detailed) +
         TableStatusText("pawn hashtable", PawnHashTable, detailed) +
         TableStatusText("evaluation hashtable", EvaluationHashTable, detailed);
}
