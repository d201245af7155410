#include "evaluation/king_safety.h"

ScorePair EvaluateKingSafety(EvaluationRecord&, const Board&) {
  return ScorePair();  // Not written yet: king_danger stays empty too.
}
