/// Selections, and what acedSSNameX tells of them.
#include "edit/selection.h"

#include <algorithm>

#include "base/faults.h"
#include "db/groups.h"

namespace host {

bool Selection::add(AcDbObjectId id, uint32_t how) {
    if (has(id)) return false;
    addAgain(id, how);
    return true;
}

void Selection::addAgain(AcDbObjectId id, uint32_t how) {
    if (!places_.emplace(id.asOldId(), members_.size()).second) duplicates_ = true;
    if (how != 0 && member_hows_.empty()) member_hows_.resize(members_.size());
    members_.push_back(id);
    if (how != 0 || !member_hows_.empty()) member_hows_.push_back(how);
}

bool Selection::remove(AcDbObjectId id) {
    const auto found = places_.find(id.asOldId());
    if (found == places_.end()) return false;
    const size_t place = found->second;
    members_[place].setNull();
    ++holes_;
    places_.erase(found);
    if (!duplicates_) return true;
    const auto next =
        std::find(members_.begin() + static_cast<ptrdiff_t>(place), members_.end(), id);
    if (next != members_.end()) {
        places_.emplace(id.asOldId(), static_cast<size_t>(next - members_.begin()));
    }
    return true;
}

void Selection::pack() {
    if (holes_ == 0) return;
    places_.clear();
    size_t kept = 0;
    for (size_t i = 0; i < members_.size(); ++i) {
        if (members_[i].isNull()) continue;
        members_[kept] = members_[i];
        if (!member_hows_.empty()) member_hows_[kept] = member_hows_[i];
        places_.emplace(members_[kept].asOldId(), kept);
        ++kept;
    }
    members_.resize(kept);
    if (!member_hows_.empty()) member_hows_.resize(kept);
    holes_ = 0;
}

AcDbObjectId Selection::at(size_t index) {
    pack();
    return index < members_.size() ? members_[index] : AcDbObjectId{};
}

uint32_t Selection::howIndexAt(size_t index) {
    pack();
    return index < member_hows_.size() ? member_hows_[index] : 0;
}

const HowChosen& Selection::howAt(size_t index) {
    return hows_[howIndexAt(index)];
}

uint32_t Selection::addHow(HowChosen how) {
    hows_.push_back(std::move(how));
    return static_cast<uint32_t>(hows_.size() - 1);
}

size_t Selection::addPolygon(std::vector<AcGePoint3d> corners) {
    polygons_.push_back(std::move(corners));
    return polygons_.size() - 1;
}

std::vector<AcDbObjectId> Selection::ids() {
    pack();
    return members_;
}

void Selection::clearMembers() {
    members_.clear();
    member_hows_.clear();
    places_.clear();
    holes_ = 0;
    duplicates_ = false;
}

SelectionMap::SelectionMap(const Selection& from, Selection& to)
    : shift_(static_cast<uint32_t>(to.howCount()) - 1) {
    const size_t polygons = to.polygons().size();
    for (const std::vector<AcGePoint3d>& polygon : from.polygons())
        to.addPolygon(polygon);
    for (uint32_t i = 1; i < from.howCount(); ++i) {
        HowChosen how = from.how(i);
        how.polygon += polygons;
        to.addHow(std::move(how));
    }
}

// --- chains -------------------------------------------------------------------------------------

namespace {

bool addPoint(ChainBuilder& chain, const AcGePoint3d& point) {
    resbuf* node = chain.add(acutNewRb(RT3DPOINT));
    if (node == nullptr) return false;
    for (unsigned int i = 0; i < 3; ++i)
        node->resval.rpoint[i] = point[i];
    return true;
}

/// A point as the line through it, along which it was seen: (0 point [direction]).
void addSeenPoint(ChainBuilder& chain, const AcGePoint3d& point, const AcGeVector3d& direction) {
    chain.add(acutNewRb(RTLB));
    chain.addShort(RTSHORT, 0);
    addPoint(chain, point);
    if (!direction.isEqualTo(AcGeVector3d::kZAxis)) addPoint(chain, AcGePoint3d() + direction);
    chain.add(acutNewRb(RTLE));
}

void addId(ChainBuilder& chain, AcDbObjectId id) {
    ads_name name = {0, 0};
    acdbGetAdsName(name, id);
    chain.addName(RTENAME, name);
}

/// (by entity 0 ...), as the way of choosing asks for.
void addEntry(ChainBuilder& chain, AcDbObjectId id, const HowChosen& how) {
    chain.add(acutNewRb(RTLB));
    chain.addShort(RTSHORT, static_cast<int>(how.by));
    addId(chain, how.path.empty() ? id : how.path.back());
    chain.addShort(RTSHORT, 0);
    if (how.by == ChosenBy::Window || how.by == ChosenBy::Crossing) {
        chain.addShort(RTSHORT, -1 - static_cast<int>(how.polygon));
    }
    for (const AcGePoint3d& point : how.points)
        addSeenPoint(chain, point, how.direction);
    if (how.path.size() > 1) {
        chain.add(acutNewRb(RTLB));
        for (size_t i = how.path.size() - 1; i-- > 0;)
            addId(chain, how.path[i]);
        chain.add(acutNewRb(RTLE));
    }
    chain.add(acutNewRb(RTLE));
}

void addPolygonEntry(ChainBuilder& chain, const Selection& selection, const HowChosen& how) {
    chain.add(acutNewRb(RTLB));
    chain.addShort(RTSHORT, -1 - static_cast<int>(how.polygon));
    for (const AcGePoint3d& corner : selection.polygons()[how.polygon])
        addSeenPoint(chain, corner, how.direction);
    chain.add(acutNewRb(RTLE));
}

}  // namespace

resbuf* choiceChain(Selection& selection, size_t begin, size_t end) {
    ChainBuilder chain;
    std::vector<bool> shown(selection.polygons().size());
    std::vector<const HowChosen*> windows;
    chain.add(acutNewRb(RTLB));
    for (size_t i = begin; i < end; ++i) {
        const HowChosen& how = selection.howAt(i);
        addEntry(chain, selection.at(i), how);
        const bool window = how.by == ChosenBy::Window || how.by == ChosenBy::Crossing;
        if (!window || shown[how.polygon]) continue;
        shown[how.polygon] = true;
        windows.push_back(&how);
    }
    for (const HowChosen* how : windows)
        addPolygonEntry(chain, selection, *how);
    chain.add(acutNewRb(RTLE));
    return chain.release();
}

}  // namespace host

extern "C" int acedSSNameX(resbuf** chain, const ads_name set, int32_t index) {
    int status = 0;
    if (host::mustFail(host::Call::acedSSNameX, status)) return status;
    host::Selection* selection = host::selectionOf(set);
    if (selection == nullptr || chain == nullptr || index < -1) return RTERROR;
    const bool all = index == -1;
    const size_t begin = all ? 0 : static_cast<size_t>(index);
    const size_t end = all ? selection->size() : begin + 1;
    if (begin >= end || end > selection->size()) return RTERROR;
    resbuf* made = host::choiceChain(*selection, begin, end);
    if (made == nullptr) return RTERROR;
    *chain = made;
    return RTNORM;
}
