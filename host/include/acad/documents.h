/// Documents, and what takes part in the choosing of objects: the switches of a document, filters
/// that see each choice, and the paths to objects in blocks.
#ifndef ACAD_DOCUMENTS_H
#define ACAD_DOCUMENTS_H

#include <algorithm>
#include <vector>

#include "acad/db.h"

/// A list of object ids. Indexes count from 0 and must be below length().
class AcDbObjectIdArray {
  public:
    /// @param initial  room at the start
    /// @param grow     no more than a hint
    explicit AcDbObjectIdArray(int initial = 0, int grow = 8) {
        (void)grow;
        ids_.reserve(static_cast<size_t>(std::max(initial, 0)));
    }
    int append(AcDbObjectId id) {
        ids_.push_back(id);
        return length() - 1;
    }
    int length() const { return static_cast<int>(ids_.size()); }
    bool isEmpty() const { return ids_.empty(); }
    AcDbObjectId operator[](int index) const { return ids_[static_cast<size_t>(index)]; }
    AcDbObjectId& operator[](int index) { return ids_[static_cast<size_t>(index)]; }

  private:
    std::vector<AcDbObjectId> ids_;
};

namespace AcDb {
enum SubentType { kNullSubentType = 0, kFaceSubentType, kEdgeSubentType, kVertexSubentType };
}

/// A part of an object. One that is made without arguments stands for the object itself.
class AcDbSubentId {
  public:
    AcDbSubentId() = default;
    AcDbSubentId(AcDb::SubentType type, int64_t index) : type_(type), index_(index) {}
    AcDb::SubentType type() const { return type_; }
    int64_t index() const { return index_; }

  private:
    AcDb::SubentType type_ = AcDb::kNullSubentType;
    int64_t index_ = 0;
};

/// The way to an object, from the outermost insertion that holds it down to itself.
class AcDbFullSubentPath {
  public:
    AcDbFullSubentPath() = default;
    AcDbFullSubentPath(AcDbObjectIdArray objects, const AcDbSubentId& part)
        : objects_(std::move(objects)), part_(part) {}
    const AcDbObjectIdArray& objectIds() const { return objects_; }
    const AcDbSubentId& subentId() const { return part_; }

  private:
    AcDbObjectIdArray objects_;
    AcDbSubentId part_;
};

/// What a filter can ask and change while a choice is made. Indexes are those of the arrays that
/// the filter gets. Lives for one call.
class ACAD_API AcEdSelectionSetService {
  public:
    /// How an entry was chosen, as acedSSNameX tells it; NULL in `chain` on failure, otherwise the
    /// caller releases. @param subSelection  an entry of the present choice, not of the selection
    virtual Acad::ErrorStatus ssNameX(bool subSelection, int index, resbuf*& chain) = 0;
    /// Adds an entity to the present choice.
    virtual Acad::ErrorStatus add(const AcDbObjectId& entity, bool highlighted) = 0;
    /// Takes an entry out of the present choice.
    virtual Acad::ErrorStatus remove(int index) = 0;
    /// Lights up the object at the end of a path. @return eInvalidIndex for no such entry
    virtual Acad::ErrorStatus highlight(int index, const AcDbFullSubentPath& path) = 0;

  protected:
    virtual ~AcEdSelectionSetService() = default;
};

/// Hears of what the user does. Here nothing is told but choices, see AcEdSSGetFilter.
class ACAD_API AcEdInputContextReactor {
  public:
    virtual ~AcEdInputContextReactor() = default;
};

/// Sees each choice that the user makes at a prompt of acedSSGet.
class ACAD_API AcEdSSGetFilter : public AcEdInputContextReactor {
  public:
    /// @param flags      0
    /// @param selection  what was selected before
    /// @param chosen     what this choice adds to it
    virtual void ssgetAddFilter(int flags, AcEdSelectionSetService& service,
                                const AcDbObjectIdArray& selection,
                                const AcDbObjectIdArray& chosen) {
        (void)flags;
        (void)service;
        (void)selection;
        (void)chosen;
    }
};

/// How points are chosen in a document.
class ACAD_API AcEdInputPointManager {
  public:
    /// Lets windows choose objects in blocks one by one, where a prompt asks for such. Calls count.
    Acad::ErrorStatus turnOnSubentityWindowSelection();
    /// @return eInvalidInput when it was not turned on
    Acad::ErrorStatus turnOffSubentityWindowSelection();
};

/// The drawing in the editor, as something that is worked in.
class ACAD_API AcApDocument {
  public:
    AcEdInputPointManager* inputPointManager() const;
};

class ACAD_API AcApDocManager {
  public:
    /// The document of the drawing in the editor; NULL when there is none.
    AcApDocument* curDocument() const;
};

ACAD_API AcApDocManager* acDocManagerPtr();

/// Lets a filter see the choices in a document, after those that do already. It must live until it
/// is removed. @return false for NULL, and for one that is there already
ACAD_API bool addSSgetFilterInputContextReactor(AcApDocument* document, AcEdSSGetFilter* filter);
/// @return false for one that is not there
ACAD_API bool removeSSgetFilterInputContextReactor(AcApDocument* document, AcEdSSGetFilter* filter);
/// Whether an entity may be selected more than once, where a prompt asks for objects in blocks.
/// @return false for NULL
ACAD_API bool setAllowDuplicateSelection(AcApDocument* document, bool allowed);

#endif
