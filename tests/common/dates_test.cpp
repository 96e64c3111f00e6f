#include "common/dates.h"

#include <gtest/gtest.h>

#include "platform/clock.h"
#include "platform/environment.h"

namespace pv {
namespace {

constexpr std::int64_t kWinter = 1767582245;  // Mon, 5 Jan 2026 03:04:05 UTC
constexpr std::int64_t kSummer = 1783220645;  // Sun, 5 Jul 2026 03:04:05 UTC

class Dates : public testing::Test {
 protected:
  ~Dates() override { set("UTC0", -1); }
  static void set(const char* zone, std::int64_t seconds) {
    platform::set_environment_variable("TZ", zone);
    platform::set_time_of_day_for_test(seconds);
    platform::local_time(platform::ZoneSettings::kReadAgain);
  }
};

struct ZoneCase {
  const char* what;
  const char* zone;
  std::int64_t seconds;
  int hhmm;
  std::string_view date;
};
constexpr ZoneCase kZones[] = {
    {"UTC has a plus sign", "UTC0", kWinter, 0, "Mon, 5 Jan 2026 03:04:05 +0000"},
    {"half hours east", "IST-5:30", kWinter, 530, "Mon, 5 Jan 2026 08:34:05 +0530"},
    {"standard time", "EST5EDT,M3.2.0,M11.1.0", kWinter, -500, "Sun, 4 Jan 2026 22:04:05 -0500"},
    {"daylight time", "EST5EDT,M3.2.0,M11.1.0", kSummer, -400, "Sat, 4 Jul 2026 23:04:05 -0400"},
    {"less than an hour west", "XYZ0:30", kWinter, -30, "Mon, 5 Jan 2026 02:34:05 -0030"},
};

TEST_F(Dates, MailDatesInEveryZone) {
  for (const ZoneCase& c : kZones) {
    set(c.zone, c.seconds);
    EXPECT_EQ(timezone_hhmm(), c.hhmm) << c.what;
    EXPECT_EQ(rfc822_date_now().view(), c.date) << c.what;
  }
}

TEST_F(Dates, ReportTimesFollowAChangedZoneOnlyWhenAsked) {
  set("UTC0", kWinter);
  EXPECT_EQ(local_date_time_text(false).view(), "01/05/26 03:04:05");
  EXPECT_EQ(unix_time_now(), 1767582245U);
  platform::set_environment_variable("TZ", "EST5");
  EXPECT_EQ(local_date_time_text(true).view(), "01/04/26 22:04:05");
}

}  // namespace
}  // namespace pv
