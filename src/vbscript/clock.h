// The time of day that scripts see: Now, Date, Time, Timer, Randomize, and dates written without a year.
#pragma once

namespace pv::vbscript {

struct LocalTime {
  int year = 1970;
  int month = 1;  // 1 to 12
  int day = 1;    // 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;
  int millisecond = 0;
};

// Gives the local wall-clock time; called on any thread, several at once.
using ClockFunction = LocalTime (*)();

// Replaces the clock of all engines: a host has its own conversion to local time, a test wants a fixed one. nullptr:
// back to the engine's own, which asks the C library for the zone without the shared buffer of std::localtime.
void set_clock(ClockFunction clock);

LocalTime local_time();
double seconds_since_midnight(const LocalTime& time);

}  // namespace pv::vbscript
