#include "evaluation/passed_pawns.h"

ScorePair EvaluatePassedPawns(EvaluationRecord&, const Board&) {
  return ScorePair();  // Not written yet.
}
