/// Owner and reactors of an object.
#include "db/reactors.h"

#include <array>
#include <iterator>
#include <utility>

namespace host {
namespace {

/// Index of the group behind the one in braces that starts at `at`.
size_t behindBraces(const Tags& tags, size_t at) {
    const size_t end = findTag(tags, 102, at + 1);
    return end < tags.size() ? end + 1 : at + 1;
}

/// The group {ACAD_REACTORS in front of an object's owner; tags.size() when there is none.
size_t findReactors(const Tags& tags) {
    const dxf::TextCodec plain;
    for (size_t at = 1; at < tags.size() && tags[at].code() != 100;) {
        const bool braces = tags[at].code() == 102;
        if (braces && tags[at].text(plain) == kReactors) return at;
        at = braces ? behindBraces(tags, at) : at + 1;
    }
    return tags.size();
}

/// Index of a reactor in the group that starts at `group`, or of the group's end.
size_t findReactor(const Tags& tags, size_t group, uint64_t handle) {
    size_t at = group + 1;
    while (at < tags.size() && tags[at].code() == 330 && tags[at].handleValue() != handle)
        ++at;
    return at;
}

bool isReactor(const Tags& tags, size_t at) {
    return at < tags.size() && tags[at].code() == 330;
}

}  // namespace

size_t ownerPlace(const Tags& tags) {
    size_t at = 1;
    while (at < tags.size() && tags[at].code() != 100 && tags[at].code() != 330)
        at = tags[at].code() == 102 ? behindBraces(tags, at) : at + 1;
    return at;
}

bool hasOwnerGroup(const Tags& tags, size_t place) {
    return place < tags.size() && tags[place].code() == 330;
}

void setOwnerGroup(Tags& tags, uint64_t owner) {
    const size_t at = ownerPlace(tags);
    const Tag link = Tag::handle(330, owner);
    if (hasOwnerGroup(tags, at)) {
        tags[at] = link;
    } else {
        tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(at), link);
    }
}

void addReactor(Tags& tags, uint64_t handle) {
    const size_t group = findReactors(tags);
    if (group < tags.size()) {
        const size_t at = findReactor(tags, group, handle);
        if (isReactor(tags, at)) return;
        tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(at), Tag::handle(330, handle));
        return;
    }
    // What stands behind the place moves once for all three.
    std::array<Tag, 3> made = {Tag(102, std::u16string(kReactors)), Tag::handle(330, handle),
                               Tag(102, u"}")};
    tags.reserve(tags.size() + made.size());  // entities of groups are many
    tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(ownerPlace(tags)),
                std::make_move_iterator(made.begin()), std::make_move_iterator(made.end()));
}

void removeReactor(Tags& tags, uint64_t handle) {
    const size_t group = findReactors(tags);
    if (group == tags.size()) return;
    const size_t at = findReactor(tags, group, handle);
    if (!isReactor(tags, at)) return;
    tags.erase(tags.begin() + static_cast<std::ptrdiff_t>(at));
    const bool empty = group + 1 < tags.size() && tags[group + 1].code() == 102;
    if (!empty) return;
    const auto begin = tags.begin() + static_cast<std::ptrdiff_t>(group);
    tags.erase(begin, begin + 2);
}

bool hasReactor(const Tags& tags, uint64_t handle) {
    const size_t group = findReactors(tags);
    return group < tags.size() && isReactor(tags, findReactor(tags, group, handle));
}

}  // namespace host
