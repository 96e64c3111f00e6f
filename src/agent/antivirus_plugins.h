// The antivirus plug-ins that other filter agents of the MTA bring along.
#pragma once

namespace pv {

// Loads and initialises the plug-in of every agent in "Processing Order" that is switched on and names one, but not of
// this agent. False at the first library that cannot be loaded; the entries after it are not looked at, what was loaded
// before stays.
bool load_antivirus_plugins();

// Unloads the plug-in that was loaded last, at shutdown. Earlier ones stay loaded.
void release_antivirus_plugin();

}  // namespace pv
