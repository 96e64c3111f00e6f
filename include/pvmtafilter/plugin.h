/* The entry points that a plug-in library offers to the agent. C and C++.
 *
 * Texts are zero-terminated single-byte strings. The library is loaded by the name that the settings give; on posix a
 * name "X.DLL" stands for "X.so" in the same directory.
 */
#ifndef PVMTAFILTER_PLUGIN_H
#define PVMTAFILTER_PLUGIN_H

#include <stdint.h>

#include "pvmtafilter/agent.h"

#ifdef __cplusplus
extern "C" {
#endif

/* An antivirus plug-in of another filter agent: called once, from FilterInit, after the library was loaded. The result
 * is ignored; the library stays loaded until the agent is unloaded. */
int32_t PV_CALL PluginInitialize(void);

/* The message store's library. The agent loads it at its start when antivirus scanning is on, calls the first then and
 * the second before it unloads it; both are optional. */
int32_t PV_CALL StoreLibrary_Init(void);
int32_t PV_CALL StoreLibrary_UnInit(void);

#ifdef __cplusplus
}
#endif

#endif
