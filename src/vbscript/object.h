// Objects as the machine sees them: instances of a script's classes, and objects that the engine offers.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "vbscript/value.h"

namespace pv::vbscript {

class Engine;
class Instance;
struct Code;

// How a member is used.
enum class Access : std::uint8_t {
  kGet,   // value wanted: a property, or a method's result
  kCall,  // as a statement
  kLet,   // object.member(arguments) = value
  kSet,   // Set object.member(arguments) = value
};

class Object : public Counted {
 public:
  explicit Object(Heap& heap);  // joins the heap's list of objects
  virtual ~Object();
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  // What TypeName gives.
  virtual std::string_view type_name() const = 0;

  // Uses the member `name` (any case). `arguments` are resolved values; for kLet and kSet the last one is the new
  // value. Raises 438 when there is no such member, 450 for a wrong number of arguments.
  virtual Value use_member(Engine& engine, std::string_view name, Access access, std::span<const Value> arguments) = 0;

  // The default member: object(arguments), or its value where an expression needs one. Raises 438 without one.
  virtual Value use_default(Engine& engine, Access access, std::span<const Value> arguments) = 0;

  // What For Each visits; raises 451 when the object is no collection.
  virtual std::vector<Value> items(Engine& engine);

  // Lets go of every value it holds, without running anything: for cycles at the end of the engine.
  virtual void clear() {}

  // The machine's: the instance of a script's class, and the procedure that GetRef's object calls; nullptr for others.
  virtual Instance* instance() { return nullptr; }
  virtual const Code* procedure() const { return nullptr; }

  // A Class_Terminate is still to run: the heap keeps the object for the machine instead of freeing it.
  bool wants_terminate = false;

  // Links of the heap's lists.
  Object* next_object = nullptr;
  Object* previous_object = nullptr;
  Object* next_waiting = nullptr;
};

// An object written in C++: a class is a table of members.
struct NativeMember {
  std::string_view name;  // lower case; the table is sorted by it
  Access access;          // kGet serves kCall too
  int min_arguments;      // the new value of kLet and kSet not counted
  int max_arguments;
  Value (*use)(Engine& engine, Object& self, std::span<const Value> arguments);
};

struct NativeClass {
  std::string_view type_name;
  std::span<const NativeMember> members;
  std::string_view default_member;  // lower case; empty: none
};

class NativeObject : public Object {
 public:
  NativeObject(Heap& heap, const NativeClass& native_class) : Object(heap), class_(native_class) {}
  std::string_view type_name() const override { return class_.type_name; }
  Value use_member(Engine& engine, std::string_view name, Access access, std::span<const Value> arguments) override;
  Value use_default(Engine& engine, Access access, std::span<const Value> arguments) override;
  const NativeClass& native_class() const { return class_; }

 private:
  const NativeClass& class_;
};

// The member of that name (lower case) and use, or nullptr.
const NativeMember* find_member(const NativeClass& native_class, std::string_view name, Access access);

}  // namespace pv::vbscript
