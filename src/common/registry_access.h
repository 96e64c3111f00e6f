// The server's settings by key and name. A missing value is never an error.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "common/bounded_text.h"
#include "platform/settings_store.h"

namespace pv {

// Key paths below HKEY_LOCAL_MACHINE.
inline constexpr char kRootKey[] = R"(SOFTWARE\Post Vane\Post Vane)";
inline constexpr char kConnectorsKey[] = R"(SOFTWARE\Post Vane\Post Vane\CONNECTORS)";
inline constexpr char kSmtpKey[] = R"(SOFTWARE\Post Vane\Post Vane\CONNECTORS\SMTP)";
inline constexpr char kSfKey[] = R"(SOFTWARE\Post Vane\Post Vane\CONNECTORS\SF)";
inline constexpr char kFiltersKey[] = R"(SOFTWARE\Post Vane\Post Vane\Agents\MTA\Filters)";
inline constexpr char kAgentKey[] = R"(SOFTWARE\Post Vane\Post Vane\Agents\MTA\Filters\MTAFILTER)";
inline constexpr char kCountersKey[] = R"(SOFTWARE\Post Vane\Post Vane\Agents\MTA\Filters\MTAFILTER\Counters)";

// Reads a text value. False, and an empty `out`, when key or value is missing, the value is empty, or it does not fit:
// it is never cut.
template <std::size_t N>
bool reg_read_string(std::string_view key_path, std::string_view name, BoundedText<N>& out) {
  char text[N];
  const std::optional<std::size_t> size = platform::read_text_setting(key_path, name, text);
  copy_bounded(out, size ? until_nul({text, *size}) : std::string_view());
  return !out.empty();
}

// Reads a number. False, and `out` as it was, when key or value is missing or is no number.
bool reg_read_dword(std::string_view key_path, std::string_view name, std::uint32_t& out);

// The same with a default for a value that cannot be read.
std::uint32_t reg_read_dword_or(std::string_view key_path, std::string_view name, std::uint32_t otherwise);

// Sets a number, creating the key if needed. False when it could not be written.
[[nodiscard]] bool reg_write_dword(std::string_view key_path, std::string_view name, std::uint32_t number);

// "Application Directory", where the plug-in libraries lie; "64" is appended to it when `flag` is 64.
bool reg_read_app_directory(BoundedText<1024>& out, int flag);

// Publishes a counter: nothing while "Update Statistics" is 0. Any thread. A counter only grows while the agent runs: a
// number that is not above the one published last comes from a thread that was overtaken, or changes nothing, and is
// left out (beyond 32 bits counters begin again at 0, which counts as above).
//
// The number is stored when this returns, unless another thread is writing counters, which then writes this one as
// well, or writing took more than its share of the time lately: then it is written a moment later. Either way nobody
// waits, and the number stored last is the highest; once nothing is published any more it is stored after some
// milliseconds. The first failed write of the process is reported through report_write, later ones are not; a number
// that could not be written is tried again with the next one.
void publish_counter(std::string_view key_path, std::string_view name, std::uint32_t number);

// For a moment without a message in flight: stores what was put off, unless there were many such moments lately. Costs
// one load when nothing was.
void store_counters_at_rest() noexcept;

// Writes what was put off and forgets what was published: counters may begin at 0 again. For shutdown and tests.
void finish_publishing_counters();

// Test hook: the next failed write is the first again.
void forget_counter_failure_for_test();

}  // namespace pv
