// One call of FilterExecute, behind its C interface.
#pragma once

#include <string_view>

namespace pv {

// Waits at the reload gate, then filters the message `message_id` of `connector`'s queue, counted in
// messages_in_flight. An exception is reported and ends the message's filtering; nothing escapes. Any thread.
void filter_queued_message(std::string_view message_id, std::string_view connector) noexcept;

}  // namespace pv
