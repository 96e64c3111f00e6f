// The random numbers of Rnd.
#pragma once

#include <cstdint>

#include "vbscript/value.h"

namespace pv::vbscript {

class Engine;

// The generator that VBScript documents: x1 = (x0 * 1140671485 + 12820163) mod 2^24. Every engine starts with the same
// number, so that a script without Randomize gives the same row each time.
struct RandomState {
  std::uint32_t state = 327680;
};

// Steps on; the result is below 1 and never negative.
float next_random(RandomState& random);
float last_random(const RandomState& random);  // without stepping on: Rnd(0)

// Rnd with a negative number: the same number gives the same row, whatever came before.
void restart_random(RandomState& random, float negative);
// Randomize with a number: mixes it into the state, so the row also depends on what came before.
void mix_random(RandomState& random, double seed);

// The statement; nullptr: without a number, the clock is the seed.
void randomize(Engine& engine, const Value* seed);

}  // namespace pv::vbscript
