// Runs platform_test_child, which lies beside the tests.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "platform/environment.h"

namespace pv::test {

class ChildProcess {
 public:
  explicit ChildProcess(const std::string& arguments) {
    std::string line(1, '"');
    line.append(platform::program_directory()).append("\\platform_test_child.exe\" ").append(arguments);
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    const BOOL started =
        ::CreateProcessA(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process_);
    EXPECT_TRUE(started) << line;
  }
  ~ChildProcess() {
    ::CloseHandle(process_.hThread);
    ::CloseHandle(process_.hProcess);
  }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  void kill() const { ::TerminateProcess(process_.hProcess, 9); }
  DWORD exit_status() const {
    EXPECT_EQ(::WaitForSingleObject(process_.hProcess, 60'000), WAIT_OBJECT_0);
    DWORD status = STILL_ACTIVE;
    ::GetExitCodeProcess(process_.hProcess, &status);
    return status;
  }

 private:
  PROCESS_INFORMATION process_{};
};

}  // namespace pv::test
