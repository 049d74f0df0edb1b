/// The undo journal. See undo.h for its form.
#include "db/undo.h"

#include <algorithm>
#include <utility>

#include "db/database.h"
#include "host/undo.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// The session's steps: boundaries are numbered through, so that drawings needn't be told of them.
struct Steps {
    int depth = 0;
    uint32_t boundary = 0;
    std::string name;

    void next() {
        if (++boundary == 0) boundary = 1;
    }
};

Steps& steps() {
    static Steps instance;
    return instance;
}

}  // namespace

uint32_t undoBoundary() {
    return steps().depth == 0 ? 0 : steps().boundary;
}

void nextUndoBoundary() {
    steps().next();
}

UndoJournal::UndoJournal(Database& database) : database_(database) {}

UndoJournal::~UndoJournal() = default;

// --- recording ----------------------------------------------------------------------------------

bool UndoJournal::recording() const {
    return steps().depth > 0 && !disabled_ && !swapping_ && control_ != UndoControl::None &&
           currentDatabase() == &database_;
}

UndoJournal::Step& UndoJournal::step() {
    if (boundary_ != steps().boundary || done_.empty()) {
        boundary_ = steps().boundary;
        const bool group_goes_on =
            open_group_ != 0 && !done_.empty() && done_.back().group == open_group_;
        if (control_ == UndoControl::One && !group_goes_on) forget();
        undone_.clear();
        undone_counts_.clear();
        done_.push_back({steps().name, open_group_, {}});
    }
    return done_.back();
}

UndoJournal::Entry& UndoJournal::add(Kind kind, uint32_t slot) {
    std::vector<Entry>& entries = step().entries;
    entries.push_back({kind, false, slot, 0, 0, nullptr});
    return entries.back();
}

bool UndoJournal::needs(uint32_t slot, uint8_t parts) {
    ObjectRecord& record = database_.records_[slot];
    if (record.undo_step != steps().boundary) {
        record.undo_step = steps().boundary;
        record.imaged = 0;
    }
    if ((record.imaged & parts) == parts) return false;
    record.imaged |= parts;
    return true;
}

void UndoJournal::keepWhole(uint32_t slot) {
    const ObjectRecord& record = database_.records_[slot];
    if (record.changed || !recording()) return;
    if (needs(slot, kImagedAll)) add(Kind::Whole, slot);
}

void UndoJournal::keepTags(uint32_t slot) {
    if (!recording()) return;
    if (!database_.records_[slot].changed) {
        keepWhole(slot);
        return;
    }
    if (!needs(slot, kImagedTags)) return;
    Entry& entry = add(Kind::TagList, slot);
    entry.image = std::make_unique<ObjectData>();
    entry.image->tags = database_.decodedTags(slot);
    entry.image->tags_changed = database_.records_[slot].data->tags_changed;
}

void UndoJournal::keepXData(uint32_t slot) {
    if (!recording()) return;
    if (!database_.records_[slot].changed) {
        keepWhole(slot);
        return;
    }
    if (!needs(slot, kImagedXData)) return;
    Entry& entry = add(Kind::Extended, slot);
    entry.image = std::make_unique<ObjectData>();
    entry.image->xdata = database_.decodedXData(slot);
}

void UndoJournal::keepCreation(uint32_t slot) {
    if (!recording()) return;
    // Its other state is that of an erased object, so nothing more of it needs to be kept.
    needs(slot, kImagedAll);
    add(Kind::Erased, slot);
}

void UndoJournal::keepErased(uint32_t slot) {
    if (recording()) add(Kind::Erased, slot);
}

void UndoJournal::keepOwner(uint32_t slot) {
    if (recording()) add(Kind::Owner, slot).other = database_.records_[slot].owner;
}

void UndoJournal::keepEntry(uint32_t dictionary, size_t index) {
    if (recording()) add(Kind::Entry, dictionary).other = static_cast<uint32_t>(index);
}

void UndoJournal::keepKey(uint32_t dictionary, size_t index) {
    if (!recording()) return;
    Entry& entry = add(Kind::Key, dictionary);
    entry.other = static_cast<uint32_t>(index);
    entry.image = std::make_unique<ObjectData>();
    entry.image->tags.emplace_back(3, database_.dictionaries_.at(dictionary)->entry(index).key);
}

void UndoJournal::keepMember(uint32_t group, uint32_t entity, size_t index) {
    if (!recording()) return;
    Entry& entry = add(Kind::Member, group);
    entry.other = static_cast<uint32_t>(index);
    entry.member = entity;
}

void UndoJournal::keepHeader(size_t place) {
    if (!recording()) return;
    Entry& entry = add(Kind::Header, static_cast<uint32_t>(place));
    entry.changed = database_.headers_[place].changed;
    entry.image = std::make_unique<ObjectData>();
    entry.image->tags = database_.headers_[place].tags;
}

// --- swapping -----------------------------------------------------------------------------------

void UndoJournal::swapEntry(Entry& entry) {
    DictionaryData& dictionary = *database_.dictionaries_.at(entry.slot);
    const DictionaryData::Entry& changed = dictionary.entry(entry.other);
    dictionary.setRemoved(entry.other, !changed.removed);
    dictionary.setHidden(entry.other, !database_.isLiving(database_.findHandle(changed.handle)));
    dictionary.changed = true;
}

void UndoJournal::swapKey(Entry& entry) {
    DictionaryData& dictionary = *database_.dictionaries_.at(entry.slot);
    Tag& other = entry.image->tags.front();
    std::u16string key = other.text(database_.codec_);
    other = Tag(3, dictionary.entry(entry.other).key);
    dictionary.setKey(entry.other, std::move(key));
    dictionary.changed = true;
}

void UndoJournal::swapMember(Entry& entry) {
    GroupData& members = *database_.groups_.at(entry.slot);
    if (members.contains(entry.member)) {
        entry.other = static_cast<uint32_t>(members.indexOf(entry.member));
        members.remove(entry.member);
    } else {
        members.insert(entry.other, entry.member);
    }
    members.changed = true;
}

void UndoJournal::follow(uint32_t slot, const std::u16string& name_before) {
    const ObjectRecord& record = database_.records_[slot];
    const auto dictionary = database_.dictionaries_.find(slot);
    if (dictionary != database_.dictionaries_.end()) dictionary->second->changed = record.changed;
    const auto group = database_.groups_.find(slot);
    if (group != database_.groups_.end()) group->second->changed = record.changed;
    if (record.object_class != ObjectClass::TableRecord) return;
    layers_swapped_ = true;
    SymbolTable* symbols = database_.table(database_.typeName(slot));
    const std::u16string name = kz::toUpper(database_.symbolName(slot));
    if (symbols == nullptr || name == name_before) return;
    const auto present = symbols->by_name.find(name_before);
    if (present != symbols->by_name.end() && present->second == slot) {
        symbols->by_name.erase(present);
    }
    symbols->by_name.insert_or_assign(name, slot);
}

void UndoJournal::swap(Entry& entry) {
    if (entry.kind == Kind::Entry) return swapEntry(entry);
    if (entry.kind == Kind::Key) return swapKey(entry);
    if (entry.kind == Kind::Member) return swapMember(entry);
    if (entry.kind == Kind::Erased) {
        database_.turnErased(entry.slot);
        layers_swapped_ = true;
        return;
    }
    if (entry.kind == Kind::Header) {
        HeaderVariable& variable = database_.headers_[entry.slot];
        std::swap(variable.tags, entry.image->tags);
        std::swap(variable.changed, entry.changed);
        return;
    }
    ObjectRecord& record = database_.records_[entry.slot];
    if (entry.kind == Kind::Owner) {
        std::swap(record.owner, entry.other);
        database_.tellWatcher(entry.slot);
        return;
    }
    std::u16string name;
    if (record.object_class == ObjectClass::TableRecord) {
        name = kz::toUpper(database_.symbolName(entry.slot));
    }
    if (entry.kind == Kind::Whole) {
        std::swap(record.data, entry.image);
        std::swap(record.changed, entry.changed);
    } else if (entry.kind == Kind::TagList) {
        std::swap(record.data->tags, entry.image->tags);
        std::swap(record.data->tags_changed, entry.image->tags_changed);
    } else {
        std::swap(record.data->xdata, entry.image->xdata);
    }
    // XDATA of a block's record may say that its drawing is unloaded.
    const bool shows =
        entry.kind != Kind::Extended || record.object_class == ObjectClass::TableRecord;
    if (shows) database_.tellWatcher(entry.slot);
    follow(entry.slot, name);
    database_.touch(entry.slot);
}

// --- undoing ------------------------------------------------------------------------------------

void UndoJournal::undoStep(Outcome& outcome) {
    Step& last = done_.back();
    swapping_ = true;
    for (auto entry = last.entries.rbegin(); entry != last.entries.rend(); ++entry)
        swap(*entry);
    swapping_ = false;
    outcome.names.push_back(last.name);
    undone_.push_back(std::move(last));
    done_.pop_back();
    while (!marks_.empty() && marks_.back() > done_.size()) {
        marks_.pop_back();
        outcome.mark_met = true;
    }
}

void UndoJournal::finish(size_t undone) {
    if (undone > 0) undone_counts_.push_back(undone);
    boundary_ = 0;
    steps().next();  // what follows must not look imaged in a step that is gone
    database_.last_app_slot_ = kNoSlot;
    if (std::exchange(layers_swapped_, false)) database_.recountLockedLayers();
}

void UndoJournal::undoDownTo(size_t size, Outcome& outcome) {
    const size_t from = done_.size();
    while (done_.size() > size)
        undoStep(outcome);
    finish(from - done_.size());
}

UndoJournal::Outcome UndoJournal::undo(size_t count) {
    Outcome outcome;
    size_t size = done_.size();
    for (; count > 0 && size > 0; --count) {
        const uint32_t group = done_[size - 1].group;
        if (open_group_ != 0 && group != open_group_) {
            outcome.group_start_met = true;
            break;
        }
        --size;
        if (group == 0 || group == open_group_) continue;
        while (size > 0 && done_[size - 1].group == group)
            --size;
    }
    undoDownTo(size, outcome);
    return outcome;
}

UndoJournal::Outcome UndoJournal::undoAll() {
    open_group_ = 0;
    Outcome outcome;
    undoDownTo(0, outcome);
    marks_.clear();
    return outcome;
}

UndoJournal::Outcome UndoJournal::undoToMark() {
    if (marks_.empty()) return undoAll();
    open_group_ = 0;
    Outcome outcome;
    const size_t size = std::min(marks_.back(), done_.size());
    marks_.pop_back();
    undoDownTo(size, outcome);
    return outcome;
}

void UndoJournal::mark() {
    marks_.push_back(done_.size());
    steps().next();  // the step that goes on must not reach over the mark
}

UndoJournal::Outcome UndoJournal::redo() {
    Outcome outcome;
    if (undone_counts_.empty()) return outcome;
    swapping_ = true;
    for (size_t left = undone_counts_.back(); left > 0; --left) {
        Step& next = undone_.back();
        for (Entry& entry : next.entries)
            swap(entry);
        outcome.names.push_back(next.name);
        done_.push_back(std::move(next));
        undone_.pop_back();
    }
    swapping_ = false;
    undone_counts_.pop_back();
    finish(0);
    return outcome;
}

void UndoJournal::beginGroup() {
    open_group_ = ++last_group_;
    steps().next();
}

bool UndoJournal::endGroup() {
    steps().next();
    return std::exchange(open_group_, 0) != 0;
}

void UndoJournal::forget() {
    done_.clear();
    undone_.clear();
    undone_counts_.clear();
    marks_.clear();
}

void UndoJournal::setControl(UndoControl control) {
    control_ = control;
    steps().next();
    if (control == UndoControl::None) {
        forget();
        open_group_ = 0;
    } else if (control == UndoControl::One && done_.size() > 1) {
        done_.erase(done_.begin(), done_.end() - 1);
        marks_.clear();
    }
}

// --- for programs -------------------------------------------------------------------------------

UndoStep::UndoStep(std::string name) : outer_(std::exchange(steps().name, std::move(name))) {
    ++steps().depth;
    steps().next();
}

UndoStep::~UndoStep() {
    --steps().depth;
    steps().name = std::move(outer_);
    steps().next();
}

namespace {

UndoResult resultOf(UndoJournal::Outcome outcome) {
    return {std::move(outcome.names), outcome.mark_met, outcome.group_start_met};
}

UndoJournal* journal() {
    Database* database = currentDatabase();
    return database == nullptr ? nullptr : &database->undo();
}

}  // namespace

UndoResult undo(size_t count) {
    return journal() == nullptr ? UndoResult{} : resultOf(journal()->undo(count));
}

UndoResult undoAll() {
    return journal() == nullptr ? UndoResult{} : resultOf(journal()->undoAll());
}

UndoResult undoToMark() {
    return journal() == nullptr ? UndoResult{} : resultOf(journal()->undoToMark());
}

bool hasUndoMark() {
    return journal() != nullptr && journal()->hasMark();
}

void setUndoMark() {
    if (journal() != nullptr) journal()->mark();
}

UndoResult redo() {
    return journal() == nullptr ? UndoResult{} : resultOf(journal()->redo());
}

void beginUndoGroup() {
    if (journal() != nullptr) journal()->beginGroup();
}

bool endUndoGroup() {
    return journal() != nullptr && journal()->endGroup();
}

void setUndoMode(UndoMode mode) {
    if (journal() != nullptr) journal()->setControl(static_cast<UndoControl>(mode));
}

UndoMode undoMode() {
    return journal() == nullptr ? UndoMode::None : static_cast<UndoMode>(journal()->control());
}

int undoControlBits() {
    constexpr int kOn = 1;
    constexpr int kOnlyOne = 2;
    constexpr int kGroupOpen = 8;
    const UndoJournal* present = journal();
    if (present == nullptr || present->control() == UndoControl::None) return 0;
    return kOn | (present->control() == UndoControl::One ? kOnlyOne : 0) |
           (present->groupIsOpen() ? kGroupOpen : 0);
}

size_t undoStepCount() {
    return journal() == nullptr ? 0 : journal()->stepCount();
}

}  // namespace host
