/// The user's choice, and of objects in blocks with what takes part in it.
#include "ACAD/cad_rx/nested_selection.h"

#include <string_view>

#include "chosen_set.h"
#include "guards.h"
#include "kz/kz_cad_env.h"

namespace {

/// Room for the version's text [characters].
constexpr size_t kVersionSize = 256;
/// A version of the platform that lights up objects in blocks by itself.
constexpr std::u16string_view kLightingVersion = u"17.2";

bool lightsByItself() {
    kz_Char version[kVersionSize] = {};
    return kz_CAD_getVersion(version) == 1 &&
           std::u16string_view(version).find(kLightingVersion) != std::u16string_view::npos;
}

/// The path to an object from the list that tells how it was chosen, which begins with the object
/// and goes on outward.
AcDbObjectIdArray pathOf(const resbuf* chain) {
    AcDbObjectIdArray outward(0, 8);
    for (const resbuf* node = chain; node != nullptr; node = node->rbnext) {
        AcDbObjectId id;
        if (node->restype != RTENAME) continue;
        if (acdbGetObjectId(id, node->resval.rlname) == Acad::eOk) outward.append(id);
    }
    AcDbObjectIdArray inward(0, 8);
    for (int i = outward.length(); i-- > 0;)
        inward.append(outward[i]);
    return inward;
}

/// Switches a document to objects in blocks, and back at the end.
class NestedChoice {
  public:
    explicit NestedChoice(AcEdSSGetFilter& filter) : filter_(filter) {
        document_ = acDocManagerPtr()->curDocument();
        if (document_ == nullptr) return;
        addSSgetFilterInputContextReactor(document_, &filter_);
        setAllowDuplicateSelection(document_, true);
        document_->inputPointManager()->turnOnSubentityWindowSelection();
    }
    ~NestedChoice() {
        if (document_ == nullptr) return;
        setAllowDuplicateSelection(document_, false);
        document_->inputPointManager()->turnOffSubentityWindowSelection();
        removeSSgetFilterInputContextReactor(document_, &filter_);
    }
    NestedChoice(const NestedChoice&) = delete;
    NestedChoice& operator=(const NestedChoice&) = delete;

  private:
    AcEdSSGetFilter& filter_;
    AcApDocument* document_ = nullptr;
};

}  // namespace

MySSGetFilter::~MySSGetFilter() = default;

void MySSGetFilter::ssgetAddFilter(int, AcEdSelectionSetService& service, const AcDbObjectIdArray&,
                                   const AcDbObjectIdArray& chosen) {
    if (lightsByItself()) return;
    for (int i = 0; i < chosen.length(); ++i) {
        resbuf* chain = nullptr;
        if (service.ssNameX(true, i, chain) != Acad::eOk || chain == nullptr) continue;
        const kz::OwnedChain owned(chain);
        service.highlight(i, AcDbFullSubentPath(pathOf(chain), AcDbSubentId()));
    }
}

kz_CADSelSet* kz_CADSelSet_get(const kz_Char* prompt, int nested) {
    if (prompt != nullptr) acedPrompt(prompt);
    MySSGetFilter filter;
    if (nested != 1) return kz::choose(nullptr, nullptr, nullptr, nullptr);
    const NestedChoice switched(filter);
    return kz::choose(KZ_T("_:n"), nullptr, nullptr, nullptr);
}
