// The operators for operands of any type. The machine does whole numbers and doubles itself and comes here for the
// rest.
#pragma once

#include "vbscript/value.h"

namespace pv::vbscript {

class Engine;

// Operands are resolved; objects are taken by their default property. Null with anything is Null, where VBScript says
// so.
Value add(Engine& engine, const Value& left, const Value& right);  // + : adds, or joins two texts
Value subtract(Engine& engine, const Value& left, const Value& right);
Value multiply(Engine& engine, const Value& left, const Value& right);
Value divide(Engine& engine, const Value& left, const Value& right);
Value divide_whole(Engine& engine, const Value& left, const Value& right);  // backslash
Value modulo(Engine& engine, const Value& left, const Value& right);
Value power(Engine& engine, const Value& left, const Value& right);
Value concatenate(Engine& engine, const Value& left, const Value& right);  // & ; Null counts as empty unless both are
Value negate(Engine& engine, const Value& operand);
Value plus(Engine& engine, const Value& operand);

Value logical_not(Engine& engine, const Value& operand);
Value logical_and(Engine& engine, const Value& left, const Value& right);
Value logical_or(Engine& engine, const Value& left, const Value& right);
Value logical_xor(Engine& engine, const Value& left, const Value& right);
Value logical_eqv(Engine& engine, const Value& left, const Value& right);
Value logical_imp(Engine& engine, const Value& left, const Value& right);

// How two values stand to one another. kNull when one of them is Null.
enum class Order { kLess, kEqual, kGreater, kNull, kUnordered };
// Two numbers compare as numbers, two texts by their bytes (Option Compare Binary), Empty as 0 or as "" by the other
// one; a number is always less than a text, also than one that holds a number.
Order compare(Engine& engine, const Value& left, const Value& right);

Value is_same_object(Engine& engine, const Value& left, const Value& right);  // Is ; error 424 for what is no object

}  // namespace pv::vbscript
