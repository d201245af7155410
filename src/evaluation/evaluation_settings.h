// What every evaluation of one search tree shares: the draw score as White sees it, and the
// personality that shifts the mix of the two halves of a score.
#pragma once

#include <cstdint>

struct EvaluationSettings {
  // The contempt value, negated when Black is to move in the game's position.
  std::int16_t white_draw_score = 0;
  // 0 by default; positive leans to the dynamic half, negative to the positional half.
  std::int16_t personality = 0;
};

// The program's one instance, living as long as the process. The search tree's record points at
// it; commands that evaluate on their own (eval) make a private copy.
extern EvaluationSettings EvalSettings;
