#include <charconv>
#include <cstdio>
#include <optional>

#include "common/text_search.h"
#include "platform/settings_file.h"
#include "platform/settings_store.h"
#include "pvfilter/commands.h"
#include "pvfilter/known_settings.h"

namespace pvfilter {
namespace {

// Where a value lies: "Reload" and its like are known by name, others are given as KEY\NAME below the server's root
// key.
struct Place {
  std::string key;
  std::string name;
  const KnownSetting* known = nullptr;
};

Place find_place(const std::string& name) {
  if (const KnownSetting* known = find_known_setting(name)) return {known->key, known->name, known};
  const std::size_t last = name.rfind('\\');
  if (last == std::string::npos) {
    throw CommandError(kUsage,
                       "\"" + name + "\" is no setting of the agent; give others as KEY\\NAME below " + kServerKey);
  }
  const std::string key = name.substr(0, last);
  const bool whole = pv::starts_with_nocase(key, "SOFTWARE\\");
  return {whole ? key : std::string(kServerKey) + "\\" + key, name.substr(last + 1), nullptr};
}

// `where` names the settings in use, for messages.
pv::platform::SettingsContent read_settings(const std::string& where) {
  if (auto content = pv::platform::all_settings()) return *std::move(content);
  throw CommandError(kNoInput, where + ": cannot be read");
}

std::string shown_value(const pv::platform::SettingValue& value) {
  if (const auto* number = std::get_if<std::uint32_t>(&value)) return std::to_string(*number);
  return std::get<std::string>(value);
}

std::uint32_t number_value(const std::string& value) {
  std::uint32_t number = 0;
  const char* end = value.data() + value.size();
  const auto [stop, error] = std::from_chars(value.data(), end, number);
  if (error == std::errc() && stop == end) return number;
  throw CommandError(kUsage, "\"" + value + "\" is no number from 0 to 4294967295");
}

// The type a value must have: the one asked for, else the known one, else that of the value that is there.
SettingType type_for(const Place& place, const std::string& where, SettingType asked) {
  if (asked != SettingType::kUnknown) return asked;
  if (place.known != nullptr) return place.known->is_number ? SettingType::kNumber : SettingType::kText;
  const auto content = read_settings(where);
  const pv::platform::SettingValue* value = content.find(place.key, place.name);
  if (value == nullptr) {
    throw CommandError(kUsage, "\"" + place.name + "\" is new: say --text or --number");
  }
  return std::holds_alternative<std::uint32_t>(*value) ? SettingType::kNumber : SettingType::kText;
}

}  // namespace

ExitStatus get_setting(const SettingsPlace& settings, const std::string& name) {
  const std::string where = use_settings(settings);
  const Place place = find_place(name);
  const auto content = read_settings(where);
  if (const pv::platform::SettingValue* value = content.find(place.key, place.name)) {
    std::printf("%s\n", shown_value(*value).c_str());
    return kOk;
  }
  const std::string otherwise =
      place.known != nullptr ? std::string("; the agent takes ") + place.known->otherwise : std::string();
  throw CommandError(kNoInput, where + ": \"" + place.name + "\" is not set" + otherwise);
}

ExitStatus set_setting(const SettingsPlace& settings, const std::string& name, const std::string& value,
                       SettingType type) {
  const std::string where = use_settings(settings);
  const Place place = find_place(name);
  const bool is_number = type_for(place, where, type) == SettingType::kNumber;
  const bool written = is_number ? pv::platform::write_number_setting(place.key, place.name, number_value(value))
                                 : pv::platform::write_text_setting(place.key, place.name, value);
  if (!written) throw CommandError(kCannotCreate, where + ": cannot be written; it is as it was");
  return kOk;
}

ExitStatus list_settings(const SettingsPlace& settings) {
  const auto content = read_settings(use_settings(settings));
  for (const std::string& path : content.key_order) {
    const pv::platform::SettingKey* key = content.find_key(path);
    if (key == nullptr || key->names.empty()) continue;
    std::printf("[%s]\n", path.c_str());
    for (const std::string& name : key->names) {
      std::printf("%s = %s\n", name.c_str(), shown_value(key->values.at(name)).c_str());
    }
    std::printf("\n");
  }
  return kOk;
}

}  // namespace pvfilter
