/// The drawing database behind AcDbDatabase: the object table, the blocks, tables and dictionaries
/// of a drawing, and the file that it was read from.
///
/// An object is a slot of the table. A slot notes type, handle, owner and the bytes in the file;
/// what the bytes say is decoded when the object is first opened. Tables, block headers and the
/// contents of blocks are decoded at once, dictionaries when one of their entries is first asked
/// for.
#ifndef HOST_DB_DATABASE_H
#define HOST_DB_DATABASE_H

#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "acad/db.h"
#include "base/big_memory.h"
#include "db/dictionary_data.h"
#include "db/file_origin.h"
#include "db/group_data.h"
#include "db/handle_map.h"
#include "db/tags.h"
#include "db/undo.h"
#include "db/xdata.h"
#include "dxf/codec.h"

namespace host {

struct DatabaseLinks;

using Slot = uint32_t;
/// No object. Slot 0 is never used.
constexpr Slot kNoSlot = 0;

/// What an object is to the drawing.
enum class ObjectClass : uint8_t {
    Entity,       ///< main entity of a block
    SubEntity,    ///< VERTEX, ATTRIB or SEQEND behind its main entity
    TableHead,    ///< TABLE
    TableRecord,  ///< entry of a table
    BlockBegin,   ///< BLOCK
    BlockEnd,     ///< ENDBLK
    Object        ///< of the OBJECTS section
};

/// Decoded form of an object.
struct ObjectData {
    Tags tags;  ///< without XDATA; the first one is the type (0)
    XData xdata;
    std::string_view tail;  ///< bytes behind the XDATA (embedded objects), kept as they are
    bool has_tags = false;
    bool has_xdata = false;
    bool tags_changed = false;
};

/// One slot of the object table.
struct ObjectRecord {
    uint64_t handle = 0;
    const char* bytes = nullptr;  ///< in the file image; NULL for an object made here
    uint32_t size = 0;            ///< of the bytes
    uint32_t xdata_offset = 0;    ///< of the first 1001 pair; size when there is none
    Slot owner = kNoSlot;         ///< block record, main entity, table head, or owning object
    uint32_t position = 0;        ///< index among the contents of its block, or of its table
    uint16_t type = 0;            ///< index of the type name
    ObjectClass object_class = ObjectClass::Object;
    bool erased = false;
    bool changed = false;
    bool writer = false;
    uint8_t imaged = 0;  ///< ImagedPart bits: what the step `undo_step` has kept of the object
    uint16_t readers = 0;
    uint32_t undo_step = 0;
    AcDbObject* object = nullptr;  ///< instance handed out by acdbOpenObject; owned
    std::unique_ptr<ObjectData> data;
};

/// What a drawing makes of an object that a caller made.
struct NewObject {
    const Database& drawing;
    std::string_view type;
    Tags groups;  ///< behind type, handle and owner
};

/// A block: its record in the table and what is between its BLOCK and ENDBLK.
struct Block {
    Slot record = kNoSlot;
    Slot begin = kNoSlot;
    Slot end = kNoSlot;
    std::vector<Slot> contents;  ///< entities and sub-entities in drawing order, erased ones too
    /// What stands outside of [living_begin, living_end) is erased, so that programs which erase
    /// the first or the last entity again and again don't walk over all that they erased before.
    size_t living_begin = 0;
    size_t living_end = 0;
};

/// A symbol table.
struct SymbolTable {
    std::string name;  ///< "LAYER"
    Slot head = kNoSlot;
    std::vector<Slot> records;                         ///< in file order, erased ones too
    std::unordered_map<std::u16string, Slot> by_name;  ///< key in upper case; living records
    const char* insert_at = nullptr;                   ///< ENDTAB in the file
    size_t walk = 0;                                   ///< of acdbTblNext
};

/// A variable of the header: "$NAME" and its tags.
struct HeaderVariable {
    std::string name;
    const char* begin = nullptr;  ///< the pair 9; NULL for one added here
    const char* end = nullptr;
    Tags tags;
    bool changed = false;
};

/// Where new text goes in the file: behind the last thing of a section's kind. NULL: no such
/// section.
struct InsertPoints {
    const char* entities_begin = nullptr;  ///< 0 SECTION of ENTITIES
    const char* header_end = nullptr;      ///< ENDSEC of HEADER
    const char* tables_end = nullptr;      ///< ENDSEC of TABLES
    const char* blocks_end = nullptr;      ///< ENDSEC of BLOCKS
    const char* entities_end = nullptr;    ///< ENDSEC of ENTITIES
    const char* objects_end = nullptr;     ///< ENDSEC of OBJECTS
    const char* eof = nullptr;             ///< the pair 0 EOF
};

/// Hears of each object whose groups, owner or life change; of its XDATA it hears nothing. It is
/// told before or after the change and must look later.
class ChangeWatcher {
  public:
    virtual ~ChangeWatcher() = default;
    virtual void changed(Slot slot) = 0;
};

class Database {
  public:
    Database();
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // --- names ----------------------------------------------------------------------------------

    AcDbObjectId idOf(Slot slot) const;
    /// Slot of an id of this database; kNoSlot for another's.
    Slot slotOf(AcDbObjectId id) const;
    /// The living database that an id leads to; NULL when there is none.
    static Database* find(AcDbObjectId id);
    void nameOf(Slot slot, ads_name name) const;
    /// The id behind a name; null for a name that is none.
    static AcDbObjectId idFromName(const ads_name name);

    // --- what stands around ---------------------------------------------------------------------

    /// The platform's view of this drawing.
    AcDbDatabase* facade();
    /// The drawing behind the platform's view; NULL for one that holds none.
    static Database* of(const AcDbDatabase* facade);
    /// Attached drawings, observers and the drawing that this one is attached to.
    DatabaseLinks& links();
    /// Who hears of changes; the drawing has one at most, and owns it.
    void setWatcher(std::unique_ptr<ChangeWatcher> watcher) { watcher_ = std::move(watcher); }
    ChangeWatcher* watcher() { return watcher_.get(); }

    // --- object table ---------------------------------------------------------------------------

    ObjectRecord& record(Slot slot) { return records_[slot]; }
    const ObjectRecord& record(Slot slot) const { return records_[slot]; }
    Slot slotCount() const { return static_cast<Slot>(records_.size()); }
    void reserve(size_t objects);
    /// A new slot without a handle; the type name is interned.
    Slot addRecord(std::string_view type, ObjectClass object_class);
    /// Gives a handle to a slot. False when the handle is in use; then nothing changes.
    bool setHandle(Slot slot, uint64_t handle);
    /// Takes a handle from the object that has it and gives it to another; the first has none then.
    void moveHandle(Slot from, Slot to);
    /// The next free handle, from now on in use.
    uint64_t newHandle();
    void raiseHandleSeed(uint64_t seed);
    uint64_t handleSeed() const { return handle_seed_; }
    /// Slot of a handle, erased objects too; kNoSlot when there is none.
    Slot findHandle(uint64_t handle) const { return handles_.find(handle); }
    const std::string& typeName(Slot slot) const { return type_names_[records_[slot].type]; }

    // --- decoded objects ------------------------------------------------------------------------

    /// A new object of the drawing with these tags behind its type, handle and owner. The caller
    /// puts it where it belongs.
    Slot makeRecord(std::string_view type, ObjectClass object_class, uint64_t owner, Tags tags);
    /// Makes an object of a caller one of the OBJECTS section, open for write. The instance is the
    /// drawing's from then on. @return eNotThatKindOfClass for one that none can be made of
    Acad::ErrorStatus takeOver(AcDbObject& object, Slot& made);
    /// Makes it a record of a table. @return also eDuplicateKey for a name in use
    Acad::ErrorStatus takeOverSymbol(AcDbObject& object, std::u16string_view name, Slot& made);
    /// Makes an object of a caller the instance, open for write, of one that the drawing has and
    /// that nobody has opened yet.
    void adopt(AcDbObject& object, Slot slot);
    /// The object's tags, decoded on the first call.
    const Tags& tags(Slot slot);
    const XData& xdata(Slot slot);
    /// Forgets the decoded form of an object that is as its file has it; references to its tags go.
    /// For walks over all of a drawing, which would fill the memory.
    void releaseDecoded(Slot slot);
    /// The tags for a change: the journal keeps them as they are, and the object will be written
    /// from its decoded form. Who changes them calls `touch` when he is done.
    Tags& changeTags(Slot slot);
    /// The same for the XDATA.
    XData& changeXData(Slot slot);
    /// Tells the drawing and the object's observers that it has changed.
    void touch(Slot slot);
    /// True when anything of the drawing differs from its file.
    bool isChanged() const { return changed_; }
    /// The present state counts as that of the file.
    void forgetChanges() { changed_ = unsaved_ = false; }
    /// True when something changed since the drawing was read or last saved.
    bool isUnsaved() const { return unsaved_; }
    /// The drawing differs from its file, which is damaged.
    void noteRecovered() { noteChange(); }
    void markSaved() { unsaved_ = false; }
    /// Replaces the data of the applications in `chain`.
    Acad::ErrorStatus setXData(Slot slot, const resbuf* chain);
    /// Erases or brings back an object with its sub-entities.
    void setErased(Slot slot, bool erased);
    /// Makes another object the owner; its tags are the caller's business.
    void setOwner(Slot slot, Slot owner);
    /// Before-images of what changes in steps.
    UndoJournal& undo() { return undo_; }

    Acad::ErrorStatus open(Slot slot, AcDb::OpenMode mode, bool open_erased, AcDbObject*& object);
    Acad::ErrorStatus close(Slot slot);
    Acad::ErrorStatus upgradeOpen(Slot slot);
    Acad::ErrorStatus downgradeOpen(Slot slot);

    // --- blocks and entities --------------------------------------------------------------------

    /// The block with this record; made when there is none.
    Block& block(Slot record);
    Block* findBlock(Slot record);
    /// The block that holds an entity or a sub-entity; NULL for anything else.
    Block* blockOfEntity(Slot slot);
    const std::vector<Slot>& blockRecords() const { return block_order_; }
    Slot modelSpace() const { return model_space_; }
    Slot paperSpace() const { return paper_space_; }
    void setSpaces(Slot model, Slot paper);
    /// Puts an entity at the end of a block.
    void appendEntity(Slot record, Slot entity);
    /// The main entity of a sub-entity; the slot itself for a main entity.
    Slot mainEntity(Slot slot) const;
    /// The last living main entity of a block; kNoSlot when there is none.
    Slot lastEntity(Slot space);
    /// The next living entity behind `slot` in its block, sub-entities too; for kNoSlot the first
    /// of the block `space`.
    Slot nextEntity(Slot slot, Slot space);
    /// True for an entity on a locked layer.
    bool isOnLockedLayer(Slot slot);

    // --- tables ---------------------------------------------------------------------------------

    /// Table by its name in any case; NULL for an unknown one.
    SymbolTable* table(std::string_view name);
    SymbolTable& addTable(std::string_view name);
    std::vector<std::unique_ptr<SymbolTable>>& tables() { return tables_; }
    /// Living record by name in any case.
    Slot findSymbol(std::string_view table, std::u16string_view name);
    /// Name (group 2) of a table record or block.
    std::u16string symbolName(Slot record);
    /// The object that stands for a table, made where the file has none.
    Slot needTableHead(std::string_view name);
    /// Enters a record into its table.
    void enterSymbol(SymbolTable& table, Slot record, std::u16string_view name);
    /// Follows a change of a record's name in the table. False when the new one is taken or no
    /// name.
    bool renameSymbol(Slot record, std::u16string_view old_name, std::u16string_view new_name);
    /// A new record with the given tags behind its subclass markers. kNoSlot for a name in use.
    Slot makeSymbol(std::string_view table, std::u16string_view name, Tags tags);
    /// The layer of this name, made with colour 7 and CONTINUOUS when there is none.
    Slot needLayer(std::u16string_view name);
    /// Counts layers that are locked; called when a layer's flags may have changed.
    void recountLockedLayers();

    // --- dictionaries ---------------------------------------------------------------------------

    Slot namedObjects() const { return named_objects_; }
    void setNamedObjects(Slot slot) { named_objects_ = slot; }
    /// The named objects dictionary, made when the drawing has none.
    Slot needNamedObjects();
    /// The dictionary of groups, made when the drawing has none. It may be another kind of object.
    Slot needGroups();
    bool isDictionary(Slot slot) const;
    /// Entries of a dictionary; NULL for another object.
    DictionaryData* dictionary(Slot slot);
    /// Slot of an entry; kNoSlot when the key or its object is missing or erased.
    Slot dictionaryEntry(Slot dictionary, std::u16string_view key);
    /// Object of the entry with this index; kNoSlot when it is missing or erased.
    Slot dictionaryObject(Slot dictionary, size_t index);
    /// Index of the first entry at `from` or behind it whose object lives; DictionaryData::kNone at
    /// the end.
    size_t dictionaryNext(Slot dictionary, size_t from);
    /// What keeps an entry from being added: a key that is none or in use; an object that a
    /// dictionary owns, that is erased or no object of the OBJECTS section, or that holds the
    /// dictionary itself. kNoSlot is an object that has still to be made.
    Acad::ErrorStatus checkNewEntry(Slot dictionary, std::u16string_view key, Slot object);
    /// Adds an entry at the end and makes the dictionary the object's owner.
    Acad::ErrorStatus dictionaryAdd(Slot dictionary, std::u16string_view key, Slot object);
    /// Takes an entry out; its object has no owner then.
    Acad::ErrorStatus dictionaryRemove(Slot dictionary, std::u16string_view key);
    Acad::ErrorStatus dictionaryRename(Slot dictionary, std::u16string_view key,
                                       std::u16string_view new_key);
    /// The dictionary of what others keep with an object; kNoSlot for none.
    Slot extension(Slot object);
    /// Gives an object such a dictionary, which was made here and nothing owns yet. @return false
    /// for another one, and when the object has one
    bool addExtension(Slot object, Slot dictionary);
    /// True for an object that was made here and never entered into a dictionary, or taken out of
    /// one: it is not written.
    bool isUnowned(Slot slot) const;
    /// Entries that point to erased objects are left out when the dictionary is written.
    const std::unordered_map<Slot, std::unique_ptr<DictionaryData>>& openDictionaries() const {
        return dictionaries_;
    }

    // --- groups ---------------------------------------------------------------------------------
    //
    // A group that a dictionary holds is among the reactors of each of its entities. Entities that
    // are erased stay in their groups and are left out when the drawing is written.

    bool isGroup(Slot slot) const;
    /// Entities of a group in their order; NULL for another object.
    GroupData* group(Slot slot);
    /// Puts an entity into a group; an index behind the last one is the end. @return
    /// eNotThatKindOfClass, eAlreadyInGroup
    Acad::ErrorStatus groupInsert(Slot group, size_t index, Slot entity);
    /// Takes one out. @return eNotThatKindOfClass, eKeyNotFound
    Acad::ErrorStatus groupRemove(Slot group, Slot entity);
    /// Gives a group other tags, with the entities that stand in them.
    void changeGroupTags(Slot group, Tags tags);

    // --- header and file ------------------------------------------------------------------------

    HeaderVariable* header(std::string_view name);
    std::vector<HeaderVariable>& headers() { return headers_; }
    /// Sets the variable to one tag; it is added when the drawing has none.
    void setHeader(std::string_view name, Tag tag);
    /// The same for several tags, as those of a point.
    void setHeader(std::string_view name, Tags value);
    void indexHeaders();

    const dxf::TextCodec& codec() const { return codec_; }
    void setCodec(dxf::TextCodec codec) { codec_ = codec; }
    const std::string& version() const { return version_; }
    void setVersion(std::string version) { version_ = std::move(version); }
    /// The version that the drawing is saved as when nobody asks for another.
    const std::string& saveVersion() const {
        return origin_.save_as.empty() ? version_ : origin_.save_as;
    }

    /// The file's bytes, without the padding; owned by the database as long as it lives.
    std::string_view image() const { return image_view_; }
    void setImage(BigBytes bytes, size_t size);
    /// Gives the image up.
    BigBytes takeImage() { return std::move(image_); }
    InsertPoints& insertPoints() { return insert_points_; }
    const std::string& path() const { return path_; }
    void setPath(std::string path) { path_ = std::move(path); }
    /// The file that the drawing was read from.
    FileOrigin& origin() { return origin_; }
    const FileOrigin& origin() const { return origin_; }

  private:
    friend class UndoJournal;
    void noteChange() { changed_ = unsaved_ = true; }
    void tellWatcher(Slot slot) {
        if (watcher_ != nullptr) watcher_->changed(slot);
    }
    ObjectData& data(Slot slot);
    Tags& decodedTags(Slot slot);
    XData& decodedXData(Slot slot);
    /// Turns the erased flag of one slot and of what depends on it, without sub-entities.
    void turnErased(Slot slot);
    /// The variable's place, also when it has no value.
    size_t headerPlace(std::string_view name);
    /// A new instance of the class that shows the object; NULL without memory.
    AcDbObject* newInstance(Slot slot);
    AcDbObject* newTableInstance(Slot slot) const;
    AcDbObject* newPolyline(Slot slot);
    bool makeObject(Slot slot);
    void decodeTags(ObjectRecord& record, ObjectData& data) const;
    bool isLiving(Slot slot) const;
    std::unique_ptr<DictionaryData> decodeEntries(const Tags& groups) const;
    void writeDictionaryTags(Slot slot);
    /// The entries for a change; the caller has them already.
    void changeEntries(Slot slot);
    void removeEntry(Slot dictionary, size_t index);
    std::unique_ptr<GroupData> decodeMembers(const Tags& groups) const;
    void writeGroupTags(Slot slot);
    /// The entities of a group for a change; the caller has them already.
    void changeMembers(Slot slot);
    /// Tells the entities of a group whether it is among their reactors.
    void bindMembers(Slot slot);
    void bindMember(Slot group, Slot entity, bool bound);
    /// A group's key says whether it is an anonymous one.
    void followEntry(Slot group, std::u16string_view key);

    friend class DatabaseList;
    friend class ::AcDbDatabase;
    /// Tells the observers of an object; `erased` NULL for a change.
    void notify(Slot slot, const bool* erased);
    std::unique_ptr<DatabaseLinks> links_;
    std::unique_ptr<ChangeWatcher> watcher_;
    uint16_t index_ = 0;
    uint16_t generation_ = 0;

    std::vector<ObjectRecord, BigAllocator<ObjectRecord>> records_;
    HandleMap handles_;
    uint64_t handle_seed_ = 1;
    std::deque<std::string> type_names_;  ///< callers keep references
    std::unordered_map<std::string, uint16_t> types_;
    uint16_t last_type_ = 0;
    bool changed_ = false;
    bool unsaved_ = false;

    std::unordered_map<Slot, std::unique_ptr<Block>> blocks_;
    std::vector<Slot> block_order_;
    Slot model_space_ = kNoSlot;
    Slot paper_space_ = kNoSlot;
    size_t locked_layers_ = 0;

    std::u16string last_app_;  ///< application name that was last looked up, and its record
    Slot last_app_slot_ = kNoSlot;
    XData packing_;  ///< work space of setXData

    std::vector<std::unique_ptr<SymbolTable>> tables_;
    std::unordered_map<std::string, SymbolTable*> table_index_;  ///< by name
    std::unordered_map<Slot, std::unique_ptr<DictionaryData>> dictionaries_;
    std::unordered_map<Slot, std::unique_ptr<GroupData>> groups_;
    Slot named_objects_ = kNoSlot;

    std::vector<HeaderVariable> headers_;
    std::unordered_map<std::string, size_t> header_index_;

    dxf::TextCodec codec_;
    std::string version_;
    BigBytes image_;
    std::string_view image_view_;
    InsertPoints insert_points_;
    std::string path_;
    FileOrigin origin_;
    UndoJournal undo_{*this};
};

/// Groups of a new dictionary behind its owner: its class, and that entries of copied objects are
/// kept as they are.
Tags dictionaryTags();

/// The drawing in the editor; NULL when there is none.
Database* currentDatabase();
/// Puts a database in the editor, in the place of the one before.
void setCurrentDatabase(std::unique_ptr<Database> database);

}  // namespace host

#endif
