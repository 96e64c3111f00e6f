#include "vbscript/operators.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <random>

#include "vbscript/engine.h"

namespace pv::vbscript {
namespace {

// Exact for factors whose product fits 64 bits.
std::int64_t slow_product(std::int64_t left, std::int64_t right) {
  const std::int64_t exact = left * right;
  const std::int64_t whole = exact / 10000;
  const std::int64_t twice = std::abs(exact % 10000) * 2;
  const bool away = twice > 10000 || (twice == 10000 && whole % 2 != 0);
  return away ? whole + (exact < 0 ? -1 : 1) : whole;
}

TEST(Operators, CurrencyProductsAreExact) {
  Engine engine;
  std::mt19937 random(1);
  std::uniform_int_distribution<std::int64_t> factor(-3'000'000'000, 3'000'000'000);
  for (int i = 0; i < 20000; ++i) {
    const std::int64_t left = factor(random) / 10 * 10 + (i % 3 == 0 ? 5 : 0);
    const std::int64_t right = i % 2 == 0 ? factor(random) : (factor(random) % 1000) * 1000;
    const Value product = multiply(engine, Value::currency(left), Value::currency(right));
    ASSERT_EQ(product.scaled(), slow_product(left, right)) << left << " * " << right;
  }
}

TEST(Operators, ReferencesAndErrorValuesAsOperands) {
  Engine engine;
  Value three = Value::integer(3);
  const Value reference = Value::reference(three);
  EXPECT_EQ(add(engine, reference, reference).number(), 6);
  EXPECT_EQ(compare(engine, reference, Value::integer(4)), Order::kLess);
  EXPECT_THROW(add(engine, Value::error(5), three), RuntimeError);
  EXPECT_THROW(compare(engine, Value::missing(), three), RuntimeError);
  EXPECT_THROW(logical_not(engine, Value::missing()), RuntimeError);
}

}  // namespace
}  // namespace pv::vbscript
