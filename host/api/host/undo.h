/// Undo and redo in the drawing of the editor, for programs around the host.
#ifndef HOST_UNDO_H
#define HOST_UNDO_H

#include <string>
#include <vector>

#include "host/export.h"

namespace host {

/// A step: what changes in the drawing as long as this lives is undone at once. Inside another step
/// it ends that one's first part, and a new part begins behind it, so that each command of an
/// expression is undone by itself. Outside of steps nothing is recorded.
class HOST_API UndoStep {
  public:
    explicit UndoStep(std::string name);
    ~UndoStep();
    UndoStep(const UndoStep&) = delete;
    UndoStep& operator=(const UndoStep&) = delete;

  private:
    std::string outer_;
};

/// What was undone or redone.
struct UndoResult {
    std::vector<std::string> names;  ///< of the steps, in the order they were undone
    bool markMet = false;            ///< undoing went over a mark
    bool groupStartMet = false;      ///< undoing ended at the start of a group that is open
};

/// Undoes the last `count` steps. A group counts as one; while one is open its steps count, and
/// undoing ends at its start. Steps without a change don't count.
HOST_API UndoResult undo(size_t count);
HOST_API UndoResult undoAll();
/// Undoes up to the last mark and takes it away; everything when there is none.
HOST_API UndoResult undoToMark();
HOST_API bool hasUndoMark();
HOST_API void setUndoMark();
/// Takes back the last undo. @return nothing when there was none, or something changed since
HOST_API UndoResult redo();
/// Starts a group; one that is open ends.
HOST_API void beginUndoGroup();
/// @return false when no group is open
HOST_API bool endUndoGroup();

enum class UndoMode {
    None,  ///< nothing is kept, and what was kept is dropped
    One,   ///< only the last step
    All
};
HOST_API void setUndoMode(UndoMode mode);
HOST_API UndoMode undoMode();
/// Value of UNDOCTL: 1 undo is on, 2 only one step is kept, 8 a group is open.
HOST_API int undoControlBits();
/// Steps that can be undone.
HOST_API size_t undoStepCount();

}  // namespace host

#endif
