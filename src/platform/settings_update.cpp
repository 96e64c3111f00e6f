#include "platform/settings_update.h"

#include <algorithm>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "platform/settings_bytes.h"
#include "platform/settings_replacement.h"

namespace pv::platform {
namespace {

constexpr std::chrono::milliseconds kLockPause{1};
constexpr std::chrono::milliseconds kWriterPause{10};
constexpr int kMaxPauses = 15;
constexpr int kMaxRounds = 5;  // how often an edit from outside makes us start again

// We ask again and again, as signals, which could end a wait, belong to the program that loaded us. A write holds the
// lock for some milliseconds.
bool wait_for(SettingsLock& lock, std::chrono::milliseconds limit) {
  const auto deadline = std::chrono::steady_clock::now() + limit;
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
SettingsBytes read_finished_bytes(const char* path, const FileIdentity& finished) {
  SettingsBytes file = read_settings_bytes(path);
  for (int i = 0; i < kMaxPauses && is_unfinished(file) && file.identity != finished; ++i) {
    std::this_thread::sleep_for(kWriterPause);
    file = read_settings_bytes(path);
  }
  return file;
}

// nullopt when a value is nothing that such a file can hold.
std::optional<std::string> with_settings(std::string_view old, std::span<const SettingEdit> edits) {
  std::string bytes(old);
  for (const SettingEdit& edit : edits) {
    std::string changed = with_setting(bytes, edit.key_path, edit.name, edit.value);
    if (changed == bytes && parse_settings(bytes).find(edit.key_path, edit.name) == nullptr) return std::nullopt;
    bytes = std::move(changed);
  }
  return bytes;
}

enum class Round { kDone, kFailed, kAgain };

// What the new file's name shows now, unless somebody touched the file in the meantime.
FileIdentity identity_after(const FileIdentity& before, const char* path) {
  const FileIdentity now = settings_identity(path);
  const bool same = now.volume == before.volume && now.file == before.file && now.size == before.size &&
                    now.modified == before.modified;
  return same ? now : FileIdentity();
}

Round update_once(const std::string& target, const SettingsWrite& write, SettingsWritten& written) {
  const SettingsBytes old = read_finished_bytes(target.c_str(), write.finished);
  if (old.outcome != SettingsRead::kRead && old.outcome != SettingsRead::kMissing) return Round::kFailed;
  std::optional<std::string> changed = with_settings(old.bytes, write.edits);
  if (!changed || changed->size() > kMaxSettingsBytes) return Round::kFailed;
  if (*changed == old.bytes) return Round::kDone;
  NewSettingsFile file(target);
  if (!file.write(*changed)) return Round::kFailed;
  const FileIdentity fresh = file.identity();
  if (settings_identity(target.c_str()) != old.identity) return Round::kAgain;
  if (!file.replace_target()) return Round::kFailed;
  written.identity = identity_after(fresh, target.c_str());
  written.bytes = std::move(*changed);
  return Round::kDone;
}

}  // namespace

SettingsWritten update_settings_file(const std::string& path, const SettingsWrite& write) {
  SettingsWritten written;
  if (path.empty()) return written;
  const std::string target = behind_links(path);
  SettingsLock lock;
  if (!lock.open(target) || !wait_for(lock, write.lock_limit)) return written;
  Round round = Round::kAgain;
  for (int i = 0; i < kMaxRounds && round == Round::kAgain; ++i) round = update_once(target, write, written);
  written.held = round == Round::kDone;
  return written;
}

}  // namespace pv::platform
