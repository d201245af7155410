#include "evaluation/evaluation_settings.h"

EvaluationSettings EvalSettings;
