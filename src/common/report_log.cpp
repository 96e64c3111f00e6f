#include "common/report_log.h"

#include <atomic>
#include <chrono>
#include <cstdarg>
#include <mutex>
#include <string>
#include <thread>

#include "common/agent_settings.h"
#include "common/dates.h"
#include "common/formats.h"
#include "common/never_destroyed.h"
#include "common/output.h"
#include "common/registry_access.h"
#include "common/text_search.h"
#include "platform/clock.h"
#include "platform/debugger_output.h"
#include "platform/log_stream.h"
#include "platform/named_mutex.h"
#include "platform/paths.h"
#include "platform/system_error.h"

namespace pv {
namespace {

constexpr char kHeader[] =
    "Time\tAction\tMessageID\tConnector\tFilter\tResult\tAccount\tSender\tIPAddress\tData\tSubject\n";
constexpr std::size_t kLongestPath = 511;  // bytes; no file is opened beyond it

// The mutex, and how many calls use it at the moment: it is destroyed only when there are none.
constinit std::atomic<platform::NamedMutex*> report_mutex = nullptr;
constinit std::atomic<int> mutex_users = 0;
// Held while the open file is used or exchanged. Start-up and shutdown take this one alone: another process that holds
// the report mutex must not delay them.
std::mutex& file_mutex() {
  static NeverDestroyed<std::mutex> mutex;
  return *mutex;
}

// file_mutex at shutdown. At the end of a process its other threads may have been ended with the mutex in their hands,
// so it is asked for during a limited time only; a thread that lives holds it for one write.
std::unique_lock<std::mutex> file_mutex_at_shutdown() {
  std::unique_lock lock(file_mutex(), std::try_to_lock);
  for (std::uint32_t waited_ms = 0; !lock.owns_lock() && waited_ms < kReportMutexWaitMs; ++waited_ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    static_cast<void>(lock.try_lock());
  }
  return lock;
}
constinit std::atomic<bool> accepts_writes = false;  // from create_report_mutex to release_report_log

// The report mutex, held while this object lives; at shutdown or exit other threads may still write.
class ReportLock {
 public:
  ReportLock() {
    ++mutex_users;
    mutex_ = report_mutex;
    held_ = mutex_ != nullptr && mutex_->lock_for(std::chrono::milliseconds(kReportMutexWaitMs));
  }
  ~ReportLock() {
    if (held_) mutex_->unlock();
    --mutex_users;
  }
  ReportLock(const ReportLock&) = delete;
  ReportLock& operator=(const ReportLock&) = delete;

  bool held() const { return held_; }

 private:
  platform::NamedMutex* mutex_ = nullptr;
  bool held_ = false;
};

ActivityLogMode activity_log_mode() {
  return static_cast<ActivityLogMode>(reg_read_dword_or(kAgentKey, "Activity Log Enabled", 0));
}

BoundedText<40> todays_file_name() {
  const platform::LocalTime now = platform::local_time();
  return format_text_40("MTAFILTER-Report-%02d%02d%02d.log", now.year % 100, now.month, now.day);
}

void append(std::FILE* file, std::string_view text) {
  [[maybe_unused]] const std::size_t written = std::fwrite(text.data(), 1, text.size(), file);
}

void append_line(std::FILE* file, std::string_view time, std::string_view text) {
  append(file, time);
  append(file, "\t");
  append(file, text);
}

void open_file(ReportLog& log) {
  const BoundedText<40> name = todays_file_name();
  // Set before the file is tried, so that a directory that fails is tried again at the change of day only.
  name.view().copy(log.current_file_name, name.size());
  log.current_file_name[name.size()] = '\0';
  const std::string_view directory = settings().activity_log_directory;
  if (directory.empty()) return;
  const std::string path = platform::join_path({directory, name});
  if (path.size() > kLongestPath) return;
  log.file = platform::open_log_stream(path);
  if (log.file == nullptr) return;
  append(log.file, kHeader);
  append_line(log.file, local_date_time_text(true), "Start\t-\t-\t-\t-\t-\t-\t-\t-\n");
  std::fflush(log.file);
}

void close_file(ReportLog& log) {
  if (log.file == nullptr) return;
  append_line(log.file, local_date_time_text(true), "End\t-\t-\t-\t-\t-\t-\t-\t-\n");
  std::fflush(log.file);
  std::fclose(log.file);
  log.file = nullptr;
}

// The text goes to the old day's file before that ends: its time was taken on the other side of midnight.
void write_to_file(std::string_view text) {
  const BoundedText<100> time = local_date_time_text(true);
  const ReportLock lock;
  if (!lock.held() || !accepts_writes) return;  // the log may have been released during the wait
  const std::lock_guard file_lock(file_mutex());
  ReportLog& log = report_log();
  if (log.file != nullptr) {
    append_line(log.file, time, text);
    std::fflush(log.file);
  }
  if (equals_nocase(todays_file_name(), log.current_file_name)) return;
  close_file(log);
  open_file(log);
}

void write_by_mode(std::string_view text) {
  switch (activity_log_mode()) {
    case ActivityLogMode::kReportFile:
      write_to_file(text);
      break;
    case ActivityLogMode::kStandardOutput:
      print_text(std::string(" ").append(text));
      break;
    case ActivityLogMode::kDebugger:
      platform::write_debugger_output(text);
      break;
  }
}

}  // namespace

ReportLog& report_log() {
  static constinit ReportLog log;
  return log;
}

void create_report_mutex() {
  if (report_mutex.load() == nullptr) report_mutex = new platform::NamedMutex(kReportMutexName);
  accepts_writes = true;
}

void* report_mutex_handle() {
  platform::NamedMutex* const mutex = report_mutex;
  return mutex != nullptr && accepts_writes ? mutex->native_handle() : nullptr;
}

void open_report_log() {
  if (activity_log_mode() != ActivityLogMode::kReportFile) return;
  const std::lock_guard lock(file_mutex());
  if (report_log().file == nullptr) open_file(report_log());
}

void close_report_log() {
  if (activity_log_mode() != ActivityLogMode::kReportFile) return;
  if (const std::unique_lock lock = file_mutex_at_shutdown(); lock.owns_lock()) close_file(report_log());
}

void release_report_log() {
  accepts_writes = false;
  if (const std::unique_lock lock = file_mutex_at_shutdown(); lock.owns_lock()) {
    ReportLog& log = report_log();
    if (log.file != nullptr) std::fclose(log.file);
    log = {};
  }
  platform::NamedMutex* const mutex = report_mutex.exchange(nullptr);
  if (mutex_users == 0) {
    delete mutex;
  } else {
    report_mutex = mutex;  // a write still waits for it; kept for the next create_report_mutex or release
  }
}

void report_write(std::string_view text) {
  try {
    write_by_mode(text);
  } catch (...) {  // NOLINT(bugprone-empty-catch): a lost line must not cost the message
  }
}

void report_write_format(const char* format, ...) {
  char text[2048];
  std::va_list arguments;
  va_start(arguments, format);
  const std::size_t size = format_bytes(text, sizeof text, format, arguments);
  va_end(arguments);
  if (size == sizeof text - 1) text[size - 1] = '\n';  // a cut text ends its line all the same
  report_write({text, size});
}

std::int32_t report_write_level(void*, void*, void*, std::uint32_t level, const char* text) {
  if (level > settings().debug_logging_level) return 0;
  report_write(text != nullptr ? std::string_view(text) : std::string_view());
  return 1;
}

void report_event(platform::EventType type, std::string_view source, std::uint32_t event_id, std::string_view text) {
  const int error = platform::last_system_error();  // before anything here can change it
  BoundedText<256> name;
  name.cut(source.empty() ? "PostVane" : source);
  const BoundedText<256> agent = format_text_256("%s error: %d", "PostVane Filter Provider", error);
  const std::string_view strings[] = {agent, text};
  platform::report_system_event(name, type, event_id, strings);
}

}  // namespace pv
