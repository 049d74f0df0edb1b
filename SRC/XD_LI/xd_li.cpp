/// Lisp twins of the XDATA field store. A wrong argument prints the twin's usage line and gives
/// nil; an entity that does not exist gives nil alone.
///
/// In the forms, `{ handle | entname }` is an entity by its handle or its name, `fldlst` a list of
/// fields ((name value ...) ...), and square brackets enclose what may be left out or nil.
#include "kz/kz_xdata.h"
#include "trace.h"
#include "twin.h"

namespace {

constexpr kz::TwinFamily kFamily = {"SRC/XD_LI", kz::kTraceData};

/// The frame of this family: TwinCall, and the results that are more than T.
class XDataCall : public kz::TwinCall {
  public:
    XDataCall(const kz_Char* name, const char* usage) : TwinCall(kFamily, name, usage) {}

    /// The list as a Lisp value; nil for NULL.
    void answerFields(kz_FldList* list) {
        setStatus(list != nullptr);
        if (list == nullptr) return;
        kz_FldList_printListDiag(list, kz::kTraceEntry, kFamily.mask);
        resbuf* chain = kz_FldList_toRb(list, 1, 0);
        if (chain != nullptr) kz_Rb_returnList(chain);
    }
    /// The values of the list's first field: one as itself, several as a list. Destroys the list.
    void answerValues(kz_FldList* list) {
        const kz::OwnedFldList owned(list);
        setStatus(list != nullptr);
        if (list == nullptr) return;
        resbuf* values = nullptr;
        kz_FldList_start(list);
        kz_Rb_convertFldListToRb(&values, list, 0, 0, 0, 1);
        const kz::OwnedChain chain(values);
        if (values != nullptr && values->rbnext != nullptr) {
            kz_ResBuf_returnList(values);
        } else if (values != nullptr) {
            kz_Rb_returnValue(values);
        }
    }
    /// True when the value can be a handle; prints the message otherwise.
    bool requireHandle(const kz::LispValue& value, const char* text) {
        if (value.type == KZ_FLD_CHAR || value.type == KZ_FLD_HANDLE) return true;
        message(text);
        setStatus(0);
        return false;
    }
};

const kz_Char* handleText(const kz::LispValue& value) {
    return static_cast<const kz_Char*>(value.data);
}

using FldListReader = kz_FldList* (*)(const ads_name, kz_FldList*, const kz_Char*);

/// Both twins that read whole lists.
int readFldList(XDataCall& call, FldListReader read) {
    const int64_t* entity = call.entity();
    kz_FldList* request = call.fieldsOrNil();
    const kz_Char* app = call.text();
    if (!call.ready()) return 1;
    kz_FldList* list = read(entity, request, app);
    call.answerFields(list);
    if (request == nullptr) kz_FldList_destroy(list);
    return 1;
}

}  // namespace

/// (kz_XData_initFldList { handle | entname } fldlst apname) -> T | nil
/// Replaces all fields that the application has on the entity. An empty list removes its data.
KZ_TWIN kz_XData_initFldList_li(void) {
    XDataCall call(KZ_T("kz_XData_initFldList_li"),
                   "ERROR  (kz_XData_initFldList  { handle | entname }  (fldlst)  apname )");
    const int64_t* entity = call.entity();
    kz_FldList* fields = call.fields();
    const kz_Char* app = call.text();
    if (call.ready()) call.answerStatus(kz_XData_initFldList(entity, fields, app));
    return 1;
}

/// (kz_XData_modFldList { handle | entname } fldlst apname) -> T | nil
/// Each field of the list replaces the field of that name or is appended; other fields stay.
KZ_TWIN kz_XData_modFldList_li(void) {
    XDataCall call(KZ_T("kz_XData_modFldList_li"),
                   "ERROR  (kz_XData_modFldList  { handle | entname }  (fldlst)  apname)");
    const int64_t* entity = call.entity();
    kz_FldList* fields = call.fields();
    const kz_Char* app = call.text();
    if (call.ready()) call.answerStatus(kz_XData_modFldList(entity, fields, app));
    return 1;
}

/// (kz_XData_setFldList { handle | entname } fldlst apname [clearExisting]) -> T | nil
/// As kz_XData_modFldList; as kz_XData_initFldList when clearExisting is not 0.
KZ_TWIN kz_XData_setFldList_li(void) {
    XDataCall call(KZ_T("kz_XData_setFldList_li"),
                   "ERROR  (kz_XData_setFldList  { handle | entname }  (fldlst)  apname  "
                   "[clearExisting] )");
    const int64_t* entity = call.entity();
    kz_FldList* fields = call.fields();
    const kz_Char* app = call.text();
    const int clear = call.flag();
    if (call.ready()) call.answerStatus(kz_XData_setFldList(entity, fields, app, clear));
    return 1;
}

/// (kz_XData_deleteFldList { handle | entname } apname) -> T | nil
/// Removes the application's data from the entity; nil when there is none.
KZ_TWIN kz_XData_deleteFldList_li(void) {
    XDataCall call(KZ_T("kz_XData_deleteFldList_li"),
                   "ERROR  (kz_XData_deleteFldList  { handle | entname }  apname )");
    const int64_t* entity = call.entity();
    const kz_Char* app = call.text();
    if (call.ready()) call.answerStatus(kz_XData_deleteFldList(entity, app));
    return 1;
}

/// (kz_XData_getFldList { handle | entname } [fldlst] apname) -> fldlst | nil
/// All fields of the application, or those that fldlst names, as far as the entity has them.
KZ_TWIN kz_XData_getFldList_li(void) {
    XDataCall call(KZ_T("kz_XData_getFldList_li"),
                   "ERROR  (kz_XData_getFldList  { handle | entname }  (fldlst)  apname )");
    return readFldList(call, kz_XData_getFldList);
}

/// (kz_XData_getFldListAlways { handle | entname } [fldlst] apname) -> fldlst | nil
/// As kz_XData_getFldList, also for an erased entity, which stays erased.
KZ_TWIN kz_XData_getFldListAlways_li(void) {
    XDataCall call(KZ_T("kz_XData_getFldListAlways_li"),
                   "ERROR  (kz_XData_getFldListAlways  { handle | entname }  (fldlst)  apname )");
    return readFldList(call, kz_XData_getFldListAlways);
}

/// (kz_XData_getFld { handle | entname } [fldname] apname) -> value | (value ...) | nil
/// The field's value, or the list of its values when there are several. Without a name the first
/// field of the application is taken.
KZ_TWIN kz_XData_getFld_li(void) {
    XDataCall call(KZ_T("kz_XData_getFld_li"),
                   "ERROR  (kz_XData_getFld  { handle | entname }  [fldname]  apname )");
    const int64_t* entity = call.entity();
    const kz_Char* field = call.textOrEmpty();
    const kz_Char* app = call.text();
    if (call.ready()) call.answerValues(kz_XData_getFld(entity, field, app));
    return 1;
}

/// (kz_XData_getHandle { handle | entname } [fldname] apname) -> value | (value ...) | nil
/// The same as kz_XData_getFld.
KZ_TWIN kz_XData_getHandle_li(void) {
    return kz_XData_getFld_li();
}

/// (kz_XData_setFld { handle | entname } value fldname apname [clearExisting] [unique]) -> T | nil
/// Adds a number, text or point to the field, which is made when it is missing. clearExisting not 0
/// lets it replace the field's values, unique not 0 leaves out a value that is there already.
KZ_TWIN kz_XData_setFld_li(void) {
    XDataCall call(KZ_T("kz_XData_setFld_li"),
                   "ERROR  (kz_XData_setFld  { handle | entname }  value  fldname  apname  "
                   "[clearExisting] [uniqueData] )");
    const int64_t* entity = call.entity();
    const kz::LispValue value = call.value();
    const kz_Char* field = call.text();
    const kz_Char* app = call.text();
    const int clear = call.flag();
    const int unique = call.flag();
    if (call.ready()) {
        call.answerStatus(
            kz_XData_setFld(entity, value.type, value.data, field, app, clear, unique));
    }
    return 1;
}

/// (kz_XData_deleteFld { handle | entname } [fldname] apname) -> T | nil
/// Removes the field with all its values; T also when there is no such field.
KZ_TWIN kz_XData_deleteFld_li(void) {
    XDataCall call(KZ_T("kz_XData_deleteFld_li"),
                   "ERROR  (kz_XData_deleteFld  { handle | entname }  fldname  apname )");
    const int64_t* entity = call.entity();
    const kz_Char* field = call.textOrEmpty();
    const kz_Char* app = call.text();
    if (call.ready()) call.answerStatus(kz_XData_deleteFld(entity, field, app));
    return 1;
}

/// (kz_XData_deleteFldValue { handle | entname } value fldname apname [clearAll]) -> T | nil
/// Removes the first equal value of the field, or all with clearAll not 0; nil when there is none.
KZ_TWIN kz_XData_deleteFldValue_li(void) {
    XDataCall call(KZ_T("kz_XData_deleteFldValue_li"),
                   "ERROR  (kz_XData_deleteFldValue  { handle | entname }  value  fldname  apname  "
                   "[clearAll] )");
    const int64_t* entity = call.entity();
    const kz::LispValue value = call.value();
    const kz_Char* field = call.text();
    const kz_Char* app = call.text();
    const int all = call.flag();
    if (call.ready()) {
        call.answerStatus(kz_XData_deleteFldValue(entity, value.type, value.data, field, app, all));
    }
    return 1;
}

/// (kz_XData_setHandle { handle | entname } handle fldname apname [clearExisting]) -> T | nil
/// Adds a reference to the object with this handle to the field, once.
KZ_TWIN kz_XData_setHandle_li(void) {
    XDataCall call(KZ_T("kz_XData_setHandle_li"),
                   "ERROR  (kz_XData_setHandle  { handle | entname }  handle  fldname  apname  "
                   "[clearExisting] )");
    const int64_t* entity = call.entity();
    const kz::LispValue handle = call.value();
    const kz_Char* field = call.text();
    const kz_Char* app = call.text();
    const int clear = call.flag();
    if (call.ready() &&
        call.requireHandle(
            handle, "ERROR  kz_XData_setHandleFld requires a handle for the second paramater.")) {
        call.answerStatus(kz_XData_setHandle(entity, handleText(handle), field, app, clear));
    }
    return 1;
}

/// (kz_XData_deleteHandle { handle | entname } handle fldname apname) -> T | nil
/// Removes the reference to the object with this handle from the field; nil when there is none.
KZ_TWIN kz_XData_deleteHandle_li(void) {
    XDataCall call(
        KZ_T("kz_XData_deleteHandle_li"),
        "ERROR  (kz_XData_deleteHandle  { handle | entname }  handle  fldname  apname )");
    const int64_t* entity = call.entity();
    const kz::LispValue handle = call.value();
    const kz_Char* field = call.text();
    const kz_Char* app = call.text();
    if (call.ready() &&
        call.requireHandle(
            handle,
            "ERROR  kz_XData_deleteHandleFld requires a handle for the second paramater.")) {
        call.answerStatus(kz_XData_deleteHandle(entity, handleText(handle), field, app));
    }
    return 1;
}

/// (kz_Xdata_setFromEntList apname group ...) -> T | nil
/// Writes the application's extended data in the groups of an entity list back to the entity that
/// the list names.
KZ_TWIN kz_Xdata_setFromEntList_li(void) {
    XDataCall call(KZ_T("kz_Xdata_setFromEntList_li"), nullptr);
    const kz_Char* app = call.longText();
    if (call.readAll()) call.answerStatus(kz_Xdata_setFromEntList(app, call.rest()));
    return 1;
}
