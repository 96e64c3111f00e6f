/* The entry points that a plug-in library offers to the agent. C and C++.
 *
 * A plug-in is a dynamic library in the server's application directory; on posix a library "X.DLL" is the file "X.so".
 * It includes this header and defines the functions of its kind; PV_EXPORT makes them visible. docs/plugins.md shows
 * each request and reply.
 *
 * Texts are zero-terminated single-byte strings, borrowed for the call. The functions that are called for a message are
 * called on any thread of the MTA, on several at once. A plug-in should let no C++ exception out of a function, but for
 * the look-up library (below): an exception ends the filtering of the message, which is then delivered as it is.
 */
#ifndef PVMTAFILTER_PLUGIN_H
#define PVMTAFILTER_PLUGIN_H

#include <stdint.h>
#include <stdio.h>

#include "pvmtafilter/agent.h"

#if defined(_WIN32)
#define PV_EXPORT __declspec(dllexport)
#else
#define PV_EXPORT __attribute__((visibility("default")))
#endif

/* Bytes of the buffers that a plug-in fills, terminator included. The agent reads a reply up to its first zero byte. */
#define PV_REPLY_SIZE 1024
#define PV_RESULT_TEXT_SIZE 1024
#define PV_SCRATCH_SIZE 1024
#define PV_LIST_NAME_SIZE 256
#define PV_REPORT_FILE_NAME_SIZE 128

#ifdef __cplusplus
extern "C" {
#endif

/* A scanner of texts: PVFLTMBF.DLL (Bayesian), PVFLTMSA.DLL (SpamAssassin), PVDomainKeys.DLL (DKIM). All three
 * functions must be there. The Bayesian and the DKIM library may call them Initialize, Execute and CleanUp instead.
 *
 * `request_length` is the length of the request without its terminating zero. `reply` has PV_REPLY_SIZE bytes.
 * `*reply_length` is PV_REPLY_SIZE or 0 on entry and is not read afterwards. */

/* Called once when the agent starts, with an empty request. Reply and result are ignored. */
PV_EXPORT int32_t PV_CALL PV_Initialize(const char* request, int32_t request_length, char* reply,
                                        int32_t* reply_length);

/* Scans one message. Not 0 when the reply holds an answer. */
PV_EXPORT int32_t PV_CALL PV_Execute(const char* request, int32_t request_length, char* reply, int32_t* reply_length);

/* Called once before the library is unloaded, with an empty request. Reply and result are ignored. */
PV_EXPORT int32_t PV_CALL PV_CleanUp(const char* request, int32_t request_length, char* reply, int32_t* reply_length);

/* The antivirus scanner, PVAVGEN.DLL: 1 when the message carries a virus, which `result_text` (PV_RESULT_TEXT_SIZE
 * bytes, empty on entry) then describes. `agent_name` is "MTAFILTER"; `message_id` is the name of the message file and
 * the command file in the queue of `connector`. */
PV_EXPORT int32_t PV_CALL ProviderExecute(const char* agent_name, const char* message_id, const char* connector,
                                          char* result_text);

/* An antivirus plug-in of another filter agent: called once, from FilterInit, after the library was loaded. The result
 * is ignored; the library stays loaded until the agent is unloaded. */
PV_EXPORT int32_t PV_CALL PluginInitialize(void);

/* The DNS look-up library, PVWINDNS.DLL. It is loaded when the agent starts and stays loaded to the end of the process.
 * Its functions are called in this order, those that are missing are not called. */

/* Writes `text`, which should end in a line end, to the agent's report log and gives 1, unless `level` is above the
 * setting "Debug Logging Level": then nothing is written and the result is 0. The first three arguments are not used.
 * Any thread. */
typedef int32_t(PV_CALL* PVLogFunction)(void*, void*, void*, uint32_t level, const char* text);

/* Hands over the agent's log, if there is one. All four stay valid as long as the agent is loaded: `report_file_name`
 * has PV_REPORT_FILE_NAME_SIZE bytes and always holds the name of the day's file; `*report_file` is that file while it
 * is open, else NULL; `report_mutex` guards both, on Windows the HANDLE of a mutex, on posix the address of a robust
 * pthread_mutex_t. A library that only writes lines needs `log` alone, and must not hold the mutex when it calls it. */
PV_EXPORT int32_t PV_CALL SetLoggingFunction(const char* report_file_name, PVLogFunction log, FILE** report_file,
                                             void* report_mutex);

/* Called once, with the setting "Local DNS Server List" as it stands. */
PV_EXPORT int32_t PV_CALL DNSInitialize(const char* local_dns_servers);

/* Not 0 when the host of a link is on a blacklist, whose name is then written into `list_name` (PV_LIST_NAME_SIZE
 * bytes). `host` has at most 1023 bytes, `address` is its IP address as text. `scratch` (PV_SCRATCH_SIZE bytes, empty
 * on entry) is not read afterwards. May throw: a std::exception, pv::ComError or anything else. */
PV_EXPORT int32_t PV_CALL HasORBDBEntry(const char* host, const char* address, char* scratch, char* list_name);

/* The message store's library, PVAISP.DLL. The agent loads it at its start when antivirus scanning is on, calls the
 * first then and the second before it unloads it; both are optional, and both results are ignored. */
PV_EXPORT int32_t PV_CALL StoreLibrary_Init(void);
PV_EXPORT int32_t PV_CALL StoreLibrary_UnInit(void);

#ifdef __cplusplus
} /* extern "C" */

namespace pv {

/* An error of a COM component, for the look-up library to throw. Holds its texts itself and owns nothing, so that agent
 * and library need not share the string class of one compiler; texts that do not fit are cut. */
class PV_EXPORT ComError {
 public:
  ComError(int32_t error_code, const char* error_meaning, const char* error_source, const char* error_description)
      : code_(error_code) {
    copy(meaning_, sizeof(meaning_), error_meaning);
    copy(source_, sizeof(source_), error_source);
    copy(description_, sizeof(description_), error_description);
  }

  int32_t code() const { return code_; }                   /* the HRESULT */
  const char* meaning() const { return meaning_; }         /* the system's message text for the code */
  const char* source() const { return source_; }           /* the component that failed */
  const char* description() const { return description_; } /* what it says of the failure */

 private:
  static void copy(char* out, unsigned size, const char* text) {
    unsigned i = 0;
    for (; text != nullptr && i + 1 < size && text[i] != '\0'; ++i) out[i] = text[i];
    out[i] = '\0';
  }

  int32_t code_;
  char meaning_[256];
  char source_[256];
  char description_[1024];
};

} /* namespace pv */
#endif

#endif
