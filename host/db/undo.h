/// The undo journal of a drawing: before-images of what changed, in steps. A step is what happened
/// between two step boundaries of the session (a command, a top-level expression); it comes into
/// being with its first change.
///
/// Every entry holds the state that its object is not in. Undoing swaps the two, from the last
/// entry of a step to the first; redoing swaps them again in the other direction. An object that is
/// still as its file has it costs an entry and no copy.
#ifndef HOST_DB_UNDO_H
#define HOST_DB_UNDO_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace host {

class Database;
struct ObjectData;

/// What the present step has kept of an object.
enum ImagedPart : uint8_t { kImagedTags = 1, kImagedXData = 2, kImagedAll = 3 };

/// How much is kept.
enum class UndoControl { None, One, All };

class UndoJournal {
  public:
    explicit UndoJournal(Database& database);
    ~UndoJournal();
    UndoJournal(const UndoJournal&) = delete;
    UndoJournal& operator=(const UndoJournal&) = delete;

    // --- recording: each is called before the change
    // ----------------------------------------------

    void keepTags(uint32_t slot);
    void keepXData(uint32_t slot);
    /// Keeps an object that is still as its file has it; nothing of another.
    void keepWhole(uint32_t slot);
    /// An object that was just made: undoing erases it.
    void keepCreation(uint32_t slot);
    void keepErased(uint32_t slot);
    void keepOwner(uint32_t slot);
    /// Whether a dictionary has an entry; to be added at `index` or to be removed.
    void keepEntry(uint32_t dictionary, size_t index);
    /// The key of an entry.
    void keepKey(uint32_t dictionary, size_t index);
    /// Whether a group has an entity; to be put in at `index`, or to be taken out from there.
    void keepMember(uint32_t group, uint32_t entity, size_t index);
    void keepHeader(size_t place);

    /// Stops recording for a while; what happens meanwhile can't be undone.
    void disable(bool disabled) { disabled_ = disabled; }
    bool isDisabled() const { return disabled_; }
    /// True while objects go from one state to the other.
    bool isSwapping() const { return swapping_; }

    // --- undoing: between steps
    // -------------------------------------------------------------------

    /// What an undo or redo did.
    struct Outcome {
        std::vector<std::string> names;  ///< of the steps, in the order they were undone
        bool mark_met = false;           ///< undoing ran over a mark
        bool group_start_met = false;    ///< and ended at the start of the open group
    };
    /// Undoes the last `count` steps; those of a group count as one, unless it is still open.
    Outcome undo(size_t count);
    Outcome undoAll();
    /// Undoes up to the last mark, which goes with it. Up to the beginning where there is none.
    Outcome undoToMark();
    bool hasMark() const { return !marks_.empty(); }
    void mark();
    /// Undoes the undoing that was last, as long as nothing has changed since.
    Outcome redo();

    /// Starts a group, and ends one that is open.
    void beginGroup();
    /// @return false when none is open
    bool endGroup();
    bool groupIsOpen() const { return open_group_ != 0; }

    void setControl(UndoControl control);
    UndoControl control() const { return control_; }

    /// Steps that can be undone.
    size_t stepCount() const { return done_.size(); }

  private:
    enum class Kind : uint8_t {
        Whole,
        TagList,
        Extended,
        Erased,
        Owner,
        Entry,
        Key,
        Member,
        Header
    };
    struct Entry {
        Kind kind;
        bool changed = false;  ///< of the object or header variable in its other state
        uint32_t slot = 0;     ///< object, or place of a header variable
        uint32_t other = 0;    ///< owner, or index of a dictionary's entry or in a group
        uint32_t member = 0;   ///< entity of a group
        std::unique_ptr<ObjectData> image;
    };
    struct Step {
        std::string name;
        uint32_t group = 0;  ///< 0 for none
        std::vector<Entry> entries;
    };

    bool recording() const;
    /// The step of the present boundary.
    Step& step();
    Entry& add(Kind kind, uint32_t slot);
    /// False when the present step has kept these parts already; notes them otherwise.
    bool needs(uint32_t slot, uint8_t parts);
    void swap(Entry& entry);
    void swapEntry(Entry& entry);
    void swapKey(Entry& entry);
    void swapMember(Entry& entry);
    /// What hangs on tags that were swapped: names, dictionaries, locked layers.
    void follow(uint32_t slot, const std::u16string& name_before);
    void undoStep(Outcome& outcome);
    void undoDownTo(size_t size, Outcome& outcome);
    void finish(size_t undone);
    void forget();

    Database& database_;
    std::vector<Step> done_;
    /// Steps that can be redone, the next one last, and how many each undoing took.
    std::vector<Step> undone_;
    std::vector<size_t> undone_counts_;
    std::vector<size_t> marks_;  ///< sizes of done_
    uint32_t boundary_ = 0;      ///< boundary that the last step belongs to
    uint32_t open_group_ = 0;
    uint32_t last_group_ = 0;
    UndoControl control_ = UndoControl::All;
    bool disabled_ = false;
    bool swapping_ = false;
    bool layers_swapped_ = false;
};

/// Keeps a journal from recording as long as it lives.
class UndoPause {
  public:
    explicit UndoPause(UndoJournal& journal) : journal_(journal), before_(journal.isDisabled()) {
        journal_.disable(true);
    }
    ~UndoPause() { journal_.disable(before_); }
    UndoPause(const UndoPause&) = delete;
    UndoPause& operator=(const UndoPause&) = delete;

  private:
    UndoJournal& journal_;
    bool before_;
};

/// Number of the present step boundary; 0 outside of steps, where nothing is recorded.
uint32_t undoBoundary();
/// Ends the present step; what changes next begins another one.
void nextUndoBoundary();

}  // namespace host

#endif
