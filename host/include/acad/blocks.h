/// The blocks of a drawing: the table of their records, what is in them, and where they stand.
/// Model space and the sheets of paper are blocks, too. Some blocks stand for a drawing that is
/// attached.
#ifndef ACAD_BLOCKS_H
#define ACAD_BLOCKS_H

#include <vector>

#include "acad/entities.h"
#include "acad/tables.h"

class AcDbBlockTableRecordIterator;
class AcDbBlockReferenceIdIterator;

/// Names of the blocks that every drawing has.
constexpr const ACHAR* ACDB_MODEL_SPACE = u"*Model_Space";
constexpr const ACHAR* ACDB_PAPER_SPACE = u"*Paper_Space";

/// The table of blocks.
class ACAD_API AcDbBlockTable : public AcDbSymbolTable {
  private:
    friend class host::Database;
    AcDbBlockTable() = default;
};

/// The record of a block, which owns the entities of the block.
class ACAD_API AcDbBlockTableRecord : public AcDbSymbolTableRecord {
  public:
    /// A new, empty block without a name.
    AcDbBlockTableRecord();
    ~AcDbBlockTableRecord() override;

    /// Takes a new entity over as the last one of the block; it is open for write afterwards.
    /// @return eNotOpenForWrite, eNullObjectPointer, eAlreadyInDb, eNotThatKindOfClass,
    /// eKeyNotFound for a line type or a block that the drawing doesn't have, eSelfReference for a
    /// reference to the block itself or to one that holds it; the entity then stays the caller's
    Acad::ErrorStatus appendAcDbEntity(AcDbEntity* entity);
    Acad::ErrorStatus appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity);
    /// An iterator over the entities, which the caller deletes. @return eOutOfMemory,
    /// eNotOpenForRead; `iterator` is then NULL
    Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;

    /// True for a block that stands for another drawing: attached, or laid over. It may be both.
    bool isFromExternalReference() const;
    bool isFromOverlayReference() const;
    /// The drawing that the block stands for, lent; it is read when it is first asked for. NULL for
    /// a block of the drawing itself and for a file that is missing or can't be read. An attachment
    /// that isn't resolved has no drawing to give, whatever the argument says.
    AcDbDatabase* xrefDatabase(bool includeUnresolved = false) const;
    /// The file as the drawing has it, a heap copy that the caller frees; empty for a block of the
    /// drawing itself. @return eNotOpenForRead, eOutOfMemory; `path` is then NULL
    Acad::ErrorStatus pathName(ACHAR*& path) const;
    /// @return eNotOpenForWrite, eInvalidInput for NULL, eNotApplicable for a block of the drawing
    /// itself
    Acad::ErrorStatus setPathName(const ACHAR* path);
    /// An iterator over all living references to the block in its drawing, which the caller
    /// deletes. @return eOutOfMemory, eNotOpenForRead; `iterator` is then NULL
    Acad::ErrorStatus newBlockReferenceIdIterator(AcDbBlockReferenceIdIterator*& iterator) const;

  private:
    Acad::ErrorStatus describe(host::NewObject& out) override;
    const char* tableName() const override;
    void entered() override;
    /// What the block's BLOCK says of the block; NULL for a block without one.
    const std::vector<host::Tag>* definition() const;
    int64_t blockFlags() const;
};

/// Walks over the main entities of a block, which may be closed and get more of them meanwhile. At
/// its end once the drawing is closed.
class ACAD_API AcDbBlockTableRecordIterator {
  public:
    AcDbBlockTableRecordIterator(const AcDbBlockTableRecordIterator&) = delete;
    AcDbBlockTableRecordIterator& operator=(const AcDbBlockTableRecordIterator&) = delete;
    static void* operator new(size_t size) noexcept;
    static void operator delete(void* block) noexcept;

    /// To the first entity, or to the last one for a walk backwards.
    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    /// @return eIteratorDone at the end; `id` is then as it was
    Acad::ErrorStatus getEntityId(AcDbObjectId& id) const;
    /// @return eIteratorDone at the end, else as acdbOpenObject; `entity` is then NULL
    Acad::ErrorStatus getEntity(AcDbEntity*& entity, AcDb::OpenMode mode = AcDb::kForRead,
                                bool openErased = false) const;

  private:
    friend class AcDbBlockTableRecord;
    explicit AcDbBlockTableRecordIterator(AcDbObjectId record) : record_(record) {}
    /// Goes on from `index_` until it stands on a main entity.
    void settle(bool forward, bool skipDeleted);
    AcDbObjectId current() const;

    AcDbObjectId record_;
    int64_t index_ = 0;
};

/// Walks over references to a block, as they were when the walk began.
class ACAD_API AcDbBlockReferenceIdIterator {
  public:
    AcDbBlockReferenceIdIterator(const AcDbBlockReferenceIdIterator&) = delete;
    AcDbBlockReferenceIdIterator& operator=(const AcDbBlockReferenceIdIterator&) = delete;
    static void* operator new(size_t size) noexcept;
    static void operator delete(void* block) noexcept;

    void start() { index_ = 0; }
    bool done() const { return index_ >= ids_.size(); }
    void step() { ++index_; }
    /// @return eIteratorDone at the end; `id` is then as it was
    Acad::ErrorStatus getBlockReferenceId(AcDbObjectId& id) const;

  private:
    friend class AcDbBlockTableRecord;
    AcDbBlockReferenceIdIterator() = default;

    std::vector<AcDbObjectId> ids_;
    size_t index_ = 0;
};

/// The file that an attached drawing was read from, a heap copy that the caller frees. @return
/// eFileNotFound for one without a file, eOutOfMemory; `path` is then NULL
ACAD_API Acad::ErrorStatus acdbOriginalXrefFullPathFor(const AcDbDatabase* drawing, ACHAR*& path);

#endif
