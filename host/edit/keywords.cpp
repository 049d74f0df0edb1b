/// Keywords of input functions, and what acedInitGet keeps for the next of them.
#include "edit/keywords.h"

#include <algorithm>
#include <utility>

#include "acad/ed.h"
#include "base/faults.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

struct Prepared {
    InputRules rules;
    std::u16string last_keyword;
};

Prepared& prepared() {
    static Prepared instance;
    return instance;
}

bool isCapital(char16_t unit) {
    const char16_t one[] = {unit};
    return kz::toUpper(std::u16string_view(one, 1))[0] == unit && unit != kz::lowerUnit(unit);
}

}  // namespace

Keywords::Word Keywords::wordOf(std::u16string_view text) {
    Word word;
    const size_t comma = text.find(u',');
    if (comma != std::u16string_view::npos && comma > 0) {
        word.text = text.substr(0, comma);
        word.abbreviation = text.substr(comma + 1);
        return word;
    }
    word.text = text;
    // Capitals that stand together abbreviate; a word of nothing but capitals has to be typed
    // whole.
    const auto first = std::find_if(text.begin(), text.end(), isCapital);
    const auto last = std::find_if(first, text.end(), [](char16_t unit) {
        return !isCapital(unit) && !(unit >= u'0' && unit <= u'9');
    });
    word.abbreviation = std::u16string(first, last);
    return word;
}

Keywords::Keywords(std::u16string_view list) {
    bool global = false;
    size_t at = 0;
    while (at < list.size()) {
        const size_t end = std::min(list.find(u' ', at), list.size());
        std::u16string_view text = list.substr(at, end - at);
        at = end + 1;
        if (!global && text.size() > 1 && text.starts_with(u'_')) {
            global = true;
            text.remove_prefix(1);
        }
        if (!text.empty()) (global ? global_ : local_).push_back(wordOf(text));
    }
    if (global_.size() != local_.size()) global_.clear();
}

size_t Keywords::find(const std::vector<Word>& words, std::u16string_view typed) {
    for (size_t i = 0; i < words.size(); ++i) {
        if (kz::compareNoCase(words[i].text, typed) == 0) return i;
    }
    const std::u16string upper = kz::toUpper(typed);
    for (size_t i = 0; i < words.size(); ++i) {
        const std::u16string abbreviation = kz::toUpper(words[i].abbreviation);
        if (abbreviation.empty() || upper.size() < abbreviation.size()) continue;
        const std::u16string word = kz::toUpper(words[i].text);
        const size_t start = word.find(abbreviation);
        // "LTYPE,LT" may have an abbreviation that is no part of the word.
        if (start == std::u16string::npos) {
            if (upper == abbreviation) return i;
            continue;
        }
        const bool from_start =
            word.starts_with(upper) && upper.size() >= start + abbreviation.size();
        if (from_start || std::u16string_view(word).substr(start).starts_with(upper)) return i;
    }
    return words.size();
}

std::u16string Keywords::match(std::u16string_view typed) const {
    if (typed.empty()) return {};
    const bool free = typed.size() > 1 && typed.starts_with(u'_');
    if (free) typed.remove_prefix(1);
    const std::vector<Word>& words = free && !global_.empty() ? global_ : local_;
    const size_t at = find(words, typed);
    if (at == words.size()) return {};
    return global_.empty() ? local_[at].text : global_[at].text;
}

InputRules takeInputRules() {
    return std::exchange(prepared().rules, {});
}

void setLastKeyword(std::u16string keyword) {
    prepared().last_keyword = std::move(keyword);
}

const std::u16string& lastKeyword() {
    return prepared().last_keyword;
}

}  // namespace host

extern "C" int acedInitGet(int flags, const ACHAR* keywords) {
    int status = 0;
    if (host::mustFail(host::Call::acedInitGet, status)) return status;
    if ((flags & ~RSG_ALLOWED) != 0) return RTERROR;
    host::prepared().rules = {flags, host::Keywords(keywords == nullptr ? u"" : keywords)};
    return RTNORM;
}
