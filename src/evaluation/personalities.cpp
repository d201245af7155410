#include "evaluation/personalities.h"

#include <algorithm>
#include <cstdint>

#include "hash/hash.h"

int LimitPersonality(int value) { return std::clamp(value, MIN_PERSONALITY, MAX_PERSONALITY); }

void SetPersonality(EvaluationSettings& settings, int value) {
  settings.personality = std::int16_t(LimitPersonality(value));
  TranspositionTable.Clear();
  EvaluationHashTable.Clear();
}
