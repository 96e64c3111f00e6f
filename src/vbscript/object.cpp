#include "vbscript/object.h"

#include <algorithm>
#include <string>

#include "vbscript/characters.h"
#include "vbscript/heap.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {
namespace {

// What counts for an object besides what it charges itself.
constexpr std::size_t kObjectBytes = 64;

std::string in_lower_case(std::string_view name) {
  std::string result(name);
  std::transform(result.begin(), result.end(), result.begin(), lower);
  return result;
}

Value use(const NativeMember& member, Engine& engine, Object& self, std::span<const Value> arguments) {
  const bool assigns = member.access == Access::kLet || member.access == Access::kSet;
  const int count = static_cast<int>(arguments.size()) - (assigns ? 1 : 0);
  if (count < member.min_arguments || count > member.max_arguments) {
    raise(ErrorCode::kWrongArgumentCount, member.name);
  }
  return member.use(engine, self, arguments);
}

}  // namespace

Object::Object(Heap& owner) : Counted(&owner) {
  owner.charge(kObjectBytes);
  owner.add_object(*this);
}

Object::~Object() {
  heap->credit(kObjectBytes);
  heap->remove_object(*this);
}

std::vector<Value> Object::items(Engine&) {
  raise(ErrorCode::kNotACollection);
}

const NativeMember* find_member(const NativeClass& native_class, std::string_view name, Access access) {
  if (access == Access::kCall) access = Access::kGet;
  const auto members = native_class.members;
  auto at = std::lower_bound(members.begin(), members.end(), name,
                             [](const NativeMember& member, std::string_view wanted) { return member.name < wanted; });
  for (; at != members.end() && at->name == name; ++at) {
    if (at->access == access) return &*at;
  }
  return nullptr;
}

Value NativeObject::use_member(Engine& engine, std::string_view name, Access access, std::span<const Value> arguments) {
  const NativeMember* member = find_member(class_, name, access);
  // Callers mostly give lower case.
  if (member == nullptr) member = find_member(class_, in_lower_case(name), access);
  if (member == nullptr) raise(ErrorCode::kNoSuchMember, name);
  if (access <= Access::kCall && member->max_arguments == 0 && !arguments.empty()) {
    // match.SubMatches(0): the arguments are for the object that the member gives.
    const Value given = member->use(engine, *this, {});
    if (given.is(Type::kObject) && given.object() != nullptr) {
      return given.object()->use_default(engine, access, arguments);
    }
  }
  return use(*member, engine, *this, arguments);
}

Value NativeObject::use_default(Engine& engine, Access access, std::span<const Value> arguments) {
  const NativeMember* member =
      class_.default_member.empty() ? nullptr : find_member(class_, class_.default_member, access);
  if (member == nullptr) raise(ErrorCode::kNoSuchMember);
  return use(*member, engine, *this, arguments);
}

}  // namespace pv::vbscript
