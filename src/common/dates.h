// Times as reports and generated messages show them.
#pragma once

#include <cstdint>

#include "common/bounded_text.h"

namespace pv {

// Seconds since 1 January 1970 UTC.
std::uint32_t unix_time_now();

// The local zone's offset from UTC as a signed decimal number of the form hhmm: 530 for UTC+05:30, -500 for UTC-05:00.
int timezone_hhmm();

// The local date and time as a Date header field holds it (RFC 5322): "Tue, 24 Nov 2026 21:49:00 +0100".
BoundedText<40> rfc822_date_now();

// "11/24/26 21:49:00": month/day/year, a blank, hours:minutes:seconds. With `reset_zone` the time zone is read from the
// environment again first.
BoundedText<100> local_date_time_text(bool reset_zone);

}  // namespace pv
