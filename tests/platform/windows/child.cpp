// A second process, for the tests of what processes share.
//
//     platform_test_child hold MUTEX EVENT    locks the mutex, signals the event and waits to be killed
//     platform_test_child write FILE WRITER   writes numbers into a settings file; exits with how many failed
#include <windows.h>

#include <string_view>

#include "platform/named_mutex_fixture.h"
#include "platform/settings_store_fixture.h"

namespace pv {
namespace {

int hold(const char* mutex_name, const char* event_name) {
  platform::NamedMutex mutex(mutex_name);
  const HANDLE locked = ::OpenEventA(EVENT_MODIFY_STATE, FALSE, event_name);
  if (!mutex.lock_for(test::kLong) || !::SetEvent(locked)) return 1;
  ::Sleep(INFINITE);
  return 0;
}

int write(const char* file, const char* writer) {
  platform::use_settings_file(file);
  return test::write_numbers(writer);
}

}  // namespace

// The tests' own; here to link the fixture.
test::NamedMutexTest::~NamedMutexTest() = default;

}  // namespace pv

int main(int count, char** arguments) {
  if (count != 4) return 2;
  return arguments[1] == std::string_view("hold") ? pv::hold(arguments[2], arguments[3])
                                                  : pv::write(arguments[2], arguments[3]);
}
