// The header "X-PVFilter: 1" of messages that the agent queues itself: the scan lets one that carries it pass
// unfiltered. Without it a filter that fires on its own notification or forwarded copy would queue another without end.
#pragma once

#include <optional>
#include <string_view>

#include "queue/message_context.h"

namespace pv {

inline constexpr char kFilterMark[] = "X-PVFilter";
inline constexpr char kFilterMarkLine[] = "X-PVFilter: 1\n";  // as it is written in text mode

// Whether the scan of the message file will find the mark: a piece of a very long header line can end the headers for
// it, and a mark behind goes unseen. nullopt: the file cannot be read.
std::optional<bool> scan_sees_mark(std::string_view path);

// Makes the file of `message` in the inbound queue `lines` (header lines with their ends) and the bytes of the file
// `from` behind them, in one step. False: it is as it was.
[[nodiscard]] bool put_before(std::string_view lines, std::string_view from, const MessageContext& message);

}  // namespace pv
