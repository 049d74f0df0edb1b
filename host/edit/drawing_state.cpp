/// The states of living drawings, and the viewport that each is worked in.
#include "edit/drawing_state.h"

#include <unordered_map>

#include "edit/tag_values.h"

namespace host {
namespace {

/// States by an id of their drawing; those of closed drawings go when the next one is made.
std::unordered_map<uint64_t, DrawingState>& states() {
    static std::unordered_map<uint64_t, DrawingState> all;
    return all;
}

/// An id that tells the drawing from all that live and lived. Each has objects.
AcDbObjectId idOf(const Database& database) {
    return database.idOf(1);
}

constexpr int kTiledViewport = 2;
constexpr int kPaperItself = 1;

}  // namespace

bool inModelTiles(Database& database) {
    const HeaderVariable* tiles = database.header("$TILEMODE");
    return tiles == nullptr || tiles->tags.front().integer() != 0;
}

DrawingState& drawingState(Database& database) {
    const uint64_t id = idOf(database).asOldId();
    const auto found = states().find(id);
    if (found != states().end()) return found->second;
    std::erase_if(states(), [](const auto& state) {
        return Database::find(AcDbObjectId(state.first)) == nullptr;
    });
    return states()[id];
}

History<View>& viewHistory(Database& database) {
    const int key = inModelTiles(database) ? 0 : currentViewport(database);
    return drawingState(database).views[key];
}

Slot layoutViewport(Database& database, int number) {
    const Block* paper = database.findBlock(database.paperSpace());
    if (paper == nullptr) return kNoSlot;
    for (const Slot slot : paper->contents) {
        if (database.record(slot).erased || database.typeName(slot) != "VIEWPORT") continue;
        if (integerOf(database.tags(slot), 69, 0) == number) return slot;
    }
    return kNoSlot;
}

int currentViewport(Database& database) {
    if (inModelTiles(database)) return kTiledViewport;
    const int number = drawingState(database).layout_viewport;
    const bool there = number == kPaperItself || layoutViewport(database, number) != kNoSlot;
    return there ? number : kPaperItself;
}

bool setCurrentViewport(Database& database, int number) {
    if (inModelTiles(database)) return number == kTiledViewport;
    if (number != kPaperItself && layoutViewport(database, number) == kNoSlot) return false;
    drawingState(database).layout_viewport = number;
    return true;
}

bool canBeCurrentLayer(Database& database, Slot layer) {
    constexpr int64_t kFrozen = 1, kOfAttachment = 16;
    return layer != kNoSlot &&
           (integerOf(database.tags(layer), 70, 0) & (kFrozen | kOfAttachment)) == 0;
}

bool inPaperSpace(Database& database) {
    return currentViewport(database) == kPaperItself;
}

}  // namespace host
