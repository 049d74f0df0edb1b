/// Where the host's texts go. There are two channels: what Lisp code prints, and what the host and
/// the library say (prompts, messages, usage lines, warnings).
#ifndef HOST_OUTPUT_H
#define HOST_OUTPUT_H

#include <functional>
#include <string_view>

#include "host/export.h"

namespace host {

enum class Channel {
    Lisp,    ///< standard output unless redirected
    Message  ///< standard error unless redirected
};

using TextSink = std::function<void(std::u16string_view)>;

/// Redirects a channel; an empty function leads back to the standard stream.
HOST_API void setSink(Channel channel, TextSink sink);
/// Writes a text as it stands.
HOST_API void write(Channel channel, std::u16string_view text);
/// True when the last text of the channel ended its line, or nothing was written yet.
HOST_API bool atLineStart(Channel channel);
/// Hands buffered text of the standard streams on.
HOST_API void flush();

}  // namespace host

#endif
