/// Display text of messages: 8-bit default wording in, wide display text out. A catalogue file may
/// translate: lines "module|default text=display text" in UTF-8, '#' starts a comment line, \n,
/// \= and \\ stand for a line end, an equals sign inside the default text, and a backslash.
#ifndef KZ_TLS21AN_MSG_H
#define KZ_TLS21AN_MSG_H

#include "kz_tls21an/types.h"

/// A format number says which line ends stand around a message. It is a sum of these bits: 1 is the
/// text alone (labels, captions), 3 starts a fresh line, 5 ends its line, 7 is a line of its own.
enum {
    KZ_MSG_TEXT = 1,   ///< the text itself; set in every format in use, 0 means the same
    KZ_MSG_FRESH = 2,  ///< a line end in front
    KZ_MSG_END = 4     ///< a line end behind
};

extern "C" {

/// The display text of `text` for `module`, with the line ends of `format` (0: none; other bits
/// than the three named are ignored). A text that the catalogue does not have is shown as it is
/// (UTF-8).
/// @return text owned by this facility, valid until the 16th following call; NULL text gives ""
KZ_TLS_API const kz_Char* kz_Msg(const char* text, const char* module, int format);

/// Reads a catalogue and uses it from now on; NULL goes back to the default wording.
/// @return 1; 0 when the file can't be read, the catalogue stays as it was
KZ_TLS_API int kz_Msg_setCatalogue(const kz_Char* path);
}

#endif
