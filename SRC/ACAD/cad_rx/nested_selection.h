/// The filter that lights up objects in blocks as they are chosen.
#ifndef SRC_ACAD_CAD_RX_NESTED_SELECTION_H
#define SRC_ACAD_CAD_RX_NESTED_SELECTION_H

#include "kz/kz_platform.h"

/// Lives for one question to the user.
class MySSGetFilter : public AcEdSSGetFilter {
  public:
    ~MySSGetFilter() override;
    /// Highlights each object of a choice by its full path.
    void ssgetAddFilter(int flags, AcEdSelectionSetService& service,
                        const AcDbObjectIdArray& selection,
                        const AcDbObjectIdArray& chosen) override;
};

#endif
