// The process's environment: its variables, its number, and where its program lies.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace pv::platform {

std::optional<std::string> environment_variable(const char* name);

// For a program's start, before it has other threads.
void set_environment_variable(const char* name, std::string_view value);

// The number of the running process.
std::uint64_t process_id();

// The directory in which the running program's file lies; empty when the system does not say.
std::string program_directory();

}  // namespace pv::platform
