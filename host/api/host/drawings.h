/// Several drawings at once: those attached to another, their entities, and observers of single
/// objects. Drawings are named by the platform's AcDbDatabase, which is lent throughout.
#ifndef HOST_DRAWINGS_H
#define HOST_DRAWINGS_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "acad/db.h"
#include "host/export.h"

namespace host {

// --- attached drawings --------------------------------------------------------------------------

/// A block that stands for another drawing.
struct Attachment {
    AcDbObjectId block;   ///< its block record
    std::u16string name;  ///< of the block
    std::u16string path;  ///< as the drawing has it
    bool overlay = false;
};

/// The attachments of a drawing in the order of its blocks, missing ones too; none for NULL.
HOST_API std::vector<Attachment> attachments(AcDbDatabase* drawing);
/// The drawing that an attachment stands for, read on the first call from its path or, when that
/// leads nowhere, from a file of that name beside the drawing. It lives until the attachment is
/// reloaded, unloaded, detached or gets another path, at most as long as the drawing that it is
/// attached to.
/// @return NULL for another block, one that is unloaded, a file that is missing or can't be read,
/// and a file that the drawing itself was reached from. A failure is told and stays until a reload
/// or another path
HOST_API AcDbDatabase* attachedDrawing(AcDbObjectId block);

/// How a block stands in a drawing: a point p of the block lies at origin + x p.x + y p.y + z p.z.
struct Placement {
    double origin[3] = {0, 0, 0};
    double axes[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};  ///< x, y and z axis
    double angle = 0.0;                                     ///< rotation [radians]
};
/// The first living reference to a block in the model space of its drawing.
/// @return false when there is none; `out` is then as it was
HOST_API bool firstPlacement(AcDbObjectId block, Placement& out);

// --- entities -----------------------------------------------------------------------------------

/// What can be asked of an entity without opening it.
struct EntityLook {
    AcDbObjectId id;
    std::u16string layer;
    int color = 256;  ///< index; 0 by block, 256 by layer
};
/// Visits the living main entities of model and paper space in drawing order. The visitor ends the
/// walk by giving false, and changes nothing in the drawing.
HOST_API void forEachEntity(AcDbDatabase* drawing,
                            const std::function<bool(const EntityLook&)>& visit);

// --- observers ----------------------------------------------------------------------------------

/// Hears of one object. It is called in the midst of the change: it may look, and may stop
/// observing, but changes nothing.
class HOST_API ObjectObserver {
  public:
    virtual ~ObjectObserver();
    /// Data of the object was written.
    virtual void changed(AcDbObjectId id) = 0;
    /// The object was erased, or with false brought back.
    virtual void erased(AcDbObjectId id, bool isErased) = 0;
    /// Its drawing closes; the observer is then forgotten.
    virtual void closing(AcDbObjectId id) = 0;
};

/// Lets an observer, which stays the caller's, hear of an object. @return false for an id that
/// leads nowhere and for one that it observes already
HOST_API bool observe(AcDbObjectId id, ObjectObserver* observer);
/// @return false when it did not observe that object
HOST_API bool stopObserving(AcDbObjectId id, ObjectObserver* observer);

/// Called with each drawing that is about to close and was ever asked for as an AcDbDatabase;
/// an empty function ends that.
HOST_API void onDrawingClosing(std::function<void(AcDbDatabase*)> callback);

}  // namespace host

#endif
