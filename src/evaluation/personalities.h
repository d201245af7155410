// A personality is one number added to the mix of the two halves of a score: positive leans to the
// dynamic half (reckless), negative to the positional half (material and structure). It changes no
// table and no term; only the mix.
#pragma once

#include "evaluation/evaluation_settings.h"

// The two absolute personalities: beyond them the mix takes one half outright.
constexpr int MAX_PERSONALITY = 1000;
constexpr int MIN_PERSONALITY = -1000;

// Any parsed number brought into MIN_PERSONALITY..MAX_PERSONALITY.
int LimitPersonality(int value);

// Makes everything that evaluates with `settings` use the new value. The scores stored in the
// transposition and evaluation tables were mixed with the old value and are dropped; the pawn
// table keeps both halves unmixed and stays.
void SetPersonality(EvaluationSettings& settings, int value);
