#include "platform/settings_file.h"

#include <algorithm>
#include <array>
#include <cassert>

#include "platform/settings_line.h"

namespace pv::platform {
namespace {

constexpr std::size_t kShortPath = 256;  // bytes of a key path that is looked up without allocating

unsigned char lower(char c) {
  return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

SettingKey& key_at(SettingsContent& content, const std::string& path) {
  const auto [place, is_new] = content.keys.try_emplace(path);
  if (is_new) {
    place->second.path = path;
    content.key_order.push_back(path);
  }
  return place->second;
}

void remove_keys(SettingsContent& content, std::string_view ancestor) {
  const auto gone = [ancestor](std::string_view path) { return is_key_or_below(path, ancestor); };
  std::erase_if(content.keys, [&gone](const auto& entry) { return gone(entry.first); });
  std::erase_if(content.key_order, gone);
}

void set_value(SettingKey& key, const SettingsLine& line) {
  if (key.values.insert_or_assign(line.name, line.value).second) key.names.push_back(line.name);
}

void remove_value(SettingKey& key, std::string_view name) {
  const auto place = key.values.find(name);
  if (place == key.values.end()) return;
  key.values.erase(place);
  std::erase_if(key.names, [name](std::string_view other) { return NocaseEqual()(name, other); });
}

}  // namespace

std::size_t NocaseHash::operator()(std::string_view text) const noexcept {
  std::uint64_t hash = 0xCBF29CE484222325;  // FNV-1a
  for (const char c : text) hash = (hash ^ lower(c)) * 0x100000001B3;
  return static_cast<std::size_t>(hash);
}

bool NocaseEqual::operator()(std::string_view a, std::string_view b) const noexcept {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return lower(x) == lower(y); });
}

const SettingKey* SettingsContent::find_key(std::string_view key_path) const {
  const auto look_up = [this](std::string_view path) {
    const auto place = keys.find(path);
    return place == keys.end() ? nullptr : &place->second;
  };
  const KeyPieces pieces = key_pieces(key_path);
  if (pieces.tail.empty()) return look_up(pieces.head);
  if (pieces.head.size() + pieces.tail.size() > kShortPath) return look_up(canonical_key(key_path));
  std::array<char, kShortPath> joined;
  char* const end = std::copy(pieces.tail.begin(), pieces.tail.end(),
                              std::copy(pieces.head.begin(), pieces.head.end(), joined.data()));
  return look_up(std::string_view(joined.data(), static_cast<std::size_t>(end - joined.data())));
}

const SettingValue* SettingsContent::find(std::string_view key_path, std::string_view name) const {
  const SettingKey* key = find_key(key_path);
  if (key == nullptr) return nullptr;
  const auto place = key->values.find(name);
  return place == key->values.end() ? nullptr : &place->second;
}

SettingsContent parse_settings(std::string_view bytes, std::vector<SettingsMistake>* mistakes) {
  SettingsContent content;
  SettingKey* key = nullptr;  // of the lines that follow; the reader gives no values below no key
  SettingsReader reader(bytes);
  for (SettingsLine line; reader.next(line);) {
    switch (line.kind) {
      case SettingsLineKind::kKey:
        key = &key_at(content, line.key);
        break;
      case SettingsLineKind::kRemovedKey:
        remove_keys(content, line.key);
        key = nullptr;
        break;
      case SettingsLineKind::kValue:
        assert(key != nullptr);
        set_value(*key, line);
        break;
      case SettingsLineKind::kRemovedValue:
        assert(key != nullptr);
        remove_value(*key, line.name);
        break;
      case SettingsLineKind::kMistake:
        if (mistakes != nullptr) mistakes->push_back({line.number, line.mistake});
        break;
      default:
        break;
    }
  }
  return content;
}

}  // namespace pv::platform
