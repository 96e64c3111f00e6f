// The server's own filters, as the message threads share them.
#pragma once

#include <memory>

#include "filters/filter_set.h"
#include "platform/settings_store.h"

namespace pv {

// Loads the filters at start-up, unless they were loaded before.
void load_system_filters_once();

// The filters for a message that begins now, whose first settings `state` holds. When "Reload" asks for it, the calling
// thread reloads them first, after the other messages have left (or kReloadRounds have passed), and sets "Reload" back
// to 0; other threads wait meanwhile. The set stays valid for the holder though a later reload replaces it.
std::shared_ptr<const FilterSet> system_filters_for_message(platform::SameSettings& state);

// Gives the filters up, at shutdown.
void release_system_filters();

}  // namespace pv
