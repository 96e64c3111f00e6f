#include "platform/library.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <utility>
#include <vector>

#include "platform/ascii_case.h"
#include "platform/path_parts.h"
#include "platform/paths.h"

namespace pv::platform {

struct Library::State {
  explicit State(void* opened) : handle(opened) {}
  ~State() {
    if (handle != nullptr) ::dlclose(handle);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  void* handle;
};

namespace {

bool is_regular_file(const std::string& path) {
  struct stat status;
  return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

// "dir/X.so" for "dir/X.DLL"; other names stand for themselves alone.
std::vector<std::string> names_to_try(const std::string& name) {
  constexpr std::string_view kWindowsExtension = ".dll";
  if (name.size() <= kWindowsExtension.size()) return {name};
  const std::size_t stem_end = name.size() - kWindowsExtension.size();
  if (!equal_nocase(std::string_view(name).substr(stem_end), kWindowsExtension)) return {name};
  return {name.substr(0, stem_end) + ".so", name};
}

// Only a name without a directory is left to the system's search. Anything but a regular file is refused here: opening
// a FIFO would wait for its other end.
std::optional<std::string> loadable(const std::string& name) {
  if (name.empty()) return std::nullopt;
  if (name.find('/') == std::string::npos) return name;
  auto found = existing_path(name);
  if (!found || !is_regular_file(*found)) return std::nullopt;
  return found;
}

std::string system_reason() {
  const char* reason = ::dlerror();  // NOLINT(concurrency-mt-unsafe): kept by thread in glibc and musl
  return reason != nullptr ? reason : "unknown reason";
}

}  // namespace

Library::Library(std::unique_ptr<State> state) : state_(std::move(state)) {}
Library::~Library() = default;
Library::Library(Library&&) noexcept = default;
Library& Library::operator=(Library&&) noexcept = default;

std::optional<Library> Library::load(std::string_view path, std::string* reason) {
  std::string failure;  // of the first that was there to be loaded: a second one, if any, is only a fallback
  for (const std::string& name : names_to_try(system_form(path))) {
    const auto file = loadable(name);
    if (!file) continue;
    if (void* handle = ::dlopen(file->c_str(), RTLD_NOW | RTLD_LOCAL)) return Library(std::make_unique<State>(handle));
    if (failure.empty()) failure = system_reason();
  }
  if (failure.empty()) failure = std::string(path) + ": no such library file";
  if (reason != nullptr) *reason = std::move(failure);
  return std::nullopt;
}

void Library::keep_loaded() {
  if (state_) state_->handle = nullptr;
  state_.reset();
}

void* Library::find_symbol(const char* name) const {
  return state_ ? ::dlsym(state_->handle, name) : nullptr;
}

}  // namespace pv::platform
