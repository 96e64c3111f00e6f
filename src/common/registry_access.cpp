#include "common/registry_access.h"

namespace pv {

bool reg_read_dword(std::string_view key_path, std::string_view name, std::uint32_t& out) {
  if (key_path.empty()) return false;
  const std::optional<std::uint32_t> number = platform::read_number_setting(key_path, name);
  if (number) out = *number;
  return number.has_value();
}

std::uint32_t reg_read_dword_or(std::string_view key_path, std::string_view name, std::uint32_t otherwise) {
  std::uint32_t number = otherwise;
  return reg_read_dword(key_path, name, number) ? number : otherwise;
}

bool reg_write_dword(std::string_view key_path, std::string_view name, std::uint32_t number) {
  return platform::write_number_setting(key_path, name, number);
}

bool reg_read_app_directory(BoundedText<1024>& out, int flag) {
  if (!reg_read_string(kRootKey, "Application Directory", out)) return false;
  if (flag != 64 || append_bounded(out, "64")) return true;
  out.clear();  // a cut path would name another directory
  return false;
}

}  // namespace pv
