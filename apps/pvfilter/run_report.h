// How the observations of pvfilter run are shown.
#pragma once

#include <string>
#include <vector>

#include "pvfilter/message_run.h"

namespace pvfilter {

// A few lines for people: fired filters with their criterion and actions, then the message's fate.
std::string run_as_text(const Server& server, const MessageRun& run);

// One JSON object for programs. Bytes that are not UTF-8 are replaced.
std::string run_as_json(const Server& server, const MessageRun& run);

}  // namespace pvfilter
