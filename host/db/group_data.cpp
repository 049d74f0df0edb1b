/// The entities of a group.
#include "db/group_data.h"

#include <algorithm>

namespace host {

GroupData::Node GroupData::newNode(uint32_t slot) {
    // Steps of the golden ratio, mixed: any numbers without a pattern do.
    random_ += 0x9E3779B97F4A7C15U;
    uint64_t weight = (random_ ^ (random_ >> 30U)) * 0xBF58476D1CE4E5B9U;
    weight ^= weight >> 27U;
    Node node = 0;
    if (unused_.empty()) {
        node = static_cast<Node>(nodes_.size());
        nodes_.emplace_back();
    } else {
        node = unused_.back();
        unused_.pop_back();
    }
    nodes_[node] = {slot, 1, weight, 0, 0, 0};
    return node;
}

void GroupData::refresh(Node node) {
    Cell& cell = nodes_[node];
    cell.size = 1 + nodes_[cell.left].size + nodes_[cell.right].size;
    if (cell.left != 0) nodes_[cell.left].parent = node;
    if (cell.right != 0) nodes_[cell.right].parent = node;
}

GroupData::Node GroupData::merge(Node left, Node right) {
    if (left == 0 || right == 0) return left + right;
    if (nodes_[left].weight >= nodes_[right].weight) {
        nodes_[left].right = merge(nodes_[left].right, right);
        refresh(left);
        return left;
    }
    nodes_[right].left = merge(left, nodes_[right].left);
    refresh(right);
    return right;
}

void GroupData::split(Node node, size_t count, Node& left, Node& right) {
    left = right = 0;
    if (node == 0) return;
    Cell& cell = nodes_[node];
    const size_t before = nodes_[cell.left].size;
    Node inner = 0;
    if (count <= before) {
        split(cell.left, count, left, inner);
        cell.left = inner;
        right = node;
    } else {
        split(cell.right, count - before - 1, inner, right);
        cell.right = inner;
        left = node;
    }
    refresh(node);
}

size_t GroupData::indexOf(uint32_t slot) const {
    const auto found = places_.find(slot);
    if (found == places_.end()) return kNone;
    Node node = found->second;
    size_t index = nodes_[nodes_[node].left].size;
    for (Node above = nodes_[node].parent; above != 0; above = nodes_[above].parent) {
        if (nodes_[above].right == node) index += nodes_[nodes_[above].left].size + 1;
        node = above;
    }
    return index;
}

uint32_t GroupData::at(size_t index) const {
    Node node = root_;
    while (node != 0) {
        const Cell& cell = nodes_[node];
        const size_t before = nodes_[cell.left].size;
        if (index == before) break;
        const bool behind = index > before;
        if (behind) index -= before + 1;
        node = behind ? cell.right : cell.left;
    }
    return nodes_[node].slot;
}

std::vector<uint32_t> GroupData::all() const {
    std::vector<uint32_t> slots;
    std::vector<Node> path;
    slots.reserve(size());
    Node node = root_;
    while (node != 0 || !path.empty()) {
        for (; node != 0; node = nodes_[node].left)
            path.push_back(node);
        node = path.back();
        path.pop_back();
        slots.push_back(nodes_[node].slot);
        node = nodes_[node].right;
    }
    return slots;
}

void GroupData::insert(size_t index, uint32_t slot) {
    Node left = 0, right = 0;
    split(root_, std::min(index, size()), left, right);
    const Node node = newNode(slot);
    places_.emplace(slot, node);
    root_ = merge(merge(left, node), right);
    nodes_[root_].parent = 0;
}

void GroupData::remove(uint32_t slot) {
    const auto found = places_.find(slot);
    if (found == places_.end()) return;
    const Node node = found->second;
    const Node parent = nodes_[node].parent;
    const Node below = merge(nodes_[node].left, nodes_[node].right);
    if (below != 0) nodes_[below].parent = parent;
    if (parent == 0) {
        root_ = below;
    } else {
        (nodes_[parent].left == node ? nodes_[parent].left : nodes_[parent].right) = below;
    }
    for (Node above = parent; above != 0; above = nodes_[above].parent)
        --nodes_[above].size;
    places_.erase(found);
    unused_.push_back(node);
}

}  // namespace host
