/// What stands around a drawing: its view for the platform's callers, the drawings attached to it,
/// and who wants to hear of its objects. Made when first asked for, so that a drawing that nobody
/// attaches to or observes pays one comparison.
#ifndef HOST_DB_LINKS_H
#define HOST_DB_LINKS_H

#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "db/database.h"
#include "host/drawings.h"

namespace host {

struct DatabaseLinks {
    AcDbDatabase* facade = nullptr;            ///< `own` or the one that owns the drawing
    std::unique_ptr<AcDbDatabase> own_facade;  ///< of a drawing that is the host's
    Database* host_drawing = nullptr;          ///< the drawing that this one is attached to
    Slot host_block = kNoSlot;                 ///< its block there
    /// Drawings that were read for the blocks of this one.
    std::unordered_map<Slot, std::unique_ptr<Database>> attached;
    std::unordered_set<Slot> unloaded;  ///< blocks whose drawings are not to be read
    std::unordered_map<Slot, std::vector<ObjectObserver*>> observers;
};

/// Tells whoever wants to hear it that a drawing is about to close.
void announceClosing(Database& database);

}  // namespace host

#endif
