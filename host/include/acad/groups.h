/// Groups: named lists of entities. The dictionary of groups (AcDbDatabase::getGroupDictionary)
/// owns them under their names; an entity may be in any number of them and lists them among its
/// reactors.
#ifndef ACAD_GROUPS_H
#define ACAD_GROUPS_H

#include <string>
#include <vector>

#include "acad/db.h"

/// Walks over the entities of a group in their order, erased ones too. The group may be closed and
/// changed meanwhile: the iterator goes by the index. At its end once the drawing is closed.
/// Callers delete it.
class ACAD_API AcDbGroupIterator {
  public:
    AcDbGroupIterator(const AcDbGroupIterator&) = delete;
    AcDbGroupIterator& operator=(const AcDbGroupIterator&) = delete;
    static void* operator new(size_t size) noexcept;
    static void operator delete(void* block) noexcept;

    /// Id of the entity; null at the end.
    AcDbObjectId objectId() const;
    /// Opens the entity. @return eIteratorDone at the end, else as acdbOpenObject; `object` is then
    /// NULL
    Acad::ErrorStatus getObject(AcDbObject*& object, AcDb::OpenMode mode = AcDb::kForRead) const;
    /// One step. @return false at the end
    bool next();
    bool done() const;

  private:
    friend class AcDbGroup;
    explicit AcDbGroupIterator(AcDbObjectId group) : group_(group) {}

    AcDbObjectId group_;
    uint32_t index_ = 0;
};

/// A group. Its entities are those of its own drawing; each is in it once, at an index from 0. An
/// erased entity stays where it is, counts, and is left out when the drawing is saved.
///
/// Reading wants the group open for read or write, and gives nothing otherwise. Changes want it
/// open for write and give eNotOpenForWrite otherwise. A group that is in no drawing yet has no
/// entities, and changes of them give eNoDatabase.
class ACAD_API AcDbGroup : public AcDbObject {
  public:
    /// A new group without entities; the name is the key that it gets in the dictionary of groups.
    explicit AcDbGroup(const ACHAR* description = u"", bool selectable = true);
    ~AcDbGroup() override;
    static AcDbGroup* cast(AcDbObject* object) { return dynamic_cast<AcDbGroup*>(object); }

    /// Lent until the next call or the close of the group.
    const ACHAR* description() const;
    /// @return eInvalidInput for NULL
    Acad::ErrorStatus setDescription(const ACHAR* description);
    /// Whether picking one entity of the group picks all.
    bool isSelectable() const;
    Acad::ErrorStatus setSelectable(bool selectable);
    /// True for a group whose key begins with "*".
    bool isAnonymous() const;

    uint32_t numEntities() const;
    /// Appends the ids of all entities in order. @return their number
    uint32_t allEntityIds(std::vector<AcDbObjectId>& ids) const;
    /// @return eNotOpenForRead, eKeyNotFound for what is not in the group; `index` is then as it
    /// was
    Acad::ErrorStatus getIndex(AcDbObjectId entity, uint32_t& index) const;
    /// An iterator on the first entity. @return NULL for a group that is not open, and without
    /// memory
    AcDbGroupIterator* newIterator() const;

    /// Puts an entity at the end, an erased one too. @return eNullObjectId, eNotThatKindOfClass for
    /// what is no entity of the group's drawing, eAlreadyInGroup; the group is then as it was
    Acad::ErrorStatus append(AcDbObjectId entity);
    /// The same at index 0.
    Acad::ErrorStatus prepend(AcDbObjectId entity);
    /// The same at an index. @return also eInvalidIndex behind the end
    Acad::ErrorStatus insertAt(uint32_t index, AcDbObjectId entity);
    /// @return eNullObjectId, eKeyNotFound for what is not in the group
    Acad::ErrorStatus remove(AcDbObjectId entity);
    /// @return eInvalidIndex
    Acad::ErrorStatus removeAt(uint32_t index);
    /// Puts an entity in the place of another. @return as remove for the old and as append for the
    /// new one; the group is then as it was
    Acad::ErrorStatus replace(AcDbObjectId oldEntity, AcDbObjectId newEntity);
    /// Takes all entities out.
    Acad::ErrorStatus clear();

  private:
    friend class host::Database;
    Acad::ErrorStatus describe(host::NewObject& out) override;
    Acad::ErrorStatus checkWritable() const;
    int64_t integerAt(int code, int64_t otherwise) const;
    Acad::ErrorStatus insert(size_t index, AcDbObjectId entity);
    template <class Change>
    Acad::ErrorStatus changeGroups(Change change);

    mutable std::u16string description_;
    bool selectable_;
};

#endif
