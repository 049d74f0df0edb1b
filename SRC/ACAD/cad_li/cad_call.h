/// The frame of the twins on objects and drawings. A wrong or missing argument adds the error
/// "Invalid or missing parameter(s)" to the error list and is traced; nothing is printed.
#ifndef SRC_ACAD_CAD_LI_CAD_CALL_H
#define SRC_ACAD_CAD_LI_CAD_CALL_H

#include "kz/kz_objid.h"
#include "kz/kz_selset.h"
#include "twin.h"

namespace kz {

class CadCall : public TwinCall {
  public:
    /// `refusal` is traced behind the twin's name when an argument was refused; NULL: then nothing
    /// is told at all.
    CadCall(const kz_Char* name, const kz_Char* refusal);
    ~CadCall();

    // --- readers, beside those of every twin -----------------------------------------------------

    /// The name that stands for a drawing.
    const int64_t* drawingName();
    /// A drawing that the service knows; any other value is refused.
    kz_CADDwgId* drawing() { return readDrawing(false); }
    /// The same; NULL for nil and for the name of two zero words, which both are the working
    /// database.
    kz_CADDwgId* drawingOrWorking() { return readDrawing(true); }
    /// An object by name or handle. A handle that nobody has gives a null id.
    kz_CADObjId* object();
    kz_CADSelSetId* selectionSet();
    const kz_Point* point();
    /// A text of any length; NULL for nil.
    const kz_Char* textOrNull();
    /// A number; 0 for nil.
    double realOrZero();
    /// 1 for any value but nil; 0 for nil, and where there is none.
    int given();
    /// A 16-bit integer; `absent` for nil.
    int integer(int absent);

    // --- answers ---------------------------------------------------------------------------------

    /// An entity name; the result stays nil for the name of two zero words.
    void answerName(const ads_name name);

  protected:
    /// For twins of another family.
    CadCall(const TwinFamily& family, const kz_Char* name, const kz_Char* refusal);

  private:
    kz_CADDwgId* readDrawing(bool nil_allowed);

    const char* source_;
    const kz_Char* refusal_;
    ads_name drawing_ = {};
    kz_CADObjId object_ = {};
    kz_CADSelSetId set_ = {};
    kz_Point point_ = {};
    OwnedText text_;
};

}  // namespace kz

#endif
