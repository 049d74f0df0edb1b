/// What stands around a drawing: its view for the platform's callers, the drawings attached to it,
/// and who wants to hear of its objects. Made when first asked for, so that a drawing that nobody
/// attaches to or observes pays one comparison.
#ifndef HOST_DB_LINKS_H
#define HOST_DB_LINKS_H

#include <memory>
#include <unordered_map>
#include <vector>

#include "db/attach.h"
#include "db/database.h"
#include "host/drawings.h"

namespace host {

/// What came of reading the file of an attachment. A failure is kept like a drawing, so that a file
/// that can't be had is not looked for again and again.
struct AttachedFile {
    std::u16string path;  ///< of the attachment when it was read; another one is read anew
    AttachmentState state = AttachmentState::Missing;
    std::unique_ptr<Database> drawing;  ///< when it is loaded
};

struct DatabaseLinks {
    AcDbDatabase* facade = nullptr;                   ///< `own` or the one that owns the drawing
    std::unique_ptr<AcDbDatabase> own_facade;         ///< of a drawing that is the host's
    Database* host_drawing = nullptr;                 ///< the drawing that this one is attached to
    Slot host_block = kNoSlot;                        ///< its block there
    std::unordered_map<Slot, AttachedFile> attached;  ///< by the block
    std::unordered_map<Slot, std::vector<ObjectObserver*>> observers;
};

/// Tells whoever wants to hear it that a drawing is about to close.
void announceClosing(Database& database);

}  // namespace host

#endif
