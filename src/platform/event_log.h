// The system's event log (syslog on posix).
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace pv::platform {

enum class EventType : std::uint16_t { kError = 1, kWarning = 2, kInformation = 4 };

// Reports one event with its insertion strings under `source`. Nothing is reported when the source cannot be used.
void report_system_event(std::string_view source, EventType type, std::uint32_t event_id,
                         std::span<const std::string_view> strings);

}  // namespace pv::platform
