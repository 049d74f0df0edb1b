/// Symbol tables: layers and line types (blocks are in blocks.h) by their names, which are 1 to 255
/// characters and compared without regard to case.
///
/// A table holds records of one class. Reading wants a table or record open for read or write,
/// changing for write. A record that a caller makes is his until a table takes it over.
#ifndef ACAD_TABLES_H
#define ACAD_TABLES_H

#include <memory>
#include <vector>

#include "acad/db.h"

namespace host {
class Tag;
struct SymbolContent;
}  // namespace host

/// An entry of a symbol table.
class ACAD_API AcDbSymbolTableRecord : public AcDbObject {
  public:
    ~AcDbSymbolTableRecord() override;

    /// The name, a heap copy that the caller frees. @return eNotOpenForRead, eOutOfMemory; `name`
    /// is then NULL
    Acad::ErrorStatus getName(ACHAR*& name) const;
    /// Names a record that is in no table yet; one that is in a table can change the case of its
    /// name. @return eInvalidInput for what can't be a name, eNotApplicable, eNotOpenForWrite
    Acad::ErrorStatus setName(const ACHAR* name);
    /// True for a record that came with an attached drawing.
    bool isDependent() const;

  protected:
    friend class host::Database;
    friend class AcDbSymbolTable;
    AcDbSymbolTableRecord();

    /// The groups of the record; NULL when it is in a drawing and not open.
    const std::vector<host::Tag>* groups() const;
    /// Puts a group in the place of the one with its code, or adds it. @return eNotOpenForWrite
    Acad::ErrorStatus change(host::Tag group);
    int64_t integer(int code, int64_t otherwise) const;

    Acad::ErrorStatus describe(host::NewObject& out) override;

  private:
    /// Name of the table that holds such records, e.g. "LAYER".
    virtual const char* tableName() const;
    /// Makes what a new record needs beside itself, once it is in its table.
    virtual void entered();

    std::unique_ptr<host::SymbolContent> content_;  ///< of one that is in no drawing
};

/// Walks over the records of a table in their order; the table may be closed meanwhile. Callers
/// delete it.
class ACAD_API AcDbSymbolTableIterator {
  public:
    static void* operator new(size_t size) noexcept;
    static void operator delete(void* block) noexcept;

    /// To the first record, or to the last one.
    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    /// One step, forward or back.
    void step(bool forward = true, bool skipDeleted = true);
    /// Id of the record. @return eIteratorDone at the end
    Acad::ErrorStatus getRecordId(AcDbObjectId& id) const;
    /// Opens the record. @return eIteratorDone at the end, else as acdbOpenObject
    template <class T>
    Acad::ErrorStatus getRecord(T*& record, AcDb::OpenMode mode = AcDb::kForRead,
                                bool openErased = false) const {
        record = nullptr;
        AcDbObjectId id;
        const Acad::ErrorStatus status = getRecordId(id);
        return status == Acad::eOk ? acdbOpenObject(record, id, mode, openErased) : status;
    }

  private:
    friend class AcDbSymbolTable;
    explicit AcDbSymbolTableIterator(AcDbObjectId table) : table_(table) {}
    /// Passes over erased records in the direction of the walk.
    void settle(bool forward, bool skip_deleted);

    AcDbObjectId table_;
    int64_t index_ = 0;
};

/// A symbol table.
class ACAD_API AcDbSymbolTable : public AcDbObject {
  public:
    /// Id of a record. @return eKeyNotFound; `id` is then as it was
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbObjectId& id) const;
    /// Opens a record. @return eKeyNotFound, else as acdbOpenObject; `record` is then NULL
    template <class T>
    Acad::ErrorStatus getAt(const ACHAR* name, T*& record,
                            AcDb::OpenMode mode = AcDb::kForRead) const {
        record = nullptr;
        AcDbObjectId id;
        const Acad::ErrorStatus status = getAt(name, id);
        return status == Acad::eOk ? acdbOpenObject(record, id, mode) : status;
    }
    /// True for a name, or a record, that is in the table and not erased.
    bool has(const ACHAR* name) const;
    bool has(AcDbObjectId id) const;
    /// Takes a new record over as the last one; it is open for write afterwards.
    /// @return eNotOpenForWrite, eNullObjectPointer, eAlreadyInDb, eNotThatKindOfClass for a record
    /// of another table, eInvalidInput for one without a valid name, eDuplicateKey for a name in
    /// use; the record then stays the caller's
    Acad::ErrorStatus add(AcDbSymbolTableRecord* record);
    Acad::ErrorStatus add(AcDbObjectId& id, AcDbSymbolTableRecord* record);
    /// A new iterator on the first record, or on the last one. @return eNotOpenForRead,
    /// eOutOfMemory; `iterator` is then NULL
    Acad::ErrorStatus newIterator(AcDbSymbolTableIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;

  protected:
    friend class host::Database;
    AcDbSymbolTable() = default;
    Acad::ErrorStatus checkReadable() const;
    /// Name of the table, e.g. "LAYER".
    std::string tableName() const;
};

/// A layer.
class ACAD_API AcDbLayerTableRecord : public AcDbSymbolTableRecord {
  public:
    /// A new one, white, on, thawed and unlocked, of the line type Continuous.
    AcDbLayerTableRecord();

    bool isFrozen() const;
    bool isLocked() const;
    bool isOff() const;
    /// @return eNotOpenForWrite, eInvalidInput for freezing the current layer
    Acad::ErrorStatus setIsFrozen(bool frozen);
    Acad::ErrorStatus setIsLocked(bool locked);
    Acad::ErrorStatus setIsOff(bool off);
    AcCmColor color() const;
    /// @return eNotOpenForWrite, eInvalidInput for a colour that is not one of 1 to 255
    Acad::ErrorStatus setColor(const AcCmColor& color);
    /// Null when there is none.
    AcDbObjectId linetypeObjectId() const;
    /// @return eNotOpenForWrite, eNullObjectId, eNotThatKindOfClass for what is no line type (of
    /// this drawing)
    Acad::ErrorStatus setLinetypeObjectId(AcDbObjectId linetype);

  private:
    Acad::ErrorStatus describe(host::NewObject& out) override;
    const char* tableName() const override;
    Acad::ErrorStatus setFlag(int64_t flag, bool on);
    AcDbObjectId linetype_;  ///< of one that is in no drawing
};

class ACAD_API AcDbLayerTable : public AcDbSymbolTable {
  private:
    friend class host::Database;
    AcDbLayerTable() = default;
};

/// A line type.
class ACAD_API AcDbLinetypeTableRecord : public AcDbSymbolTableRecord {
  public:
    /// A new one, solid.
    AcDbLinetypeTableRecord();

  private:
    const char* tableName() const override;
};

class ACAD_API AcDbLinetypeTable : public AcDbSymbolTable {
  private:
    friend class host::Database;
    AcDbLinetypeTable() = default;
};

#endif
