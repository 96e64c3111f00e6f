#include "platform/settings_update.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <thread>

#include "platform/settings_bytes.h"
#include "platform/settings_replacement.h"

namespace pv::platform {
namespace {

constexpr std::chrono::seconds kLockLimit{5};
constexpr std::chrono::milliseconds kLockPause{1};
constexpr std::chrono::milliseconds kWriterPause{10};
constexpr int kMaxPauses = 15;
constexpr int kMaxRounds = 5;  // how often an edit from outside makes us start again

// We ask again and again, as signals, which could end a wait, belong to the program that loaded us. A write holds the
// lock for some milliseconds.
bool wait_for(SettingsLock& lock) {
  const auto deadline = std::chrono::steady_clock::now() + kLockLimit;
  for (;;) {
    const SettingsLock::Outcome outcome = lock.try_lock();
    if (outcome != SettingsLock::Outcome::kBusy) return outcome == SettingsLock::Outcome::kLocked;
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(kLockPause);
  }
}

// Whether somebody seems to be in the middle of writing the file in place: to replace it now would lose the rest.
bool is_unfinished(const SettingsBytes& file) {
  if (file.settled || file.outcome != SettingsRead::kRead) return false;
  return file.bytes.empty() ||
         file.bytes.find('\n', file.bytes.size() - std::min<std::size_t>(file.bytes.size(), 2)) == std::string::npos;
}

// Gives such a writer the moment that it needs; the file counts as settled after that in any case.
SettingsBytes read_finished_bytes(const char* path) {
  SettingsBytes file = read_settings_bytes(path);
  for (int i = 0; i < kMaxPauses && is_unfinished(file); ++i) {
    std::this_thread::sleep_for(kWriterPause);
    file = read_settings_bytes(path);
  }
  return file;
}

enum class Round { kDone, kFailed, kAgain };

Round update_once(const std::string& target, std::string_view key_path, std::string_view name,
                  const SettingValue& value) {
  const SettingsBytes old = read_finished_bytes(target.c_str());
  if (old.outcome != SettingsRead::kRead && old.outcome != SettingsRead::kMissing) return Round::kFailed;
  const std::string changed = with_setting(old.bytes, key_path, name, value);
  if (changed == old.bytes) {
    // There already, or nothing that such a file can hold.
    return parse_settings(changed).find(key_path, name) != nullptr ? Round::kDone : Round::kFailed;
  }
  if (changed.size() > kMaxSettingsBytes) return Round::kFailed;
  NewSettingsFile file(target);
  if (!file.write(changed)) return Round::kFailed;
  if (settings_identity(target.c_str()) != old.identity) return Round::kAgain;
  return file.replace_target() ? Round::kDone : Round::kFailed;
}

}  // namespace

bool update_settings_file(const std::string& path, std::string_view key_path, std::string_view name,
                          const SettingValue& value) {
  if (path.empty()) return false;
  const std::string target = behind_links(path);
  SettingsLock lock;
  if (!lock.open(target) || !wait_for(lock)) return false;
  for (int i = 0; i < kMaxRounds; ++i) {
    const Round round = update_once(target, key_path, name, value);
    if (round != Round::kAgain) return round == Round::kDone;
  }
  return false;
}

}  // namespace pv::platform
