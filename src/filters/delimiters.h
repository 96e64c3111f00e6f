// The characters at which criterion words end, by the kind of text that is searched.
#pragma once

namespace pv {

inline constexpr char kWordDelimiters[] = " \r'\"\n";
inline constexpr char kAddressDelimiters[] = "' \r'\"\n<>;";

// The fields of the envelope: the ends of a bracketed address and of a line.
inline constexpr char kEnvelopeDelimiters[] = ":]\r\n";

// Attachments announced in the header of a MIME part: whether there is one, and its name. A name may hold blanks.
inline constexpr char kPartAttachmentDelimiters[] = " \r'\"\n;";
inline constexpr char kPartAttachmentNameDelimiters[] = "\r'\"\n;";

// Attachments inside a "begin"/"end" block. The dot lets a word name the extension alone.
inline constexpr char kBlockAttachmentDelimiters[] = " \r'\"\n;.";

}  // namespace pv
