#include "platform/settings_store.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <climits>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/environment.h"
#include "platform/posix/kept_errno.h"
#include "platform/posix/settings_bytes.h"
#include "platform/posix/settings_update.h"
#include "platform/settings_file.h"

namespace pv::platform {
namespace {

constexpr char kVariable[] = "PVMTAFILTER_SETTINGS";
constexpr char kDefaultPath[] = "/etc/pvmtafilter/settings.reg";

// The bytes are kept beside what they mean: a file that was only touched need not be parsed again.
struct Parsed {
  std::string bytes;
  SettingsContent content;
};

struct Snapshot {
  SettingsIdentity identity;
  // False: the file was read so soon after its last change that a further change might have the same identity. What was
  // read is then good for that read alone.
  bool settled = false;
  std::shared_ptr<const Parsed> parsed;
};

// The path stays over forget_settings(), so it is no std::string, whose memory would stay too.
constinit std::array<char, PATH_MAX> path{};  // set before path_chosen, then read-only
constinit std::atomic<bool> path_chosen{false};
constinit std::mutex path_mutex;

constinit std::mutex reading_mutex;  // held by the thread that reads the file; taken before snapshot_mutex
constinit std::mutex snapshot_mutex;
constinit Snapshot* snapshot = nullptr;  // guarded by snapshot_mutex

// A path that is too long names no file; cut, it might name another one.
void choose_path(std::string_view chosen) {
  path.fill('\0');
  if (chosen.size() < path.size()) std::copy(chosen.begin(), chosen.end(), path.begin());
  path_chosen.store(true, std::memory_order_release);
}

void choose_path_of_environment() {
  const std::string named = environment_variable(kVariable).value_or(std::string());
  choose_path(named.empty() ? std::string_view(kDefaultPath) : named);
}

const char* settings_path() {
  if (!path_chosen.load(std::memory_order_acquire)) {
    const std::lock_guard lock(path_mutex);
    if (!path_chosen.load(std::memory_order_relaxed)) choose_path_of_environment();
  }
  return path.data();
}

std::shared_ptr<const Parsed> published(const SettingsIdentity& identity) {
  const std::lock_guard lock(snapshot_mutex);
  const bool valid = snapshot != nullptr && snapshot->settled && snapshot->identity == identity;
  return valid ? snapshot->parsed : nullptr;
}

std::shared_ptr<const Parsed> last_published() {
  const std::lock_guard lock(snapshot_mutex);
  return snapshot != nullptr ? snapshot->parsed : nullptr;
}

void publish(Snapshot fresh) {
  auto replacement = std::make_unique<Snapshot>(std::move(fresh));
  const std::lock_guard lock(snapshot_mutex);
  replacement.reset(std::exchange(snapshot, replacement.release()));
}

std::shared_ptr<const Parsed> parse(std::string bytes) {
  auto parsed = std::make_shared<Parsed>();
  parsed->content = parse_settings(bytes);
  parsed->bytes = std::move(bytes);
  return parsed;
}

// By the holder of reading_mutex.
std::shared_ptr<const Parsed> read_file() {
  SettingsBytes file = read_settings_bytes(settings_path());
  std::shared_ptr<const Parsed> last = last_published();
  // Short of descriptors for a moment: yesterday's settings are better than none, with which mail would go astray.
  if (file.outcome == SettingsRead::kNotNow && last != nullptr) return last;
  // An editor that writes in place empties the file first. Until the file has been at rest for a moment, that is no
  // reason to filter without settings.
  const bool being_written = !file.settled && (file.outcome == SettingsRead::kUnreadable || file.bytes.empty());
  if (being_written && last != nullptr) return last;
  std::shared_ptr<const Parsed> parsed =
      last != nullptr && last->bytes == file.bytes ? std::move(last) : parse(std::move(file.bytes));
  publish({file.identity, file.settled && file.outcome != SettingsRead::kNotNow, parsed});
  return parsed;
}

// The settings as the file has them now. Threads that find it changed wait for the first of them to read it.
std::shared_ptr<const Parsed> current() {
  const KeptErrno kept;  // a missing file is none of the caller's failures
  if (auto parsed = published(settings_identity(settings_path()))) return parsed;
  const std::lock_guard lock(reading_mutex);
  if (auto parsed = published(settings_identity(settings_path()))) return parsed;
  return read_file();
}

bool write_setting(std::string_view key_path, std::string_view name, const SettingValue& value) {
  const std::shared_ptr<const Parsed> parsed = current();
  const SettingValue* held = parsed->content.find(key_path, name);
  if (held != nullptr && *held == value) return true;
  return update_settings_file(settings_path(), key_path, name, value);
}

}  // namespace

std::optional<std::size_t> read_text_setting(std::string_view key_path, std::string_view name, std::span<char> out) {
  const std::shared_ptr<const Parsed> parsed = current();
  const SettingValue* value = parsed->content.find(key_path, name);
  const auto* text = value == nullptr ? nullptr : std::get_if<std::string>(value);
  if (text == nullptr || text->size() >= out.size()) return std::nullopt;
  std::copy(text->begin(), text->end(), out.begin());
  return text->size();
}

std::optional<std::uint32_t> read_number_setting(std::string_view key_path, std::string_view name) {
  const std::shared_ptr<const Parsed> parsed = current();
  const SettingValue* value = parsed->content.find(key_path, name);
  const auto* number = value == nullptr ? nullptr : std::get_if<std::uint32_t>(value);
  if (number == nullptr) return std::nullopt;
  return *number;
}

bool for_each_setting_name(std::string_view key_path, const std::function<bool(std::string_view name)>& visit) {
  const std::shared_ptr<const Parsed> parsed = current();
  const SettingKey* key = parsed->content.find_key(key_path);
  if (key == nullptr) return false;
  for (const std::string& name : key->names) {
    if (!visit(name)) break;
  }
  return true;
}

bool write_number_setting(std::string_view key_path, std::string_view name, std::uint32_t number) {
  return write_setting(key_path, name, number);
}

bool write_text_setting(std::string_view key_path, std::string_view name, std::string_view text) {
  return write_setting(key_path, name, std::string(text));
}

std::string settings_location() {
  return settings_path();
}

void use_settings_file(std::string_view chosen) {
  chosen.empty() ? choose_path_of_environment() : choose_path(chosen);
  forget_settings();
}

void forget_settings() {
  std::unique_ptr<Snapshot> forgotten;
  const std::lock_guard lock(snapshot_mutex);
  forgotten.reset(std::exchange(snapshot, nullptr));
}

}  // namespace pv::platform
