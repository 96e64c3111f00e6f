// The settings file: reading never fails, and one edit changes one value.
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "fuzz_target.h"
#include "platform/settings_file.h"

namespace pv::fuzz {
namespace {

using platform::SettingsContent;
using platform::SettingValue;

constexpr char kKey[] = R"(SOFTWARE\Post Vane\Post Vane)";
const SettingValue kValues[] = {std::string(R"(a "quoted" C:\path)"), std::string(), 0x2Au};

bool same_place(std::string_view key, std::string_view other_key, std::string_view name, std::string_view other_name) {
  const platform::NocaseEqual equal;
  return equal(key, other_key) && equal(name, other_name);
}

// Every value of `content` but the one named is in `other` too.
void require_others_kept(const SettingsContent& content, const SettingsContent& other, std::string_view key,
                         std::string_view name) {
  for (const std::string& path : content.key_order) {
    const platform::SettingKey* found = content.find_key(path);
    require(found != nullptr, "a key that is listed is there");
    for (const std::string& value_name : found->names) {
      if (same_place(path, key, value_name, name)) continue;
      const SettingValue* value = content.find(path, value_name);
      const SettingValue* kept = other.find(path, value_name);
      require(value != nullptr, "a name that is listed has a value");
      require(kept != nullptr && *kept == *value, "every other value is as before");
    }
  }
}

void edit(std::string_view bytes, std::string_view key, std::string_view name) {
  std::vector<platform::SettingsMistake> mistakes_before;
  const SettingsContent before = platform::parse_settings(bytes, &mistakes_before);
  for (const SettingValue& value : kValues) {
    const std::string edited = platform::with_setting(bytes, key, name, value);
    std::vector<platform::SettingsMistake> mistakes;
    const SettingsContent after = platform::parse_settings(edited, &mistakes);
    const SettingValue* found = after.find(key, name);
    require(found != nullptr && *found == value, "the value set reads back");
    require_others_kept(before, after, key, name);
    require_others_kept(after, before, key, name);
    require(mistakes.size() <= mistakes_before.size(), "an edit makes no mistake");
    require(platform::with_setting(edited, key, name, value) == edited, "setting what is there changes nothing");
  }
}

// A key or name that a file can hold (hex escapes aside) may still be one that no line can hold.
bool can_stand_in_a_line(std::string_view text) {
  return text.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

void run(std::string_view bytes) {
  if (bytes.starts_with("\xFE\xFF")) {  // nobody reads UTF-16BE
    require(platform::with_setting(bytes, kKey, "Fuzz", 1u) == bytes, "a file that is not read is not changed");
    return;
  }
  edit(bytes, kKey, "Fuzz");
  const SettingsContent content = platform::parse_settings(bytes);
  if (content.key_order.empty()) return;
  const platform::SettingKey* first = content.find_key(content.key_order.front());
  require(first != nullptr, "the first key is there");
  if (first->names.empty() || !can_stand_in_a_line(first->path) || !can_stand_in_a_line(first->names.front())) return;
  edit(bytes, first->path, first->names.front());
}

}  // namespace
}  // namespace pv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pv::fuzz::run(pv::fuzz::input_text(data, size));
  return 0;
}
