// Objects that the machine makes: instances of the script's classes, and what GetRef gives.
#pragma once

#include <memory>

#include "vbscript/bytecode.h"
#include "vbscript/object.h"

namespace pv::vbscript {

class Machine;

class Instance : public Object {
 public:
  Instance(Machine& machine, const Class& script_class);
  ~Instance() override;

  const Class& script_class() const { return class_; }
  Value* fields() { return fields_.get(); }

  std::string_view type_name() const override { return class_.name->spelling; }
  Value use_member(Engine& engine, std::string_view name, Access access, std::span<const Value> arguments) override;
  Value use_default(Engine& engine, Access access, std::span<const Value> arguments) override;
  void clear() override;
  Instance* instance() override { return this; }

 private:
  Value use(const Member& member, Access access, std::span<const Value> arguments);

  Machine& machine_;
  const Class& class_;
  std::unique_ptr<Value[]> fields_;
};

// The procedure for a use of a member from outside the class; nullptr when there is none, or none that is public.
const Code* public_procedure(const Member& member, Access access);

class ProcedureReference : public Object {
 public:
  ProcedureReference(Machine& machine, const Code& code);
  std::string_view type_name() const override { return "Object"; }
  Value use_member(Engine& engine, std::string_view name, Access access, std::span<const Value> arguments) override;
  Value use_default(Engine& engine, Access access, std::span<const Value> arguments) override;
  const Code* procedure() const override { return &code_; }

 private:
  Machine& machine_;
  const Code& code_;
};

}  // namespace pv::vbscript
