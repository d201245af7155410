#include "evaluation/piece_evaluation.h"

ScorePair EvaluateKnights(EvaluationRecord&, const Board&, Color, EvaluationVariant) {
  return ScorePair();  // Not written yet.
}

ScorePair EvaluateBishops(EvaluationRecord&, const Board&, Color) {
  return ScorePair();  // Not written yet.
}

ScorePair EvaluateRooks(EvaluationRecord&, const Board&, Color) {
  return ScorePair();  // Not written yet.
}

ScorePair EvaluateQueens(EvaluationRecord&, const Board&, Color, EvaluationVariant) {
  return ScorePair();  // Not written yet.
}

ScorePair EvaluateDevelopment(EvaluationRecord&, const Board&, EvaluationVariant) {
  return ScorePair();  // Not written yet.
}

ScorePair EvaluateSpace(EvaluationRecord&, const Board&) {
  return ScorePair();  // Not written yet.
}

ScorePair EvaluateKnightMobility(EvaluationRecord&, const Board&) {
  return ScorePair();  // Not written yet.
}
