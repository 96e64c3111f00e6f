#include "vbscript/random.h"

#include <bit>

#include "vbscript/clock.h"
#include "vbscript/conversions.h"
#include "vbscript/engine.h"

namespace pv::vbscript {

namespace {

constexpr std::uint32_t kMask = 0xFFFFFF;

}  // namespace

float last_random(const RandomState& random) {
  return static_cast<float>(random.state) / 16777216.0F;
}

float next_random(RandomState& random) {
  random.state = (random.state * 1140671485U + 12820163U) & kMask;
  return last_random(random);
}

void restart_random(RandomState& random, float negative) {
  const auto bits = std::bit_cast<std::uint32_t>(negative);
  random.state = (bits + (bits >> 24U)) & kMask;
}

// The upper half of the double goes into the middle bits; the lowest byte of the old state stays.
void mix_random(RandomState& random, double seed) {
  const auto upper = static_cast<std::uint32_t>(std::bit_cast<std::uint64_t>(seed) >> 32U);
  const std::uint32_t mixed = ((upper & 0xFFFFU) ^ (upper >> 16U)) << 8U;
  random.state = (random.state & 0xFFU) | (mixed & kMask);
}

void randomize(Engine& engine, const Value* seed) {
  const bool given = seed != nullptr && !seed->is_missing();
  mix_random(engine.random, given ? to_double(engine, *seed) : seconds_since_midnight(local_time()));
}

}  // namespace pv::vbscript
