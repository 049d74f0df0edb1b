/// System variables. Those of the drawing live in its header, under the same name with a "$" in
/// front; the session's are kept here; some are computed.
#include "edit/sysvars.h"
#include "base/faults.h"

#include <cstring>
#include <filesystem>
#include <map>

#include "base/resbuf.h"
#include "db/database.h"
#include "host/counters.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

namespace fs = std::filesystem;

struct SessionVariable {
    int16_t restype = RTSHORT;
    double number = 0.0;
    std::u16string text;
    bool read_only = false;
};

/// Session variables with their defaults.
std::map<std::string, SessionVariable>& session() {
    static std::map<std::string, SessionVariable> variables = {
        {"ERRNO", {RTSHORT, 0, u"", false}},    {"CMDECHO", {RTSHORT, 1, u"", false}},
        {"OSMODE", {RTSHORT, 0, u"", false}},   {"FILEDIA", {RTSHORT, 1, u"", false}},
        {"EXPERT", {RTSHORT, 0, u"", false}},   {"HIGHLIGHT", {RTSHORT, 1, u"", false}},
        {"PICKBOX", {RTSHORT, 3, u"", false}},  {"LONGFNAME", {RTSHORT, 1, u"", true}},
        {"ACADVER", {RTSTR, 0, u"21.0", true}}, {"CPROFILE", {RTSTR, 0, u"", true}},
        {"MENUECHO", {RTSHORT, 0, u"", false}}, {"NOMUTT", {RTSHORT, 0, u"", false}},
    };
    return variables;
}

std::string plainName(const ACHAR* name) {
    return kz::toUtf8(kz::toUpper(name));
}

int giveText(std::u16string_view text, resbuf* value) {
    auto* copy = static_cast<ACHAR*>(kz_Malloc((text.size() + 1) * sizeof(ACHAR)));
    if (copy == nullptr) return RTERROR;
    if (!text.empty()) std::memcpy(copy, text.data(), text.size() * sizeof(ACHAR));
    copy[text.size()] = 0;
    value->restype = RTSTR;
    value->resval.rstring = copy;
    return RTNORM;
}

int giveNumber(int16_t restype, double number, resbuf* value) {
    value->restype = restype;
    if (restype == RTREAL) {
        value->resval.rreal = number;
    } else if (restype == RTLONG) {
        value->resval.rlong = static_cast<int32_t>(number);
    } else {
        value->resval.rint = static_cast<int16_t>(number);
    }
    return RTNORM;
}

/// Values that follow from the state of the host. False for a name that is none of them.
bool computed(const std::string& name, resbuf* value, int& status) {
    const Database* database = currentDatabase();
    const fs::path path = database == nullptr ? fs::path() : fs::path(database->path());
    if (name == "DWGNAME") {
        const std::string file = path.filename().string();
        status = giveText(file.empty() ? u"Drawing1.dwg" : kz::toUtf16(file), value);
    } else if (name == "DWGPREFIX") {
        std::error_code ignored;
        const fs::path folder =
            path.empty() ? fs::current_path(ignored) : fs::absolute(path, ignored).parent_path();
        status = giveText(kz::toUtf16((folder / "").string()), value);
    } else if (name == "DWGTITLED") {
        status = giveNumber(RTSHORT, path.empty() ? 0 : 1, value);
    } else if (name == "DBMOD") {
        status = giveNumber(RTSHORT, database != nullptr && database->isUnsaved() ? 1 : 0, value);
    } else {
        return false;
    }
    return true;
}

/// Colour as the variable shows it: a name for the two that follow others, else the number.
std::u16string colourText(int64_t index) {
    if (index == 0) return u"BYBLOCK";
    if (index == 256) return u"BYLAYER";
    return kz::toUtf16(std::to_string(index));
}

int giveHeader(const Database& database, const std::string& name, const HeaderVariable& variable,
               resbuf* value) {
    if (variable.tags.empty()) return RTERROR;
    const Tag& first = variable.tags.front();
    if (name == "CECOLOR") return giveText(colourText(first.integer()), value);
    switch (valueKind(first.code())) {
        case ValueKind::Text:
            return giveText(first.text(database.codec()), value);
        case ValueKind::Short:
            return giveNumber(RTSHORT, static_cast<double>(first.integer()), value);
        case ValueKind::Long:
            return giveNumber(RTLONG, static_cast<double>(first.integer()), value);
        case ValueKind::Real:
            return giveNumber(RTREAL, first.real(), value);
        case ValueKind::Point:
            value->restype = variable.tags.size() > 2 ? RT3DPOINT : RTPOINT;
            for (size_t i = 0; i < 3; ++i) {
                value->resval.rpoint[i] = i < variable.tags.size() ? variable.tags[i].real() : 0.0;
            }
            return RTNORM;
        default:
            return RTERROR;
    }
}

bool isNumber(const resbuf& value) {
    return value.restype == RTSHORT || value.restype == RTLONG || value.restype == RTREAL;
}

double numberOf(const resbuf& value) {
    if (value.restype == RTSHORT) return value.resval.rint;
    if (value.restype == RTLONG) return value.resval.rlong;
    return value.resval.rreal;
}

int takeSession(SessionVariable& variable, const resbuf& value) {
    if (variable.read_only) return RTERROR;
    if (variable.restype == RTSTR) {
        if (value.restype != RTSTR || value.resval.rstring == nullptr) return RTERROR;
        variable.text = value.resval.rstring;
        return RTNORM;
    }
    if (!isNumber(value)) return RTERROR;
    if (variable.restype == RTSHORT && value.restype == RTREAL) return RTERROR;
    variable.number = numberOf(value);
    return RTNORM;
}

/// Names of symbols must be there: a current layer that isn't would make a broken drawing.
bool symbolIsThere(Database& database, const std::string& name, std::u16string_view text) {
    if (name == "CLAYER") return database.findSymbol("LAYER", text) != kNoSlot;
    if (name == "CELTYPE") return database.findSymbol("LTYPE", text) != kNoSlot;
    if (name == "TEXTSTYLE") return database.findSymbol("STYLE", text) != kNoSlot;
    return true;
}

int takeHeader(Database& database, const std::string& name, HeaderVariable& variable,
               const resbuf& value) {
    static constexpr const char* kReadOnly[] = {"ACADVER", "HANDSEED", "DWGCODEPAGE", "EXTMIN",
                                                "EXTMAX",  "TDCREATE", "ACADMAINTVER"};
    for (const char* fixed : kReadOnly) {
        if (name == fixed) return RTERROR;
    }
    if (variable.tags.size() != 1) return RTERROR;
    const int code = variable.tags.front().code();
    switch (valueKind(code)) {
        case ValueKind::Text: {
            if (value.restype != RTSTR || value.resval.rstring == nullptr) return RTERROR;
            const std::u16string text = value.resval.rstring;
            if (!symbolIsThere(database, name, text)) return RTERROR;
            database.setHeader("$" + name, Tag(code, text));
            return RTNORM;
        }
        case ValueKind::Real:
            if (!isNumber(value)) return RTERROR;
            database.setHeader("$" + name, Tag(code, numberOf(value)));
            return RTNORM;
        case ValueKind::Short:
        case ValueKind::Long:
            if (value.restype != RTSHORT && value.restype != RTLONG) return RTERROR;
            database.setHeader("$" + name, Tag(code, static_cast<int64_t>(numberOf(value))));
            return RTNORM;
        default:
            return RTERROR;
    }
}

}  // namespace

int integerVariable(const char* name, int otherwise) {
    const Database* database = currentDatabase();
    const HeaderVariable* header =
        database == nullptr ? nullptr : currentDatabase()->header(std::string("$") + name);
    if (header == nullptr || header->tags.empty()) return otherwise;
    return static_cast<int>(header->tags.front().integer());
}

double realVariable(const char* name, double otherwise) {
    const Database* database = currentDatabase();
    const HeaderVariable* header =
        database == nullptr ? nullptr : currentDatabase()->header(std::string("$") + name);
    if (header == nullptr || header->tags.empty()) return otherwise;
    return header->tags.front().real();
}

void setErrno(HostErrno value) {
    session()["ERRNO"].number = static_cast<int>(value);
}

}  // namespace host

extern "C" {

int acedGetVar(const ACHAR* name, resbuf* value) {
    int fault = 0;
    if (host::mustFail(host::Call::acedGetVar, fault)) return fault;
    if (name == nullptr || value == nullptr) return RTERROR;
    const std::string plain = host::plainName(name);
    int status = RTERROR;
    if (host::computed(plain, value, status)) return status;
    const auto found = host::session().find(plain);
    if (found != host::session().end()) {
        const host::SessionVariable& variable = found->second;
        if (variable.restype == RTSTR) return host::giveText(variable.text, value);
        return host::giveNumber(variable.restype, variable.number, value);
    }
    host::Database* database = host::currentDatabase();
    const host::HeaderVariable* header =
        database == nullptr ? nullptr : database->header("$" + plain);
    return header == nullptr ? RTERROR : host::giveHeader(*database, plain, *header, value);
}

int acedSetVar(const ACHAR* name, const resbuf* value) {
    int status = 0;
    if (host::mustFail(host::Call::acedSetVar, status)) return status;
    if (name == nullptr || value == nullptr) return RTERROR;
    const std::string plain = host::plainName(name);
    const auto found = host::session().find(plain);
    if (found != host::session().end()) return host::takeSession(found->second, *value);
    host::Database* database = host::currentDatabase();
    host::HeaderVariable* header = database == nullptr ? nullptr : database->header("$" + plain);
    return header == nullptr ? RTERROR : host::takeHeader(*database, plain, *header, *value);
}
}
