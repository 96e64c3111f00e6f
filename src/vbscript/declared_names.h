// The names that one scope has declared.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace pv::vbscript {

// What a name stands for; a name may stand for several as far as its scope allows.
enum : unsigned {
  kDeclaresVariable = 1,  // constants and classes too
  kDeclaresProcedure = 2,
  kDeclaresGet = 4,
  kDeclaresLet = 8,
  kDeclaresSet = 16,
};

struct DeclaredName {
  unsigned uses = 0;
  std::uint32_t arguments = 0;  // of a property, the new value of Let and Set not counted
};

// Names without regard to ASCII case, found by hash.
class DeclaredNames {
 public:
  void clear() {
    slots_.clear();
    used_ = 0;
  }

  // What is known of `name`: a new name without any use, which the caller must add at once. Valid until the next call;
  // the name must outlive this.
  DeclaredName& at(std::string_view name);

 private:
  struct Slot {
    std::string_view name;
    DeclaredName declared;  // no use: an empty slot
    std::uint32_t hash = 0;
  };
  Slot& find(std::string_view name, std::uint32_t hash);
  void grow();

  std::vector<Slot> slots_;  // a power of two, at most three quarters used
  std::size_t used_ = 0;
};

}  // namespace pv::vbscript
