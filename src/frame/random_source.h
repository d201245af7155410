// The non-deterministic random source, for the few places that want a different value per run.
#pragma once

// A value below 32768 from a linear congruential generator seeded with the time at the first call.
// Meant for rare use: it notes in the log when it is called more than ten times.
int NonDeterministicRand_16bit();
