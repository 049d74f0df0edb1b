/// Dictionaries and xrecords: where a drawing keeps what is no entity and in no table.
///
/// A dictionary owns its entries' objects, which are of any class. Entries have an order, that in
/// which they were added. Keys are 1 to 255 characters, compared without regard to case and kept as
/// they were given.
#ifndef ACAD_DICT_H
#define ACAD_DICT_H

#include <memory>
#include <string>

#include "acad/db.h"

namespace host {
struct XrecordContent;
}

/// Walks over the entries of a dictionary, which may be closed and changed meanwhile: an entry that
/// goes while the iterator stands on it lets it stand on the following one. At its end once the
/// drawing is closed. Callers delete it.
class ACAD_API AcDbDictionaryIterator {
  public:
    ~AcDbDictionaryIterator();
    AcDbDictionaryIterator(const AcDbDictionaryIterator&) = delete;
    AcDbDictionaryIterator& operator=(const AcDbDictionaryIterator&) = delete;
    static void* operator new(size_t size) noexcept;
    static void operator delete(void* block) noexcept;

    /// Key of the entry, lent until the next call; NULL at the end.
    const ACHAR* name() const;
    /// One step. @return false at the end
    bool next();
    bool done() const;
    /// Id of the entry's object; null at the end.
    AcDbObjectId objectId() const;
    /// Opens the entry's object. @return eIteratorDone at the end, else as acdbOpenObject
    Acad::ErrorStatus getObject(AcDbObject*& object, AcDb::OpenMode mode = AcDb::kForRead) const;

  private:
    friend class AcDbDictionary;
    explicit AcDbDictionaryIterator(AcDbObjectId dictionary);
    /// Index of the entry that it stands on.
    size_t settle() const;

    AcDbObjectId dictionary_;
    mutable size_t index_ = 0;
    mutable std::u16string name_;
};

/// A dictionary. Reading wants it open for read or write, changing for write.
class ACAD_API AcDbDictionary : public AcDbObject {
  public:
    /// A new, empty one.
    AcDbDictionary();

    /// Id of an entry's object. @return eKeyNotFound, also for an entry whose object is erased;
    /// `id` is then as it was
    Acad::ErrorStatus getAt(const ACHAR* key, AcDbObjectId& id) const;
    /// Opens an entry's object. @return eKeyNotFound, else as acdbOpenObject; `object` is then NULL
    template <class T>
    Acad::ErrorStatus getAt(const ACHAR* key, T*& object,
                            AcDb::OpenMode mode = AcDb::kForRead) const {
        object = nullptr;
        AcDbObjectId id;
        const Acad::ErrorStatus status = getAt(key, id);
        return status == Acad::eOk ? acdbOpenObject(object, id, mode) : status;
    }
    /// True for a key, or an object, that has an entry.
    bool has(const ACHAR* key) const;
    bool has(AcDbObjectId id) const;
    /// Key of an object's entry, a heap copy that the caller frees. @return eKeyNotFound; `name` is
    /// then NULL
    Acad::ErrorStatus nameAt(AcDbObjectId id, ACHAR*& name) const;
    size_t numEntries() const;

    /// Takes a new object over as the last entry; it is open for write afterwards. An entry that
    /// has the key gives way to it. The key "*A" stands for a fresh one: "*A" and a number.
    /// @return eNotOpenForWrite, eInvalidKey, eNullObjectPointer, eAlreadyInDb,
    /// eNotThatKindOfClass for an object that no dictionary holds; the object then stays the
    /// caller's
    Acad::ErrorStatus setAt(const ACHAR* key, AcDbObject* object, AcDbObjectId& id);
    /// Takes an entry out. Its object stays as it is, but has no owner and is not saved unless it
    /// is entered again. @return eKeyNotFound
    Acad::ErrorStatus remove(const ACHAR* key);
    Acad::ErrorStatus remove(AcDbObjectId id);
    /// Gives an entry another key. @return false for a missing old and a used new one
    bool setName(const ACHAR* oldKey, const ACHAR* newKey);

    /// An iterator on the first entry. @return NULL without memory
    AcDbDictionaryIterator* newIterator() const;

  private:
    Acad::ErrorStatus describe(host::NewObject& out) override;
    /// Index of an object's entry.
    size_t findEntry(AcDbObjectId id) const;
    Acad::ErrorStatus checkReadable() const;
    Acad::ErrorStatus checkWritable() const;
};

/// A record of any groups: codes from 1 to 998 but for 5, 100 and 105, in any order and number.
class ACAD_API AcDbXrecord : public AcDbObject {
  public:
    /// A new, empty one.
    AcDbXrecord();
    ~AcDbXrecord() override;

    /// A copy of the groups, which the caller releases; NULL for an empty record. @return
    /// eNotOpenForRead, eNoDatabase for a record that is in no drawing, eOutOfMemory; `*chain` is
    /// then NULL
    Acad::ErrorStatus rbChain(resbuf** chain) const;
    /// Puts a copy of the chain (NULL: nothing) in the place of what the record holds. Points have
    /// three coordinates. A record that is not in a drawing yet is filled for `database`, which has
    /// to be that of the drawing it will be in (NULL: the working database).
    /// @return eNotOpenForWrite, eNoDatabase; eInvalidInput for a text above 2049 characters, a
    /// binary group that is not up to 127 bytes as hex digits, a name in another drawing;
    /// eBadDxfSequence for a group that no record can have. The record is then as it was
    Acad::ErrorStatus setFromRbChain(const resbuf* chain, AcDbDatabase* database = nullptr);

  private:
    Acad::ErrorStatus describe(host::NewObject& out) override;

    std::unique_ptr<host::XrecordContent> content_;  ///< of one filled outside of a drawing
};

#endif
