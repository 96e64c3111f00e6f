// For and For Each.
#include <utility>

#include "vbscript/conversions.h"
#include "vbscript/machine.h"
#include "vbscript/operators.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

// What For counts with.
Value countable(Engine& engine, const Value& value) {
  Value number = number_argument(engine, value.resolved());
  if (number.is(Type::kNull)) raise(ErrorCode::kInvalidUseOfNull);
  return number;
}

// The items of a collection, visited one after the other.
class ItemCursor : public Object {
 public:
  ItemCursor(Heap& heap, std::vector<Value> items) : Object(heap), items_(std::move(items)) {}
  std::string_view type_name() const override { return "Object"; }
  Value use_member(Engine&, std::string_view, Access, std::span<const Value>) override {
    raise(ErrorCode::kNoSuchMember);
  }
  Value use_default(Engine&, Access, std::span<const Value>) override { raise(ErrorCode::kNoSuchMember); }
  std::vector<Value> items(Engine&) override { return items_; }
  void clear() override { std::vector<Value>().swap(items_); }
  const Value* item(std::size_t at) const { return at < items_.size() ? &items_[at] : nullptr; }

 private:
  std::vector<Value> items_;
};

}  // namespace

// Whether the body is to run. The window's limit and step become numbers.
bool Machine::for_prepare(Value& counter, const Value& from, Value* window) {
  Value start = countable(engine_, from);
  Value limit = countable(engine_, window[0]);
  Value step = countable(engine_, window[1]);
  const Order direction = compare(engine_, step, Value::integer(0));
  const Order order = compare(engine_, start, limit);
  store(counter, std::move(start));
  window[0] = std::move(limit);
  window[1] = std::move(step);
  return direction == Order::kLess ? order != Order::kLess : order != Order::kGreater;
}

bool Machine::for_next(Value& counter, Value* window) {
  // The loop's beginning failed, and "On Error Resume Next" went on into the body.
  if (window[0].is(Type::kEmpty)) raise(ErrorCode::kForLoopNotInitialised);
  store(counter, add(engine_, counter.resolved(), window[1]));
  const Order direction = compare(engine_, window[1], Value::integer(0));
  const Order order = compare(engine_, counter.resolved(), window[0]);
  return direction == Order::kLess ? order != Order::kLess : order != Order::kGreater;
}

void Machine::for_each_prepare(Frame& frame, const Instruction& instruction, Value* bases[]) {
  Value* window = &at(bases, instruction.a);
  Value& place = at(bases, instruction.b);
  const Value collection = place.resolved();
  if ((instruction.extra & kConsumeFirst) != 0) place.reset();
  if (collection.is(Type::kArray)) {
    window[0] = Value::lock(collection.array());
  } else {
    if (!collection.is(Type::kObject)) raise(ErrorCode::kNotACollection, operand_name(*frame.code, instruction.b));
    if (collection.object() == nullptr) raise(ErrorCode::kObjectNotSet, operand_name(*frame.code, instruction.b));
    std::vector<Value> items = collection.object()->items(engine_);
    charge_steps(static_cast<std::int64_t>(items.size()));
    window[0] = Value::adopt(static_cast<Object*>(new ItemCursor(heap(), std::move(items))));
  }
  window[1] = Value::of_long(0);
}

bool Machine::for_each_next(Value& variable, Value* window) {
  if (window[0].is(Type::kEmpty)) raise(ErrorCode::kForLoopNotInitialised);
  const auto at = static_cast<std::size_t>(window[1].number());
  const Value* item = nullptr;
  if (window[0].is(Type::kArrayLock)) {
    const Array& array = *window[0].array();
    if (at < array.elements.size()) item = &array.elements[at];
  } else {
    item = static_cast<const ItemCursor*>(window[0].object())->item(at);
  }
  if (item == nullptr) return false;
  Value& target = variable.resolved();
  if (target.is(Type::kArray) && target.array()->fixed) raise(ErrorCode::kTypeMismatch);
  Value copy = *item;
  if (copy.is(Type::kArray)) {
    assign(target, std::move(copy));
  } else {
    target = std::move(copy);
  }
  window[1].set_number(Type::kLong, static_cast<std::int32_t>(at + 1));
  return true;
}

}  // namespace pv::vbscript
