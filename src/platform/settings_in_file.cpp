#include "platform/settings_in_file.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/file_identity.h"
#include "platform/last_error.h"
#include "platform/settings_bytes.h"
#include "platform/settings_store.h"
#include "platform/settings_update.h"

namespace pv::platform {
namespace {

constexpr char kVariable[] = "PVMTAFILTER_SETTINGS";
constexpr std::chrono::seconds kLockLimit{5};
constexpr std::size_t kLongestPath = 4095;  // bytes; no system here opens a longer one

// The bytes are kept beside what they mean: a file that was only touched need not be parsed again.
struct Parsed {
  std::string bytes;
  SettingsContent content;
};

struct Snapshot {
  FileIdentity identity;
  // False: the file was read so soon after its last change that a further change might have the same identity. What was
  // read is then good for that read alone.
  bool settled = false;
  std::shared_ptr<const Parsed> parsed;
  // We wrote counters into the file and believe until then (process_clock_ms) that it is as we left it: else they would
  // have every setting read from the disk for a while, all the time. Somebody's edit in the same tick of the kernel's
  // clock, in place and of the same size, is seen by then.
  std::int64_t ours_until_ms = 0;
};

enum class Choice {
  kNone,  // to be made at the first read
  kFile,
  kNoFile,  // the registry; chosen_path names a key, or nothing
};

// The path stays over forget_settings_file(), so it is no std::string, whose memory would stay too.
constinit std::array<char, kLongestPath + 1> chosen_path{};  // set before choice, then read-only
constinit std::atomic<Choice> choice{Choice::kNone};

struct Mutexes {
  std::mutex choosing;
  std::mutex reading;   // held by the thread that reads the file; taken before `snapshot`
  std::mutex snapshot;  // guards the variable
};

constinit Snapshot* snapshot = nullptr;

// Never destroyed: at the end of the process other threads may still read settings.
Mutexes& mutexes() {
  alignas(Mutexes) static std::byte memory[sizeof(Mutexes)];
  static Mutexes& made = *::new (static_cast<void*>(memory)) Mutexes;
  return made;
}

Choice choose_path(std::string_view chosen) {
  chosen_path.fill('\0');
  if (chosen.size() < chosen_path.size()) std::copy(chosen.begin(), chosen.end(), chosen_path.begin());
  return is_registry_key(chosen) ? Choice::kNoFile : Choice::kFile;
}

Choice choose_path_of_environment() {
  const std::string named = environment_variable(kVariable).value_or(std::string());
  if (!named.empty()) return choose_path(named);
  if (kUsualSettingsFile != nullptr) return choose_path(kUsualSettingsFile);
  chosen_path.fill('\0');
  return Choice::kNoFile;
}

std::shared_ptr<const Parsed> published(const FileIdentity& identity) {
  const std::lock_guard lock(mutexes().snapshot);
  if (snapshot == nullptr || snapshot->identity != identity) return nullptr;
  return snapshot->settled || process_clock_ms() < snapshot->ours_until_ms ? snapshot->parsed : nullptr;
}

std::shared_ptr<const Parsed> last_published() {
  const std::lock_guard lock(mutexes().snapshot);
  return snapshot != nullptr ? snapshot->parsed : nullptr;
}

void publish(Snapshot fresh) {
  auto replacement = std::make_unique<Snapshot>(std::move(fresh));
  const std::lock_guard lock(mutexes().snapshot);
  replacement.reset(std::exchange(snapshot, replacement.release()));
}

std::shared_ptr<const Parsed> parse(std::string bytes) {
  auto parsed = std::make_shared<Parsed>();
  parsed->content = parse_settings(bytes);
  parsed->bytes = std::move(bytes);
  return parsed;
}

// When the file was first seen empty after it had held something; negative: it is not. Guarded by the reading mutex.
constinit std::int64_t emptied_at_ms = -1;
constexpr std::int64_t kAtRestAfter_ms = 100;

// An editor that writes in place empties the file first. Until it has been at rest for a moment, that is no reason to
// filter without settings. By our own clock: an emptied file keeps its old time for an instant.
bool is_being_written(const SettingsBytes& file, const Parsed& last) {
  if (!file.settled && file.outcome == SettingsRead::kUnreadable) return true;
  if (file.outcome != SettingsRead::kRead || !file.bytes.empty() || last.bytes.empty()) {
    emptied_at_ms = -1;
    return false;
  }
  const std::int64_t now = process_clock_ms();
  if (emptied_at_ms < 0) emptied_at_ms = now;
  return now - emptied_at_ms < kAtRestAfter_ms;
}

// By the holder of the mutex for reading.
std::shared_ptr<const Parsed> read_file(const char* path) {
  SettingsBytes file = read_settings_bytes(path);
  std::shared_ptr<const Parsed> last = last_published();
  // Short of descriptors for a moment: yesterday's settings are better than none, with which mail would go astray.
  if (file.outcome == SettingsRead::kNotNow && last != nullptr) return last;
  if (last != nullptr && is_being_written(file, *last)) return last;
  std::shared_ptr<const Parsed> parsed =
      last != nullptr && last->bytes == file.bytes ? std::move(last) : parse(std::move(file.bytes));
  publish({file.identity, file.settled && file.outcome != SettingsRead::kNotNow, parsed});
  return parsed;
}

constinit thread_local SameSettings* same_settings = nullptr;  // the innermost one of this thread

// The settings as the file has them now. Threads that find it changed wait for the first of them to read it.
std::shared_ptr<const Parsed> current_in_file() {
  const KeptSystemError kept;  // a missing file is none of the caller's failures
  const char* const path = settings_file_path();
  if (auto parsed = published(settings_identity(path))) return parsed;
  const std::lock_guard lock(mutexes().reading);
  if (auto parsed = published(settings_identity(path))) return parsed;
  return read_file(path);
}

// The state in which we left the file, if that was its last change we know of.
FileIdentity known_identity() {
  const std::lock_guard lock(mutexes().snapshot);
  return snapshot != nullptr && snapshot->ours_until_ms != 0 ? snapshot->identity : FileIdentity();
}

// Under the mutex for reading, so that no reader who began before the write publishes the old file over it.
void publish_own(SettingsWritten written) {
  std::shared_ptr<const Parsed> parsed = parse(std::move(written.bytes));
  const std::lock_guard reading(mutexes().reading);
  publish({written.identity, false, std::move(parsed), process_clock_ms() + kAtRestAfter_ms});
}

SettingsWritten write_edits(std::span<const SettingEdit> edits, std::chrono::milliseconds lock_limit) {
  const std::shared_ptr<const Parsed> parsed = current_in_file();
  const bool all_held = std::all_of(edits.begin(), edits.end(), [&](const SettingEdit& edit) {
    const SettingValue* held = parsed->content.find(edit.key_path, edit.name);
    return held != nullptr && *held == edit.value;
  });
  if (all_held) return {true, {}, {}};
  return update_settings_file(settings_file_path(), {edits, lock_limit, known_identity()});
}

}  // namespace

struct SettingsInUse {
  static std::shared_ptr<const Parsed> current() {
    if (same_settings == nullptr) return current_in_file();
    if (same_settings->state_ == nullptr) same_settings->state_ = current_in_file();
    return std::static_pointer_cast<const Parsed>(same_settings->state_);
  }
};

SameSettings::SameSettings() : outer_(std::exchange(same_settings, this)) {
  if (outer_ != nullptr) state_ = outer_->state_;
}
SameSettings::~SameSettings() {
  same_settings = outer_;
}

const char* settings_file_path() {
  if (choice.load(std::memory_order_acquire) == Choice::kNone) {
    const std::lock_guard lock(mutexes().choosing);
    if (choice.load(std::memory_order_relaxed) == Choice::kNone) {
      choice.store(choose_path_of_environment(), std::memory_order_release);
    }
  }
  return choice.load(std::memory_order_relaxed) == Choice::kFile ? chosen_path.data() : nullptr;
}

std::string_view chosen_registry_key() {
  return chosen_path.data();
}

void choose_settings_file(std::string_view chosen) {
  choice.store(chosen.empty() ? choose_path_of_environment() : choose_path(chosen), std::memory_order_release);
  forget_settings_file();
}

std::optional<std::size_t> read_text_in_file(std::string_view key_path, std::string_view name, std::span<char> out) {
  const std::shared_ptr<const Parsed> parsed = SettingsInUse::current();
  const SettingValue* value = parsed->content.find(key_path, name);
  const auto* text = value == nullptr ? nullptr : std::get_if<std::string>(value);
  if (text == nullptr || text->size() >= out.size()) return std::nullopt;
  std::copy(text->begin(), text->end(), out.begin());
  return text->size();
}

std::optional<std::uint32_t> read_number_in_file(std::string_view key_path, std::string_view name) {
  const std::shared_ptr<const Parsed> parsed = SettingsInUse::current();
  const SettingValue* value = parsed->content.find(key_path, name);
  const auto* number = value == nullptr ? nullptr : std::get_if<std::uint32_t>(value);
  if (number == nullptr) return std::nullopt;
  return *number;
}

bool for_each_name_in_file(std::string_view key_path, const std::function<bool(std::string_view name)>& visit) {
  const std::shared_ptr<const Parsed> parsed = SettingsInUse::current();
  const SettingKey* key = parsed->content.find_key(key_path);
  if (key == nullptr) return false;
  for (const std::string& name : key->names) {
    if (!visit(name)) break;
  }
  return true;
}

bool write_in_file(std::string_view key_path, std::string_view name, const SettingValue& value) {
  const SettingEdit edit{key_path, name, value};
  return write_edits({&edit, 1}, kLockLimit).held;
}

bool write_in_file(std::span<const NumberSetting> numbers, std::chrono::milliseconds lock_limit) {
  std::vector<SettingEdit> edits;
  edits.reserve(numbers.size());
  for (const NumberSetting& number : numbers) edits.push_back({number.key_path, number.name, number.number});
  SettingsWritten written = write_edits(edits, lock_limit);
  const bool held = written.held;
  if (written.identity.exists) publish_own(std::move(written));
  return held;
}

std::optional<SettingsContent> all_in_file() {
  const SettingsBytes file = read_settings_bytes(settings_file_path());
  if (file.outcome != SettingsRead::kRead) return std::nullopt;
  return parse_settings(file.bytes);
}

void forget_settings_file() {
  std::unique_ptr<Snapshot> forgotten;
  const std::lock_guard lock(mutexes().snapshot);
  forgotten.reset(std::exchange(snapshot, nullptr));
}

}  // namespace pv::platform
