#include "common/report_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "common/agent_settings.h"
#include "common/caught_exception.h"
#include "common/output.h"
#include "common/registry_access.h"
#include "platform/clock.h"
#include "platform/debugger_output.h"
#include "platform/environment.h"
#include "platform/output_capture.h"
#include "platform/paths.h"
#include "pvmtafilter/plugin.h"
#include "support/server_tree.h"

namespace pv {
namespace {

using testing::IsEmpty;

constexpr std::int64_t kEvening = 1795556940;      // 24 Nov 2026 21:49:00 UTC
constexpr std::int64_t kLateEvening = 1795564790;  // 24 Nov 2026 23:59:50 UTC
constexpr char kDayOne[] = "MTAFILTER-Report-261124.log";
constexpr char kDayTwo[] = "MTAFILTER-Report-261125.log";
constexpr char kHeader[] =
    "Time\tAction\tMessageID\tConnector\tFilter\tResult\tAccount\tSender\tIPAddress\tData\tSubject\r\n";

std::string start_line(const std::string& time = "11/24/26 21:49:00") {
  return kHeader + time + "\tStart\t-\t-\t-\t-\t-\t-\t-\t-\r\n";
}
std::string end_line(const std::string& time = "11/24/26 21:49:00") {
  return time + "\tEnd\t-\t-\t-\t-\t-\t-\t-\t-\r\n";
}

class ReportLogTest : public testing::Test {
 protected:
  ReportLogTest() {
    platform::set_environment_variable("TZ", "UTC0");
    platform::set_time_of_day_for_test(kEvening);
    forget_agent_settings();
  }
  ~ReportLogTest() override {
    release_report_log();
    forget_agent_settings();
    platform::set_time_of_day_for_test(-1);
  }
  void set_mode(std::uint32_t mode) const { tree_.set_number(kAgentKey, "Activity Log Enabled", mode); }
  // What start-up does.
  void start(std::uint32_t mode) const {
    set_mode(mode);
    read_logging_directory();
    create_report_mutex();
    open_report_log();
  }
  std::string log(const std::string& name = kDayOne) const { return tree_.read("logs/" + name); }
  test::ServerTree tree_;
};

TEST_F(ReportLogTest, StartLinesAndEndLine) {
  start(1);
  EXPECT_STREQ(report_log().current_file_name, kDayOne);
  EXPECT_EQ(log(), start_line());
  report_write("first\n");
  report_write_format("%s %d\n", "second", 2);
  EXPECT_EQ(log(), start_line() + "11/24/26 21:49:00\tfirst\r\n11/24/26 21:49:00\tsecond 2\r\n")
      << "every write is on disk at once";
  close_report_log();
  close_report_log();
  EXPECT_THAT(log(), testing::EndsWith("second 2\r\n" + end_line()));
  EXPECT_EQ(report_log().file, nullptr);
  open_report_log();
  EXPECT_THAT(log(), testing::EndsWith(end_line() + start_line()))
      << "an existing file is extended and gets the header again";
}

TEST_F(ReportLogTest, TextsOfAnyLengthAndFormatsUpTo2047Bytes) {
  start(1);
  report_write(std::string(100000, 'x'));
  EXPECT_THAT(log(), testing::EndsWith("\t" + std::string(100000, 'x')));
  report_write_format("%s", std::string(3000, 'y').c_str());
  EXPECT_THAT(log(), testing::EndsWith("\t" + std::string(2046, 'y') + "\r\n"));
}

TEST_F(ReportLogTest, TheDayChangesAfterAWrite) {
  start(1);
  platform::set_time_of_day_for_test(kLateEvening);
  report_write("before midnight\n");
  platform::set_time_of_day_for_test(kLateEvening + 15);
  report_write("after midnight\n");
  report_write("next\n");
  EXPECT_EQ(log(), start_line() + "11/24/26 23:59:50\tbefore midnight\r\n11/25/26 00:00:05\tafter midnight\r\n" +
                       end_line("11/25/26 00:00:05"));
  EXPECT_EQ(log(kDayTwo), start_line("11/25/26 00:00:05") + "11/25/26 00:00:05\tnext\r\n");
}

TEST_F(ReportLogTest, TurnedOnWhileRunningTheFirstTextOpensTheFile) {
  start(0);
  set_mode(1);
  report_write("lost\n");
  EXPECT_EQ(log(), start_line());
  report_write("kept\n");
  EXPECT_EQ(log(), start_line() + "11/24/26 21:49:00\tkept\r\n");
}

TEST_F(ReportLogTest, AMissingDirectoryIsTriedAgainAtTheChangeOfDay) {
  tree_.remove("logs");
  start(1);
  EXPECT_STREQ(report_log().current_file_name, kDayOne);
  tree_.make_directory("logs");
  report_write("dropped\n");
  EXPECT_THAT(tree_.names("logs"), IsEmpty());
  platform::set_time_of_day_for_test(kLateEvening + 15);
  report_write("dropped, but the day changes\n");
  EXPECT_EQ(log(kDayTwo), start_line("11/25/26 00:00:05"));
}

TEST_F(ReportLogTest, AFileThatCannotBeOpenedAtTheChangeOfDayIsNotRecorded) {
  start(1);
  if (!tree_.remove("logs")) GTEST_SKIP() << "this system keeps the directory of an open file";
  report_write("into a file without a name\n");
  platform::set_time_of_day_for_test(kLateEvening + 15);
  report_write("closes it\n");
  EXPECT_EQ(report_log().file, nullptr);
  EXPECT_STREQ(report_log().current_file_name, kDayTwo);
  report_write("dropped\n");
}

TEST_F(ReportLogTest, PathsHaveALimit) {
  for (const std::size_t length : {511U, 512U}) {  // of the whole path
    std::string directory = tree_.path("logs");
    directory.resize(length - std::string(kDayOne).size() - 1, '/');  // separators count once
    if (!platform::existing_path(directory)) GTEST_SKIP() << "this system has no paths of this length";
    tree_.set_text(kAgentKey, "Activity Log Directory", directory);
    start(1);
    EXPECT_EQ(report_log().file != nullptr, length == 511) << length;
    release_report_log();
  }
  tree_.set_text(kAgentKey, "Activity Log Directory", "");
  start(1);
  EXPECT_EQ(report_log().file, nullptr) << "an empty directory does not mean the root";
}

TEST_F(ReportLogTest, OtherModesMakeNoFile) {
  constexpr struct {
    const char* what;
    std::uint32_t mode;
    const char* standard_output;
    const char* debugger_output;
  } kModes[] = {
      {"off", 0, "", ""},
      {"standard output gets a blank and no time", 2, " Reloading filters due to change.\n", ""},
      {"the debugger gets the text alone", 3, "", "Reloading filters due to change.\n"},
      {"an unknown mode", 4, "", ""},
  };
  for (const auto& c : kModes) {
    start(c.mode);
    testing::internal::CaptureStderr();
    platform::OutputCapture output;
    report_write("Reloading filters due to change.\n");
    close_report_log();
    EXPECT_EQ(output.take(), c.standard_output) << c.what;
    const std::string standard_error = testing::internal::GetCapturedStderr();
    EXPECT_EQ(standard_error, platform::kDebuggerReadsStandardError ? c.debugger_output : "") << c.what;
    EXPECT_THAT(tree_.names("logs"), IsEmpty()) << c.what;
  }
}

TEST_F(ReportLogTest, InAnotherModeTheFileIsClosedWithoutAnEndLine) {
  start(1);
  set_mode(0);
  close_report_log();
  EXPECT_NE(report_log().file, nullptr);
  release_report_log();
  release_report_log();
  set_mode(1);
  report_write("after the mutex is gone\n");
  EXPECT_EQ(log(), start_line());
  EXPECT_EQ(report_mutex_handle(), nullptr);
}

TEST_F(ReportLogTest, LevelsAboveTheSettingAreDropped) {
  start(2);
  read_general_settings();
  platform::OutputCapture output;
  EXPECT_EQ(report_write_level(nullptr, nullptr, nullptr, 6, "six\n"), 0);
  EXPECT_EQ(report_write_level(nullptr, nullptr, nullptr, 0xFFFFFFFF, "compared unsigned\n"), 0);
  EXPECT_EQ(report_write_level(nullptr, nullptr, nullptr, 5, "five\n"), 1);
  EXPECT_EQ(output.take(), " five\n");
}

template <class Thrown>
void throw_and_report(const Thrown& thrown) {
  try {
    throw thrown;
  } catch (...) {
    report_caught_exception("HasORBDBEntry", R"(..\SMTP\DNSQuery)", 104);
  }
}

TEST_F(ReportLogTest, CaughtExceptionsAreReportedInOneBlock) {
  start(2);
  platform::OutputCapture output;
  throw_and_report(std::runtime_error("no such zone"));
  throw_and_report(42);
  throw_and_report(ComError(0x1234, "The meaning", "PVWINDNS", "what happened"));
  throw_and_report(ComError(-1610608076, nullptr, "", ""));
  EXPECT_EQ(output.take(),
            " HasORBDBEntry handled an exception; session will be dropped.\n"
            "The exception was: no such zone\n"
            "The exception occurred in : ..\\SMTP\\DNSQuery, line 104\n"
            " HasORBDBEntry raised an exception.\n"
            "The exception occurred in : ..\\SMTP\\DNSQuery, line 104\n"
            " HasORBDBEntry handled a COM error.\nCode = 0x00001234\nCode meaning = The meaning\n"
            "Source = PVWINDNS\nError Description = what happened\n"
            " HasORBDBEntry handled a COM error.\nCode = 0xa0001234\nCode meaning = Unknown error 0xA0001234\n"
            "Source = \nError Description = \n");
}

TEST(Output, PrintsAnyLength) {
  for (const std::size_t length : {0U, 2043U, 2044U, 100000U}) {
    const std::string text(length, 'x');
    platform::OutputCapture output;
    print("[%s]\r\n", text.c_str());
    print_text("%d\n");
    EXPECT_EQ(output.take(), "[" + text + "]\r\n%d\n") << length;
  }
}

int occurrences(const std::string& text, const std::string& part) {
  int found = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++found;
  return found;
}

class ReportLogConcurrent : public ReportLogTest {};

TEST_F(ReportLogConcurrent, LinesOfSeveralThreadsStayWholeThroughAChangeOfDay) {
  start(1);
  constexpr int kLines = 100;
  const std::string texts[] = {std::string(300, 'a'), std::string(300, 'b'), std::string(300, 'c')};
  std::vector<std::thread> threads;
  for (const std::string& text : texts) {
    threads.emplace_back([&text, changes_day = text == texts[0]] {
      for (int i = 0; i < kLines; ++i) {
        report_write(text + "\n");
        if (changes_day && i == kLines / 2) platform::set_time_of_day_for_test(kLateEvening + 15);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  close_report_log();
  const std::string written = log() + log(kDayTwo);
  for (const std::string& text : texts) EXPECT_EQ(occurrences(written, "\t" + text + "\r\n"), kLines);
}

TEST_F(ReportLogConcurrent, ReleasedBesideWritesTheLogStaysClosed) {
  start(1);
  std::atomic<int> written = 0;
  std::vector<std::thread> threads;
  threads.reserve(3);
  for (int t = 0; t < 3; ++t) {
    threads.emplace_back([&written] {
      for (int i = 0; i < 300; ++i, ++written) report_write("line\n");
    });
  }
  while (written < 100) std::this_thread::yield();
  release_report_log();
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(report_log().file, nullptr);
}

}  // namespace
}  // namespace pv
