// Counters in the settings. To write a settings file takes several times as long as to filter a small message, so that
// the threads of a busy server share the writing: one of them writes, for all, and not all the time. Who looks at the
// file after a burst of messages shall find its end all the same: what was put off is written when the last message in
// flight ends, for which there is a share of its own, or else once nothing was published for some milliseconds.
//
// Failure policy: a write that fails leaves the number to be written with the next one.
#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
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
constexpr int kShareOfTime = 100;                  // writing may take a hundredth of it
constexpr std::chrono::milliseconds kReserve{25};  // ... and as much more after a quiet time
constexpr std::chrono::milliseconds kReserveAtRest{50};  // the same of the share for moments without a message
constexpr std::chrono::milliseconds kLockLimit{200};     // for another process that writes settings
constexpr int kMostRounds = 4;                           // writes of one thread for the others
constexpr int kFinishTries = 1000;                       // of 1 ms
// Nothing was published for so long: several times as long as the last write took, within these.
constexpr int kQuietInWrites = 8;
constexpr std::chrono::milliseconds kShortestQuiet{2};
constexpr std::chrono::milliseconds kLongestQuiet{5};

constexpr WritingBudget kBudget(kShareOfTime, kReserve);
constexpr WritingBudget kBudgetAtRest(kShareOfTime, kReserveAtRest);

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
  WritingBudget budget_at_rest = kBudgetAtRest;
  Clock::time_point noted{};  // when the last new number came
  Clock::duration quiet = kShortestQuiet;
  std::condition_variable written;
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

// Whether numbers are noted that are not stored yet: messages that end ask without the mutex.
constinit std::atomic<bool> numbers_wait = false;

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

// Writes the numbers that are not stored yet, on account of `budget`, without holding the mutex meanwhile. False when
// that failed.
bool write_dirty(CounterStore& store, StoreLock& lock, WritingBudget& budget) {
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
  budget.spend(end - begin, end);
  store.quiet = std::clamp<Clock::duration>((end - begin) * kQuietInWrites, kShortestQuiet, kLongestQuiet);
  if (!stored) std::for_each(written.begin(), written.begin() + count, [](auto* counter) { counter->dirty = true; });
  numbers_wait = store.any_dirty();
  store.written.notify_all();
  return stored;
}

void write_later();

// Without a thread for it the numbers stay for the next one that publishes.
void put_off(CounterStore& store) {
  if (store.put_off || store.finishing) return;
  const Clock::time_point now = Clock::now();
  const Clock::duration until = std::min(store.budget.wait(now), store.noted + store.quiet - now);
  const auto wait = std::max(std::chrono::ceil<std::chrono::milliseconds>(until), std::chrono::milliseconds(1));
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
    if (!write_dirty(store, lock, store.budget)) return;
  }
}

void write_later() {
  CounterStore& store = counter_store();
  StoreLock lock(store.mutex);
  store.put_off = false;
  const bool quiet = Clock::now() - store.noted >= store.quiet;
  if (quiet && !store.writing && store.any_dirty() && !write_dirty(store, lock, store.budget)) return;
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
  store.noted = Clock::now();
  numbers_wait = true;
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

void store_counters_at_rest() noexcept {
  if (!numbers_wait.load(std::memory_order_relaxed)) return;
  CounterStore& store = counter_store();
  StoreLock lock(store.mutex);
  const Clock::time_point begin = Clock::now();
  if (!store.budget_at_rest.allows(begin)) return;
  store.written.wait_for(lock, kLockLimit, [&] { return !store.writing; });
  store.budget_at_rest.spend(Clock::now() - begin, Clock::now());
  if (store.writing || !store.any_dirty()) return;
  if (write_dirty(store, lock, store.budget_at_rest)) write_what_may_be(store, lock);  // what came meanwhile
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
  if (!store.writing && store.any_dirty()) write_dirty(store, lock, store.budget);
  if (store.writing) return;  // by a message's thread, at the end of the process
  store.count = 0;
  store.budget = kBudget;
  store.budget_at_rest = kBudgetAtRest;
  numbers_wait = false;
}

void forget_counter_failure_for_test() {
  failure_reported = false;
}

}  // namespace pv
