// A RegExp pattern compiled with PCRE2.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace pv::vbscript {

class Engine;

struct PatternOptions {
  bool ignore_case = false;
  bool multiline = false;  // ^ and $ match at line feeds
  bool operator==(const PatternOptions&) const = default;
};

// Where a group matched; groups that took no part have `set` false.
struct Group {
  std::size_t begin = 0;
  std::size_t end = 0;
  bool set = false;
};

class CompiledPattern {
 public:
  // Raises 5017 to 5021 for a pattern that is none.
  CompiledPattern(std::string_view pattern, PatternOptions options);
  ~CompiledPattern();
  CompiledPattern(const CompiledPattern&) = delete;
  CompiledPattern& operator=(const CompiledPattern&) = delete;

  // The first match at or after `from`: the whole match, then its groups. Empty: none. Its work counts towards the
  // script's limit; a match that needs more memory or work than one may is stopped like an endless loop.
  std::vector<Group> match(Engine& engine, std::string_view text, std::size_t from) const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace pv::vbscript
