#include "common/dates.h"

#include "common/formats.h"
#include "platform/clock.h"

namespace pv {
namespace {

// Always English, whatever the machine's locale.
constexpr const char* kDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
constexpr const char* kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

}  // namespace

std::uint32_t unix_time_now() {
  return static_cast<std::uint32_t>(platform::unix_seconds());
}

int timezone_hhmm() {
  const platform::ZoneBias zone = platform::zone_bias();
  const int bias = zone.bias + (zone.daylight ? zone.daylight_bias : zone.standard_bias);
  return -(bias + 40 * (bias / 60));
}

BoundedText<40> rfc822_date_now() {
  const platform::LocalTime now = platform::local_time();
  const BoundedText<40> date =
      format_text_40("%s, %d %s %04d", kDays[now.day_of_week], now.day, kMonths[now.month - 1], now.year);
  const BoundedText<40> time = format_text_40("%02d:%02d:%02d", now.hour, now.minute, now.second);
  const int zone = timezone_hhmm();
  if (zone < 0) return format_text_40("%s %s %4.4d", date.c_str(), time.c_str(), zone);  // the number brings its sign
  return format_text_40("%s %s %c%4.4d", date.c_str(), time.c_str(), '+', zone);
}

BoundedText<100> local_date_time_text(bool reset_zone) {
  const platform::LocalTime now =
      platform::local_time(reset_zone ? platform::ZoneSettings::kReadAgain : platform::ZoneSettings::kAsKnown);
  BoundedText<100> text;
  text.cut(format_text_256("%02d/%02d/%02d %02d:%02d:%02d", now.month, now.day, now.year % 100, now.hour, now.minute,
                           now.second));
  return text;
}

}  // namespace pv
