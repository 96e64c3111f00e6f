// The DNS look-up library, "PVWINDNS.DLL" in the application directory: it knows the blacklists and asks them. Its
// entry points are in pvmtafilter/plugin.h.
//
// Failure policy: a library that is missing, or lacks the look-up, lists nothing. An exception of a look-up is reported
// and travels on: it ends the message's filtering before any action ran, and the message stays as it was.
#pragma once

#include <cstdint>

namespace pv {

// Loads the library, hands it the agent's log and initialises it with the list of name servers, which it gets as it
// stands. Called once, at start-up, after create_report_mutex. Returns what the library's initialisation does; 0 when
// there is none, or no library.
std::int32_t load_dns_library(const char* local_dns_servers);

// Asks the library whether a host is listed: not 0 when it is. The arguments are the library's own: texts of at most
// 1023 and 63 bytes, buffers of 1024 and 256 bytes that it may fill to the end. Any thread. Throws what the library
// throws, after reporting it.
std::int32_t dns_has_blacklist_entry(const char* host, const char* address, char* scratch, char* list_name);

// Forgets the library, which stays loaded to the end of the process. For shutdown, when no look-up can be under way.
void forget_dns_library();

}  // namespace pv
