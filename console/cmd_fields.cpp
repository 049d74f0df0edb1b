/// kz fields: what applications keep on the entities of a drawing.
#include <cstdio>
#include <memory>

#include "group_scan.h"
#include "host/output.h"
#include "json.h"
#include "kz/kz_appdata.h"
#include "kz/kz_rb.h"
#include "kz/kz_selset.h"
#include "kz/kz_xdata.h"
#include "kz_tls21an/text.h"
#include "options.h"
#include "session.h"

namespace console {

namespace {

struct FieldsOptions {
    std::string drawing, handle;
    bool json = false;
    bool recover = false;
};

std::string numberText(double value) {
    char text[32];
    // The shortest of the forms that reads as the same number again.
    for (const int digits : {6, 15, 17}) {
        std::snprintf(text, sizeof(text), "%.*g", digits, value);
        if (kz::parseReal(kz::toUtf16(text)) == value) break;
    }
    return text;
}

/// Where the fields of objects go.
class Report {
  public:
    Report() = default;
    virtual ~Report() = default;
    Report(const Report&) = delete;
    Report& operator=(const Report&) = delete;
    virtual void begin() {}
    virtual void object(const std::string& handle, const std::string& type) = 0;
    virtual void application(const std::string& name) = 0;
    virtual void field(const std::string& name, const std::vector<kz_FldNode>& values) = 0;
    virtual void endApplication() {}
    virtual void endObject() {}
    virtual void end() {}
};

class TextReport : public Report {
  public:
    void object(const std::string& handle, const std::string& type) override {
        say(handle + "  " + type);
    }
    void application(const std::string& name) override { say("  " + name); }
    void field(const std::string& name, const std::vector<kz_FldNode>& values) override {
        std::string line = "    " + name;
        const char* between = "  ";
        for (const kz_FldNode& value : values) {
            line += between + textOf(value);
            between = ", ";
        }
        say(line);
    }

  private:
    static void say(const std::string& line) {
        host::write(host::Channel::Lisp, kz::toUtf16(line + "\n"));
    }
    static std::string pointText(const kz_Point& point) {
        return "(" + numberText(point.x) + " " + numberText(point.y) + " " + numberText(point.z) +
               ")";
    }
    static std::string textOf(const kz_FldNode& value) {
        switch (value.type) {
            case KZ_FLD_CHAR:
                return "\"" + kz::toUtf8(value.value.text) + "\"";
            case KZ_FLD_HANDLE:
                return kz::toUtf8(value.value.text);
            case KZ_FLD_INT:
                return std::to_string(value.value.integer);
            case KZ_FLD_LONG:
                return std::to_string(value.value.longInt);
            case KZ_FLD_REAL:
                return numberText(value.value.real);
            case KZ_FLD_VECTOR:
                return pointText(
                    {value.value.vector.x, value.value.vector.y, value.value.vector.z});
            default:
                return pointText(value.value.point);
        }
    }
};

class JsonReport : public Report {
  public:
    void begin() override { json_.open('['); }
    void object(const std::string& handle, const std::string& type) override {
        json_.open('{');
        json_.key("handle");
        json_.string(handle);
        json_.key("type");
        json_.string(type);
        json_.key("applications");
        json_.open('{');
    }
    void application(const std::string& name) override {
        json_.key(name);
        json_.open('{');
    }
    void field(const std::string& name, const std::vector<kz_FldNode>& values) override {
        json_.key(name);
        json_.open('[');
        for (const kz_FldNode& value : values)
            add(value);
        json_.close(']');
    }
    void endApplication() override { json_.close('}'); }
    void endObject() override {
        json_.close('}');
        json_.close('}');
    }
    void end() override {
        json_.close(']');
        host::write(host::Channel::Lisp, kz::toUtf16(json_.text() + "\n"));
    }

  private:
    void addPoint(double x, double y, double z) {
        json_.open('[');
        for (const double value : {x, y, z})
            json_.plain(numberText(value));
        json_.close(']');
    }
    void add(const kz_FldNode& node) {
        const kz_FldValue& value = node.value;
        switch (node.type) {
            case KZ_FLD_CHAR:
                json_.string(kz::toUtf8(value.text));
                break;
            case KZ_FLD_HANDLE:
                json_.open('{');
                json_.key("handle");
                json_.string(kz::toUtf8(value.text));
                json_.close('}');
                break;
            case KZ_FLD_INT:
                json_.plain(std::to_string(value.integer));
                break;
            case KZ_FLD_LONG:
                json_.plain(std::to_string(value.longInt));
                break;
            case KZ_FLD_REAL:
                json_.plain(numberText(value.real));
                break;
            case KZ_FLD_VECTOR:
                addPoint(value.vector.x, value.vector.y, value.vector.z);
                break;
            default:
                addPoint(value.point.x, value.point.y, value.point.z);
                break;
        }
    }

    Json json_;
};

/// The values of a field: none, one, or those of its list.
std::vector<kz_FldNode> valuesOf(const kz_FldNode& field) {
    std::vector<kz_FldNode> values;
    if (field.type == KZ_FLD_UNKNOWN) return values;
    if (field.type != KZ_FLD_LIST) return {field};
    kz_LnkList* list = field.value.list;
    for (kz_LnkList_start(list); kz_LnkList_eol(list) != 1; kz_LnkList_next(list)) {
        const auto* node = static_cast<const kz_FldNode*>(kz_LnkList_getCurr(list));
        if (node != nullptr && node->type != KZ_FLD_UNKNOWN) values.push_back(*node);
    }
    return values;
}

void tellApplication(Report& report, const kz_AppData& data) {
    report.application(kz::toUtf8(data.name));
    kz_FldList* fields = data.fields;
    for (kz_FldList_start(fields); kz_FldList_eol(fields) != 1; kz_FldList_next(fields)) {
        const kz_FldNode* node = kz_FldList_curr(fields);
        if (node == nullptr || node->name == nullptr) continue;
        report.field(kz::toUtf8(node->name), valuesOf(*node));
    }
    report.endApplication();
}

/// @return false for an object without fields
bool tellObject(Report& report, const ads_name name) {
    AcDbObjectId id;
    if (acdbGetObjectId(id, name) != Acad::eOk) return false;
    resbuf* chain = kz_Xdata_getFromEnt(name, nullptr);
    kz_AppDataList* list = nullptr;
    if (chain != nullptr) kz_AppDataList_fromXdata(&list, chain);
    kz_ResBuf_release(chain);
    const bool any = list != nullptr && kz_AppDataList_length(list) > 0;
    AcDbObject* object = nullptr;
    if (any && acdbOpenAcDbObject(object, id, AcDb::kForRead) == Acad::eOk) {
        report.object(kz::toUtf8(handleOf(id)), object->dxfName());
        object->close();
        for (kz_AppDataList_start(list); kz_AppDataList_eol(list) != 1; kz_AppDataList_next(list)) {
            const kz_AppData* data = kz_AppDataList_getCurr(list);
            if (data != nullptr && data->fields != nullptr) tellApplication(report, *data);
        }
        report.endObject();
    }
    kz_AppDataList_destroy(list);
    return object != nullptr;
}

Status tell(const FieldsOptions& options) {
    std::unique_ptr<Report> report;
    if (options.json) {
        report = std::make_unique<JsonReport>();
    } else {
        report = std::make_unique<TextReport>();
    }
    bool any = false;
    ads_name name = {}, next;
    if (!options.handle.empty() &&
        acdbHandEnt(kz::toUtf16(options.handle).c_str(), name) != RTNORM) {
        complain(options.handle + ": no object has this handle");
        return kWrongUsage;
    }
    report->begin();
    if (!options.handle.empty()) {
        any = tellObject(*report, name);
    } else {
        while (kz_AcCAD_nextMainEntity(name, next, 1) == 1) {
            ads_name_set(next, name);
            any = tellObject(*report, name) || any;
        }
    }
    report->end();
    if (!any && !options.json) host::write(host::Channel::Lisp, u"no fields\n");
    return kDone;
}

}  // namespace

Run defineFields(Options& line) {
    const auto options = std::make_shared<FieldsOptions>();
    line.argument("FILE", options->drawing, "Drawing to look at");
    line.argument("HANDLE", options->handle, "Only this entity, group or other object");
    line.flag("--json", options->json, "As a JSON list of objects with their applications");
    addRecoverOption(line, options->recover);
    return [options] {
        if (options->drawing.empty()) {
            complain("fields takes the drawing to look at");
            return kWrongUsage;
        }
        SessionOptions session;
        session.drawing = options->drawing;
        session.recover = options->recover;
        Status status = openSession(session);
        if (status == kDone) status = tell(*options);
        return closeSession(session, status);
    };
}

}  // namespace console
