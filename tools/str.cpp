/// Wide strings.
#include "kz_tls21an/str.h"

#include <cstring>
#include <new>
#include <string>
#include <string_view>

#include "kz_tls21an/text.h"
#include "strlist_internal.h"

namespace {

bool isBlank(kz_Char unit) {
    return unit == ' ' || unit == '\t';
}

void moveUnits(kz_Char* to, const kz_Char* from, size_t count) {
    std::memmove(to, from, count * sizeof(kz_Char));
}

/// Puts `before` spaces in front of the text and fills it up behind to `width`.
void fillAround(kz_Char* text, size_t length, size_t before, size_t width) {
    moveUnits(text + before, text, length);
    for (size_t index = 0; index < before; ++index)
        text[index] = ' ';
    for (size_t index = before + length; index < width; ++index)
        text[index] = ' ';
    text[width] = 0;
}

/// Trims the text and lays it out in the width; `halves` says how many halves of the free space go
/// in front of it.
kz_Char* justify(kz_Char* text, int width, size_t halves) {
    if (!text || width <= 0) return text;
    kz_Str_rtb(kz_Str_rlb(text));
    const size_t length = kz_Str_len(text);
    const auto field = static_cast<size_t>(width);
    if (length < field) fillAround(text, length, (field - length) * halves / 2, field);
    return text;
}

/// Characters of `rest` that make the next line, at most `width` of them, 1 or more.
size_t lineLength(std::u16string_view rest, size_t width) {
    if (rest.size() <= width) return rest.size();
    // A blank right behind the line breaks it, too; one at its very start does not.
    size_t blank = width;
    while (blank > 0 && !isBlank(rest[blank]))
        --blank;
    while (blank > 0 && isBlank(rest[blank - 1]))
        --blank;
    if (blank > 0) return blank;
    const bool splitsPair = rest[width] >= 0xDC00 && rest[width] < 0xE000 && width > 1 &&
                            rest[width - 1] >= 0xD800 && rest[width - 1] < 0xDC00;
    return splitsPair ? width - 1 : width;
}

/// Appends one paragraph, a text without line ends.
bool wrapParagraph(kz_StrList* list, std::u16string_view rest, int width) {
    const size_t limit = width > 0 ? static_cast<size_t>(width) : rest.size();
    do {
        const size_t length = lineLength(rest, limit);
        if (!kz::appendEntry(list, rest.substr(0, length))) return false;
        rest.remove_prefix(length);
        while (!rest.empty() && isBlank(rest.front()))
            rest.remove_prefix(1);
    } while (!rest.empty());
    return true;
}

std::u16string replaceAll(std::u16string_view text, std::u16string_view from,
                          std::u16string_view to) {
    std::u16string out;
    size_t at = 0;
    for (;;) {
        const size_t match = from.empty() ? from.npos : text.find(from, at);
        out.append(text.substr(at, match - at));
        if (match == text.npos) return out;
        out.append(to);
        at = match + from.size();
    }
}

}  // namespace

size_t kz_Str_len(const kz_Char* text) {
    return text ? std::char_traits<kz_Char>::length(text) : 0;
}

kz_Char* kz_Str_dup(const kz_Char* text) {
    return text ? kz::copyText(text) : nullptr;
}

kz_Char* kz_Str_dupW(const kz_Char* text) {
    return kz_Str_dup(text);
}

kz_Char* kz_Str_ncpy(kz_Char* destination, const kz_Char* source, size_t n) {
    if (!destination) return nullptr;
    size_t length = 0;
    if (source) {
        for (; length < n && source[length] != 0; ++length)
            destination[length] = source[length];
    }
    destination[length] = 0;
    return destination;
}

int kz_Str_cmpi(const kz_Char* a, const kz_Char* b) {
    return kz_Str_ncmpi(a, b, SIZE_MAX);
}

int kz_Str_ncmpi(const kz_Char* a, const kz_Char* b, size_t n) {
    if (!a || !b) return (a ? 1 : 0) - (b ? 1 : 0);
    for (; n > 0; --n, ++a, ++b) {
        if (*a != *b) {
            const int difference = kz::upperUnit(*a) - kz::upperUnit(*b);
            if (difference != 0) return difference;
        }
        if (*a == 0) return 0;
    }
    return 0;
}

kz_Char* kz_Str_upper(kz_Char* text) {
    for (kz_Char* unit = text; unit && *unit != 0; ++unit)
        *unit = kz::upperUnit(*unit);
    return text;
}

kz_Char* kz_Str_rlb(kz_Char* text) {
    if (!text) return nullptr;
    const kz_Char* first = text;
    while (isBlank(*first))
        ++first;
    moveUnits(text, first, kz_Str_len(first) + 1);
    return text;
}

kz_Char* kz_Str_rtb(kz_Char* text) {
    if (!text) return nullptr;
    size_t length = kz_Str_len(text);
    while (length > 0 && isBlank(text[length - 1]))
        --length;
    text[length] = 0;
    return text;
}

kz_Char* kz_Str_delBlks(kz_Char* text) {
    if (!text) return nullptr;
    kz_Char* out = text;
    for (const kz_Char* unit = text; *unit != 0; ++unit) {
        if (!isBlank(*unit)) {
            *out++ = *unit;
        } else if (out != text && out[-1] != ' ') {
            *out++ = ' ';
        }
    }
    *out = 0;
    return kz_Str_rtb(text);
}

kz_Char* kz_Str_cj(kz_Char* text, int width) {
    return justify(text, width, 1);
}

kz_Char* kz_Str_lj(kz_Char* text, int width) {
    return justify(text, width, 0);
}

kz_Char* kz_Str_rj(kz_Char* text, int width) {
    return justify(text, width, 2);
}

kz_Char* kz_Str_pad(kz_Char* text, int width) {
    const size_t length = kz_Str_len(text);
    if (text && width > 0 && length < static_cast<size_t>(width)) {
        fillAround(text, length, 0, static_cast<size_t>(width));
    }
    return text;
}

kz_Char* kz_Str_substr(kz_Char* out, const kz_Char* text, int start, int length) {
    if (!out) return nullptr;
    const size_t available = kz_Str_len(text);
    const size_t first = start > 1 ? static_cast<size_t>(start) - 1 : 0;
    size_t count = length > 0 ? static_cast<size_t>(length) : 0;
    if (first >= available) count = 0;
    if (count > available - first) count = available - first;
    if (count > 0) moveUnits(out, text + first, count);
    out[count] = 0;
    return out;
}

const kz_Char* kz_Str_replaceChar(const kz_Char* text, const kz_Char* from, const kz_Char* to) {
    static std::u16string result;
    try {
        const auto view = [](const kz_Char* part) { return part ? part : KZ_T(""); };
        std::u16string replaced = replaceAll(view(text), view(from), view(to));
        result.swap(replaced);  // only now: text may be the last result
    } catch (const std::bad_alloc&) {
        result.clear();
    }
    return result.c_str();
}

int kz_Str_index(const kz_Char* text, const kz_Char* part, int ignoreCase) {
    if (!text || !part) return -1;
    const size_t partLength = kz_Str_len(part);
    if (!ignoreCase) {
        const size_t match = std::u16string_view(text).find(part, 0, partLength);
        return match == std::u16string_view::npos ? -1 : static_cast<int>(match);
    }
    const size_t length = kz_Str_len(text);
    for (size_t at = 0; at + partLength <= length; ++at) {
        if (kz_Str_ncmpi(text + at, part, partLength) == 0) return static_cast<int>(at);
    }
    return -1;
}

kz_StrList* kz_Str_wrapText(const kz_Char* text, int width) {
    kz_StrList* list = text ? kz_StrList_create() : nullptr;
    if (!list) return nullptr;
    std::u16string_view rest(text);
    while (!rest.empty()) {
        std::u16string_view paragraph = rest.substr(0, rest.find(u'\n'));
        rest.remove_prefix(paragraph.size() < rest.size() ? paragraph.size() + 1 : rest.size());
        if (!paragraph.empty() && paragraph.back() == '\r') paragraph.remove_suffix(1);
        if (!wrapParagraph(list, paragraph, width)) {
            kz_StrList_destroy(list);
            return nullptr;
        }
    }
    kz_StrList_start(list);
    return list;
}
