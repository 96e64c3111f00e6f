#include "actions/system_actions.h"

#include <string>
#include <string_view>

#include "actions/add_header.h"
#include "actions/append_annotations.h"
#include "actions/append_recipients.h"
#include "actions/copy_message.h"
#include "actions/delete_message.h"
#include "actions/execute_application.h"
#include "actions/forward_to_address.h"
#include "actions/notify_address.h"
#include "actions/notify_recipients.h"
#include "actions/notify_sender.h"
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

bool notify_sender(const ActionLine& line, FiredFilter& fired) {
  return NotifySender(fired.message, line.data, fired.tokens, fired.filter.display_name, line.description, fired.queue);
}

bool notify_address(const ActionLine& line, FiredFilter& fired) {
  return NotifyAddress(fired.message, line.data, fired.tokens, fired.filter.display_name, line.description,
                       fired.queue);
}

bool notify_recipients(const ActionLine& line, FiredFilter& fired) {
  return NotifyRecipients(fired.message, line.data, fired.tokens, fired.filter.display_name, line.description,
                          fired.queue);
}

bool forward_to_address(const ActionLine& line, FiredFilter& fired) {
  return ForwardToAddress(fired.message, line.data, fired.set.postoffice, fired.set.mailbox);
}

// The addresses are the filter's display name.
bool append_recipients(const ActionLine&, FiredFilter& fired) {
  return AppendRecipients(fired.message, fired.filter.display_name, fired.queue);
}

// The data is "program|arguments".
bool execute_application(const ActionLine& line, FiredFilter& fired) {
  BoundedText<512> program;
  BoundedText<512> arguments;
  split_field(line.data, "|", 1, program);
  split_field(line.data, "|", 2, arguments);
  return ExecuteApplication(fired.message, program, arguments);
}

// The data is the mode: 1 for a text behind the message's, 2 for one before it too; any other number for none.
bool append_annotations(const ActionLine& line, FiredFilter& fired) {
  const int mode = leading_number(line.data);
  AnnotationRequest request;
  request.postoffice.cut("System");
  request.header_name.cut(fired.filter.definition_name);
  request.footer_name.cut(fired.filter.definition_name);
  request.header = mode == 2 ? 1 : 0;
  request.footer = mode == 1 || mode == 2 ? 1 : 0;
  return AppendAnnotations(fired.message, request);
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
constexpr SystemAction kSystemActions[] = {
    {"DELETE", delete_message},
    {"COPY_TO_BADMAIL", copy_to_bad_mail},
    {"COPY_TO_QUARANTINE", copy_to_quarantine},
    {"ADD_SUBJECT_PREFIX", add_subject_prefix},
    {"EXECUTE_APPLICATION", execute_application},
    {"ADD_HEADER", add_header},
    {"NOTIFY_SENDER", notify_sender},
    {"NOTIFY_ADDRESS", notify_address},
    {"NOTIFY_RECIPIENTS", notify_recipients},
    {"FORWARD_TO_ADDRESS", forward_to_address},
    {"APPEND_RECIPIENTS", append_recipients},
    {"APPEND_ANNOTATIONS", append_annotations},
    {"STOP_PROCESSING", stop_processing},
};

}  // namespace

std::vector<std::string_view> system_action_keywords() {
  std::vector<std::string_view> keywords;
  for (const SystemAction& action : kSystemActions) keywords.push_back(action.keyword);
  return keywords;
}

void run_system_action(const ActionLine& line, FiredFilter& fired) {
  for (const SystemAction& action : kSystemActions) {
    if (!equals_nocase(line.keyword, action.keyword)) continue;
    if (action.run(line, fired)) record_executed(line.keyword, fired.executed);
    return;
  }
}

}  // namespace pv
