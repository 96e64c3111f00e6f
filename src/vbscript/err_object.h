// The Err object.
#pragma once

#include <cstdint>
#include <string>

#include "vbscript/object.h"
#include "vbscript/script_error.h"

namespace pv::vbscript {

// What Err shows of the last error that "On Error Resume Next" caught.
struct ErrState {
  std::int32_t number = 0;
  std::string description;
  std::string source;
  std::string help_file;
  std::int32_t help_context = 0;

  void clear();
  void take(RuntimeError& error);
};

// Shows machine's ErrState; with one reference, the caller's.
Object* new_err_object(Engine& engine);

}  // namespace pv::vbscript
