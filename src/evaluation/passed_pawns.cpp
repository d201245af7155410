#include "evaluation/passed_pawns.h"

ScorePair EvaluatePassedPawns(EvaluationRecord&, const Board&) {
  return ScorePair();  // Not written yet.
}

ScorePair PassedPawnDetails(EvaluationRecord&, const Board&, Color, int) {
  return ScorePair();  // Not written yet.
}
