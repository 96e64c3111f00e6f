// The settings that the agent reads, by name.
#pragma once

#include <string_view>

namespace pvfilter {

inline constexpr char kServerKey[] = R"(SOFTWARE\Post Vane\Post Vane)";

struct KnownSetting {
  const char* name;
  const char* key;
  bool is_number;
  const char* otherwise;  // what the agent takes while the value is missing
};

// Compared without regard to case; nullptr for a name that the agent does not know.
const KnownSetting* find_known_setting(std::string_view name);

}  // namespace pvfilter
