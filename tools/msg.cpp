/// Display text of messages. The catalogue is a hash table from "module|text"; results live in a
/// ring of slots that keep their storage.
#include "kz_tls21an/msg.h"

#include <array>
#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>

#include "kz_tls21an/text.h"
#include "open_file.h"

namespace {

using Catalogue = std::unordered_map<std::string, std::u16string>;

struct Messages {
    Catalogue catalogue;
    std::array<std::u16string, 16> ring;
    size_t next = 0;
};

Messages& messages() {
    static Messages instance;
    return instance;
}

/// The text with \n, \= and \\ resolved; other backslashes stay.
std::string unescape(std::string_view text) {
    std::string out;
    for (size_t index = 0; index < text.size(); ++index) {
        const char next = text[index] == '\\' && index + 1 < text.size() ? text[index + 1] : ' ';
        if (next == 'n' || next == '=' || next == '\\') {
            out += next == 'n' ? '\n' : next;
            ++index;
        } else {
            out += text[index];
        }
    }
    return out;
}

/// Place of the equals sign between default and display text; npos without one.
size_t findDivider(std::string_view line) {
    for (size_t index = 0; index < line.size(); ++index) {
        if (line[index] == '\\') {
            ++index;
        } else if (line[index] == '=') {
            return index;
        }
    }
    return std::string_view::npos;
}

/// Takes one line in; comments and lines of another form are passed over.
void addLine(Catalogue& catalogue, std::string_view line) {
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    const size_t divider = findDivider(line);
    const bool hasModule = line.find('|') < divider;
    if (line.empty() || line.front() == '#' || divider == line.npos || !hasModule) return;
    catalogue[unescape(line.substr(0, divider))] = kz::toUtf16(unescape(line.substr(divider + 1)));
}

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

bool readFile(const kz_Char* path, std::string& out) {
    const std::unique_ptr<std::FILE, FileCloser> file(kz::openFile(path, "rb"));
    if (!file) return false;
    std::array<char, 4096> block{};
    while (const size_t count = std::fread(block.data(), 1, block.size(), file.get())) {
        out.append(block.data(), count);
    }
    return std::ferror(file.get()) == 0;
}

Catalogue parseCatalogue(std::string_view content) {
    Catalogue catalogue;
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (content.substr(0, byteOrderMark.size()) == byteOrderMark) {
        content.remove_prefix(byteOrderMark.size());
    }
    while (!content.empty()) {
        const std::string_view line = content.substr(0, content.find('\n'));
        addLine(catalogue, line);
        content.remove_prefix(line.size() < content.size() ? line.size() + 1 : line.size());
    }
    return catalogue;
}

void appendDisplayText(std::u16string& out, const char* text, const char* module) {
    const Catalogue& catalogue = messages().catalogue;
    if (!catalogue.empty()) {
        const auto found = catalogue.find(std::string(module ? module : "") + '|' + text);
        if (found != catalogue.end()) {
            out += found->second;
            return;
        }
    }
    kz::appendUtf16(out, text);
}

}  // namespace

const kz_Char* kz_Msg(const char* text, const char* module, int format) {
    if (!text) return KZ_T("");
    try {
        Messages& state = messages();
        std::u16string& slot = state.ring[state.next];
        state.next = (state.next + 1) % state.ring.size();
        slot.clear();
        if (format & KZ_MSG_FRESH) slot += u'\n';
        appendDisplayText(slot, text, module);
        if (format & KZ_MSG_END) slot += u'\n';
        return slot.c_str();
    } catch (const std::bad_alloc&) {
        return KZ_T("");
    }
}

int kz_Msg_setCatalogue(const kz_Char* path) {
    try {
        std::string content;
        if (path && !readFile(path, content)) return 0;
        messages().catalogue = parseCatalogue(content);
        return 1;
    } catch (const std::bad_alloc&) {
        return 0;
    }
}
