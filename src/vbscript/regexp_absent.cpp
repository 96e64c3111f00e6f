// In builds without PCRE2.
#include "vbscript/regexp.h"

namespace pv::vbscript {

Object* new_regexp(Engine&) {
  return nullptr;
}

}  // namespace pv::vbscript
