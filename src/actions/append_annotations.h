// Wraps texts of the administrator round the text of a message.
//
// Failure policy: the message keeps its old bytes until the new ones are complete; on any error the temporary file
// beside it, which has a queue file's name, is removed and the result is false. Nothing of the message is lost, however
// odd its structure, but for text behind the end of a multipart message's last part, which no mail program shows.
// Not handled: a text in base64 or another encoding, which gets the annotation as it is.
#pragma once

#include <cstdint>

#include "common/bounded_text.h"
#include "queue/message_context.h"

namespace pv {

// Which annotations a message gets. Each is a file
// "<configuration directory>/Postoffices/<postoffice>/Annotations/<name>.TXT".
struct AnnotationRequest {
  BoundedText<256> postoffice;  // the directory's name
  BoundedText<256> header_name;
  std::int32_t header = 0;  // 1: put it before the text
  BoundedText<256> footer_name;
  std::int32_t footer = 0;  // 1: put it behind the text
};

// Rewrites the message's copy in the outgoing queue of the connector "LS", which delivers into mailboxes. In a
// multipart message every part whose content type is given as "text/plain;" or "text/html;" (its parameters on the next
// line) gets the annotations. The message gets the mark "X-PVFilter: 1"; one that has it stays as it is, which is no
// failure. False also for a multipart message whose boundary cannot be found. A missing annotation file is no failure:
// nothing is inserted.
[[nodiscard]] bool AppendAnnotations(const MessageContext& message, const AnnotationRequest& request);

}  // namespace pv
