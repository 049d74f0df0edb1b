/// Lisp twins of the store of drawing data. They print nothing; whatever fails gives nil.
///
/// In the forms, `dictName` and `xGroup` are the keys of an application's dictionary and of a
/// record in it, and `drawing` is a drawing id as kz_CADDwgId_create gives it.
#include "kz/kz_dwgdata.h"
#include "trace.h"
#include "twin.h"

namespace {

constexpr kz::TwinFamily kFamily = {"SRC/ACAD/dwgd_rx", kz::kTraceData};

/// The frame of this family. It gives the arguments back at its end, since texts that are passed on
/// lie in them.
class DrawingDataCall : public kz::TwinCall {
  public:
    explicit DrawingDataCall(const kz_Char* name)
        : TwinCall(kFamily, name, nullptr), arguments_(rest()) {}

    /// A text of any length.
    const kz_Char* key() { return readKey(0); }
    /// The same; NULL for nil.
    const kz_Char* keyOrNull() { return readKey(1); }

    /// A type letter and a value of that type.
    kz::LispValue typedValue() {
        const kz_Char letter = *text();
        int16_t code = 0;
        kz_FldValue raw{};
        read([&](resbuf** cursor) {
            return kz_Rb_getNextValue(&code, kValueSize, &raw, cursor, nullptr, 0);
        });
        return readAll() ? valueOf(static_cast<int16_t>(letter), kz_Rb_type(code), raw)
                         : kz::LispValue{};
    }

    /// The drawing; NULL for nil. A name that is no drawing, or none any more, is refused: it must
    /// not turn into the drawing in the editor.
    const kz_CADDwgId* drawing() {
        const kz_CADDwgId* found = nullptr;
        read([&found](resbuf** cursor) {
            ads_name name = {};
            int is_nil = 0;
            if (kz_Rb_getNextADSName(name, cursor, &is_nil, 1) != 1) return 0;
            found = kz_CADDwgId_fromADSName(name, 1);
            return found != nullptr || is_nil != 0 ? 1 : 0;
        });
        return found;
    }

    /// No value for the status 1.
    void answerVoid(int status) {
        setStatus(status);
        if (status == 1) acedRetVoid();
    }
    /// The fields as a Lisp value; nil for NULL. Destroys the list.
    void answerFields(kz_FldList* list) {
        const kz::OwnedFldList owned(list);
        setStatus(list != nullptr);
        kz_Rb_returnList(kz_FldList_toRb(list, 1, 0));
    }

  private:
    static constexpr int kMaxKeys = 3;
    static constexpr int kValueSize = 256;

    const kz_Char* readKey(int nil_allowed) {
        kz_Char* copy = nullptr;
        read([&copy, nil_allowed](resbuf** cursor) {
            return kz_Rb_getNextStringPtr(&copy, cursor, nullptr, nil_allowed);
        });
        keys_[key_count_++].reset(copy);
        return copy;
    }

    /// The value of a node of this kind, if its type is that of the letter. Lisp has one kind of
    /// integer, which fills the wider types, too.
    kz::LispValue valueOf(int16_t letter, int kind, const kz_FldValue& raw) {
        const bool whole = kind == KZ_RB_SHORT || kind == KZ_RB_LONG;
        const int32_t integer = kind == KZ_RB_SHORT ? raw.integer : raw.longInt;
        if ((letter == KZ_FLD_CHAR || letter == KZ_FLD_HANDLE) && kind == KZ_RB_STRING) {
            return {letter, raw.text};
        }
        if (letter == KZ_FLD_INT && kind == KZ_RB_SHORT) {
            value_.integer = raw.integer;
        } else if (letter == KZ_FLD_LONG && whole) {
            value_.longInt = integer;
        } else if (letter == KZ_FLD_REAL && (whole || kind == KZ_RB_REAL)) {
            value_.real = whole ? integer : raw.real;
        } else {
            return {};
        }
        return {letter, &value_};
    }

    kz::OwnedChain arguments_;
    kz::OwnedText keys_[kMaxKeys];
    int key_count_ = 0;
    kz_FldValue value_{};
};

}  // namespace

/// (kz_DwgData_getFldList dictName xGroup [drawing]) -> fldlst | nil
/// All fields of the record.
KZ_TWIN kz_DwgData_getFldList_li(void) {
    DrawingDataCall call(KZ_T("kz_DwgData_getFldList_li"));
    const kz_Char* dict_name = call.key();
    const kz_Char* group = call.key();
    const kz_CADDwgId* drawing = call.drawing();
    if (call.readAll()) {
        call.answerFields(kz_DwgData_getFldList(drawing, dict_name, group, nullptr));
    }
    return 1;
}

/// (kz_DwgData_getFld dictName xGroup [field] [drawing]) -> fldlst | nil
/// The one field of that name as a field list; all of them without a name.
KZ_TWIN kz_DwgData_getFld_li(void) {
    DrawingDataCall call(KZ_T("kz_DwgData_getFld_li"));
    const kz_Char* dict_name = call.key();
    const kz_Char* group = call.key();
    const kz_Char* field = call.keyOrNull();
    const kz_CADDwgId* drawing = call.drawing();
    if (call.readAll()) {
        call.answerFields(kz_DwgData_getFld(drawing, dict_name, group, field));
    }
    return 1;
}

/// (kz_DwgData_getXGroups dictName [drawing]) -> ((xGroup ...)) | nil
/// The keys of the application's dictionary, as the only element of a list.
KZ_TWIN kz_DwgData_getXGroups_li(void) {
    DrawingDataCall call(KZ_T("kz_DwgData_getXGroups_li"));
    const kz_Char* dict_name = call.key();
    const kz_CADDwgId* drawing = call.drawing();
    if (!call.readAll()) return 1;
    const kz::OwnedStrList keys(kz_DwgData_getXGroups(drawing, dict_name));
    call.setStatus(keys != nullptr);
    kz_Rb_returnList(kz_StrList_toRb(keys.get()));
    return 1;
}

/// (kz_DwgData_setFldList dictName xGroup fldlst [clearExisting] [drawing]) -> void | nil
/// Each field of the list replaces the field of that name or is appended; with clearExisting not 0
/// the list replaces all that the record has.
KZ_TWIN kz_DwgData_setFldList_li(void) {
    DrawingDataCall call(KZ_T("kz_DwgData_setFldList_li"));
    const kz_Char* dict_name = call.key();
    const kz_Char* group = call.key();
    kz_FldList* fields = call.fields();
    const int clear = call.flag();
    const kz_CADDwgId* drawing = call.drawing();
    if (call.readAll()) {
        call.answerVoid(kz_DwgData_setFldList(drawing, dict_name, group, fields, clear));
    }
    return 1;
}

/// (kz_DwgData_setFld dictName xGroup field type value [clear] [unique] [drawing]) -> void | nil
/// Adds a value to the field, which is made when it is missing. type is a string that begins with
/// C, H, I, L or N, and value is of that type. clear not 0 lets it replace the field's values,
/// unique not 0 leaves out a value that is there already.
KZ_TWIN kz_DwgData_setFld_li(void) {
    DrawingDataCall call(KZ_T("kz_DwgData_setFld_li"));
    const kz_Char* dict_name = call.key();
    const kz_Char* group = call.key();
    const kz_Char* field = call.key();
    const kz::LispValue value = call.typedValue();
    const int clear = call.flag();
    const int unique = call.flag();
    const kz_CADDwgId* drawing = call.drawing();
    if (call.readAll()) {
        call.answerVoid(kz_DwgData_setFld(drawing, dict_name, group, field, value.type, value.data,
                                          clear, unique));
    }
    return 1;
}

/// (kz_DwgData_deleteFldList dictName xGroup [drawing]) -> void | nil
/// Removes the record; nil also when there is none.
KZ_TWIN kz_DwgData_deleteFldList_li(void) {
    DrawingDataCall call(KZ_T("kz_DwgData_deleteFldList_li"));
    const kz_Char* dict_name = call.key();
    const kz_Char* group = call.key();
    const kz_CADDwgId* drawing = call.drawing();
    if (call.readAll()) call.answerVoid(kz_DwgData_deleteFldList(drawing, dict_name, group));
    return 1;
}

/// (kz_DwgData_deleteFld dictName xGroup field [drawing]) -> void | nil
/// Removes the field with all its values; nil also when there is no such field.
KZ_TWIN kz_DwgData_deleteFld_li(void) {
    DrawingDataCall call(KZ_T("kz_DwgData_deleteFld_li"));
    const kz_Char* dict_name = call.key();
    const kz_Char* group = call.key();
    const kz_Char* field = call.key();
    const kz_CADDwgId* drawing = call.drawing();
    if (call.readAll()) call.answerVoid(kz_DwgData_deleteFld(drawing, dict_name, group, field));
    return 1;
}

/// (kz_DwgData_deleteFldValue dictName xGroup field type value [all] [drawing]) -> void | nil
/// Removes the first equal value of the field, or all of them with all not 0; type and value as in
/// kz_DwgData_setFld. nil also when there is no such value.
KZ_TWIN kz_DwgData_deleteFldValue_li(void) {
    DrawingDataCall call(KZ_T("kz_DwgData_deleteFldValue_li"));
    const kz_Char* dict_name = call.key();
    const kz_Char* group = call.key();
    const kz_Char* field = call.key();
    const kz::LispValue value = call.typedValue();
    const int all = call.flag();
    const kz_CADDwgId* drawing = call.drawing();
    if (call.readAll()) {
        call.answerVoid(kz_DwgData_deleteFldValue(drawing, dict_name, group, field, value.type,
                                                  value.data, all));
    }
    return 1;
}
