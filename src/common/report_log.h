// The agent's diagnostics: one writer for all of them, which sends each text to the daily report log, to standard
// output, to the debugger or nowhere, as "Activity Log Enabled" says at that moment.
//
// The report log is a tab-separated text file, "MTAFILTER-Report-yymmdd.log" in the activity log directory:
//
//     Time <tab> Action <tab> MessageID <tab> Connector <tab> Filter <tab> Result <tab> Account <tab> Sender ...
//     11/24/26 21:49:00 <tab> Start <tab> - ...
//     11/24/26 21:49:12 <tab> <the caller's text, which ends in a line feed>
//     11/24/26 23:59:59 <tab> End <tab> - ...
//
// Failure policy: report writes never fail towards their callers. A write is dropped when no file is open or the mutex,
// which other processes share, is not had within five seconds.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string_view>

#include "platform/event_log.h"

namespace pv {

inline constexpr char kReportMutexName[] = "PVAVFLTDebugLog";
inline constexpr std::uint32_t kReportMutexWaitMs = 5000;  // beyond it the text is dropped

// Where text goes.
enum class ActivityLogMode : std::uint32_t { kReportFile = 1, kStandardOutput = 2, kDebugger = 3 };

// The variables of the open log. The DNS look-up library is told the addresses of the name and of the stream, so they
// stay where they are for the life of the process.
struct ReportLog {
  char current_file_name[128] = {};  // of the open day's file; empty before the first was opened
  std::FILE* file = nullptr;         // nullptr: none open
};
ReportLog& report_log();

// Creates the mutex; before open_report_log. Until then, and after release_report_log, writes to the file are dropped.
void create_report_mutex();

// The system's handle of the mutex, for the DNS look-up library; nullptr when there is none.
void* report_mutex_handle();

// Opens the day's file and appends the header and the start line, in mode 1 only.
void open_report_log();

// Appends the end line and closes the file, in mode 1 only. Like a write it waits for the mutex, and leaves the file as
// it is when that is not had.
void close_report_log();

// Closes what close_report_log left (in another mode the file is closed without an end line) and the mutex, and forgets
// the file's name. Safe beside writes of other threads, which are then dropped.
void release_report_log();

// Writes a text. Any thread, at any time.
void report_write(std::string_view text);

// The same as printf does, with at most 2047 bytes; a longer text is cut and ends in a line feed.
void report_write_format(const char* format, ...) __attribute__((format(printf, 1, 2)));

// The logging hook of the DNS look-up library. 0, and nothing written, when `level` is above "Debug Logging Level";
// else 1.
std::int32_t report_write_level(void*, void*, void*, std::uint32_t level, const char* text);

// Reports an event to the system's log under `source` (at most 255 bytes; empty: "PostVane") with two strings: the
// agent's name with the thread's last system error, and `text`.
void report_event(platform::EventType type, std::string_view source, std::uint32_t event_id, std::string_view text);

}  // namespace pv
