// The scanner plug-ins' part of start-up and shutdown.
#pragma once

namespace pv {

// Each loads one provider if its setting asks for it, prints how that went and publishes its counters, which are 0
// then. Nothing fails towards the caller: a provider that is missing or incomplete does not scan, and an exception of
// its initialize entry is reported.
void load_dkim_scanner();
void load_bayesian_scanner();
void load_spam_assassin_scanner();
void load_antivirus_scanner();

// Has the providers clean up, unloads them and sets the counters back. Not while a message is filtered.
void release_scanners();

}  // namespace pv
