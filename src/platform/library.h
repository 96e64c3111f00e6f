// Dynamic libraries: plug-ins, and the agent itself as pvfilter loads it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace pv::platform {

// A loaded library; destroying it unloads it. Movable.
class Library {
 public:
  // On posix for "X.DLL": "X.so" in the same directory, else the name as it stands, both looked up without regard to
  // case. On Windows the name as it stands. nullopt when none can be loaded; then `reason`, when given, holds the
  // system's explanation.
  static std::optional<Library> load(std::string_view path, std::string* reason = nullptr);
  ~Library();
  Library(Library&&) noexcept;
  Library& operator=(Library&&) noexcept;

  // Leaves the library loaded to the end of the process; this object gives it up.
  void keep_loaded();

  // The function exported as `name`, on 32-bit Windows also as "name@bytes" or "_name@bytes" of its arguments, or
  // nullptr. The caller knows its type.
  // Where the system numbers exports, a number below 65536 in the pointer's place finds the function of that ordinal.
  template <class Function>
  Function* find(const char* name) const {
    return reinterpret_cast<Function*>(find_symbol(name));
  }

 private:
  struct State;
  explicit Library(std::unique_ptr<State> state);
  void* find_symbol(const char* name) const;
  std::unique_ptr<State> state_;
};

}  // namespace pv::platform
