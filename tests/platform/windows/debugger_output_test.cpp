#include "platform/debugger_output.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

namespace pv {
namespace {

// What a debugger would be told, by the exception that the system raises for it.
class DebuggerStandIn {
 public:
  DebuggerStandIn() : handler_(::AddVectoredExceptionHandler(1, take)) { caught().clear(); }
  ~DebuggerStandIn() { ::RemoveVectoredExceptionHandler(handler_); }
  DebuggerStandIn(const DebuggerStandIn&) = delete;
  DebuggerStandIn& operator=(const DebuggerStandIn&) = delete;

  static std::string& caught() {
    static std::string text;
    return text;
  }

 private:
  static LONG CALLBACK take(EXCEPTION_POINTERS* raised) {
    constexpr DWORD kPrinted = 0x40010006;
    const EXCEPTION_RECORD& record = *raised->ExceptionRecord;
    if (record.ExceptionCode != kPrinted) return EXCEPTION_CONTINUE_SEARCH;
    caught() += reinterpret_cast<const char*>(record.ExceptionInformation[1]);
    return EXCEPTION_CONTINUE_EXECUTION;
  }

  void* const handler_;
};

TEST(DebuggerOutput, ReachesADebugger) {
  const DebuggerStandIn debugger;
  platform::write_debugger_output("MTAFILTER: \xE9\n");
  platform::write_debugger_output(std::string_view("cut", 2));
  EXPECT_EQ(debugger.caught(), "MTAFILTER: \xE9\ncu");
}

}  // namespace
}  // namespace pv
