#include "platform/library.h"

#include <windows.h>

#include <utility>

#include "platform/path_parts.h"
#include "platform/system_error.h"

namespace pv::platform {

struct Library::State {
  explicit State(HMODULE loaded) : module(loaded) {}
  ~State() {
    if (module != nullptr) ::FreeLibrary(module);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  HMODULE module;
};

namespace {

// A service has nobody who could close the system's box about a library that is missing or broken.
class NoErrorBoxes {
 public:
  NoErrorBoxes() { ::SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before_); }
  ~NoErrorBoxes() { ::SetThreadErrorMode(before_, nullptr); }
  NoErrorBoxes(const NoErrorBoxes&) = delete;
  NoErrorBoxes& operator=(const NoErrorBoxes&) = delete;

 private:
  DWORD before_ = 0;
};

void* address_of(HMODULE module, const char* name) {
  return reinterpret_cast<void*>(::GetProcAddress(module, name));
}

// 32-bit compilers add the bytes of the arguments to a name of the standard calling convention, with or without an
// underscore in front, unless told otherwise.
void* decorated_address_of(HMODULE module, const std::string& name) {
  constexpr int kMostArguments = 8;
  for (int arguments = 0; arguments <= kMostArguments; ++arguments) {
    const std::string decorated = name + "@" + std::to_string(4 * arguments);
    if (void* address = address_of(module, ("_" + decorated).c_str())) return address;
    if (void* address = address_of(module, decorated.c_str())) return address;
  }
  return nullptr;
}

}  // namespace

Library::Library(std::unique_ptr<State> state) : state_(std::move(state)) {}
Library::~Library() = default;
Library::Library(Library&&) noexcept = default;
Library& Library::operator=(Library&&) noexcept = default;

std::optional<Library> Library::load(std::string_view path, std::string* reason) {
  const NoErrorBoxes quiet;
  const std::string name = system_form(path);
  // An empty name would be the program itself.
  HMODULE const module = name.empty() ? nullptr : ::LoadLibraryA(name.c_str());
  if (module != nullptr) return Library(std::make_unique<State>(module));
  const int error = name.empty() ? ERROR_MOD_NOT_FOUND : last_system_error();
  if (reason != nullptr) *reason = std::string(path) + ": " + system_error_text(error);
  return std::nullopt;
}

void Library::keep_loaded() {
  if (state_) state_->module = nullptr;
  state_.reset();
}

void* Library::find_symbol(const char* name) const {
  if (!state_) return nullptr;
  void* const address = address_of(state_->module, name);
  constexpr bool kDecorates = sizeof(void*) == 4;
  if (IS_INTRESOURCE(name)) return address;  // an ordinal
  return address != nullptr || !kDecorates ? address : decorated_address_of(state_->module, name);
}

}  // namespace pv::platform
