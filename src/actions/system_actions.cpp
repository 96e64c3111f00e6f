#include "actions/system_actions.h"

#include <string>
#include <string_view>

#include "actions/add_header.h"
#include "actions/copy_message.h"
#include "actions/delete_message.h"
#include "actions/subject_prefix.h"
#include "common/fields.h"
#include "common/output.h"
#include "common/text_search.h"
#include "filters/token_expansion.h"

namespace pv {
namespace {

constexpr std::size_t kExpandedText = 1024;  // bytes an action's text may reach through its tokens, terminator included

std::string expanded(std::string_view text, TokenMode mode, const FiredFilter& fired) {
  std::string result(text);
  ExpandTokens(fired.tokens, result, kExpandedText, mode);
  return result;
}

bool delete_message(const ActionLine&, FiredFilter& fired) {
  return DeleteQueuedMessage(fired.message, fired.queue);
}

bool copy_to_bad_mail(const ActionLine&, FiredFilter& fired) {
  return CopyToBadMail(fired.message, fired.queue);
}

bool copy_to_quarantine(const ActionLine&, FiredFilter& fired) {
  return CopyToQuarantine(fired.message, fired.queue);
}

bool add_subject_prefix(const ActionLine& line, FiredFilter& fired) {
  return AddSubjectPrefix(fired.message, expanded(line.data, TokenMode::kHeaderEncoded, fired), fired.queue);
}

// The data is "name|value". Without the bar there is a name and no value.
bool add_header(const ActionLine& line, FiredFilter& fired) {
  BoundedText<512> name;
  BoundedText<1024> value;
  split_field(line.data, "|", 1, name);
  split_field(line.data, "|", 2, value);
  return AddHeader(fired.message, name, expanded(value, TokenMode::kPlain, fired), fired.queue);
}

bool stop_processing(const ActionLine&, FiredFilter& fired) {
  fired.stop_processing = true;
  print_text("stop processing filters\n");
  return true;
}

struct SystemAction {
  std::string_view keyword;
  bool (*run)(const ActionLine& line, FiredFilter& fired);  // true: carried out
};
// Notifications, forwarding, programs, further recipients and annotations join here, a row each.
constexpr SystemAction kSystemActions[] = {
    {"DELETE", delete_message},
    {"COPY_TO_BADMAIL", copy_to_bad_mail},
    {"COPY_TO_QUARANTINE", copy_to_quarantine},
    {"ADD_SUBJECT_PREFIX", add_subject_prefix},
    {"ADD_HEADER", add_header},
    {"STOP_PROCESSING", stop_processing},
};

}  // namespace

void run_system_action(const ActionLine& line, FiredFilter& fired) {
  for (const SystemAction& action : kSystemActions) {
    if (!equals_nocase(line.keyword, action.keyword)) continue;
    if (action.run(line, fired)) record_executed(line.keyword, fired.executed);
    return;
  }
}

}  // namespace pv
