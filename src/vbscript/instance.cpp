#include "vbscript/instance.h"

#include <utility>
#include <vector>

#include "vbscript/machine.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

Instance::Instance(Machine& machine, const Class& script_class)
    : Object(machine.heap()), machine_(machine), class_(script_class) {
  heap->charge(class_.fields * sizeof(Value));
  fields_ = std::make_unique<Value[]>(class_.fields);
}

Instance::~Instance() {
  heap->credit(class_.fields * sizeof(Value));
}

void Instance::clear() {
  for (std::size_t i = 0; i < class_.fields; ++i) fields_[i] = Value();
}

const Code* public_procedure(const Member& member, Access access) {
  const Code* code = access == Access::kLet ? member.let : access == Access::kSet ? member.set : member.get;
  return code == nullptr || code->is_private ? nullptr : code;
}

Value Instance::use(const Member& member, Access access, std::span<const Value> arguments) {
  if (member.is_field) {
    const bool assigns = access == Access::kLet || access == Access::kSet;
    if (member.field_is_private) raise(ErrorCode::kNoSuchMember, member.name->spelling);
    if (arguments.size() != (assigns ? 1U : 0U)) raise(ErrorCode::kWrongArgumentCount, member.name->spelling);
    Value& field = fields_[member.field];
    if (!assigns) return field;
    field = arguments.front();
    return {};
  }
  const Code* code = public_procedure(member, access);
  if (code == nullptr) raise(ErrorCode::kNoSuchMember, member.name->spelling);
  return machine_.call(*code, this, arguments);
}

Value Instance::use_member(Engine&, std::string_view name, Access access, std::span<const Value> arguments) {
  const Symbol* symbol = machine_.symbols().find(name);
  const Member* member = symbol == nullptr ? nullptr : class_.find(symbol);
  if (member == nullptr) raise(ErrorCode::kNoSuchMember, name);
  return use(*member, access, arguments);
}

Value Instance::use_default(Engine&, Access access, std::span<const Value> arguments) {
  if (class_.default_member == nullptr) raise(ErrorCode::kNoSuchMember);
  return use(*class_.default_member, access, arguments);
}

ProcedureReference::ProcedureReference(Machine& machine, const Code& code)
    : Object(machine.heap()), machine_(machine), code_(code) {}

Value ProcedureReference::use_member(Engine&, std::string_view name, Access, std::span<const Value>) {
  raise(ErrorCode::kNoSuchMember, name);
}

Value ProcedureReference::use_default(Engine&, Access access, std::span<const Value> arguments) {
  if (access == Access::kLet || access == Access::kSet) raise(ErrorCode::kNoSuchMember, code_.name->spelling);
  return machine_.call(code_, nullptr, arguments);
}

}  // namespace pv::vbscript
