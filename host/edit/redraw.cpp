/// acedRedraw, and what it has done to single objects. Only objects that are not shown in the plain
/// way are kept; each is observed, so that it is forgotten with its drawing.
#include <unordered_map>

#include "base/faults.h"
#include "db/database.h"
#include "edit/sysvars.h"
#include "host/display.h"
#include "host/drawings.h"

namespace host {
namespace {

/// Modes of acedRedraw. Negative ones mean the head of a complex entity alone, which is all that
/// is kept of it here.
enum Mode : int { Redraw = 1, TakeOff = 2, Highlight = 3, EndHighlight = 4 };

struct Look {
    bool highlighted = false;
    bool off_screen = false;

    bool plain() const { return !highlighted && !off_screen; }
};

class Screen : public ObjectObserver {
  public:
    static Screen& instance() {
        // Drawings may close while the program ends.
        static auto* const screen = new Screen;
        return *screen;
    }

    Look look(AcDbObjectId id) const {
        const auto found = looks_.find(id.asOldId());
        return found == looks_.end() ? Look{} : found->second;
    }

    void set(AcDbObjectId id, Look look) {
        if (look.plain()) {
            forget(id);
        } else if (looks_.contains(id.asOldId()) || observe(id, this)) {
            looks_[id.asOldId()] = look;
        }
    }

    /// Brings back all that was taken off the screen.
    void redraw(const Database& drawing) {
        const auto before = looks_;
        for (const auto& [key, look] : before) {
            const AcDbObjectId id(key);
            if (Database::find(id) == &drawing) set(id, {look.highlighted, false});
        }
    }

    void changed(AcDbObjectId) override {}
    void erased(AcDbObjectId id, bool) override { forget(id); }
    void closing(AcDbObjectId id) override { looks_.erase(id.asOldId()); }

  private:
    void forget(AcDbObjectId id) {
        if (looks_.erase(id.asOldId()) != 0) stopObserving(id, this);
    }

    std::unordered_map<uint64_t, Look> looks_;
};

/// A living entity; null for anything else.
AcDbObjectId shownEntity(const ads_name name) {
    const AcDbObjectId id = Database::idFromName(name);
    const Database* database = Database::find(id);
    if (database == nullptr) return {};
    const ObjectRecord& record = database->record(database->slotOf(id));
    const bool graphical =
        record.object_class == ObjectClass::Entity || record.object_class == ObjectClass::SubEntity;
    return graphical && !record.erased ? id : AcDbObjectId{};
}

int redrawAll() {
    const Database* drawing = currentDatabase();
    if (drawing == nullptr) return RTERROR;
    Screen::instance().redraw(*drawing);
    return RTNORM;
}

int redrawEntity(AcDbObjectId id, int mode) {
    Look look = Screen::instance().look(id);
    switch (mode) {
        case Redraw:
        case -Redraw:
            look.off_screen = false;
            break;
        case TakeOff:
        case -TakeOff:
            look.off_screen = true;
            break;
        case Highlight:
        case -Highlight:
            look.highlighted = true;
            break;
        case EndHighlight:
        case -EndHighlight:
            look.highlighted = false;
            break;
        default:
            return RTERROR;
    }
    Screen::instance().set(id, look);
    return RTNORM;
}

}  // namespace

bool isHighlighted(AcDbObjectId id) {
    return Screen::instance().look(id).highlighted;
}

bool isOffScreen(AcDbObjectId id) {
    return Screen::instance().look(id).off_screen;
}

void setHighlighted(AcDbObjectId id, bool on) {
    Look look = Screen::instance().look(id);
    look.highlighted = on;
    Screen::instance().set(id, look);
}

}  // namespace host

int acedRedraw(const ads_name entity, int mode) {
    int status = 0;
    if (host::mustFail(host::Call::acedRedraw, status)) return status;
    if (entity == nullptr || ads_name_nil(entity)) return host::redrawAll();
    const AcDbObjectId id = host::shownEntity(entity);
    if (!id.isNull()) return host::redrawEntity(id, mode);
    host::setErrno(host::HostErrno::BadEntityName);
    return RTERROR;
}

bool acgsRemoveAnonymousGraphics(int) {
    return !host::mustFail(host::Call::acgsRemoveAnonymousGraphics);
}
