/// The document of the editor: its switches, and the filters that see what the user chooses.
#include "edit/documents.h"

#include <algorithm>
#include <utility>

#include "base/faults.h"
#include "host/display.h"
#include "host/selection.h"

namespace host {
namespace {

struct Context {
    AcApDocManager manager;
    AcApDocument document;
    AcEdInputPointManager points;
    std::vector<AcEdSSGetFilter*> filters;
    bool duplicates = false;
    int nested_windows = 0;
    std::vector<std::string> switches;
    std::vector<std::vector<AcDbObjectId>> lit;

    void note(const char* name, bool on) {
        // Nobody may ever ask; the last ones are enough.
        constexpr size_t kMost = 64;
        if (switches.size() == kMost) switches.erase(switches.begin());
        switches.push_back(std::string(name) + (on ? " on" : " off"));
    }
};

Context& context() {
    static Context present;
    return present;
}

class Service : public AcEdSelectionSetService {
  public:
    Service(Selection& selection, Selection& choice) : selection_(selection), choice_(choice) {
        for (size_t i = 0; i < choice.size(); ++i)
            entries_.push_back({choice.at(i), choice.howIndexAt(i)});
    }

    Acad::ErrorStatus ssNameX(bool sub_selection, int index, resbuf*& chain) override {
        chain = nullptr;
        if (mustFail(Call::ssNameX)) return Acad::eOutOfMemory;
        Selection& asked = sub_selection ? choice_ : selection_;
        const auto at = static_cast<size_t>(index);
        if (index < 0 || at >= asked.size()) return Acad::eInvalidIndex;
        chain = choiceChain(asked, at, at + 1);
        return chain == nullptr ? Acad::eOutOfMemory : Acad::eOk;
    }

    Acad::ErrorStatus add(const AcDbObjectId& entity, bool highlighted) override {
        ads_name name = {0, 0};
        if (acdbGetAdsName(name, entity) != Acad::eOk || memberId(name).isNull()) {
            return Acad::eInvalidInput;
        }
        added_.push_back(entity);
        if (highlighted) setHighlighted(entity, true);
        return Acad::eOk;
    }

    Acad::ErrorStatus remove(int index) override {
        if (!hasEntry(index)) return Acad::eInvalidIndex;
        entries_[static_cast<size_t>(index)].removed = true;
        return Acad::eOk;
    }

    Acad::ErrorStatus highlight(int index, const AcDbFullSubentPath& path) override {
        const int length = path.objectIds().length();
        if (!hasEntry(index) || length == 0) return Acad::eInvalidIndex;
        std::vector<AcDbObjectId> ids;
        ids.reserve(static_cast<size_t>(length));
        for (int i = 0; i < length; ++i)
            ids.push_back(path.objectIds()[i]);
        constexpr size_t kMost = 1024;
        if (context().lit.size() < kMost) context().lit.push_back(std::move(ids));
        return Acad::eOk;
    }

    /// Makes the choice what the filters have left of it.
    void apply() {
        bool any_removed = false;
        for (const Entry& entry : entries_)
            any_removed = any_removed || entry.removed;
        if (any_removed) {
            choice_.clearMembers();
            for (const Entry& entry : entries_) {
                if (!entry.removed) choice_.addAgain(entry.id, entry.how);
            }
        }
        for (const AcDbObjectId id : added_)
            choice_.add(id);
    }

  private:
    struct Entry {
        AcDbObjectId id;
        uint32_t how;
        bool removed = false;
    };

    bool hasEntry(int index) const {
        return index >= 0 && static_cast<size_t>(index) < entries_.size();
    }

    Selection& selection_;
    Selection& choice_;
    std::vector<Entry> entries_;
    std::vector<AcDbObjectId> added_;
};

AcDbObjectIdArray idsOf(Selection& selection) {
    AcDbObjectIdArray ids(static_cast<int>(selection.size()));
    for (size_t i = 0; i < selection.size(); ++i)
        ids.append(selection.at(i));
    return ids;
}

}  // namespace

bool duplicatesAllowed() {
    return context().duplicates;
}

bool windowsChooseNested() {
    return context().nested_windows > 0;
}

void filterChoice(Selection& selection, Selection& choice) {
    if (context().filters.empty() || choice.empty()) return;
    Service service(selection, choice);
    const AcDbObjectIdArray before = idsOf(selection), chosen = idsOf(choice);
    // A copy: a filter may take itself off.
    const std::vector<AcEdSSGetFilter*> called = context().filters;
    for (AcEdSSGetFilter* filter : called)
        filter->ssgetAddFilter(0, service, before, chosen);
    service.apply();
}

std::vector<std::string> takeSelectionSwitches() {
    return std::exchange(context().switches, {});
}

std::vector<std::vector<AcDbObjectId>> takeHighlightedPaths() {
    return std::exchange(context().lit, {});
}

int64_t selectionFilterCount() {
    return static_cast<int64_t>(context().filters.size());
}

}  // namespace host

using host::context;

Acad::ErrorStatus AcEdInputPointManager::turnOnSubentityWindowSelection() {
    context().note("nested windows", true);
    ++context().nested_windows;
    return Acad::eOk;
}

Acad::ErrorStatus AcEdInputPointManager::turnOffSubentityWindowSelection() {
    context().note("nested windows", false);
    if (context().nested_windows == 0) return Acad::eInvalidInput;
    --context().nested_windows;
    return Acad::eOk;
}

AcEdInputPointManager* AcApDocument::inputPointManager() const {
    return &context().points;
}

AcApDocument* AcApDocManager::curDocument() const {
    if (host::mustFail(host::Call::curDocument)) return nullptr;
    return host::currentDatabase() == nullptr ? nullptr : &context().document;
}

AcApDocManager* acDocManagerPtr() {
    return &context().manager;
}

bool addSSgetFilterInputContextReactor(AcApDocument* document, AcEdSSGetFilter* filter) {
    std::vector<AcEdSSGetFilter*>& filters = context().filters;
    if (host::mustFail(host::Call::addSSgetFilterInputContextReactor)) return false;
    if (document == nullptr || filter == nullptr) return false;
    if (std::find(filters.begin(), filters.end(), filter) != filters.end()) return false;
    context().note("filter", true);
    filters.push_back(filter);
    return true;
}

bool removeSSgetFilterInputContextReactor(AcApDocument* document, AcEdSSGetFilter* filter) {
    if (document == nullptr || std::erase(context().filters, filter) == 0) return false;
    context().note("filter", false);
    return true;
}

bool setAllowDuplicateSelection(AcApDocument* document, bool allowed) {
    if (document == nullptr) return false;
    context().note("duplicates", allowed);
    context().duplicates = allowed;
    return true;
}
