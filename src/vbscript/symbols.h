// The names of one engine, each once, whatever the case it is written in.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "vbscript/arena.h"
#include "vbscript/value.h"

namespace pv::vbscript {

struct Code;
struct Class;

// What a name stands for outside procedures.
enum class Meaning : std::uint8_t { kNone, kVariable, kConstant, kProcedure, kClass, kHostFunction };

inline constexpr std::uint32_t kNoGlobal = 0xFFFFFFFF;

struct Symbol {
  std::string_view name;      // lower case
  std::string_view spelling;  // as it was written first: error texts show it
  std::uint32_t hash = 0;
  Meaning meaning = Meaning::kNone;
  // The variable's or constant's value. A procedure has one when a program used its name as a variable before it was
  // defined: it holds an object that calls it.
  std::uint32_t global = kNoGlobal;
  const Code* procedure = nullptr;
  const Class* script_class = nullptr;
  std::uint32_t host_function = 0;
  bool is_implicit = false;  // a variable that nothing declares

  // The compiler's: what the name means in the procedure that is being compiled, when `local_stamp` is that one's.
  std::uint32_t local_stamp = 0;
  std::uint16_t local_operand = 0;
  // 1041 is told within one program text.
  std::uint32_t declared_stamp = 0;

  Symbol* next = nullptr;  // of the same bucket
};

class SymbolTable {
 public:
  SymbolTable() : buckets_(kFirstBuckets) {}

  Symbol* intern(std::string_view name);
  // nullptr when no program has mentioned it.
  Symbol* find(std::string_view name) const;
  // The name of the variable outside procedures that has that number; slow, for error texts.
  std::string_view global_name(std::uint32_t global) const;
  std::size_t size() const { return size_; }

 private:
  static constexpr std::size_t kFirstBuckets = 64;

  void grow();

  Arena arena_;
  std::vector<Symbol*> buckets_;
  std::size_t size_ = 0;
};

}  // namespace pv::vbscript
