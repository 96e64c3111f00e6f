#include "platform/event_log.h"

#include <windows.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace pv::platform {

void report_system_event(std::string_view source, EventType type, std::uint32_t event_id,
                         std::span<const std::string_view> strings) {
  const HANDLE log = ::RegisterEventSourceA(nullptr, std::string(source).c_str());
  if (log == nullptr) return;
  const std::vector<std::string> terminated(strings.begin(), strings.end());
  std::vector<const char*> texts;
  for (const std::string& text : terminated) texts.push_back(text.c_str());
  const auto count = std::min<std::size_t>(texts.size(), std::numeric_limits<WORD>::max());
  ::ReportEventA(log, static_cast<WORD>(type), 0, event_id, nullptr, static_cast<WORD>(count), 0, texts.data(),
                 nullptr);
  ::DeregisterEventSource(log);
}

}  // namespace pv::platform
