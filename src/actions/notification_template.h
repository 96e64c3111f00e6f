// Copying a notification's template into its message file.
//
// A template is a whole message, headers, empty line and body, with tokens in it:
//
//     From: <[PV_BADMAILSENDER]>
//     Message-ID: [PV_MID]
//     Subject: [PV_FILTERNAME] stopped your message
//
//     Found: [PV_WORDLIST]
//     [PV_HEADERS]
//
// Lines end in CR LF or LF. One of more than 2047 bytes is read in pieces: a token that lies across two is not seen.
// NUL bytes are copied.
#pragma once

#include <string>
#include <string_view>

#include "actions/filtered_headers.h"
#include "actions/notification_file.h"
#include "actions/notification_text.h"
#include "platform/file.h"

namespace pv {

// Below the configuration directory.
std::string notification_template_path(std::string_view configuration_directory, std::string_view template_name);

// A line (or piece) with "[PV_HEADERS]" in it becomes the filtered message's header lines, each time. In any other the
// tokens are replaced: the fixed ones as far as the line stays below `form.token_capacity` bytes, then those of the
// fired filter, encoded for a header, as far as ExpandTokens fits them into 1024 bytes; one that does not fit stays as
// it is written. In a line with tokens a CR, LF or NUL before the line's end becomes a blank: a matched word must not
// begin a header.
//
// The notification carries the mark "X-PVFilter: 1", by which the agent leaves it alone: the template's own (a header
// that begins with "X-PVFilter: ", whatever its value), else one before the first empty line, else one at the end, on a
// line of its own. False when reading or writing failed; a notification without the headers it asks for is none.
[[nodiscard]] bool copy_template(platform::InputFile& source, const NotificationText& text,
                                 const NotificationForm& form, FilteredHeaders& headers, NotificationFile& out);

}  // namespace pv
