#include "common/caught_exception.h"

#include <exception>
#include <string>

#include "common/report_log.h"

namespace pv {
namespace {

constexpr std::uint32_t kEventId = 0x40000001;

std::string exception_text(std::string_view operation, std::string_view place) {
  std::string text(operation);
  try {
    if (std::current_exception()) throw;
  } catch (const std::exception& error) {
    text.append(" handled an exception; session will be dropped.\nThe exception was: ").append(error.what());
    return text.append("\n").append(place);
  } catch (...) {  // NOLINT(bugprone-empty-catch): has no text of its own
  }
  return text.append(" raised an exception.\n").append(place);
}

}  // namespace

void report_caught_exception(std::string_view operation, std::string_view source_file, int line) noexcept {
  try {
    std::string place("The exception occurred in : ");
    place.append(source_file).append(", line ").append(std::to_string(line)).append("\n");
    const std::string text = exception_text(operation, place);
    report_event(platform::EventType::kInformation, "PostVane", kEventId, text);
    report_write(text);
  } catch (...) {  // NOLINT(bugprone-empty-catch): no memory for the report; the handler goes on
  }
}

}  // namespace pv
