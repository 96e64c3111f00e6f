#include "platform/windows/registry_key.h"

#include <optional>
#include <string>

#include "platform/settings_in_file.h"
#include "platform/settings_line.h"
#include "platform/settings_store.h"

namespace pv::platform {
namespace {

struct Place {
  HKEY root = HKEY_LOCAL_MACHINE;
  std::string path;  // canonical
};

// What a name like "HKEY_LOCAL_MACHINE\SOFTWARE\Trial" means; nullopt for anything else.
std::optional<Place> named_place(std::string_view name) {
  const struct {
    std::string_view start;
    HKEY root;
  } kRoots[] = {
      {R"(HKEY_LOCAL_MACHINE\)", HKEY_LOCAL_MACHINE},
      {R"(HKLM\)", HKEY_LOCAL_MACHINE},
      {R"(HKEY_CURRENT_USER\)", HKEY_CURRENT_USER},
      {R"(HKCU\)", HKEY_CURRENT_USER},
  };
  if (name.find('\0') != std::string_view::npos) return std::nullopt;
  for (const auto& [start, root] : kRoots) {
    if (!starts_with_nocase(name, start)) continue;
    Place place{root, canonical_key(name.substr(start.size()))};
    if (!place.path.empty()) return place;
  }
  return std::nullopt;
}

Place place_of(std::string_view key_path) {
  Place place{HKEY_LOCAL_MACHINE, canonical_key(key_path)};
  if (!is_key_or_below(place.path, kServerKey)) return place;
  if (auto chosen = named_place(chosen_registry_key())) {
    chosen->path += place.path.substr(kServerKey.size());
    return *std::move(chosen);
  }
  return place;
}

}  // namespace

bool is_registry_key(std::string_view place) {
  return named_place(place).has_value();
}

RegistryKey::RegistryKey(std::string_view key_path, Access access) {
  const auto [root, path] = place_of(key_path);
  // A NUL would cut the path to that of another key, and the empty one is all of HKEY_LOCAL_MACHINE.
  if (path.empty() || path.find('\0') != std::string::npos) return;
  const LSTATUS status = access == Access::kRead
                             ? ::RegOpenKeyExA(root, path.c_str(), 0, KEY_READ | KEY_WOW64_32KEY, &key_)
                             : ::RegCreateKeyExA(root, path.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                                 KEY_ALL_ACCESS | KEY_WOW64_32KEY, nullptr, &key_, nullptr);
  if (status != ERROR_SUCCESS) key_ = nullptr;
}

}  // namespace pv::platform
