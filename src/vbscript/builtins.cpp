#include "vbscript/builtins.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "vbscript/heap.h"

namespace pv::vbscript {
namespace {

struct Constant {
  std::string_view name;
  std::int32_t number;
};

constexpr Constant kNumbers[] = {
    {"vbabort", 3},
    {"vbabortretryignore", 2},
    {"vbapplicationmodal", 0},
    {"vbarray", 8192},
    {"vbbinarycompare", 0},
    {"vbblack", 0},
    {"vbblue", 0xFF0000},
    {"vbboolean", 11},
    {"vbbyte", 17},
    {"vbcancel", 2},
    {"vbcritical", 16},
    {"vbcurrency", 6},
    {"vbcyan", 0xFFFF00},
    {"vbdatabasecompare", 2},
    {"vbdataobject", 13},
    {"vbdate", 7},
    {"vbdecimal", 14},
    {"vbdefaultbutton1", 0},
    {"vbdefaultbutton2", 256},
    {"vbdefaultbutton3", 512},
    {"vbdefaultbutton4", 768},
    {"vbdouble", 5},
    {"vbempty", 0},
    {"vberror", 10},
    {"vbexclamation", 48},
    {"vbfalse", 0},
    {"vbfirstfourdays", 2},
    {"vbfirstfullweek", 3},
    {"vbfirstjan1", 1},
    {"vbfriday", 6},
    {"vbgeneraldate", 0},
    {"vbgreen", 0xFF00},
    {"vbignore", 5},
    {"vbinformation", 64},
    {"vbinteger", 2},
    {"vblong", 3},
    {"vblongdate", 1},
    {"vblongtime", 3},
    {"vbmagenta", 0xFF00FF},
    {"vbmonday", 2},
    {"vbmsgboxhelpbutton", 16384},
    {"vbmsgboxright", 524288},
    {"vbmsgboxrtlreading", 1048576},
    {"vbmsgboxsetforeground", 65536},
    {"vbno", 7},
    {"vbnull", 1},
    {"vbobject", 9},
    {"vbobjecterror", -2147221504},
    {"vbok", 1},
    {"vbokcancel", 1},
    {"vbokonly", 0},
    {"vbquestion", 32},
    {"vbred", 0xFF},
    {"vbretry", 4},
    {"vbretrycancel", 5},
    {"vbsaturday", 7},
    {"vbshortdate", 2},
    {"vbshorttime", 4},
    {"vbsingle", 4},
    {"vbstring", 8},
    {"vbsunday", 1},
    {"vbsystemmodal", 4096},
    {"vbtextcompare", 1},
    {"vbthursday", 5},
    {"vbtrue", -1},
    {"vbtuesday", 3},
    {"vbusedefault", -2},
    {"vbusesystem", 0},
    {"vbusesystemdayofweek", 0},
    {"vbvariant", 12},
    {"vbwednesday", 4},
    {"vbwhite", 0xFFFFFF},
    {"vbyellow", 0xFFFF},
    {"vbyes", 6},
    {"vbyesno", 4},
    {"vbyesnocancel", 3},
};

struct TextConstant {
  std::string_view name;
  std::string_view text;
};

constexpr TextConstant kTexts[] = {
    {"vbcr", "\r"},       {"vbcrlf", "\r\n"},    {"vbformfeed", "\f"},
    {"vblf", "\n"},       {"vbnewline", "\r\n"}, {"vbnullchar", std::string_view("\0", 1)},
    {"vbnullstring", ""}, {"vbtab", "\t"},       {"vbverticaltab", "\v"},
};

template <typename Entry>
const Entry* find_entry(std::span<const Entry> table, std::string_view name) {
  const auto found = std::lower_bound(table.begin(), table.end(), name,
                                      [](const Entry& entry, std::string_view wanted) { return entry.name < wanted; });
  return found != table.end() && found->name == name ? &*found : nullptr;
}

std::size_t hash_of(std::string_view name) {
  std::size_t hash = 2166136261U;
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 16777619U;
  return hash;
}

// Every function by its name, so that a program's names cost one probe each. Filled once a process.
class FunctionIndex {
 public:
  FunctionIndex() {
    for (const auto group : {string_functions, array_functions, conversion_functions, math_functions, date_functions,
                             format_functions, type_functions, engine_functions}) {
      for (const Builtin& function : group()) insert(function);
    }
  }
  const Builtin* find(std::string_view name) const {
    for (std::size_t slot = hash_of(name);; ++slot) {
      const Builtin* function = slots_[slot % kSlots];
      if (function == nullptr || function->name == name) return function;
    }
  }

 private:
  static constexpr std::size_t kSlots = 512;  // several times the number of functions
  void insert(const Builtin& function) {
    std::size_t slot = hash_of(function.name);
    while (slots_[slot % kSlots] != nullptr) ++slot;
    slots_[slot % kSlots] = &function;
  }
  std::array<const Builtin*, kSlots> slots_{};
};

}  // namespace

const Builtin* find_builtin(std::string_view name) {
  static const FunctionIndex functions;
  return functions.find(name);
}

bool find_constant(Heap& heap, std::string_view name, Value& value) {
  if (!name.starts_with("vb")) return false;
  if (const Constant* number = find_entry(std::span<const Constant>(kNumbers), name)) {
    value = Value::of_long(number->number);
    return true;
  }
  const TextConstant* text = find_entry(std::span<const TextConstant>(kTexts), name);
  if (text == nullptr) return false;
  value = heap.text(text->text);
  return true;
}

}  // namespace pv::vbscript
