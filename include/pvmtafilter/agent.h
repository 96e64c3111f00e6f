/* The functions that the agent library PVMTAFILTER exports, for programs that load it. C and C++.
 *
 * Loading the library starts the agent (settings, report log, filters), unloading it or the end of the process shuts it
 * down. Texts are zero-terminated single-byte strings, borrowed for the call. Every function but the two of start-up
 * and shutdown may be called from several threads at once. No exception leaves any of them.
 */
#ifndef PVMTAFILTER_AGENT_H
#define PVMTAFILTER_AGENT_H

#include <stdint.h>

#if defined(_WIN32) && !defined(_WIN64)
#define PV_CALL __stdcall
#else
#define PV_CALL
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Filters one queued message: `message_id` (at most 63 bytes) names its files in the queue of `connector` (at most 63
 * bytes). Returns 1 whatever happened: the MTA goes on delivering. The first and last arguments are not used. */
int32_t PV_CALL FilterExecute(const char* unused, const char* message_id, const char* connector, int32_t unused2);

/* Loads the antivirus plug-ins that other filter agents name. 1 when done, 0 when one of them cannot be loaded. */
int32_t PV_CALL FilterInit(int32_t unused);

/* Does nothing and returns 1. */
int32_t PV_CALL FilterUnInit(int32_t unused);

/* Runs the function `function_name` of a VBScript program and returns its value as a 16-bit number widened to 32 bits;
 * 0 when it cannot be run. `result_text` has `result_text_size` bytes (0: none) and receives what the program's
 * PV_GetResultData returns, when the value is not 0 or `always_fill_result` is not 0. */
int32_t PV_CALL ExecuteVBScript(const char* script, const char* function_name, char* result_text,
                                int32_t result_text_size, int32_t always_fill_result);

/* Hands a training command to the Bayesian scanner and returns its result, 0 when that is not loaded. */
int32_t PV_CALL FilterCommand(int32_t unused, int32_t unused2, const char* command);

#ifdef __cplusplus
}
#endif

#endif
