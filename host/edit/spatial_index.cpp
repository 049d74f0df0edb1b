/// The index of places: a tree for each space that was asked about, and beside it the entities that
/// have changed since it was built.
#include "edit/spatial_index.h"

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "edit/shapes.h"
#include "edit/tag_values.h"
#include "geom/packed_tree.h"

namespace host {
namespace {

/// Changed entities are looked through one by one; so many of them are no burden.
constexpr size_t kFewChanges = 2048;

/// The entities of one space.
class SpaceIndex {
  public:
    SpaceIndex(Database& database, Slot space) : database_(database), space_(space) {}

    /// An entity of the space is new, changed, erased or back.
    void noteEntity(Slot entity) {
        if (!built_) return;
        changed_.insert(entity);
        // So much is measured anew faster by building everything.
        if (changed_.size() > std::max(kFewChanges, tree_.size() / 2)) forget();
    }
    /// A block has changed that entities may insert.
    void noteBlocks() { blocks_changed_ = true; }

    void search(const AcGeMatrix3d& to_screen, const AcGePoint2d& least,
                const AcGePoint2d& greatest, std::vector<Slot>& found) {
        bringUpToDate();
        const AcGeMatrix3d shifted =
            to_screen * AcGeMatrix3d().setToTranslation(origin_.asVector());
        const ScreenPrism prism(shifted, least, greatest);
        const auto add = [&](Slot slot) {
            const ObjectRecord& record = database_.record(slot);
            if (!record.erased && record.owner == space_) found.push_back(slot);
        };
        tree_.search(prism, [&](Slot slot) {
            if (loose_.empty() || loose_.find(slot) == loose_.end()) add(slot);
        });
        for (const auto& entry : loose_) {
            if (entry.second.there && prism.meets(entry.second.box)) add(entry.first);
        }
    }

  private:
    /// The present box of an entity that the tree does not know, or knows with another one.
    struct Loose {
        bool there;  ///< false for one that shows nothing
        FloatBox box;
    };

    void forget() {
        built_ = false;
        changed_.clear();
        loose_.clear();
        inserting_.clear();
        tree_ = {};
    }

    void bringUpToDate() {
        if (!built_) return build();
        if (std::exchange(blocks_changed_, false)) {
            changed_.insert(inserting_.begin(), inserting_.end());
        }
        if (changed_.empty()) return;
        ShapeWalker walker(database_);
        for (const Slot slot : std::exchange(changed_, {}))
            loose_[slot] = measured(walker, slot);
        if (loose_.size() > std::max(kFewChanges, tree_.size() / 16)) pack();
    }

    Loose measured(ShapeWalker& walker, Slot slot) {
        const AcDbExtents box = walker.reachOf(slot);
        if (box.isEmpty()) return {false, {}};
        if (walker.inserts(slot)) inserting_.insert(slot);
        return {true, FloatBox::around(box, origin_)};
    }

    void build() {
        forget();
        built_ = true;
        blocks_changed_ = false;
        const Block* block = database_.findBlock(space_);
        if (block == nullptr) return;
        ShapeWalker walker(database_);
        std::vector<PackedTree::Item> items;
        items.reserve(block->contents.size());
        origin_ = {};
        for (size_t i = 0; i < block->contents.size();) {
            const size_t begin = i++;
            while (i < block->contents.size() && isPart(block->contents[i]))
                ++i;
            measureInto(walker, *block, begin, i, items);
        }
        tree_.build(std::move(items));
    }

    bool isPart(Slot slot) const {
        return database_.record(slot).object_class == ObjectClass::SubEntity;
    }

    /// Measures an entity with its sub-entities, and leaves no decoded form that was not there.
    void measureInto(ShapeWalker& walker, const Block& block, size_t begin, size_t end,
                     std::vector<PackedTree::Item>& items) {
        const Slot slot = block.contents[begin];
        if (database_.record(slot).erased) return;
        std::vector<Slot> fresh;
        for (size_t i = begin; i < end; ++i) {
            if (database_.record(block.contents[i]).data == nullptr)
                fresh.push_back(block.contents[i]);
        }
        if (items.empty()) {
            const AcDbExtents box = walker.reachOf(slot);
            if (!box.isEmpty()) origin_ = box.minPoint();
        }
        const Loose place = measured(walker, slot);
        if (place.there) items.push_back({place.box, slot});
        for (const Slot part : fresh)
            database_.releaseDecoded(part);
    }

    /// Builds the tree from the boxes that are known.
    void pack() {
        std::vector<PackedTree::Item> items;
        items.reserve(tree_.size() + loose_.size());
        for (size_t i = 0; i < tree_.size(); ++i) {
            const PackedTree::Item item = tree_.item(i);
            if (loose_.find(item.value) == loose_.end()) items.push_back(item);
        }
        for (const auto& entry : loose_) {
            if (entry.second.there) items.push_back({entry.second.box, entry.first});
        }
        loose_.clear();
        tree_.build(std::move(items));
    }

    Database& database_;
    Slot space_;
    bool built_ = false;
    bool blocks_changed_ = false;
    AcGePoint3d origin_;  ///< boxes count from here
    PackedTree tree_;
    std::unordered_set<Slot> changed_;       ///< to be measured
    std::unordered_map<Slot, Loose> loose_;  ///< measured, not yet in the tree
    std::unordered_set<Slot> inserting_;     ///< entities that show blocks
};

/// The indexes of a drawing, which hear of its changes.
class SpatialIndex : public ChangeWatcher {
  public:
    explicit SpatialIndex(Database& database) : database_(database) {}

    static SpatialIndex& of(Database& database) {
        if (database.watcher() == nullptr) {
            database.setWatcher(std::make_unique<SpatialIndex>(database));
        }
        return static_cast<SpatialIndex&>(*database.watcher());
    }

    void changed(Slot slot) override {
        const ObjectClass object_class = database_.record(slot).object_class;
        if (object_class == ObjectClass::Entity || object_class == ObjectClass::SubEntity) {
            const Slot main = database_.mainEntity(slot);
            const auto found = spaces_.find(database_.record(main).owner);
            if (found != spaces_.end()) return found->second.noteEntity(main);
            noteBlocks();
        } else if (object_class == ObjectClass::BlockBegin ||
                   database_.typeName(slot) == "BLOCK_RECORD") {
            noteBlocks();  // base points and names
        }
    }

    SpaceIndex& space(Slot record) {
        return spaces_.try_emplace(record, database_, record).first->second;
    }

  private:
    void noteBlocks() {
        for (auto& entry : spaces_)
            entry.second.noteBlocks();
    }

    Database& database_;
    std::unordered_map<Slot, SpaceIndex> spaces_;
};

}  // namespace

std::vector<Slot> entitiesIn(Database& database, Slot space, const AcGeMatrix3d& to_screen,
                             const AcGePoint2d& least, const AcGePoint2d& greatest) {
    std::vector<Slot> found;
    SpatialIndex::of(database).space(space).search(to_screen, least, greatest, found);
    std::sort(found.begin(), found.end(), [&](Slot a, Slot b) {
        return database.record(a).position > database.record(b).position;
    });
    return found;
}

}  // namespace host
