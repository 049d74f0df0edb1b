/// Wildcard match. Each alternative is matched with one remembered star, so no pattern takes more
/// than text times pattern steps.
#include "base/wildcard.h"

#include <string>

#include "acad/ads.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

using View = std::u16string_view;

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}
bool isLetter(char16_t unit) {
    return kz::upperUnit(unit) != kz::lowerUnit(unit) || unit >= 0x3000;
}

/// Matches one pattern item at `at` against `unit`; `next` is the item's end.
bool matchItem(View pattern, size_t at, char16_t unit, size_t& next) {
    const char16_t item = pattern[at];
    next = at + 1;
    switch (item) {
        case u'#':
            return isDigit(unit);
        case u'@':
            return isLetter(unit);
        case u'.':
            return !isDigit(unit) && !isLetter(unit);
        case u'?':
            return true;
        case u'`':
            if (next == pattern.size()) return unit == item;
            return unit == pattern[next++];
        case u'[':
            break;
        default:
            return unit == item;
    }
    const size_t close = pattern.find(u']', at + 2);
    if (close == View::npos) return unit == item;  // no set: the bracket stands for itself
    next = close + 1;
    size_t from = at + 1;
    const bool negated = pattern[from] == u'~';
    if (negated) ++from;
    bool found = false;
    for (size_t i = from; i < close && !found; ++i) {
        if (i + 2 < close && pattern[i + 1] == u'-') {
            found = unit >= pattern[i] && unit <= pattern[i + 2];
            i += 2;
        } else {
            if (pattern[i] == u'`' && i + 1 < close) ++i;
            found = unit == pattern[i];
        }
    }
    return found != negated;
}

bool matchPlain(View text, View pattern) {
    size_t t = 0;
    size_t p = 0;
    size_t star = View::npos;
    size_t star_text = 0;
    while (t < text.size()) {
        size_t next = 0;
        if (p < pattern.size() && pattern[p] == u'*') {
            star = ++p;
            star_text = t;
        } else if (p < pattern.size() && matchItem(pattern, p, text[t], next)) {
            p = next;
            ++t;
        } else if (star != View::npos) {
            p = star;
            t = ++star_text;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == u'*')
        ++p;
    return p == pattern.size();
}

/// End of the alternative that starts at `from`: a comma outside of a set and not escaped.
size_t alternativeEnd(View pattern, size_t from) {
    for (size_t i = from; i < pattern.size(); ++i) {
        if (pattern[i] == u'`') {
            ++i;
        } else if (pattern[i] == u'[') {
            const size_t close = pattern.find(u']', i + 2);
            if (close != View::npos) i = close;
        } else if (pattern[i] == u',') {
            return i;
        }
    }
    return pattern.size();
}

}  // namespace

bool wildcardMatch(View text, View pattern) {
    size_t from = 0;
    while (true) {
        const size_t end = alternativeEnd(pattern, from);
        View alternative = pattern.substr(from, end - from);
        const bool negated = !alternative.empty() && alternative.front() == u'~';
        if (negated) alternative.remove_prefix(1);
        if (matchPlain(text, alternative) != negated) return true;
        if (end == pattern.size()) return false;
        from = end + 1;
    }
}

bool wildcardMatchNoCase(View text, View pattern) {
    return wildcardMatch(kz::toUpper(text), kz::toUpper(pattern));
}

bool hasWildcard(View pattern) {
    return pattern.find_first_of(u"#@.*?~[],`") != View::npos;
}

}  // namespace host

extern "C" int acutWcMatch(const ACHAR* text, const ACHAR* pattern) {
    if (text == nullptr || pattern == nullptr) return RTERROR;
    return host::wildcardMatch(text, pattern) ? RTNORM : RTERROR;
}
