// Counters in the settings. To write a settings file takes several times as long as to filter a small message, so that
// the threads of a busy server share the writing: one of them writes, for all, and not all the time.
//
// Failure policy: a write that fails leaves the number to be written with the next one.
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

#include "common/agent_settings.h"
#include "common/never_destroyed.h"
#include "common/registry_access.h"
#include "common/report_log.h"
#include "common/writing_budget.h"
#include "platform/delayed_call.h"
#include "platform/settings_store.h"

namespace pv {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostCounters = 24;          // published under different names; further ones are written at once
constexpr int kShareOfTime = 40;                   // writing may take a fortieth of it
constexpr std::chrono::milliseconds kReserve{25};  // ... and as much more after a quiet second
constexpr std::chrono::milliseconds kLockLimit{200};  // for another process that writes settings
constexpr int kMostRounds = 4;                        // writes of one thread for the others
constexpr int kFinishTries = 1000;                    // of 1 ms

constexpr WritingBudget kBudget(kShareOfTime, kReserve);

struct PublishedCounter {
  BoundedText<256> key_path;
  BoundedText<64> name;
  std::uint32_t number = 0;
  bool dirty = false;  // not stored yet

  bool is(std::string_view other_key, std::string_view other_name) const {
    return name.view() == other_name && key_path.view() == other_key;
  }
};

struct CounterStore {
  std::mutex mutex;  // for moments; guards what follows
  std::array<PublishedCounter, kMostCounters> counters;
  std::size_t count = 0;
  bool writing = false;    // by a thread that looks for more when it is done
  bool put_off = false;    // `later` was requested
  bool finishing = false;  // nothing is put off any more
  WritingBudget budget = kBudget;
  std::unique_ptr<platform::DelayedCall> later;

  bool any_dirty() const {
    return std::any_of(counters.begin(), counters.begin() + count, [](const auto& counter) { return counter.dirty; });
  }
};
using StoreLock = std::unique_lock<std::mutex>;

CounterStore& counter_store() {
  static NeverDestroyed<CounterStore> store;
  return *store;
}

// A service without the right to write would fail at every message.
constinit std::atomic<bool> failure_reported = false;

void report_failure(std::string_view key_path, std::string_view name) noexcept {
  if (failure_reported.exchange(true)) return;
  try {
    std::string text =
        "PV-IXXXX: Unable to save queue statistics for service. The service account may not have permission to write "
        "to the registry path ";
    text.append(key_path).append(", item ").append(name).append("\n");
    report_write(text);
  } catch (...) {  // NOLINT(bugprone-empty-catch): no memory for the report
  }
}

bool store_numbers(std::span<const platform::NumberSetting> numbers) noexcept {
  try {
    return platform::write_number_settings(numbers, kLockLimit);
  } catch (...) {
    return false;  // out of memory for a moment
  }
}

// Writes the numbers that are not stored yet, without holding the mutex meanwhile. False when that failed.
bool write_dirty(CounterStore& store, StoreLock& lock) {
  std::array<platform::NumberSetting, kMostCounters> numbers;
  std::array<PublishedCounter*, kMostCounters> written;
  std::size_t count = 0;
  for (std::size_t i = 0; i < store.count; ++i) {
    PublishedCounter& counter = store.counters[i];
    if (!counter.dirty) continue;
    counter.dirty = false;
    numbers[count] = {counter.key_path, counter.name, counter.number};
    written[count++] = &counter;
  }
  store.writing = true;
  lock.unlock();
  const Clock::time_point begin = Clock::now();
  const bool stored = store_numbers({numbers.data(), count});
  const Clock::time_point end = Clock::now();
  if (!stored) report_failure(numbers[0].key_path, numbers[0].name);
  lock.lock();
  store.writing = false;
  store.budget.spend(end - begin, end);
  if (!stored) std::for_each(written.begin(), written.begin() + count, [](auto* counter) { counter->dirty = true; });
  return stored;
}

void write_later();

// Without a thread for it the numbers stay for the next one that publishes.
void put_off(CounterStore& store) {
  if (store.put_off || store.finishing) return;
  const auto wait = std::chrono::ceil<std::chrono::milliseconds>(store.budget.wait(Clock::now()));
  try {
    if (!store.later) store.later = std::make_unique<platform::DelayedCall>(&write_later);
    store.put_off = store.later->request(wait);
  } catch (const std::bad_alloc&) {
    store.put_off = false;
  }
}

void write_what_may_be(CounterStore& store, StoreLock& lock) {
  for (int round = 0; !store.writing && store.any_dirty(); ++round) {
    if (round == kMostRounds || !store.budget.allows(Clock::now())) return put_off(store);
    if (!write_dirty(store, lock)) return;
  }
}

void write_later() {
  CounterStore& store = counter_store();
  StoreLock lock(store.mutex);
  store.put_off = false;
  write_what_may_be(store, lock);
}

enum class Noted { kNothingNew, kNumber, kNoRoom };

// Notes a number that is above the one of its counter, or the counter's first.
Noted note(CounterStore& store, std::string_view key_path, std::string_view name, std::uint32_t number) {
  const auto end = store.counters.begin() + store.count;
  const auto found =
      std::find_if(store.counters.begin(), end, [&](const auto& counter) { return counter.is(key_path, name); });
  if (found != end) {
    if (static_cast<std::int32_t>(number - found->number) <= 0) return Noted::kNothingNew;
  } else {
    if (store.count == kMostCounters || !found->key_path.assign(key_path) || !found->name.assign(name)) {
      return Noted::kNoRoom;
    }
    ++store.count;
  }
  found->number = number;
  found->dirty = true;
  return Noted::kNumber;
}

// A thread that the end of the process killed may hold it for ever.
bool lock_at_shutdown(StoreLock& lock) {
  for (int i = 0; i < kFinishTries && !lock.try_lock(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  return lock.owns_lock();
}

}  // namespace

void publish_counter(std::string_view key_path, std::string_view name, std::uint32_t number) {
  if (settings().update_statistics == 0) return;
  CounterStore& store = counter_store();
  StoreLock lock(store.mutex);
  const Noted noted = note(store, key_path, name, number);
  if (noted == Noted::kNumber) return write_what_may_be(store, lock);
  lock.unlock();
  if (noted == Noted::kNoRoom && !reg_write_dword(key_path, name, number)) report_failure(key_path, name);
}

void finish_publishing_counters() {
  CounterStore& store = counter_store();
  StoreLock lock(store.mutex, std::defer_lock);
  if (!lock_at_shutdown(lock)) return;
  store.finishing = true;
  std::unique_ptr<platform::DelayedCall> later = std::move(store.later);
  lock.unlock();
  later.reset();  // waits for its call, which takes the mutex
  if (!lock_at_shutdown(lock)) return;
  store.put_off = store.finishing = false;
  if (!store.writing && store.any_dirty()) write_dirty(store, lock);
  if (store.writing) return;  // by a message's thread, at the end of the process
  store.count = 0;
  store.budget = kBudget;
}

void forget_counter_failure_for_test() {
  failure_reported = false;
}

}  // namespace pv
