// The agent's life in the process that loads it.
#pragma once

namespace pv {

// Start-up: reads the settings, opens the report log, loads the server's filters. Never fails; whatever is missing has
// a default. Runs on the loader's thread before the first message.
void attach() noexcept;

// Shutdown, in the opposite direction; writes the report log's end line. After the last message.
void detach() noexcept;

}  // namespace pv
