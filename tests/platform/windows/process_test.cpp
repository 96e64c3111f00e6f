#include "platform/process.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <cstdio>

#include "platform/event.h"
#include "platform/file.h"
#include "platform/log_stream.h"
#include "platform/named_mutex.h"
#include "platform/output_capture.h"
#include "support/server_tree.h"

namespace pv {
namespace {

// Handles are small multiples of four.
int inheritable_handles() {
  constexpr std::uintptr_t kEnough = 4096;
  int count = 0;
  for (std::uintptr_t number = 4; number < kEnough; number += 4) {
    DWORD flags = 0;
    if (::GetHandleInformation(reinterpret_cast<HANDLE>(number), &flags) && (flags & HANDLE_FLAG_INHERIT) != 0) ++count;
  }
  return count;
}

TEST(Process, ProgramsInheritNothingThatTheAgentOpens) {
  const test::TemporaryDirectory directory;
  directory.write("in", "text");
  const int before = inheritable_handles();
  platform::InputFile in;
  EXPECT_TRUE(in.open(directory.path("in"), platform::FileMode::kText));
  platform::OutputFile out;
  EXPECT_TRUE(out.open(directory.path("out"), platform::FileMode::kText, platform::Disposition::kCreateNew));
  std::FILE* log = platform::open_log_stream(directory.path("log"));
  const platform::NamedMutex mutex("test.inherited");
  const platform::Event event;
  EXPECT_EQ(inheritable_handles(), before);
  ASSERT_NE(log, nullptr);
  std::fclose(log);
}

}  // namespace
}  // namespace pv
