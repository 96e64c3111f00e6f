#include "script/script_debug.h"

#include "common/agent_settings.h"
#include "common/output.h"
#include "common/report_log.h"

namespace pv {

void script_debug_print(std::string_view text) {
  if (settings().debug_status == 1) report_write(text);
  if (settings().debug_status == 2) print_text(text);
}

}  // namespace pv
