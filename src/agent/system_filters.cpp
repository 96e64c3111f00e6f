#include "agent/system_filters.h"

#include <mutex>
#include <utility>

#include "agent/reload_gate.h"
#include "common/never_destroyed.h"
#include "common/registry_access.h"
#include "common/report_log.h"
#include "filters/filter_table.h"

namespace pv {
namespace {

// Held for the reload check and a reload, never while a message is filtered.
std::mutex& reload_mutex() {
  static NeverDestroyed<std::mutex> mutex;
  return *mutex;
}

// Guarded by reload_mutex once messages are filtered.
std::shared_ptr<const FilterSet>& current_filters() {
  static NeverDestroyed<std::shared_ptr<const FilterSet>> filters;
  return *filters;
}

constinit bool filters_loaded_once = false;

std::shared_ptr<const FilterSet> loaded_filters() {
  const auto set = std::make_shared<FilterSet>();
  ResetFilterSet(*set);
  LoadFilterSet(*set);
  return set;
}

// Closes the gate for new messages, for as long as it lives.
class ClosedGate {
 public:
  ClosedGate() { reload_in_progress.store(1); }
  ~ClosedGate() { reload_in_progress.store(0); }
  ClosedGate(const ClosedGate&) = delete;
  ClosedGate& operator=(const ClosedGate&) = delete;
};

bool asks_for_reload() {
  return reg_read_dword_or(kAgentKey, "Reload", 0) == 1;
}

void reload_filters() {
  report_write("Reloading filters due to change.\n");
  const ClosedGate gate;
  wait_for_other_messages();
  std::shared_ptr<const FilterSet> old = current_filters();
  ReleaseFilterSet(current_filters());
  try {
    current_filters() = loaded_filters();
  } catch (...) {
    current_filters() = std::move(old);  // out of memory half-way: the old filters go on protecting the mail
    throw;
  }
  // A failed write goes unreported; the next message then reloads again.
  static_cast<void>(reg_write_dword(kAgentKey, "Reload", 0));
}

}  // namespace

void load_system_filters_once() {
  const std::lock_guard lock(reload_mutex());
  if (filters_loaded_once) return;
  current_filters() = loaded_filters();
  filters_loaded_once = true;
}

std::shared_ptr<const FilterSet> system_filters_for_message(platform::SameSettings& state) {
  // Asked before the mutex is taken, so that the threads do not wait for one another's look at the settings.
  const bool reload_asked = asks_for_reload();
  std::unique_lock lock(reload_mutex(), std::try_to_lock);
  if (lock.owns_lock() && !reload_asked) return current_filters();
  if (!lock.owns_lock()) lock.lock();
  state.renew();  // by now another thread may have reloaded them
  if (asks_for_reload()) {
    reload_filters();
    state.renew();
  }
  return current_filters();
}

void release_system_filters() {
  const std::unique_lock lock(reload_mutex(), std::try_to_lock);
  if (!lock.owns_lock()) return;  // the process ends in the middle of a reload, and must not wait for it
  ReleaseFilterSet(current_filters());
  filters_loaded_once = false;
}

}  // namespace pv
