// object.member in all its uses.
#include <utility>

#include "vbscript/conversions.h"
#include "vbscript/instance.h"
#include "vbscript/machine.h"
#include "vbscript/regexp.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

// Bytes that count as one step of the time limit where a native object may copy them.
constexpr std::uint32_t kBytesAStep = 64;

}  // namespace

void Machine::no_such_member(const Code& code, Operand subject, std::string_view name) {
  std::string detail = operand_name(code, subject);
  if (!detail.empty()) detail += '.';
  raise(ErrorCode::kNoSuchMember, detail.append(name));
}

Object& Machine::subject_of(const Value& subject, const Code& code, Operand operand) {
  if (!subject.is(Type::kObject)) raise(ErrorCode::kObjectRequired, operand_name(code, operand));
  if (subject.object() == nullptr) raise(ErrorCode::kObjectNotSet, operand_name(code, operand));
  return *subject.object();
}

void Machine::member(Frame& frame, const Instruction& instruction, const Instruction& data, Value* bases[]) {
  Value& subject_place = at(bases, instruction.b);
  Value& destination = at(bases, instruction.a);
  Value* window = &at(bases, instruction.c);
  const auto flags = static_cast<std::uint8_t>(data.extra);
  const Symbol& name = *frame.code->names[data.index()];
  Object& object = subject_of(subject_place.resolved(), *frame.code, instruction.b);
  const Value subject = Value::share(&object);
  if ((flags & kConsumeFirst) != 0) subject_place.reset();
  const Access access = (flags & kStatement) != 0 ? Access::kCall : Access::kGet;
  if (Instance* instance = object.instance(); instance != nullptr) {
    const Member* member = instance->script_class().find(&name);
    if (member == nullptr) no_such_member(*frame.code, instruction.b, name.spelling);
    if (!member->is_field) {
      const Code* code = public_procedure(*member, access);
      if (code == nullptr) no_such_member(*frame.code, instruction.b, name.spelling);
      start_call(*code, instance, window, data.a, &destination, flags);
      return;
    }
    if (member->field_is_private) no_such_member(*frame.code, instruction.b, name.spelling);
    Value field = instance->fields()[member->field];
    if (data.a == 0) {
      deliver(destination, std::move(field), flags);
      return;
    }
    use_field(field, window, data.a, destination, flags);
    return;
  }
  charge_steps(4);
  try {
    Value result = object.use_member(engine_, name.name, access, resolve_window(window, data.a));
    charge_result(result);
    clear_window(window, data.a);
    deliver(destination, std::move(result), flags);
  } catch (RuntimeError& error) {
    name_member(error, *frame.code, instruction.b, name);
    throw;
  }
}

// The error of a native object says which member of what it is about, as the script writes it.
void Machine::name_member(RuntimeError& error, const Code& code, Operand subject, const Symbol& name) const {
  if (error.number != static_cast<std::int32_t>(ErrorCode::kNoSuchMember) &&
      error.number != static_cast<std::int32_t>(ErrorCode::kWrongArgumentCount)) {
    return;
  }
  const std::string text(runtime_error_text(error.number));
  if (error.description != text && error.description != text + ": '" + std::string(name.name) + "'") return;
  std::string detail = operand_name(code, subject);
  if (detail.empty() && err_object_.is(Type::kObject) && kind_of(subject) == OperandKind::kConstant) detail = "Err";
  if (!detail.empty()) detail += '.';
  error.description = text + ": '" + detail.append(name.spelling) + "'";
}

// object.field(arguments): an element of the field, or the default property of the object in it.
void Machine::use_field(Value& field, Value* window, std::size_t count, Value& destination, std::uint8_t flags) {
  if (field.is(Type::kObject) && field.object() != nullptr) {
    call_default(*field.object(), window, count, &destination, flags);
    return;
  }
  if (!field.is(Type::kArray)) raise(ErrorCode::kTypeMismatch);
  Value result = element_value(field, {window, count});
  clear_window(window, count);
  deliver(destination, std::move(result), flags);
}

void Machine::member_store(Frame& frame, const Instruction& instruction, const Instruction& data, Value* bases[]) {
  Value& subject_place = at(bases, instruction.a);
  Value* window = &at(bases, instruction.c);
  const Symbol& name = *frame.code->names[data.index()];
  const bool set = (data.extra & kSetObject) != 0;
  Value& stored = window[data.a - 1];
  Object& object = subject_of(subject_place.resolved(), *frame.code, instruction.a);
  const Value subject = Value::share(&object);
  if ((data.extra & kConsumeFirst) != 0) subject_place.reset();
  if (set && !stored.is(Type::kObject)) raise(ErrorCode::kObjectRequired);
  if (!set && stored.is(Type::kObject)) stored = plain_value(engine_, stored);
  const Access access = set ? Access::kSet : Access::kLet;
  Instance* instance = object.instance();
  if (instance == nullptr) {
    charge_steps(4);
    if (stored.is(Type::kString)) charge_steps(stored.text()->length / kBytesAStep);
    try {
      object.use_member(engine_, name.name, access, resolve_window(window, data.a));
    } catch (RuntimeError& error) {
      name_member(error, *frame.code, instruction.a, name);
      throw;
    }
    clear_window(window, data.a);
    return;
  }
  const Member* member = instance->script_class().find(&name);
  if (member == nullptr || (member->is_field && member->field_is_private)) {
    no_such_member(*frame.code, instruction.a, name.spelling);
  }
  if (!member->is_field) {
    const Code* code = public_procedure(*member, access);
    if (code == nullptr) no_such_member(*frame.code, instruction.a, name.spelling);
    start_call(*code, instance, window, data.a, nullptr, kDiscard | kStatement);
    return;
  }
  Value& field = instance->fields()[member->field];
  if (data.a > 1) {
    store_in_field(field, window, data.a, set, name.spelling);
    return;
  }
  if (set) {
    this->set(field, stored, {});
  } else {
    store(field, std::move(stored));
  }
  clear_window(window, data.a);
}

// object.field(arguments) = value
void Machine::store_in_field(Value& field, Value* window, std::size_t count, bool set, std::string_view name) {
  if (!field.is(Type::kArray)) {
    store_default(field, window, count, set, name);
    return;
  }
  Value hold;
  Value& place = element(field, {window, count - 1}, hold);
  if (set) {
    place = std::move(window[count - 1]);
  } else {
    assign(place, std::move(window[count - 1]));
  }
  clear_window(window, count);
}

void Machine::member_element(Frame& frame, const Instruction& instruction, const Instruction& data, Value* bases[]) {
  const Symbol& name = *frame.code->names[data.index()];
  Object& object = subject_of(at(bases, instruction.b).resolved(), *frame.code, instruction.b);
  Instance* instance = object.instance();
  const Member* member = instance == nullptr ? nullptr : instance->script_class().find(&name);
  if (member == nullptr || !member->is_field || member->field_is_private) {
    no_such_member(*frame.code, instruction.b, name.spelling);
  }
  at(bases, instruction.a) = Value::reference(instance->fields()[member->field]);
}

void Machine::new_instance(Frame& frame, const Instruction& instruction, Value* bases[]) {
  const Symbol& name = *frame.code->names[instruction.index()];
  Value& destination = at(bases, instruction.a);
  if (name.meaning != Meaning::kClass) {
    if (name.name != "regexp") raise(ErrorCode::kClassNotDefined, name.spelling);
    Object* made = new_regexp(engine_);
    if (made == nullptr) raise(ErrorCode::kCantCreateObject, name.spelling);
    destination = Value::adopt(made);
    return;
  }
  charge_steps(10);
  const Class& script_class = *name.script_class;
  auto* instance = new Instance(*this, script_class);
  destination = Value::adopt(static_cast<Object*>(instance));
  for (const Class::FieldArray& array : script_class.arrays) {
    Value made = Value::adopt(heap().new_array());
    if (!array.bounds.empty()) {
      heap().dimension(*made.array(), array.bounds);
      charge_steps(static_cast<std::int64_t>(made.array()->elements.size() / 8));
      made.array()->fixed = true;
    }
    instance->fields()[array.field] = std::move(made);
  }
  instance->wants_terminate = script_class.terminate != nullptr;
  if (script_class.initialize != nullptr) {
    start_call(*script_class.initialize, instance, free_registers(), 0, nullptr, kDiscard | kStatement);
  }
}

void Machine::with(Frame& frame, const Instruction& instruction, Value* bases[]) {
  Value& subject = at(bases, instruction.b);
  if (!subject.resolved().is(Type::kObject)) {
    raise(ErrorCode::kObjectRequired, operand_name(*frame.code, instruction.b));
  }
  Value object = subject.resolved();
  if ((instruction.extra & kConsumeFirst) != 0) subject.reset();
  at(bases, instruction.a) = std::move(object);
}

}  // namespace pv::vbscript
