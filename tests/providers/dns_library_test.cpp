#include "providers/dns_library.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>

#include "common/agent_settings.h"
#include "common/registry_access.h"
#include "common/report_log.h"
#include "platform/clock.h"
#include "platform/environment.h"
#include "platform/output_capture.h"
#include "pvmtafilter/plugin.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

constexpr std::int64_t kLateEvening = 1795564790;  // 24 Nov 2026 23:59:50 UTC

struct Answer {
  std::int32_t result = 0;
  std::string list;
};

Answer look_up(const char* address) {
  char scratch[1024] = {};
  char list_name[256] = {};
  const std::int32_t result = dns_has_blacklist_entry("a.example", address, scratch, list_name);
  return {result, {list_name, strnlen(list_name, sizeof list_name)}};
}

class DnsLibrary : public testing::Test {
 protected:
  DnsLibrary() {
    platform::set_environment_variable("TZ", "UTC0");
    forget_agent_settings();
  }
  ~DnsLibrary() override {
    forget_dns_library();
    release_report_log();
    forget_agent_settings();
    platform::set_time_of_day_for_test(-1);
  }
  // `library`: the directory in which a PVWINDNS library lies.
  std::int32_t load(const std::string& library, const char* servers = "192.0.2.53") const {
    tree_.set_text(kRootKey, "Application Directory", std::string(DNS_LIBRARIES) + "/" + library);
    return load_dns_library(servers);
  }
  void log_to(ActivityLogMode mode) const {
    tree_.set_number(kAgentKey, "Activity Log Enabled", static_cast<std::uint32_t>(mode));
    read_logging_directory();
    create_report_mutex();
    open_report_log();
  }
  test::ServerTree tree_;
};

TEST_F(DnsLibrary, AnswersWithWhatTheLibraryAnswers) {
  EXPECT_EQ(look_up("192.0.2.1").result, 0) << "nothing is listed before it is loaded";
  EXPECT_EQ(load("whole", "192.0.2.53, 192.0.2.54"), 22) << "the result of the library's initialisation";
  EXPECT_EQ(look_up("192.0.2.1").result, 1);
  EXPECT_EQ(look_up("192.0.2.1").list, "list.example");
  EXPECT_EQ(look_up("192.0.2.99").result, 0);
  EXPECT_EQ(look_up("192.0.2.2").list, "192.0.2.53, 192.0.2.54") << "the server list as it stands";
  EXPECT_EQ(look_up("192.0.2.9").result, -7);
  EXPECT_EQ(look_up("192.0.2.9").list, std::string(256, 'x')) << "the buffers are the caller's, who ends their texts";
  forget_dns_library();
  EXPECT_EQ(look_up("192.0.2.1").result, 0);
}

TEST_F(DnsLibrary, EntryPointsMayBeMissing) {
  EXPECT_EQ(load("none"), 0) << "no library";
  EXPECT_EQ(look_up("192.0.2.1").result, 0);
  EXPECT_EQ(load("initialise_only"), 10);
  EXPECT_EQ(look_up("192.0.2.1").result, 0);
  create_report_mutex();
  EXPECT_EQ(load("look_up_only"), 0) << "without an initialisation";
  EXPECT_EQ(look_up("192.0.2.1").result, 1) << "its look-ups are called all the same";
  EXPECT_EQ(look_up("192.0.2.4").result, 0) << "and it has no log";
}

TEST_F(DnsLibrary, GetsTheLogByAddress) {
  platform::set_time_of_day_for_test(kLateEvening);
  log_to(ActivityLogMode::kReportFile);
  load("whole");
  EXPECT_EQ(look_up("192.0.2.3").list, "MTAFILTER-Report-261124.log open");
  EXPECT_EQ(look_up("192.0.2.3").result, 1) << "the mutex too";
  EXPECT_EQ(look_up("192.0.2.4").result, 1);
  EXPECT_THAT(tree_.read("logs/MTAFILTER-Report-261124.log"), EndsWith("11/24/26 23:59:50\tlibrary line\r\n"));

  platform::set_time_of_day_for_test(kLateEvening + 15);
  report_write("the line that notices the change of day\n");
  EXPECT_EQ(look_up("192.0.2.3").list, "MTAFILTER-Report-261125.log open");
  close_report_log();
  EXPECT_EQ(look_up("192.0.2.3").list, "MTAFILTER-Report-261125.log closed");
}

TEST_F(DnsLibrary, WritesLinesUpToTheLoggingLevel) {
  log_to(ActivityLogMode::kStandardOutput);
  load("whole");
  struct LevelCase {
    const char* address;
    std::uint32_t limit;
    std::int32_t result;
  };
  // The lines have the levels 5, 6 and 0xFFFFFFFF.
  const LevelCase cases[] = {
      {"192.0.2.4", 5, 1}, {"192.0.2.5", 5, 0}, {"192.0.2.5", 6, 1}, {"192.0.2.4", 0, 0}, {"192.0.2.6", 6, 0}};
  for (const LevelCase& c : cases) {
    settings().debug_logging_level = c.limit;
    platform::OutputCapture output;
    EXPECT_EQ(look_up(c.address).result, c.result) << c.address << " at " << c.limit;
    EXPECT_EQ(output.take(), c.result == 1 ? " library line\n" : "") << c.address << " at " << c.limit;
  }
}

TEST_F(DnsLibrary, IsNotGivenALogWithoutItsMutex) {
  load("unlogged");
  EXPECT_EQ(look_up("192.0.2.4").result, 0);
}

// Exceptions of 32-bit Windows libraries do not cross from one to the other.
class DnsLibraryThrows : public DnsLibrary {
 protected:
  void SetUp() override {
    if (!DNS_LIBRARIES_THROW) GTEST_SKIP() << "exceptions do not leave a library of this system";
    log_to(ActivityLogMode::kStandardOutput);
  }

  // The report about the exception that a look-up threw.
  template <class Exception>
  std::string report_of(const char* address) {
    platform::OutputCapture output;
    EXPECT_THROW(look_up(address), Exception);
    return output.take();
  }
};

TEST_F(DnsLibraryThrows, AndTheReportSaysWhat) {
  load("whole");
  EXPECT_EQ(report_of<std::runtime_error>("192.0.2.11"),
            " HasORBDBEntry handled an exception; session will be dropped.\n"
            "The exception was: no such zone\n"
            "The exception occurred in : ..\\SMTP\\DNSQuery, line 104\n");
  EXPECT_EQ(report_of<ComError>("192.0.2.12"),
            " HasORBDBEntry handled a COM error.\n"
            "Code = 0x80004005\n"
            "Code meaning = Unspecified error\n"
            "Source = PVWINDNS\n"
            "Error Description = the zone file is damaged\n");
  EXPECT_EQ(report_of<int>("192.0.2.13"),
            " HasORBDBEntry raised an exception.\n"
            "The exception occurred in : ..\\SMTP\\DNSQuery, line 104\n");
}

TEST_F(DnsLibraryThrows, FromItsInitialisationAndTheStartGoesOn) {
  platform::OutputCapture output;
  EXPECT_EQ(load("whole", "throw"), 0);
  EXPECT_THAT(output.take(), HasSubstr("The exception was: no servers\n"));
  EXPECT_EQ(look_up("192.0.2.1").result, 1);
}

}  // namespace
}  // namespace pv
