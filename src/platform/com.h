// COM on the calling thread. The calls are counted, so that tests can see they come in pairs; where there is no COM
// that is all they do.
#pragma once

#include <cstdint>
#include <string>

namespace pv::platform {

// Joins the calling thread to the multithreaded apartment; the outcome does not matter to the agent.
void initialise_com();
void uninitialise_com();

// How many times the calling thread is initialised at the moment.
int com_initialisations_of_thread();

// The system's text for a code that COM calls fail with, without a line end. Where there is no COM, that of the common
// codes. A code without a text gives "Unknown error 0xA0001234".
std::string com_code_text(std::int32_t code);

}  // namespace pv::platform
