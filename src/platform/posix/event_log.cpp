#include "platform/event_log.h"

#include <syslog.h>

#include <algorithm>
#include <string>

namespace pv::platform {
namespace {

int priority_of(EventType type) {
  switch (type) {
    case EventType::kError:
      return LOG_ERR;
    case EventType::kWarning:
      return LOG_WARNING;
    case EventType::kInformation:
      return LOG_INFO;
  }
  return LOG_ERR;
}

bool is_control(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7f;
}

// An event is one line, and a text from a plug-in must not be able to forge another one.
std::string one_line(std::string_view text) {
  std::string line(text);
  std::replace_if(line.begin(), line.end(), is_control, ' ');
  line.erase(line.find_last_not_of(' ') + 1);
  return line;
}

}  // namespace

// The log belongs to the host program: without openlog() its name and facility stay, and the source goes into the text.
void report_system_event(std::string_view source, EventType type, std::uint32_t event_id,
                         std::span<const std::string_view> strings) {
  std::string text = one_line(source) + "[" + std::to_string(event_id) + "]";
  for (const std::string_view string : strings) text += ": " + one_line(string);
  ::syslog(priority_of(type), "%s", text.c_str());
}

}  // namespace pv::platform
