/// Attaching and detaching drawings. An attached drawing is a block whose BLOCK carries the flag 4
/// (8 for an overlay) and the path of a file; its layers and line types stand in the tables as
/// NAME|LAYER as long as it is attached.
#ifndef HOST_DB_ATTACH_H
#define HOST_DB_ATTACH_H

#include <span>
#include <string>
#include <string_view>

#include "db/database.h"
#include "host/drawings.h"

namespace host {

/// Makes the block of an attached drawing, reads the file, and enters its layers and line types.
/// @return its record; kNoSlot with one sentence in `refusal` for a name that can't be one or is in
/// use, a file that is missing or can't be read, and one that leads back to the drawing
Slot attachDrawing(Database& drawing, std::u16string_view name, std::u16string_view path,
                   bool overlay, std::u16string& refusal);
/// Erases the blocks, all references to them, and their layers and line types.
void detachDrawings(Database& drawing, std::span<const Slot> blocks);
/// Forgets the file's contents until a reload, also when the drawing is saved and opened again.
/// References stay, and show nothing.
void unloadDrawing(Database& drawing, Slot block);
/// Reads the file anew, also after an unload or a failure. @return false with a sentence in
/// `refusal`; what was there before stays
bool reloadDrawing(Database& drawing, Slot block, std::u16string& refusal);
/// Lets the block stand for another file and reads it. @return as reloadDrawing
bool setAttachmentPath(Database& drawing, Slot block, std::u16string_view path,
                       std::u16string& refusal);

/// What a block stands for.
enum class AttachmentState {
    None,      ///< a block of the drawing itself, or an erased one
    Loaded,    ///< the file was read
    Unloaded,  ///< on demand of the user
    Hidden,    ///< an overlay in a drawing that is itself attached
    Missing,   ///< there is no such file
    Circular,  ///< the file is one that the drawing was itself reached from
    Broken     ///< the file can't be read
};
/// Reads the file where it is first needed. A failure is told once, and stays until a reload or
/// another path.
AttachmentState attachmentState(Database& drawing, Slot block);
/// The drawing that a block stands for, read on the first call; NULL where its state is not Loaded.
Database* attachedDatabase(Database& drawing, Slot block);
/// Tells of attachments whose files are missing or lead back; nothing is read.
void tellMissingAttachments(Database& drawing);

/// What the block's BLOCK says of an attachment. False for a block of the drawing itself, and for
/// an erased one.
bool describeAttachment(Database& drawing, Slot block, Attachment& out);
/// The file of an attachment, from its path as a drawing has it: in the drawing's folder, in those
/// of the drawings that it is attached to, or in a support folder, or else the file of that name
/// there; ".dxf" may be left out. Empty when there is none.
std::string attachmentFile(Database& drawing, std::u16string_view path);
/// True when the file is that of the drawing or of one that it is attached to, at any depth.
bool leadsBack(Database* drawing, const std::string& file);

}  // namespace host

#endif
