#include "common/caught_exception.h"

#include <exception>
#include <string>

#include "common/formats.h"
#include "common/report_log.h"
#include "platform/com.h"
#include "pvmtafilter/plugin.h"

namespace pv {
namespace {

constexpr std::uint32_t kEventId = 0x40000001;

std::string com_error_text(std::string_view operation, const ComError& error) {
  std::string meaning = error.meaning();
  if (meaning.empty()) meaning = platform::com_code_text(error.code());
  std::string text(operation);
  text.append(" handled a COM error.\n");
  text.append(format_text_40("Code = 0x%08x\n", static_cast<unsigned>(error.code())));
  text.append("Code meaning = ").append(meaning).append("\n");
  text.append("Source = ").append(error.source()).append("\n");
  return text.append("Error Description = ").append(error.description()).append("\n");
}

std::string exception_text(std::string_view operation, std::string_view place) {
  std::string text(operation);
  try {
    if (std::current_exception()) throw;
  } catch (const ComError& error) {
    return com_error_text(operation, error);
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
