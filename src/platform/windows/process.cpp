#include "platform/process.h"

#include <windows.h>

#include <algorithm>
#include <string>

namespace pv::platform {
namespace {

using std::chrono::milliseconds;

class Handle {
 public:
  explicit Handle(HANDLE handle) : handle_(handle) {}
  ~Handle() {
    if (handle_ != nullptr) ::CloseHandle(handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

// What the program starts belongs to its job, so that it can be ended with it; a program may take its own out of it.
HANDLE create_job() {
  const HANDLE job = ::CreateJobObjectA(nullptr, nullptr);
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_BREAKAWAY_OK;
  ::SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

// The system ends a process after the call has returned.
void end_program(HANDLE process, HANDLE job, bool in_job) {
  constexpr DWORD kEndLimit = 10'000;  // ms
  if (in_job) ::TerminateJobObject(job, 0);
  ::TerminateProcess(process, 0);
  ::WaitForSingleObject(process, kEndLimit);
}

DWORD bounded(milliseconds limit) {
  return static_cast<DWORD>(std::clamp<milliseconds::rep>(limit.count(), 0, INFINITE - 1));
}

}  // namespace

// The program is held until it is in its job. Before Windows 8 a process that is in a job already, as everything is
// that a host in a job starts, cannot be put into another one: then the program is ended alone.
ProgramRun run_program(std::string_view command_line, milliseconds limit) {
  ProgramRun run;
  std::string line(command_line.substr(0, command_line.find('\0')));  // the system writes into it
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION started{};
  if (!::CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, nullptr, &startup,
                        &started)) {
    run.error_code = static_cast<int>(::GetLastError());
    return run;
  }
  const Handle process(started.hProcess);
  const Handle thread(started.hThread);
  const Handle job(create_job());
  const bool in_job = ::AssignProcessToJobObject(job.get(), process.get());
  ::ResumeThread(thread.get());

  run.started = true;
  if (::WaitForSingleObject(process.get(), bounded(limit)) != WAIT_OBJECT_0) {
    run.timed_out = true;
    end_program(process.get(), job.get(), in_job);
  }
  return run;
}

}  // namespace pv::platform
