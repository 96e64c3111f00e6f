// What the run loop does in place: whole numbers, doubles and short texts, where one test of the types tells.
#pragma once

#include <cstdint>
#include <cstring>

#include "vbscript/value.h"

namespace pv::vbscript {

inline unsigned tag(const Value& value) {
  return static_cast<unsigned>(value.type());
}

// Integer or Long, both of them.
inline bool both_whole(const Value& left, const Value& right) {
  return ((tag(left) ^ 2U) | (tag(right) ^ 2U)) <= 1U;
}

inline bool is_whole(const Value& value) {
  return (tag(value) ^ 2U) <= 1U;
}

// Double with Double, Integer or Long.
inline bool both_real(const Value& left, const Value& right) {
  const bool left_double = left.is(Type::kDouble);
  const bool right_double = right.is(Type::kDouble);
  return (left_double && (right_double || is_whole(right))) || (right_double && is_whole(left));
}

// The number of a Double, Integer or Long.
inline bool load_real(const Value& value, double& real) {
  if (value.is(Type::kDouble)) {
    real = value.real();
    return true;
  }
  if (!is_whole(value)) return false;
  real = value.number();
  return true;
}

inline double real_of(const Value& value) {
  return value.is(Type::kDouble) ? value.real() : value.number();
}

// The sum or product of two whole numbers: the wider type of both, the next one where it does not fit.
inline void set_whole(Value& into, const Value& left, const Value& right, std::int64_t result) {
  const bool both_short = (tag(left) | tag(right)) == static_cast<unsigned>(Type::kInteger);
  const auto number = static_cast<std::int32_t>(result);
  if (both_short && number == static_cast<std::int16_t>(number) && number == result) {
    into.set_number(Type::kInteger, number);
  } else if (number == result) {
    into.set_number(Type::kLong, number);
  } else {
    into.set_real(Type::kDouble, static_cast<double>(result));
  }
}

template <typename T>
inline bool relation_holds(int relation, T left, T right) {
  switch (relation) {
    case 0:
      return left == right;
    case 1:
      return left != right;
    case 2:
      return left < right;
    case 3:
      return left > right;
    case 4:
      return left <= right;
    default:
      return left >= right;
  }
}

inline bool same_text(const Value& left, const Value& right) {
  const Text& a = *left.text();
  const Text& b = *right.text();
  return &a == &b || (a.length == b.length && std::memcmp(a.data(), b.data(), a.length) == 0);
}

// 1 or 0 where it is quickly told how two values compare, else -1. `relation` counts from Equal.
template <int kRelation>
inline int quick_compare(const Value& left, const Value& right) {
  if (both_whole(left, right)) return relation_holds(kRelation, left.number(), right.number()) ? 1 : 0;
  if (both_real(left, right)) return relation_holds(kRelation, real_of(left), real_of(right)) ? 1 : 0;
  if constexpr (kRelation <= 1) {
    if (left.is(Type::kString) && right.is(Type::kString) && left.text()->length < 256) {
      return same_text(left, right) == (kRelation == 0) ? 1 : 0;
    }
  }
  return -1;
}

}  // namespace pv::vbscript
