// Groups against a plain model: thousands of random operations, each predicted by the model, and
// after each the whole drawing compared with it, undone steps and reopened drawings too.
//
// KZ_MODEL_SEED and KZ_MODEL_STEPS replay one run: the failure message names the seed.
#include <cstdlib>
#include <random>

#include "group_edit_test.h"
#include "host/undo.h"

namespace {

using Names = std::vector<std::string>;

/// What there is to know of one group.
struct Plain {
    std::string type;
    Names entities;  ///< the master first
    std::string parent;
    Names children;
    std::string container;  ///< may name one that is gone
};

/// All groups, by plain rules.
struct Model {
    std::map<std::string, Plain> groups;
    std::map<std::string, std::set<std::string>> containers;
    std::map<std::string, std::string> marks;  ///< sub-groups by member

    std::string groupOf(const std::string& entity) const {
        for (const auto& [name, group] : groups) {
            const Names& all = group.entities;
            if (std::count(all.begin(), all.end(), entity) != 0) return name;
        }
        return "";
    }
    bool isBelow(std::string name, const std::string& ancestor) const {
        while (!groups.at(name).parent.empty()) {
            name = groups.at(name).parent;
            if (name == ancestor) return true;
        }
        return false;
    }
    static void drop(Names& names, const std::string& name) {
        names.erase(std::remove(names.begin(), names.end(), name), names.end());
    }
    void takeFromContainer(const std::string& container, const Names& entities) {
        const auto found = containers.find(container);
        if (found == containers.end()) return;
        for (const std::string& entity : entities)
            found->second.erase(entity);
        if (found->second.empty()) containers.erase(found);
    }
    /// The container of a group, made under this name for a root that has none.
    std::string& needContainer(const std::string& name, const std::string& fresh) {
        Plain& group = groups[name];
        if (containers.count(group.container) == 0) {
            group.container = fresh;
            containers[fresh].insert(group.entities.begin(), group.entities.end());
        }
        return group.container;
    }
    void moveTo(const std::string& name, const std::string& container, bool with_children) {
        if (with_children) {
            for (const std::string& child : groups[name].children)
                moveTo(child, container, true);
        }
        Plain& group = groups[name];
        if (group.container != container) takeFromContainer(group.container, group.entities);
        containers[container].insert(group.entities.begin(), group.entities.end());
        group.container = container;
    }
    void handOver(const std::string& name, const std::string& heir) {
        for (const std::string& child : groups[name].children) {
            groups[child].parent = heir;
            if (!heir.empty()) groups[heir].children.push_back(child);
        }
        groups[name].children.clear();
    }
    /// The group goes, its entities stay what they are.
    void end(const std::string& name) {
        const Plain group = groups[name];
        takeFromContainer(group.container, group.entities);
        if (!group.parent.empty()) drop(groups[group.parent].children, name);
        handOver(name, group.parent);
        for (const std::string& entity : group.entities)
            marks.erase(entity);
        groups.erase(name);
    }
    /// @return 1, 0 when the entity must stay, -1 when the group has ended by it
    int remove(const std::string& entity) {
        const std::string name = groupOf(entity);
        if (name.empty()) return 1;
        Plain& group = groups[name];
        if (group.entities.size() == 1) {
            end(name);
            return -1;
        }
        if (group.entities.front() == entity) return 0;
        drop(group.entities, entity);
        takeFromContainer(group.container, {entity});
        marks.erase(entity);
        return 1;
    }
    int add(const std::string& name, const std::string& entity, const std::string& sub_group) {
        if (groups[name].entities.front() == entity || remove(entity) == 0) return 0;
        groups[name].entities.push_back(entity);
        const auto container = containers.find(groups[name].container);
        if (container != containers.end()) container->second.insert(entity);
        if (!sub_group.empty()) marks[entity] = sub_group;
        return 1;
    }
    int setMaster(const std::string& name, const std::string& entity) {
        if (groups[name].entities.front() == entity) return 1;
        const std::string old = groupOf(entity);
        if (old != name && remove(entity) == 0) return 0;
        Names& all = groups[name].entities;
        drop(all, entity);
        all.insert(all.begin(), entity);
        marks.erase(entity);
        const auto container = containers.find(groups[name].container);
        if (container != containers.end()) container->second.insert(entity);
        return 1;
    }

    std::string picture() const {
        std::string out;
        std::set<std::string> used;
        for (const auto& [name, group] : groups) {
            out += name + ":";
            for (const std::string& entity : group.entities) {
                const auto mark = marks.find(entity);
                out += " " + entity + (mark != marks.end() ? "(" + mark->second + ")" : "");
            }
            if (!group.parent.empty()) out += " <" + group.parent;
            if (!group.children.empty()) out += " >" + joined(group.children);
            const auto container = containers.find(group.container);
            if (container != containers.end()) {
                out +=
                    " [" + joined(Names(container->second.begin(), container->second.end())) + "]";
                used.insert(container->first);
            }
            out += "\n";
        }
        for (const auto& [name, entities] : containers) {
            if (used.count(name) == 0) {
                out += "container [" + joined(Names(entities.begin(), entities.end())) + "]\n";
            }
        }
        return out;
    }
    static std::string joined(const Names& texts) {
        std::string out;
        for (const std::string& text : texts)
            out += (out.empty() ? "" : " ") + text;
        return out;
    }
};

class GroupModel : public test::GroupEditTest {
  protected:
    static constexpr int kEntities = 40;

    void run(unsigned seed, int steps) {
        random_.seed(seed);
        reset();
        for (int step = 0; step < steps; ++step) {
            text_ = "?";
            operation();
            kz_Error_clearAll();
            const std::string is = picture(), should = model_.picture();
            if (is == should && wrong_.empty()) continue;
            ADD_FAILURE() << "KZ_MODEL_SEED=" << seed << " step " << step << ": " << text_ << " "
                          << wrong_ << "\nis\n"
                          << is << "should be\n"
                          << should << "before\n"
                          << before_;
            return;
        }
    }

  private:
    size_t upTo(size_t count) { return random_() % count; }
    bool chance(int percent) { return upTo(100) < static_cast<size_t>(percent); }

    void reset() {
        Names all;
        for (int i = 0; i < kEntities; ++i)
            all.push_back("e" + std::to_string(100 + i));
        draw(all);
        living_.insert(all.begin(), all.end());
    }
    std::string anyEntity() {
        auto at = living_.begin();
        std::advance(at, upTo(living_.size()));
        return *at;
    }
    std::string anyGroup() {
        auto at = model_.groups.begin();
        std::advance(at, upTo(model_.groups.size()));
        return at->first;
    }
    Names someFree() {
        Names free;
        for (const std::string& entity : living_) {
            if (model_.groupOf(entity).empty()) free.push_back(entity);
        }
        std::shuffle(free.begin(), free.end(), random_);
        if (free.size() > 4) free.resize(1 + upTo(4));
        return free;
    }
    std::string anySubGroup() { return chance(50) ? "" : chance(50) ? "S1" : "S2"; }
    void expect(int result, int predicted) {
        if (result == predicted) return;
        wrong_ = "gave " + std::to_string(result) + ", not " + std::to_string(predicted);
    }

    void operation() {
        if (living_.size() < kEntities / 2) {
            const std::string name = "e" + std::to_string(next_++);
            // Drawing it would be a step of its own.
            editor()->disableUndoRecording(true);
            draw({name});
            editor()->disableUndoRecording(false);
            living_.insert(name);
        }
        before_ = model_.picture();
        if (chance(2)) return reopen();
        if (chance(8)) return undo();
        if (model_.groups.size() < 2 || chance(15)) return change(&GroupModel::create);
        using Operation = void (GroupModel::*)();
        static constexpr Operation kOperations[] = {
            &GroupModel::add,       &GroupModel::add,      &GroupModel::addSet,
            &GroupModel::remove,    &GroupModel::remove,   &GroupModel::setMaster,
            &GroupModel::makeChild, &GroupModel::makeRoot, &GroupModel::makeChild,
            &GroupModel::end,       &GroupModel::endTree,  &GroupModel::eraseMembers};
        change(kOperations[upTo(std::size(kOperations))]);
    }
    /// Does an operation in a step of its own, which undo can take back.
    void change(void (GroupModel::*change_groups)()) {
        past_.push_back({model_, living_, picture(), {}});
        const host::UndoStep step("GROUPS");
        (this->*change_groups)();
        past_.back().text = text_;
    }
    void undo() {
        text_ = "undo";
        if (past_.empty()) return;
        const Past now{model_, living_, picture(), {}};
        const Past then = past_.back();
        past_.pop_back();
        if (now.picture == then.picture) {
            // A step without a change doesn't count, and one that changed fields alone does: start
            // anew.
            past_.clear();
            host::setUndoMode(host::UndoMode::None);
            host::setUndoMode(host::UndoMode::All);
            return;
        }
        const size_t steps = host::undo(1).names.size();
        model_ = then.model;
        living_ = then.living;
        if (steps != 1 || picture() != then.picture) {
            wrong_ = std::to_string(steps) + " steps undone: " + then.text;
        }
        if (!wrong_.empty() || chance(50)) return;
        text_ = "redo";
        host::redo();
        model_ = now.model;
        living_ = now.living;
        past_.push_back(then);
    }
    void reopen() {
        text_ = "save and reopen";
        std::string error;
        ASSERT_TRUE(host::saveDrawing(folder_.file("model.dxf"), error)) << error;
        ASSERT_TRUE(host::openDrawing(folder_.file("model.dxf"), error)) << error;
        past_.clear();
    }

    void create() {
        const Names entities = someFree();
        const bool own_master = chance(30);
        const std::string sub_group = anySubGroup(), type = chance(50) ? "PIPE" : "WALL";
        const bool has_parent = !model_.groups.empty() && chance(40);
        const std::string parent = has_parent ? anyGroup() : "";
        text_ = "create " + Model::joined(entities) + " under " + parent + " sub " + sub_group;
        if (entities.empty()) return;
        const std::string master = entities[own_master ? upTo(entities.size()) : 0];
        const test::Group made(kz_Group_createFromSelSet(
            kz::toUtf16(type).c_str(), nullptr, kz::toUtf16(sub_group).c_str(),
            own_master ? object(master).get() : nullptr, set(entities).get(), group(parent).get()));
        kz_Char text[32] = {};
        expect(kz_Group_getName(text, made.get()), 1);
        const std::string name = kz::toUtf8(text);
        Plain& group = model_.groups[name];
        group.type = type;
        group.entities = {master};
        for (const std::string& entity : entities) {
            if (entity == master) continue;
            group.entities.push_back(entity);
            if (!sub_group.empty()) model_.marks[entity] = sub_group;
        }
        if (parent.empty()) return;
        group.parent = parent;
        model_.groups[parent].children.push_back(name);
        model_.moveTo(name, model_.needContainer(parent, containerOf(parent)), false);
    }
    /// The container that a group names in the drawing.
    std::string containerOf(const std::string& name) const {
        return one(look()[name].fields, "CN");
    }

    void add() {
        const std::string name = anyGroup(), entity = anyEntity(), sub_group = anySubGroup();
        text_ = "add " + entity + " to " + name + " sub " + sub_group;
        const int result =
            kz_Group_add(group(name).get(), object(entity).get(), kz::toUtf16(sub_group).c_str());
        expect(result, model_.add(name, entity, sub_group));
    }
    void addSet() {
        const std::string name = anyGroup(), sub_group = anySubGroup();
        Names entities = someFree();
        entities.push_back(anyEntity());
        std::sort(entities.begin(), entities.end());
        entities.erase(std::unique(entities.begin(), entities.end()), entities.end());
        text_ = "add " + Model::joined(entities) + " to " + name + " sub " + sub_group;
        const int result = kz_Group_addSelSet(group(name).get(), set(entities).get(),
                                              kz::toUtf16(sub_group).c_str());
        int predicted = 1;
        for (const std::string& entity : entities) {
            if (model_.add(name, entity, sub_group) != 1) predicted = 0;
        }
        expect(result, predicted);
    }
    void remove() {
        const std::string entity = anyEntity();
        text_ = "remove " + entity;
        int erased = 0;
        const int result = kz_Group_removeMemberFromGroup(&erased, object(entity).get());
        // Fields that a deleted group has left may lead to a group that the entity isn't in.
        const bool loose = model_.groupOf(entity).empty() && result == 0;
        if (!loose) expect(result == 1 && erased == 1 ? -1 : result, model_.remove(entity));
    }
    void setMaster() {
        const std::string name = anyGroup();
        const Names& all = model_.groups[name].entities;
        const std::string entity = chance(70) ? all[upTo(all.size())] : anyEntity();
        text_ = "master of " + name + ": " + entity;
        const int result = kz_Group_setMasterObject(group(name).get(), object(entity).get());
        expect(result, model_.setMaster(name, entity));
    }
    void makeChild() {
        const std::string child = anyGroup(), parent = anyGroup();
        const bool leave = chance(30);
        text_ = child + " child of " + parent + (leave ? " leaving" : "");
        const int result = GroupEditTest::makeChild(child, parent, leave ? 1 : 0);
        Plain& moved = model_.groups[child];
        if (child == parent) return expect(result, 0);
        if (moved.parent == parent) return expect(result, 1);
        if (!leave && model_.isBelow(parent, child)) return expect(result, 0);
        expect(result, 1);
        const std::string old_parent = moved.parent;
        if (!old_parent.empty()) {
            model_.takeFromContainer(moved.container, moved.entities);
            Model::drop(model_.groups[old_parent].children, child);
            moved.parent.clear();
        }
        if (leave) model_.handOver(child, old_parent);
        const std::string& container = model_.needContainer(parent, containerOf(parent));
        model_.groups[parent].children.push_back(child);
        moved.parent = parent;
        model_.moveTo(child, container, !leave);
    }
    void makeRoot() {
        const std::string name = anyGroup();
        const bool leave = chance(50);
        text_ = name + " root" + (leave ? " leaving" : "");
        expect(GroupEditTest::makeRoot(name, leave ? 1 : 0), 1);
        Plain& moved = model_.groups[name];
        if (moved.parent.empty()) return;
        const std::string parent = moved.parent;
        Model::drop(model_.groups[parent].children, name);
        model_.takeFromContainer(moved.container, moved.entities);
        moved.parent.clear();
        moved.container.clear();
        if (leave) return model_.handOver(name, parent);
        if (moved.children.empty()) return;
        model_.moveTo(name, model_.needContainer(name, containerOf(name)), true);
    }

    /// Ends a group in the model; its entities are erased if they are asked for.
    int endOne(const std::string& name, bool master, bool members) {
        const Names entities = model_.groups[name].entities;
        model_.end(name);
        if (members) {
            for (size_t i = master ? 0 : 1; i < entities.size(); ++i)
                living_.erase(entities[i]);
            return !master && entities.size() == 1 ? -3 : 1;
        }
        if (master) living_.erase(entities.front());
        return 1;
    }
    void end() {
        const std::string name = anyGroup();
        const bool master = chance(30), members = chance(30);
        text_ = "delete " + name + (master ? " with master" : "") + (members ? " members" : "");
        const int result = deleteGroup(name, master ? 1 : 0, members ? 1 : 0);
        expect(result, endOne(name, master, members));
    }
    /// The deletion of a tree: the children of a type in front of their parents.
    int endAll(const std::string& name, const std::string& type) {
        int result = 1;
        for (const std::string& child : Names(model_.groups[name].children)) {
            if (!type.empty() && model_.groups[child].type != type) continue;
            const int one = endAll(child, type);
            if (result == 1) result = one;
        }
        if (!type.empty() && model_.groups[name].type != type) return result;
        const int own = endOne(name, false, false);
        return own != 1 ? own : result;
    }
    void endTree() {
        const std::string name = anyGroup(), type = chance(50) ? "" : "PIPE";
        text_ = "delete all below " + name + " of type " + type;
        test::Group top = group(name);
        const int result = kz_Group_deleteAll(top.get(), kz::toUtf16(type).c_str(), 0, 0);
        const bool freed = type.empty() || model_.groups[name].type == type;
        if (freed) top.release();
        expect(result, endAll(name, type));
    }
    void eraseMembers() {
        const std::string name = anyGroup(), sub_group = anySubGroup();
        const bool children = chance(50);
        text_ = "erase members of " + name + " sub " + sub_group + (children ? " all" : "");
        const int result = kz_Group_deleteMembers(group(name).get(), nullptr,
                                                  kz::toUtf16(sub_group).c_str(), children);
        int erased = 0;
        for (auto& [other, members] : model_.groups) {
            if (other != name && !(children && model_.isBelow(other, name))) continue;
            for (const std::string& entity :
                 Names(members.entities.begin() + 1, members.entities.end())) {
                if (!sub_group.empty() && model_.marks[entity] != sub_group) continue;
                Model::drop(members.entities, entity);
                model_.takeFromContainer(members.container, {entity});
                living_.erase(entity);
                model_.marks.erase(entity);
                ++erased;
            }
        }
        for (auto mark = model_.marks.begin(); mark != model_.marks.end();)
            mark = mark->second.empty() ? model_.marks.erase(mark) : std::next(mark);
        expect(result, erased > 0 ? 1 : 0);
    }

    struct Past {
        Model model;
        std::set<std::string> living;
        std::string picture;
        std::string text;  ///< of the step behind it
    };

    std::mt19937 random_;
    Model model_;
    std::set<std::string> living_;
    std::vector<Past> past_;
    int next_ = 500;
    std::string text_, wrong_, before_;
};

TEST_F(GroupModel, random_operations_do_what_the_model_does) {
    const char* seed = std::getenv("KZ_MODEL_SEED");
    const char* steps = std::getenv("KZ_MODEL_STEPS");
    const int count = steps != nullptr ? std::atoi(steps) : 1500;
    if (seed != nullptr) return run(static_cast<unsigned>(std::atoi(seed)), count);
    run(1, count);
}

TEST_F(GroupModel, random_operations_with_another_seed) {
    run(20261123, 1500);
}

}  // namespace
