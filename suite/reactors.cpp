/// Reactors: those of group masters, which see what happens to their entity, and the declared ones
/// of other modules, which are only kept.
#include <memory>
#include <string>
#include <unordered_map>

#include "cadservice.h"
#include "host/drawings.h"

namespace {

int disabled = 0;  ///< how many disable calls wait for their restore

/// The reactor of one master. It observes as long as it lives or its drawing does.
class MasterReactor : public host::ObjectObserver {
  public:
    MasterReactor(AcDbObjectId master, AcDbObjectId group) : master_(master), group_(group) {
        host::observe(master_, this);
    }
    ~MasterReactor() override { host::stopObserving(master_, this); }
    MasterReactor(const MasterReactor&) = delete;
    MasterReactor& operator=(const MasterReactor&) = delete;

    AcDbObjectId group() const { return group_; }
    const kz_MasterEvents& events() const { return events_; }

    void changed(AcDbObjectId) override {
        if (disabled == 0) ++events_.changed;
    }
    void erased(AcDbObjectId, bool isErased) override {
        if (disabled == 0) ++(isErased ? events_.erased : events_.restored);
    }
    void closing(AcDbObjectId id) override;

  private:
    AcDbObjectId master_;
    AcDbObjectId group_;
    kz_MasterEvents events_{};
};

using MasterReactors = std::unordered_map<uint64_t, std::unique_ptr<MasterReactor>>;

/// By the master's id.
MasterReactors& masters() {
    static MasterReactors all;
    return all;
}

void MasterReactor::closing(AcDbObjectId id) {
    masters().erase(id.asOldId());
}

AcDbObjectId idOf(const kz_CADObjId* object) {
    AcDbObjectId id;
    if (object == nullptr || acdbGetObjectId(id, object->ename) != Acad::eOk) return {};
    return id;
}

/// The reactor of this group's master; NULL when there is none.
MasterReactor* findReactor(const kz_CADObjId* group, const kz_CADObjId* master) {
    const auto found = masters().find(idOf(master).asOldId());
    if (found == masters().end() || found->second->group() != idOf(group)) return nullptr;
    return found->second.get();
}

/// A reactor that another module declared.
struct Declared {
    enum class Kind { Command, Group, Tags };
    Kind kind = Kind::Tags;
    void* command = nullptr;
    void* action = nullptr;
    int when = 0;
    int flags = 0;
    bool enabled = true;
};

struct Declarations {
    std::unordered_map<void*, Declared> reactors;
    std::u16string externalPath;
};

Declarations& declarations() {
    static Declarations all;
    return all;
}

int declare(void* key, const Declared& reactor) {
    return suite::guarded(0, [&] {
        if (key == nullptr) return 0;
        return declarations().reactors.emplace(key, reactor).second ? 1 : 0;
    });
}

int setEnabled(void* key, bool enabled) {
    const auto found = declarations().reactors.find(key);
    if (found == declarations().reactors.end()) return 0;
    found->second.enabled = enabled;
    return 1;
}

}  // namespace

int kz_Group_attachMasterEntReactor(const kz_CADObjId* group, const kz_CADObjId* master) {
    return suite::guarded(0, [&] {
        const AcDbObjectId groupId = idOf(group), masterId = idOf(master);
        if (groupId.isNull() || masterId.isNull()) return 0;
        if (findReactor(group, master) != nullptr) return 1;
        masters().erase(masterId.asOldId());
        masters().emplace(masterId.asOldId(), std::make_unique<MasterReactor>(masterId, groupId));
        return 1;
    });
}

int kz_Group_detachMasterEntReactor(const kz_CADObjId* group, const kz_CADObjId* master) {
    if (findReactor(group, master) == nullptr) return 0;
    masters().erase(idOf(master).asOldId());
    return 1;
}

void kz_Group_disableMasterEntReactor(void) {
    ++disabled;
}

void kz_Group_restoreMasterEntReactor(void) {
    if (disabled > 0) --disabled;
}

int kz_Group_getMasterEntEvents(kz_MasterEvents* out, const kz_CADObjId* group,
                                const kz_CADObjId* master) {
    const MasterReactor* const reactor = findReactor(group, master);
    if (reactor == nullptr || out == nullptr) return 0;
    *out = reactor->events();
    return 1;
}

int kz_CommandReactor_create(void* key, void* command, int when, void* action, int flags) {
    return declare(key, {Declared::Kind::Command, command, action, when, flags});
}

int kz_Group_createReactor(void* key, int when, void* action, int flags) {
    return declare(key, {Declared::Kind::Group, nullptr, action, when, flags});
}

int kz_TagsReactor_create(void* key) {
    return declare(key, {});
}

void kz_CommandReactor_setExternalDwgPath(const kz_Char* path) {
    suite::guarded(0, [&] {
        declarations().externalPath = path == nullptr ? u"" : path;
        return 1;
    });
}

int kz_Reactor_disable(void* key) {
    return setEnabled(key, false);
}

int kz_Reactor_enable(void* key) {
    return setEnabled(key, true);
}

int kz_Reactor_isEnabled(void* key) {
    const auto found = declarations().reactors.find(key);
    return found != declarations().reactors.end() && found->second.enabled ? 1 : 0;
}

int kz_Reactor_remove(void* key) {
    return declarations().reactors.erase(key) != 0 ? 1 : 0;
}

void kz_Reactor_removeAll(void) {
    declarations().reactors.clear();
}
