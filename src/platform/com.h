// COM on the calling thread. The calls are counted, so that tests can see they come in pairs; where there is no COM
// that is all they do.
#pragma once

namespace pv::platform {

// Joins the calling thread to the multithreaded apartment; the outcome does not matter to the agent.
void initialise_com();
void uninitialise_com();

// How many times the calling thread is initialised at the moment.
int com_initialisations_of_thread();

}  // namespace pv::platform
