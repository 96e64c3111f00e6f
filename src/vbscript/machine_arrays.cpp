// Arrays: elements, ReDim, Erase; and objects that are used like arrays, by their default property.
#include <array>
#include <utility>

#include "vbscript/conversions.h"
#include "vbscript/instance.h"
#include "vbscript/machine.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

// Elements that count as one step of the time limit where they are made or copied.
constexpr std::size_t kElementsAStep = 8;

// The place of an element; false outside the bounds.
bool find_place(const Array& array, std::span<const std::int32_t> indices, std::size_t& place) {
  if (indices.size() != array.dimensions.size() || indices.empty()) return false;
  place = 0;
  for (std::size_t i = 0; i < indices.size(); ++i) {
    const Array::Dimension& dimension = array.dimensions[i];
    if (indices[i] < 0 || indices[i] > dimension.upper) return false;
    place += static_cast<std::size_t>(indices[i]) * dimension.stride;
  }
  return true;
}

std::string index_text(const Value& index) {
  TextStorage storage;
  if (index.is(Type::kInteger) || index.is(Type::kLong)) return "[number: " + std::to_string(index.number()) + "]";
  return {};
}

// May run the script's code where an index is an object: the caller keeps the array alive and where it is.
std::size_t place_of(Engine& engine, const Array& array, std::span<const Value> indices) {
  std::array<std::int32_t, kMaxArrayDimensions> numbers;
  if (indices.size() > numbers.size()) raise(ErrorCode::kSubscriptOutOfRange);
  for (std::size_t i = 0; i < indices.size(); ++i) numbers[i] = to_long(engine, indices[i].resolved());
  std::size_t place = 0;
  if (!find_place(array, {numbers.data(), indices.size()}, place)) {
    raise(ErrorCode::kSubscriptOutOfRange, indices.size() == 1 ? index_text(indices[0].resolved()) : std::string());
  }
  return place;
}

bool any_object(std::span<const Value> indices) {
  for (const Value& index : indices) {
    if (index.resolved().is(Type::kObject)) return true;
  }
  return false;
}

void require_changeable(const Array& array) {
  if (array.locks != 0) raise(ErrorCode::kArrayFixedOrLocked);
}

}  // namespace

Value Machine::copy_array(Array& array) {
  charge_steps(static_cast<std::int64_t>(array.elements.size() / kElementsAStep));
  Value made = Value::adopt(heap().new_array());
  Array& copy = *made.array();
  copy.dimensions = array.dimensions;
  copy.elements = array.elements;
  heap().account(copy);
  return made;
}

// What a fixed variable shares is copied with the variable staying fixed.
void Machine::own_array(Value& variable) {
  if (!variable.array()->shared()) return;
  const bool fixed = variable.array()->fixed;
  Value copy = copy_array(*variable.array());
  copy.array()->fixed = fixed;
  variable.swap(copy);
}

// An element that may be written to or referred to. `hold` keeps its array where the variable may let go of it.
Value& Machine::element(Value& variable, std::span<const Value> indices, Value& hold) {
  own_array(variable);
  Array* array = variable.array();
  if (any_object(indices)) hold = Value::lock(array);
  const std::size_t place = place_of(engine_, *array, indices);
  return array->elements[place];
}

Value Machine::element_value(const Value& array, std::span<const Value> indices) {
  const std::size_t place = place_of(engine_, *array.array(), indices);
  return array.array()->elements[place];
}

void Machine::dim_array(Value& variable, const Value* bounds, std::size_t count) {
  Value made = Value::adopt(heap().new_array());
  std::vector<std::int32_t> uppers;
  for (std::size_t i = 0; i < count; ++i) uppers.push_back(to_long(engine_, bounds[i].resolved()));
  if (count != 0) {
    heap().dimension(*made.array(), uppers);
    charge_steps(static_cast<std::int64_t>(made.array()->elements.size() / kElementsAStep));
    made.array()->fixed = true;
  }
  variable.resolved() = std::move(made);
}

void Machine::redim(Value& variable, const Value* bounds, std::size_t count, bool preserve) {
  std::vector<std::int32_t> uppers;
  std::uint64_t product = 1;
  for (std::size_t i = 0; i < count; ++i) {
    uppers.push_back(to_long(engine_, bounds[i].resolved()));
    if (uppers.back() < -1) raise(ErrorCode::kSubscriptOutOfRange);
    product *= static_cast<std::uint64_t>(uppers.back() + std::int64_t{1});
    if (product > kMaxArrayElements) raise(ErrorCode::kOutOfMemory);
  }
  const auto total = static_cast<std::size_t>(product);
  charge_steps(static_cast<std::int64_t>(total / kElementsAStep));
  Value& target = variable.resolved();
  if (target.is(Type::kArray)) {
    if (target.array()->fixed) raise(ErrorCode::kArrayFixedOrLocked);
    require_changeable(*target.array());
  }
  if (!preserve || !target.is(Type::kArray) || target.array()->dimensions.empty()) {
    Value made = Value::adopt(heap().new_array());
    heap().dimension(*made.array(), uppers);
    target = std::move(made);
    return;
  }
  own_array(target);
  Array& array = *target.array();
  if (array.dimensions.size() != count) raise(ErrorCode::kSubscriptOutOfRange);
  for (std::size_t i = 0; i + 1 < count; ++i) {
    if (array.dimensions[i].upper != uppers[i]) raise(ErrorCode::kSubscriptOutOfRange);
  }
  // The last dimension varies slowest, so the other elements stay where they are. Room grows by half, for scripts that
  // add one element at a time.
  if (total > array.elements.capacity()) {
    const std::size_t room =
        std::max(total, std::min(array.elements.size() + array.elements.size() / 2, kMaxArrayElements));
    const std::size_t bytes = room * sizeof(Value);
    heap().charge(bytes - array.charged);
    array.charged = bytes;
    array.elements.reserve(room);
  }
  array.elements.resize(total);
  array.dimensions.back().upper = uppers.back();
}

void Machine::erase(Value& variable) {
  Value& target = variable.resolved();
  if (!target.is(Type::kArray)) raise(ErrorCode::kTypeMismatch);
  require_changeable(*target.array());
  Value made = Value::adopt(heap().new_array());
  if (target.array()->fixed) {
    std::vector<std::int32_t> uppers;
    for (const Array::Dimension& dimension : target.array()->dimensions) uppers.push_back(dimension.upper);
    heap().dimension(*made.array(), uppers);
    charge_steps(static_cast<std::int64_t>(made.array()->elements.size() / kElementsAStep));
    made.array()->fixed = true;
  }
  target = std::move(made);
}

// The default property or method of an object, or the procedure that it stands for. `window` holds the arguments.
void Machine::call_default(Object& object, Value* window, std::size_t count, Value* destination, std::uint8_t flags) {
  const Access access = (flags & kStatement) != 0 ? Access::kCall : Access::kGet;
  if (const Code* procedure = object.procedure(); procedure != nullptr) {
    start_call(*procedure, nullptr, window, count, destination, flags);
    return;
  }
  if (Instance* instance = object.instance(); instance != nullptr) {
    const Member* member = instance->script_class().default_member;
    const Code* code = member == nullptr ? nullptr : public_procedure(*member, access);
    if (code == nullptr) raise(ErrorCode::kNoSuchMember);
    start_call(*code, instance, window, count, destination, flags);
    return;
  }
  Value hold = Value::share(&object);
  charge_steps(4);
  Value result = object.use_default(engine_, access, resolve_window(window, count));
  charge_result(result);
  clear_window(window, count);
  deliver(*destination, std::move(result), flags);
}

void Machine::index_single(Frame& frame, const Instruction& instruction, Value* bases[]) {
  Value& subject_place = at(bases, instruction.b);
  Value& index_place = at(bases, instruction.c);
  Value& destination = at(bases, instruction.a);
  const auto flags = static_cast<std::uint8_t>(instruction.extra);
  const Value subject = subject_place.resolved();
  const Value& index = index_place.resolved();
  Value result;
  if (subject.is(Type::kArray)) {
    result = element_value(subject, {&index, 1});
  } else {
    if (!subject.is(Type::kObject)) raise(ErrorCode::kTypeMismatch, operand_name(*frame.code, instruction.b));
    Object* object = subject.object();
    if (object == nullptr) raise(ErrorCode::kObjectNotSet, operand_name(*frame.code, instruction.b));
    if (object->instance() != nullptr || object->procedure() != nullptr) {
      // The script's own procedure: its argument goes behind this frame's registers, by reference where it can.
      Value* window = free_registers();
      const bool constant = kind_of(instruction.c) == OperandKind::kConstant;
      const bool temporary = (flags & kConsumeSecond) != 0;
      *window = constant || temporary ? Value(index) : Value::reference(index_place.resolved());
      if (temporary) index_place.reset();
      if ((flags & kConsumeFirst) != 0) subject_place.reset();
      try {
        call_default(*object, window, 1, &destination, flags);
      } catch (...) {
        if (frame_ == &frame) window->reset();
        throw;
      }
      return;
    }
    charge_steps(4);
    result = object->use_default(engine_, Access::kGet, {&index, 1});
  }
  if ((flags & kConsumeFirst) != 0) subject_place.reset();
  if ((flags & kConsumeSecond) != 0) index_place.reset();
  deliver(destination, std::move(result), flags);
}

void Machine::index_many(Frame& frame, const Instruction& instruction, const Instruction& data, Value* bases[]) {
  Value& subject_place = at(bases, instruction.b);
  Value& destination = at(bases, instruction.a);
  Value* window = &at(bases, instruction.c);
  const auto flags = static_cast<std::uint8_t>(data.extra);
  const Value subject = subject_place.resolved();
  if ((flags & kConsumeFirst) != 0) subject_place.reset();
  if (subject.is(Type::kObject)) {
    if (subject.object() == nullptr) raise(ErrorCode::kObjectNotSet, operand_name(*frame.code, instruction.b));
    call_default(*subject.object(), window, data.a, &destination, flags);
    return;
  }
  if (!subject.is(Type::kArray) || (flags & kStatement) != 0) {
    raise(ErrorCode::kTypeMismatch, operand_name(*frame.code, instruction.b));
  }
  Value result = element_value(subject, {window, data.a});
  clear_window(window, data.a);
  deliver(destination, std::move(result), flags);
}

// object(arguments) = value; the value is the last of `window`.
void Machine::store_default(Value& subject, Value* window, std::size_t count, bool set, std::string_view name) {
  if (!subject.is(Type::kObject)) raise(ErrorCode::kTypeMismatch, name);
  const Value hold = Value::share(subject.object());
  if (hold.object() == nullptr) raise(ErrorCode::kObjectNotSet, name);
  const Access access = set ? Access::kSet : Access::kLet;
  if (Instance* instance = hold.object()->instance(); instance != nullptr) {
    const Member* member = instance->script_class().default_member;
    const Code* code = member == nullptr ? nullptr : public_procedure(*member, access);
    if (code == nullptr) raise(ErrorCode::kNoSuchMember, name);
    start_call(*code, instance, window, count, nullptr, kDiscard | kStatement);
    return;
  }
  charge_steps(4);
  hold.object()->use_default(engine_, access, resolve_window(window, count));
  clear_window(window, count);
}

void Machine::index_store(Frame& frame, const Instruction& instruction, Value* bases[]) {
  Value& index_place = at(bases, instruction.b);
  Value& value_place = at(bases, instruction.c);
  const bool set = (instruction.extra & kSetObject) != 0;
  Value stored = value_place.resolved();
  if (set && !stored.is(Type::kObject)) raise(ErrorCode::kObjectRequired, operand_name(*frame.code, instruction.c));
  if (!set && stored.is(Type::kObject)) stored = plain_value(engine_, stored);
  Value& subject = at(bases, instruction.a).resolved();
  if (subject.is(Type::kArray)) {
    Value hold;
    Value& place = element(subject, {&index_place.resolved(), 1}, hold);
    if (set) {
      place = std::move(stored);
    } else {
      assign(place, std::move(stored));
    }
  } else if (subject.is(Type::kObject) && subject.object() != nullptr && subject.object()->instance() == nullptr) {
    const Value hold = Value::share(subject.object());
    const Value arguments[] = {index_place.resolved(), std::move(stored)};
    charge_steps(4);
    hold.object()->use_default(engine_, set ? Access::kSet : Access::kLet, arguments);
  } else {
    Value* window = free_registers();
    window[0] = index_place.resolved();
    window[1] = std::move(stored);
    try {
      store_default(subject, window, 2, set, operand_name(*frame.code, instruction.a));
    } catch (...) {
      if (frame_ == &frame) clear_window(window, 2);
      throw;
    }
  }
  if ((instruction.extra & kConsumeFirst) != 0) index_place.reset();
  if ((instruction.extra & kConsumeSecond) != 0) value_place.reset();
}

void Machine::index_store_many(Frame& frame, const Instruction& instruction, const Instruction& data, Value* bases[]) {
  Value* window = &at(bases, instruction.c);
  const bool set = (data.extra & kSetObject) != 0;
  const bool consume = (data.extra & kConsumeFirst) != 0;
  Value& stored = window[data.a - 1];
  Value& subject_place = at(bases, instruction.a);
  if (set && !stored.is(Type::kObject)) raise(ErrorCode::kObjectRequired);
  if (!set && stored.is(Type::kObject)) stored = plain_value(engine_, stored);
  Value& subject = subject_place.resolved();
  if (subject.is(Type::kArray)) {
    Value hold;
    Value& place = element(subject, {window, static_cast<std::size_t>(data.a - 1)}, hold);
    if (set) {
      place = std::move(stored);
    } else {
      assign(place, std::move(stored));
    }
    clear_window(window, data.a);
    if (consume) subject_place.reset();
    return;
  }
  Value held = subject;
  if (consume) subject_place.reset();
  store_default(held, window, data.a, set, operand_name(*frame.code, instruction.a));
}

// Register a becomes a reference to an array's element; where the subject is an object, its default property's value.
void Machine::element_reference(Frame& frame, const Instruction& instruction, const Instruction& data, Value* bases[],
                                Value* lock) {
  Value& subject_place = at(bases, instruction.b);
  Value& subject = subject_place.resolved();
  Value& place = at(bases, instruction.a);
  Value* window = &at(bases, instruction.c);
  const std::uint16_t count = lock == nullptr ? data.a : data.b;
  if (!subject.is(Type::kArray)) {
    index_many(frame, instruction, {Op::kData, data.extra, count, 0, 0}, bases);
    return;
  }
  Value hold;
  Value& found = element(subject, {window, count}, hold);
  if (lock != nullptr) *lock = hold.is(Type::kArrayLock) ? hold : Value::lock(subject.array());
  place = Value::reference(found);
  if ((data.extra & kConsumeFirst) != 0) subject_place.reset();
  clear_window(window, count);
}

}  // namespace pv::vbscript
