/// What takes part in choosing, for the one document that there is.
#ifndef HOST_EDIT_DOCUMENTS_H
#define HOST_EDIT_DOCUMENTS_H

#include <vector>

#include "acad/documents.h"
#include "edit/selection.h"

namespace host {

/// True while an entity may be selected more than once.
bool duplicatesAllowed();
/// True while windows choose objects in blocks one by one.
bool windowsChooseNested();

/// Shows a choice to the filters, which may change it. @param selection  what was selected before
void filterChoice(Selection& selection, Selection& choice);

}  // namespace host

#endif
