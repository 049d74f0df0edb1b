/// The two output channels and acutPrintf. Standard error is written after standard output has been
/// handed on, so that a terminal shows both in the order in which they were said.
#include "host/output.h"

#include <array>
#include <cstdio>
#include <string>

#include "acad/ads.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

struct ChannelState {
    TextSink sink;
    bool at_line_start = true;
};

ChannelState& stateOf(Channel channel) {
    static std::array<ChannelState, 2> states;
    return states[channel == Channel::Lisp ? 0 : 1];
}

void writeStream(Channel channel, std::u16string_view text) {
    const std::string bytes = kz::toUtf8(text);
    if (channel == Channel::Message) std::fflush(stdout);
    std::fwrite(bytes.data(), 1, bytes.size(), channel == Channel::Lisp ? stdout : stderr);
}

}  // namespace

void setSink(Channel channel, TextSink sink) {
    ChannelState& state = stateOf(channel);
    state.sink = std::move(sink);
    state.at_line_start = true;
}

void write(Channel channel, std::u16string_view text) {
    if (text.empty()) return;
    ChannelState& state = stateOf(channel);
    state.at_line_start = text.back() == u'\n';
    if (state.sink) {
        state.sink(text);
    } else {
        writeStream(channel, text);
    }
}

bool atLineStart(Channel channel) {
    return stateOf(channel).at_line_start;
}

void flush() {
    std::fflush(stdout);
    std::fflush(stderr);
}

}  // namespace host

extern "C" {

int acutPrintfArgs(const ACHAR* format, const kz_FormatArg* args, size_t count) {
    if (format == nullptr) return RTERROR;
    host::write(host::Channel::Message, kz_Str_formatText(format, args, count));
    return RTNORM;
}

int acedPrompt(const ACHAR* text) {
    if (text == nullptr) return RTERROR;
    host::write(host::Channel::Message, text);
    return RTNORM;
}
}
