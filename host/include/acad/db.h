/// The drawing database: ids, open modes, objects. A database object is opened, used and closed
/// again; several may read an object at once, or one may write it, and who breaks the rule gets a
/// status.
#ifndef ACAD_DB_H
#define ACAD_DB_H

#include <memory>
#include <string>

#include "acad/ads.h"
#include "acad/extents.h"
#include "acad/ge.h"

namespace host {
class Database;
struct NewObject;
struct ObjectRecord;
}  // namespace host

namespace Acad {
/// Status of the database classes; eOk is 0. Numbers that callers show or compare are fixed.
enum ErrorStatus : int {
    eOk = 0,
    eNotImplementedYet = 1,
    eNotApplicable = 2,
    eInvalidInput = 3,
    eOutOfMemory = 6,
    eNullHandle = 11,
    eUnknownHandle = 13,
    eNullObjectPointer = 15,
    eNullObjectId = 16,
    eKeyNotFound = 22,
    eDuplicateKey = 23,
    eInvalidIndex = 24,
    eAlreadyInDb = 26,
    eNoDatabase = 28,
    eInvalidKey = 44,
    eWasOpenForRead = 45,
    eWasOpenForWrite = 46,
    eWasErased = 48,
    ePermanentlyErased = 49,
    eWasNotErased = 55,
    eCannotBeErasedByCaller = 54,
    eIteratorDone = 69,
    eNotOpenForRead = 81,
    eNotOpenForWrite = 82,
    eNotThatKindOfClass = 83,
    eOnLockedLayer = 87,
    eCannotScaleNonUniformly = 90,
    eSelfReference = 92,
    eRegappIdNotFound = 100,
    eBadDxfSequence = 120,
    eXdataSizeExceeded = 121,
    eFileNotFound = 130,
    eFileAccessErr = 131,
    eAlreadyInGroup = 260
};
}  // namespace Acad

namespace AcDb {
enum OpenMode { kForRead = 0, kForWrite = 1, kForNotify = 2 };
}

class AcDbBlockTable;
class AcDbDatabase;
class AcDbDictionary;
class AcDbLayerTable;
class AcDbLinetypeTable;
class AcDbObject;

/// Id of a database object: leads to a slot of its database's object table. Valid as long as that
/// database lives; afterwards it is refused, never followed.
class AcDbObjectId {
  public:
    AcDbObjectId() = default;
    explicit AcDbObjectId(uint64_t value) : value_(value) {}
    bool isNull() const { return value_ == 0; }
    void setNull() { value_ = 0; }
    uint64_t asOldId() const { return value_; }
    bool operator==(const AcDbObjectId& other) const { return value_ == other.value_; }
    bool operator!=(const AcDbObjectId& other) const { return value_ != other.value_; }

  private:
    uint64_t value_ = 0;
};

/// A colour by its index: 0 by block, 1 to 255, 256 by layer.
class AcCmColor {
  public:
    uint16_t colorIndex() const { return index_; }
    /// @return eInvalidInput for an index above 256; the colour is then as it was
    Acad::ErrorStatus setColorIndex(uint16_t index) {
        if (index > kByLayer) return Acad::eInvalidInput;
        index_ = index;
        return Acad::eOk;
    }
    bool isByLayer() const { return index_ == kByLayer; }
    bool isByBlock() const { return index_ == 0; }
    bool operator==(const AcCmColor& other) const { return index_ == other.index_; }

  private:
    static constexpr uint16_t kByLayer = 256;
    uint16_t index_ = kByLayer;
};

/// Base of all database objects. Instances are the database's own; callers hold them between
/// acdbOpenObject and close. One that a caller makes is his until a drawing takes it over: then it
/// is open for write.
class ACAD_API AcDbObject {
  public:
    virtual ~AcDbObject();
    AcDbObject(const AcDbObject&) = delete;
    AcDbObject& operator=(const AcDbObject&) = delete;
    /// Objects come from the suite's heap: `new` gives NULL when there is no memory.
    static void* operator new(size_t size) noexcept;
    static void operator delete(void* block) noexcept;

    AcDbObjectId objectId() const;
    /// The drawing that holds the object; lent. NULL for one that is in none.
    AcDbDatabase* database() const;
    /// Ends this opening. @return eOk; the status of a close without an open otherwise
    Acad::ErrorStatus close();
    /// From read to write: eWasOpenForRead when others read too, eOnLockedLayer for an entity
    /// there.
    Acad::ErrorStatus upgradeOpen();
    /// From write to read.
    Acad::ErrorStatus downgradeOpen();
    /// Erases, or with false brings back. The object must be open for write.
    Acad::ErrorStatus erase(bool erasing = true);
    bool isErased() const;
    bool isWriteEnabled() const;
    bool isReadEnabled() const;

    /// Copy of the XDATA of one application, or with NULL of all, from the first 1001 node on; NULL
    /// when there is none. Caller releases.
    resbuf* xData(const ACHAR* app = nullptr) const;
    /// Replaces the data of each application named in `chain` (a -3 node in front is skipped); a
    /// 1001 node alone removes that application's data. @return eRegappIdNotFound for a name that
    /// is not registered, eXdataSizeExceeded above 16383 bytes an object, eBadDxfSequence for
    /// braces that don't match or values outside of an application; the data is then as it was
    Acad::ErrorStatus setXData(const resbuf* chain);

    /// Name of the object's class in DXF files, e.g. "LINE".
    const char* dxfName() const;

  protected:
    AcDbObject() = default;

    host::Database* database_ = nullptr;  ///< NULL for an object that is in no drawing
    uint32_t slot_ = 0;

  private:
    friend class host::Database;
    /// Says what a drawing that takes the object over has to make of it. @return
    /// eNotThatKindOfClass for a class that callers don't make
    virtual Acad::ErrorStatus describe(host::NewObject& out);
};

/// A handle: the number that names an object in its drawing for good.
class AcDbHandle {
  public:
    AcDbHandle() = default;
    explicit AcDbHandle(uint64_t value) : value_(value) {}
    /// From a text of up to 16 hexadecimal digits; any other text gives the null handle.
    ACAD_API explicit AcDbHandle(const ACHAR* text);
    bool isNull() const { return value_ == 0; }
    uint64_t value() const { return value_; }

  private:
    uint64_t value_ = 0;
};

/// A drawing. Any number of them live side by side; the one in the editor and those that are
/// attached to another are the host's own and lent, those that somebody constructs are his.
class ACAD_API AcDbDatabase {
  public:
    /// With `buildDefaultDrawing` a new empty drawing, otherwise nothing at all until dxfIn.
    /// `noDocument` is of no account here: such a drawing never gets into the editor.
    explicit AcDbDatabase(bool buildDefaultDrawing = true, bool noDocument = false);
    ~AcDbDatabase();
    AcDbDatabase(const AcDbDatabase&) = delete;
    AcDbDatabase& operator=(const AcDbDatabase&) = delete;

    /// Reads a DXF file. Nothing is logged. @return eNotApplicable when there is a drawing already,
    /// eFileNotFound, eFileAccessErr, eBadDxfSequence for a file that is no drawing
    Acad::ErrorStatus dxfIn(const ACHAR* path, const ACHAR* log = nullptr);
    /// Writes the drawing in the version that it was read in, whatever `version` asks for; with
    /// `backup` a file that is there is kept under the extension ".bak". A drawing without a file
    /// takes this one for its own. @return eNoDatabase without a drawing, eInvalidInput without a
    /// name, eFileAccessErr; the file is then as it was
    Acad::ErrorStatus saveAs(const ACHAR* path, bool backup = true, int version = 31);
    /// The file that the drawing was read from or first saved to, lent until the next call.
    /// @return eFileNotFound when there is none; `name` is then NULL
    Acad::ErrorStatus getFilename(const ACHAR*& name) const;
    /// The object with this handle, erased ones too. An unknown handle is never entered.
    /// @return eNullHandle, eUnknownHandle; `id` is then as it was
    Acad::ErrorStatus getAcDbObjectId(AcDbObjectId& id, bool createIfNotFound,
                                      const AcDbHandle& handle) const;
    /// Opens the named objects dictionary, which is made when the drawing has none. @return
    /// eNoDatabase without a drawing, else as acdbOpenObject; `dictionary` is then NULL
    Acad::ErrorStatus getNamedObjectsDictionary(AcDbDictionary*& dictionary,
                                                AcDb::OpenMode mode = AcDb::kForRead) const;
    /// The same for the dictionary of groups, ACAD_GROUP.
    Acad::ErrorStatus getGroupDictionary(AcDbDictionary*& dictionary,
                                         AcDb::OpenMode mode = AcDb::kForRead) const;
    /// Opens a symbol table; for write it is made when the drawing has none. @return eNoDatabase
    /// without a drawing, eKeyNotFound, else as acdbOpenObject; `table` is then NULL
    Acad::ErrorStatus getSymbolTable(AcDbBlockTable*& table,
                                     AcDb::OpenMode mode = AcDb::kForRead) const;
    Acad::ErrorStatus getSymbolTable(AcDbLayerTable*& table,
                                     AcDb::OpenMode mode = AcDb::kForRead) const;
    Acad::ErrorStatus getSymbolTable(AcDbLinetypeTable*& table,
                                     AcDb::OpenMode mode = AcDb::kForRead) const;
    /// Switches undo recording; stays until it is switched back. What changes meanwhile stays when
    /// the step that it fell into is undone, unless that step changed the same object before.
    void disableUndoRecording(bool disable);
    bool undoRecording() const;
    /// The record of the block under which this drawing is attached to another; null when it isn't.
    AcDbObjectId xrefBlockId() const;

    // Settings of the drawing. One that has none gives those of a new drawing.

    /// The user coordinate system of model space: its origin and two of its axes, in the world.
    AcGePoint3d ucsorg() const;
    AcGeVector3d ucsxdir() const;
    AcGeVector3d ucsydir() const;
    /// Colour of new entities.
    AcCmColor cecolor() const;
    Acad::ErrorStatus setCecolor(const AcCmColor& color);
    /// Layer of new entities.
    AcDbObjectId clayer() const;
    /// @return eNullObjectId, eNotThatKindOfClass for what is no layer of this drawing, eWasErased,
    /// eInvalidInput for one that is frozen or comes from an attached drawing
    Acad::ErrorStatus setClayer(AcDbObjectId layer);

  private:
    friend class host::Database;
    explicit AcDbDatabase(host::Database& drawing);
    std::unique_ptr<host::Database> own_;  ///< of one that somebody constructed
    host::Database* drawing_ = nullptr;
    mutable std::u16string file_name_;
};

/// What the platform's environment offers to the database.
class ACAD_API AcDbHostApplicationServices {
  public:
    /// The drawing in the editor; NULL when there is none.
    AcDbDatabase* workingDatabase() const;
};

/// The services; always there.
ACAD_API AcDbHostApplicationServices* acdbHostApplicationServices();

/// Opens an object. @return eNullObjectId, ePermanentlyErased (an id of a closed database or none),
/// eWasErased unless `openErased`, eWasOpenForWrite, eWasOpenForRead (somebody reads what should be
/// written), eOnLockedLayer (writing an entity there); `object` is then NULL
ACAD_API Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id,
                                              AcDb::OpenMode mode, bool openErased = false);

/// Opens an object as a class of its own. @return also eNotThatKindOfClass; nothing is open then
template <class T>
Acad::ErrorStatus acdbOpenObject(T*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool openErased = false) {
    object = nullptr;
    AcDbObject* base = nullptr;
    const Acad::ErrorStatus status = acdbOpenAcDbObject(base, id, mode, openErased);
    if (status != Acad::eOk) return status;
    object = dynamic_cast<T*>(base);
    if (object != nullptr) return Acad::eOk;
    if (base != nullptr) base->close();
    return Acad::eNotThatKindOfClass;
}

template <>
inline Acad::ErrorStatus acdbOpenObject<AcDbObject>(AcDbObject*& object, AcDbObjectId id,
                                                    AcDb::OpenMode mode, bool openErased) {
    return acdbOpenAcDbObject(object, id, mode, openErased);
}

/// Id behind an entity name, of an erased object too. @return eInvalidKey for a name that is none
ACAD_API Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name name);
/// Entity name of an id. @return eNullObjectId, ePermanentlyErased
ACAD_API Acad::ErrorStatus acdbGetAdsName(ads_name name, AcDbObjectId id);

#endif
