/// Observers of single objects, and who hears of drawings that close.
#include <algorithm>
#include <utility>

#include "db/links.h"

namespace host {
namespace {

std::function<void(AcDbDatabase*)>& closingCallback() {
    // Drawings may close while the program ends.
    static auto* const callback = new std::function<void(AcDbDatabase*)>;
    return *callback;
}

}  // namespace

ObjectObserver::~ObjectObserver() = default;

void Database::notify(Slot slot, const bool* erased) {
    const auto found = links_->observers.find(slot);
    if (found == links_->observers.end()) return;
    // A copy: an observer may stop observing when it is called.
    const std::vector<ObjectObserver*> called = found->second;
    const AcDbObjectId id = idOf(slot);
    for (ObjectObserver* observer : called) {
        if (erased == nullptr) {
            observer->changed(id);
        } else {
            observer->erased(id, *erased);
        }
    }
}

void announceClosing(Database& database) {
    DatabaseLinks& around = database.links();
    const auto observers = std::exchange(around.observers, {});
    for (const auto& [slot, list] : observers) {
        for (ObjectObserver* observer : list)
            observer->closing(database.idOf(slot));
    }
    if (around.facade != nullptr && closingCallback()) closingCallback()(around.facade);
}

bool observe(AcDbObjectId id, ObjectObserver* observer) {
    Database* database = Database::find(id);
    if (database == nullptr || observer == nullptr) return false;
    std::vector<ObjectObserver*>& list = database->links().observers[database->slotOf(id)];
    if (std::find(list.begin(), list.end(), observer) != list.end()) return false;
    list.push_back(observer);
    return true;
}

bool stopObserving(AcDbObjectId id, ObjectObserver* observer) {
    Database* database = Database::find(id);
    if (database == nullptr) return false;
    auto& observers = database->links().observers;
    const auto found = observers.find(database->slotOf(id));
    if (found == observers.end() || std::erase(found->second, observer) == 0) return false;
    if (found->second.empty()) observers.erase(found);
    return true;
}

void onDrawingClosing(std::function<void(AcDbDatabase*)> callback) {
    closingCallback() = std::move(callback);
}

}  // namespace host
