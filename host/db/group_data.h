/// The entities of a group: a list in order that tells the index of an entity, and changes at any
/// index, in logarithmic time. The list is a search tree by index, balanced by random numbers.
#ifndef HOST_DB_GROUP_DATA_H
#define HOST_DB_GROUP_DATA_H

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace host {

class GroupData {
  public:
    static constexpr size_t kNone = SIZE_MAX;

    size_t size() const { return nodes_[root_].size; }
    bool contains(uint32_t slot) const { return places_.count(slot) != 0; }
    /// kNone for an entity that is not in the list.
    size_t indexOf(uint32_t slot) const;
    /// The entity at this index; 0 behind the last one.
    uint32_t at(size_t index) const;
    /// All of them in order.
    std::vector<uint32_t> all() const;
    /// Enters an entity that is not there yet; an index behind the last one is the end.
    void insert(size_t index, uint32_t slot);
    void remove(uint32_t slot);

    bool changed = false;  ///< the tags are behind the list

  private:
    using Node = uint32_t;
    struct Cell {
        uint32_t slot = 0;
        uint32_t size = 0;    ///< of the part of the tree below, with itself
        uint64_t weight = 0;  ///< not below those of its children
        Node left = 0;
        Node right = 0;
        Node parent = 0;
    };

    Node newNode(uint32_t slot);
    /// Makes a node's size and its children's parent right.
    void refresh(Node node);
    Node merge(Node left, Node right);
    /// Cuts off the first `count` of a part of the tree.
    void split(Node node, size_t count, Node& left, Node& right);

    std::vector<Cell> nodes_ = std::vector<Cell>(1);  ///< node 0 is none
    std::vector<Node> unused_;
    std::unordered_map<uint32_t, Node> places_;
    Node root_ = 0;
    uint64_t random_ = 0;
};

}  // namespace host

#endif
