/// The rules of groups. Three decide where the drawing contradicts itself: the key in the
/// dictionary is the name; an entity's own fields tell its group; a child's own field tells its
/// parent. Containers and lists of sub-groups follow from the rest.
#include "group_check.h"

#include <algorithm>
#include <set>
#include <unordered_set>

#include "kz_tls21an/text.h"

namespace console {

namespace {

constexpr size_t kLongestName = 28;

std::string quoted(const std::u16string& text) {
    return kz::toUtf8(text);
}

std::string counted(size_t count, const char* one, const char* many) {
    return count == 1 ? std::string("1 ") + one : std::to_string(count) + " " + many;
}

bool sameName(const std::u16string& a, const std::u16string& b) {
    return kz::compareNoCase(a, b) == 0;
}

/// "name, parent": what two sets of references differ in.
std::string differences(const GroupReferences& a, const GroupReferences& b) {
    std::string text;
    const auto add = [&text](bool differs, const char* what) {
        if (differs) text += std::string(text.empty() ? "" : ", ") + what;
    };
    add(a.name != b.name, "name");
    add(a.parent != b.parent, "parent");
    add(a.children != b.children, "children");
    add(a.container != b.container, "container");
    return text;
}

}  // namespace

void GroupCheck::find(const std::u16string& about, std::string what, std::string mend) {
    findings_.push_back({about, std::move(what), std::move(mend)});
}

void GroupCheck::erase(size_t index) {
    changes_[index] |= kErased;
    scan_.by_key.erase(kz::toUpper(group(index).key));
}

const std::vector<Finding>& GroupCheck::run() {
    const size_t count = scan_.groups.size();
    changes_.assign(count, 0);
    has_master_.assign(count, false);
    entity_changed_.assign(scan_.entities.size(), false);
    holders_.assign(scan_.entities.size(), {});
    checkNames();
    for (size_t i = 0; i < count; ++i) {
        if (group(i).is_container) continue;
        for (const size_t one : group(i).entities)
            holders_[one].push_back(i);
    }
    for (size_t i = 0; i < count; ++i)
        checkEntities(i);
    checkTreeReferences();
    checkCycles();
    checkTrees();
    for (size_t i = 0; i < count; ++i)
        checkParts(i);
    copyReferences();
    return findings_;
}

// --- names --------------------------------------------------------------------------------------

/// A group object that has lost all its fields has them from its master again.
bool GroupCheck::checkBare(size_t index) {
    ScannedGroup& one = group(index);
    if (one.is_container || !one.master.empty()) return false;
    if (!(one.references == GroupReferences()) || one.entities.empty()) return false;
    const ScannedEntity& first = entity(one.entities.front());
    if (first.role != u"MS" || !sameName(first.references.name, one.key)) return false;
    find(one.key, "bears no fields", "it bears what its master " + quoted(first.handle) + " does");
    one.references = first.references;
    one.master = first.handle;
    changes_[index] |= kFields;
    return true;
}

void GroupCheck::checkNames() {
    std::unordered_map<std::u16string, std::u16string> renamed;
    for (size_t i = 0; i < scan_.groups.size(); ++i) {
        ScannedGroup& one = group(i);
        std::u16string& name = one.references.name;
        if (one.key.size() > kLongestName) {
            find(one.key, "has a name of more than 28 characters");
            continue;
        }
        if (checkBare(i) || sameName(name, one.key)) continue;
        if (name.empty()) {
            find(one.key, "doesn't bear its name", "it bears it now");
        } else if (scan_.groupNamed(name) != kNobody) {
            find(one.key, "bears the name of the group " + quoted(name), "it bears its own now");
        } else if (!renamed.emplace(kz::toUpper(name), one.key).second) {
            find(one.key, "bears the name " + quoted(name) + ", as another group does");
            continue;
        } else {
            find(one.key, "bears the name " + quoted(name) + ", which no group has",
                 "it and all that name it bear " + quoted(one.key) + " now");
        }
        one.other_name = name;
        name = one.key;
        changes_[i] |= kFields;
    }
    if (!renamed.empty()) rename(renamed);
}

/// Gives those new names who are named anywhere by the old ones.
void GroupCheck::rename(const std::unordered_map<std::u16string, std::u16string>& renamed) {
    const auto change = [&renamed](std::u16string& name) {
        const auto found = renamed.find(kz::toUpper(name));
        if (found == renamed.end()) return false;
        name = found->second;
        return true;
    };
    const auto change_all = [&change](GroupReferences& references) {
        bool changed = change(references.name);
        changed |= change(references.parent);
        changed |= change(references.container);
        for (std::u16string& child : references.children)
            changed |= change(child);
        return changed;
    };
    for (size_t i = 0; i < scan_.groups.size(); ++i) {
        if (change_all(group(i).references)) changes_[i] |= kFields;
    }
    for (size_t i = 0; i < scan_.entities.size(); ++i) {
        if (change_all(entity(i).references)) entity_changed_[i] = true;
    }
}

// --- entities -----------------------------------------------------------------------------------

void GroupCheck::checkEntities(size_t index) {
    ScannedGroup& one = group(index);
    if (one.gone > 0) {
        const std::string count = counted(one.gone, "entity", "entities");
        find(one.key, "lists " + count + " that the drawing doesn't have", "the list is mended");
        changes_[index] |= kList;
    }
    if (one.is_container || checkEmpty(index) || !checkMaster(index)) return;
    has_master_[index] = true;
    checkMasterFields(index);
    checkMembers(index);
}

bool GroupCheck::checkEmpty(size_t index) {
    const ScannedGroup& one = group(index);
    if (!one.entities.empty()) return false;
    if (one.references.children.empty()) {
        find(one.key, "has no entities", "the group is erased");
        erase(index);
    } else {
        find(one.key, "has no entities, but children");
    }
    return true;
}

/// The only entity of a group that bears the mark of its master.
size_t GroupCheck::masterByFields(size_t index) {
    size_t master = kNobody;
    for (const size_t one : group(index).entities) {
        if (entity(one).role != u"MS") continue;
        if (!sameName(entity(one).references.name, group(index).references.name)) continue;
        if (master != kNobody) return kNobody;
        master = one;
    }
    return master;
}

bool GroupCheck::checkMaster(size_t index) {
    ScannedGroup& one = group(index);
    std::vector<size_t>& list = one.entities;
    size_t master = scan_.entityOf(one.master);
    auto place = std::find(list.begin(), list.end(), master);
    if (place == list.end()) {
        const std::string wrong =
            one.master.empty()
                ? std::string("names no master")
                : "names the master " + quoted(one.master) +
                      (isThere(one.master) ? ", which isn't in it" : ", which doesn't exist");
        master = masterByFields(index);
        place = std::find(list.begin(), list.end(), master);
        if (place == list.end()) {
            find(one.key, wrong);
            return false;
        }
        one.master = entity(master).handle;
        find(one.key, wrong, "it names " + quoted(one.master) + ", the only one marked as master");
        changes_[index] |= kFields;
    }
    if (place != list.begin()) {
        find(one.key, "has its master " + quoted(one.master) + " not as its first entity",
             "it is the first one now");
        std::rotate(list.begin(), place, place + 1);
        changes_[index] |= kList;
    }
    return true;
}

void GroupCheck::checkMasterFields(size_t index) {
    const ScannedGroup& one = group(index);
    const size_t at = one.entities.front();
    ScannedEntity& master = entity(at);
    const size_t owner = groupOf(at);
    if (owner != kNobody && owner != index) {
        find(one.key, "has the master " + quoted(master.handle) + ", which bears the fields of " +
                          quoted(group(owner).key));
        has_master_[index] = false;
        return;
    }
    // One that was a member before names itself.
    const bool names_itself = master.master.empty() || master.master == master.handle;
    if (master.role != u"MS" || !names_itself) {
        find(one.key, "has the master " + quoted(master.handle) + ", which isn't marked as one",
             "it is marked now");
        master.role = u"MS";
        master.master.clear();
        entity_changed_[at] = true;
    }
    if (master.references == one.references) return;
    find(one.key,
         "differs from its master " + quoted(master.handle) + " in " +
             differences(master.references, one.references),
         "the master bears what the group does");
    entity_changed_[at] = true;
}

/// The group that an entity's own fields tell, if that group lists it; kNobody for none.
size_t GroupCheck::groupOf(size_t entity_index) {
    const ScannedEntity& one = entity(entity_index);
    for (const size_t holder : holders_[entity_index]) {
        const ScannedGroup& held = group(holder);
        const bool master =
            one.role == u"MS" && sameName(one.references.name, held.references.name);
        const bool member = one.role == u"MM" && !one.master.empty() && one.master == held.master;
        if (master || member) return holder;
    }
    return kNobody;
}

void GroupCheck::checkMembers(size_t index) {
    ScannedGroup& one = group(index);
    const std::u16string& master = one.master;
    const auto belongs = [&](size_t at) {
        ScannedEntity& member = entity(at);
        if (member.handle == master) return true;
        if (member.role == u"MM" && member.master == master) return true;
        const size_t owner = groupOf(at);
        if (owner != kNobody && owner != index) {
            find(
                one.key,
                "lists " + quoted(member.handle) + ", which belongs to " + quoted(group(owner).key),
                "the list is mended");
            changes_[index] |= kList;
            return false;
        }
        find(one.key, "lists " + quoted(member.handle) + ", which isn't marked as its member",
             "it is marked now");
        member.role = u"MM";
        member.master = master;
        member.references = {};
        entity_changed_[at] = true;
        return true;
    };
    std::vector<size_t> left;
    std::copy_if(one.entities.begin(), one.entities.end(), std::back_inserter(left), belongs);
    one.entities = std::move(left);
}

// --- tree ---------------------------------------------------------------------------------------

void GroupCheck::checkTreeReferences() {
    for (size_t i = 0; i < scan_.groups.size(); ++i) {
        if (!group(i).is_container && !isErased(i)) checkParent(i);
    }
    for (size_t i = 0; i < scan_.groups.size(); ++i) {
        if (!group(i).is_container && !isErased(i)) checkChildren(i);
    }
    addMissingChildren();
}

void GroupCheck::checkParent(size_t index) {
    ScannedGroup& one = group(index);
    std::u16string& parent = one.references.parent;
    if (parent.empty()) return;
    const size_t at = scan_.groupNamed(parent);
    const bool container = at != kNobody && group(at).is_container;
    if (at != kNobody && at != index && !container) return;
    const std::string names = "names the parent " + quoted(parent);
    find(one.key,
         at == index ? "is its own parent"
                     : names + (container ? ", which is a container" : ", which doesn't exist"),
         "it is a root now");
    parent.clear();
    changes_[index] |= kFields;
}

void GroupCheck::addMissingChildren() {
    std::set<std::pair<size_t, size_t>> named;
    for (size_t i = 0; i < scan_.groups.size(); ++i) {
        for (const std::u16string& child : group(i).references.children)
            named.emplace(i, scan_.groupNamed(child));
    }
    for (size_t i = 0; i < scan_.groups.size(); ++i) {
        const ScannedGroup& one = group(i);
        if (one.is_container || isErased(i) || one.references.parent.empty()) continue;
        const size_t at = scan_.groupNamed(one.references.parent);
        if (at == kNobody || named.count({at, i}) != 0) continue;
        find(group(at).key, "doesn't name its child " + quoted(one.key), "it names it now");
        group(at).references.children.push_back(one.key);
        changes_[at] |= kFields;
    }
}

void GroupCheck::checkChildren(size_t index) {
    ScannedGroup& one = group(index);
    std::unordered_set<size_t> seen;
    const auto wrong = [&](const std::u16string& name) {
        const size_t at = scan_.groupNamed(name);
        std::string what = "names the child " + quoted(name);
        if (at == kNobody) {
            what += ", which doesn't exist";
        } else if (group(at).is_container) {
            what += ", which is a container";
        } else if (!sameName(group(at).references.parent, one.key)) {
            const std::u16string& parent = group(at).references.parent;
            what += parent.empty() ? ", which is a root" : ", a child of " + quoted(parent);
        } else if (!seen.insert(at).second) {
            what += " twice";
        } else {
            return false;
        }
        find(one.key, what, "the name is removed");
        changes_[index] |= kFields;
        return true;
    };
    std::vector<std::u16string>& children = one.references.children;
    children.erase(std::remove_if(children.begin(), children.end(), wrong), children.end());
}

void GroupCheck::checkCycles() {
    const std::vector<size_t> roots = scan_.roots();
    for (size_t i = 0; i < roots.size(); ++i) {
        if (roots[i] != kNobody || group(i).is_container || isErased(i)) continue;
        find(group(i).key, "has no root: its parents lead back to where they came from");
    }
}

// --- containers ---------------------------------------------------------------------------------

/// The container that a group names; kNobody when there is no such.
size_t GroupCheck::containerOf(size_t index) const {
    const size_t found = scan_.groupNamed(scan_.groups[index].references.container);
    return found != kNobody && scan_.groups[found].is_container ? found : kNobody;
}

void GroupCheck::checkTrees() {
    const std::vector<size_t> roots = scan_.roots();
    std::vector<std::vector<size_t>> trees(roots.size()), named_by(roots.size());
    for (size_t i = 0; i < roots.size(); ++i) {
        if (roots[i] == kNobody || roots[i] == i || isErased(i)) continue;
        if (trees[roots[i]].empty()) trees[roots[i]].push_back(roots[i]);
        trees[roots[i]].push_back(i);
    }
    for (const std::vector<size_t>& tree : trees) {
        if (!tree.empty()) checkTree(tree);
    }
    for (size_t i = 0; i < roots.size(); ++i) {
        const size_t at = group(i).is_container || isErased(i) ? kNobody : containerOf(i);
        if (at != kNobody) named_by[at].push_back(i);
    }
    for (size_t i = 0; i < roots.size(); ++i) {
        if (!group(i).is_container) continue;
        checkContainerFields(i, named_by[i]);
        if (!isErased(i)) checkContainerList(i, named_by[i]);
    }
}

/// All groups of a tree, the root in front, name one container: the root's, or the only one that is
/// named at all.
void GroupCheck::checkTree(const std::vector<size_t>& tree) {
    const size_t root = tree.front();
    std::set<size_t> named;
    for (const size_t one : tree)
        named.insert(containerOf(one));
    named.erase(kNobody);
    const size_t own = containerOf(root);
    const size_t right = own != kNobody || named.size() != 1 ? own : *named.begin();
    if (right == kNobody) {
        find(group(root).key, "heads a tree without a container", "a container is made");
        without_container_.push_back(tree);
        return;
    }
    const std::u16string& key = group(right).key;
    for (const size_t one : tree) {
        std::u16string& name = group(one).references.container;
        if (sameName(name, key)) continue;
        const std::string names =
            name.empty() ? "names no container" : "names the container " + quoted(name);
        find(group(one).key, names + ", that of its tree is " + quoted(key),
             "it names that one now");
        name = key;
        changes_[one] |= kFields;
    }
}

void GroupCheck::checkContainerFields(size_t index, const std::vector<size_t>& named_by) {
    ScannedGroup& one = group(index);
    if (named_by.empty()) {
        find(one.key, "is a container that no group names", "the container is erased");
        erase(index);
        return;
    }
    if (one.type != u"KZ_CONTAINER") {
        find(one.key, "is a container, but of type " + quoted(one.type), "it has the type now");
        one.type = u"KZ_CONTAINER";
        changes_[index] |= kType;
    }
    GroupReferences bare;
    bare.name = one.references.name;
    if (one.master.empty() && one.references == bare) return;
    find(one.key, "is a container with a master, a parent or children", "it bears its name only");
    one.master.clear();
    one.references = bare;
    changes_[index] |= kFields;
}

void GroupCheck::checkContainerList(size_t index, const std::vector<size_t>& named_by) {
    ScannedGroup& one = group(index);
    const std::unordered_set<size_t> held(one.entities.begin(), one.entities.end());
    std::unordered_set<size_t> wanted;
    std::vector<size_t> list, missing;
    for (const size_t by : named_by) {
        for (const size_t at : group(by).entities) {
            if (wanted.insert(at).second && held.count(at) == 0) missing.push_back(at);
        }
    }
    std::copy_if(one.entities.begin(), one.entities.end(), std::back_inserter(list),
                 [&wanted](size_t at) { return wanted.count(at) != 0; });
    const size_t strange = one.entities.size() - list.size();
    if (missing.empty() && strange == 0) return;
    if (!missing.empty()) {
        find(one.key, "lacks " + counted(missing.size(), "entity", "entities") + " of its groups",
             "it holds them now");
    }
    if (strange > 0) {
        find(one.key, "holds " + counted(strange, "entity", "entities") + " of none of its groups",
             "the list is mended");
    }
    list.insert(list.end(), missing.begin(), missing.end());
    one.entities = std::move(list);
    changes_[index] |= kList;
}

// --- sub-groups ---------------------------------------------------------------------------------

/// The members of a group by their sub-groups. @return false when one is in several
bool GroupCheck::takeParts(size_t index, Parts& parts) {
    const ScannedGroup& one = group(index);
    bool clear = true;
    for (size_t i = 1; i < one.entities.size(); ++i) {
        const ScannedEntity& member = entity(one.entities[i]);
        if (member.parts.empty()) continue;
        parts[member.parts.begin()->first].insert(member.handle);
        if (member.parts.size() == 1) continue;
        find(one.key, "has the member " + quoted(member.handle) + " in several sub-groups");
        clear = false;
    }
    return clear;
}

void GroupCheck::checkParts(size_t index) {
    if (!has_master_[index] || isErased(index)) return;
    const ScannedGroup& one = group(index);
    Parts wanted, listed;
    if (!takeParts(index, wanted)) return;
    std::set<std::u16string> names;
    for (const auto& [name, handles] : entity(one.entities.front()).parts) {
        std::set<std::u16string>& list = listed[name];
        for (const std::u16string& handle : handles)
            list.insert(kz::toUpper(handle));
        const auto found = wanted.find(name);
        // The last member that leaves a sub-group may leave an empty list.
        const bool right = found == wanted.end() ? list.empty() : found->second == list;
        if (!right) names.insert(name);
    }
    for (const auto& [name, handles] : wanted) {
        if (listed.count(name) == 0) names.insert(name);
    }
    for (const std::u16string& name : names) {
        find(one.key,
             "has a list of the sub-group " + quoted(name) + " that isn't that of its members",
             "the list is made anew");
    }
    if (!names.empty()) changes_[index] |= kParts;
}

/// What has changed of a group is written on its master, too.
void GroupCheck::copyReferences() {
    for (size_t i = 0; i < scan_.groups.size(); ++i) {
        if (!has_master_[i] || isErased(i)) continue;
        const size_t at = group(i).entities.front();
        if (entity(at).references == group(i).references) continue;
        entity(at).references = group(i).references;
        entity_changed_[at] = true;
    }
}

}  // namespace console
