/// Names of groups: their kinds, the codes in them, and new ones.
#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "ACAD/kz_acgrp/kz_acgrp.h"
#include "kz/kz_dwgdata.h"

namespace {

/// Where the drawing keeps its next group code.
constexpr const kz_Char* kDictName = KZ_T("KZ_MOVAR_APP");
constexpr const kz_Char* kRecord = KZ_T("DWGINFO");
constexpr const kz_Char* kCodeField = KZ_T("NEXT_GROUP_CODE");

constexpr const kz_Char* kPrefix = KZ_T("KZ_");
constexpr int kCodeSize = 12;
constexpr int kCodeRead = 10;  ///< what reads a code of 9 characters whole

/// Kinds of names.
enum NameKind {
    kForeign = -1,
    kPlainUncoded = 0,
    kPlain = 1,
    kContainerUncoded = 2,
    kContainer = 3,
    kAnnotationUncoded = 4,
    kAnnotation = 5
};

bool hasPrefix(const kz_Char* name, const kz_Char* prefix) {
    return kz_Str_ncmpi(name, prefix, kz_Str_len(prefix)) == 0;
}

/// The pieces of a name between runs of "_"; those that are not there are empty.
std::array<std::u16string_view, 4> pieces(std::u16string_view name) {
    std::array<std::u16string_view, 4> out;
    size_t at = 0;
    for (std::u16string_view& piece : out) {
        const size_t begin = name.find_first_not_of(u'_', at);
        if (begin == std::u16string_view::npos) break;
        at = std::min(name.find(u'_', begin), name.size());
        piece = name.substr(begin, at - begin);
    }
    return out;
}

/// One of the codes of a name, which stands behind `behind` pieces, two more behind other prefixes.
const kz_Char* code(kz_Char* buffer, const kz_Char* name, size_t behind) {
    if (name == nullptr) return nullptr;
    kz_Str_ncpy(buffer, name, kz::kLongestName);
    const int kind = kz_Group_getGroupNameType(buffer);
    if (kind != kPlain && kind != kContainer && kind != kAnnotation) return nullptr;
    const size_t place = kind == kPlain ? behind : behind + 1;
    const std::u16string found(pieces(buffer)[place]);
    if (found.empty()) return nullptr;
    return kz_Str_ncpy(buffer, found.c_str(), kz::kLongestName);
}

/// True for a prefix that wants a "_" between itself and the codes.
bool needsSeparator(const kz_Char* prefix) {
    if (kz::isEmpty(prefix) || kz_Str_cmpi(prefix, kPrefix) == 0) return false;
    return prefix[kz_Str_len(prefix) - 1] != u'_';
}

/// The drawing's code, made when there is none.
const kz_Char* needDrawingCode() {
    const kz_Char* code = kz_DwgIdCode_get(nullptr);
    if (code != nullptr) return code;
    kz_DwgIdCode_addToDrawing(nullptr, 1);
    return kz_DwgIdCode_get(nullptr);
}

}  // namespace

int kz_Group_getGroupNameType(const kz_Char* name) {
    if (name == nullptr || !hasPrefix(name, kPrefix)) return kForeign;
    if (hasPrefix(name, KZ_T("KZ_CN0_"))) return kContainerUncoded;
    if (hasPrefix(name, KZ_T("KZ_CN_"))) return kContainer;
    const std::array<std::u16string_view, 4> parts = pieces(name);
    if (parts[1].empty()) return kForeign;
    if (parts[1] == u"0") return kPlainUncoded;
    if (hasPrefix(name, KZ_T("KZ_ANNOT"))) {
        return parts[1].back() == u'0' ? kAnnotationUncoded : kAnnotation;
    }
    return parts[2].empty() ? kForeign : kPlain;
}

const kz_Char* kz_Group_getDwgIdCode(const kz_Char* name) {
    static kz_Char buffer[kz::kNameSize];
    return code(buffer, name, 1);
}

const kz_Char* kz_Group_getGroupCode(const kz_Char* name) {
    static kz_Char buffer[kz::kNameSize];
    return code(buffer, name, 2);
}

int kz_Group_getUniqueName(kz_Char* out, const kz_Char* prefix) {
    const kz_Char* drawing = out != nullptr ? needDrawingCode() : nullptr;
    if (drawing == nullptr) return 0;
    const kz_Char* group = kz_Group_nextGroupCode(nullptr);
    if (group == nullptr) return 0;
    kz_Str_format(out, kz::kNameRead, KZ_T("%s%s%s_%s"), prefix != nullptr ? prefix : kPrefix,
                  needsSeparator(prefix) ? KZ_T("_") : KZ_T(""), drawing, group);
    return 1;
}

kz_Char* kz_Group_prefixName(kz_Char* out, const kz_Char* name, const kz_Char* prefix) {
    if (out == nullptr) return nullptr;
    std::u16string used = prefix != nullptr ? prefix : u"";
    std::u16string rest = name != nullptr ? name : u"";
    const bool anonymous = prefix != nullptr && hasPrefix(rest.c_str(), KZ_T("*A"));
    if (anonymous) {
        rest.erase(0, 2);
        if (used == kPrefix) used += u'X';
    } else if (hasPrefix(rest.c_str(), used.c_str())) {
        used.clear();
    }
    return kz_Str_ncpy(out, (used + rest).c_str(), kz::kLongestName);
}

// --- the drawing's next code --------------------------------------------------------------------

const kz_Char* kz_Group_getCachedGroupCode(const kz_CADDwgId* drawing) {
    static kz_Char buffer[kCodeSize];
    const kz::OwnedFldList list(kz_DwgData_getFld(drawing, kDictName, kRecord, kCodeField));
    const int found = kz_FldList_getChar(list.get(), kCodeField, buffer, kCodeRead);
    return found == 1 && *buffer != 0 ? buffer : nullptr;
}

int kz_Group_setCachedGroupCode(const kz_CADDwgId* drawing, const kz_Char* code) {
    if (code == nullptr) return 0;
    AcDbDatabase* working = acdbHostApplicationServices()->workingDatabase();
    // Codes must not be handed out again when the group that got one is undone. Whoever has
    // switched recording off himself finds it so.
    const bool recording = working != nullptr && working->undoRecording();
    if (recording) working->disableUndoRecording(true);
    const int status =
        kz_DwgData_setFld(drawing, kDictName, kRecord, kCodeField, KZ_FLD_CHAR, code, 1, 1);
    if (recording) working->disableUndoRecording(false);
    return status;
}

const kz_Char* kz_Group_nextGroupCode(const kz_CADDwgId* drawing) {
    static kz_Char buffer[kCodeSize];
    kz_Char next[kCodeSize];
    const auto count = [&](const kz_Char* code) {
        kz_Str_ncpy(buffer, code, kCodeSize - 1);
        kz_Str_ncpy(next, buffer, kCodeSize - 1);
        return *buffer != 0 && kz_Base36_increment(next, 1) == 1;
    };
    // What is stored and is no code counts as nothing.
    const bool good =
        count(kz_Group_getCachedGroupCode(drawing)) || count(kz_Group_scanNextGroupCode());
    return good && kz_Group_setCachedGroupCode(drawing, next) == 1 ? buffer : nullptr;
}

int kz_Group_rebuild(void) {
    return 0;
}
