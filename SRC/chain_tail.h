/// The end of a growing chain. kz_Rb_insEnd walks to the end for every node; whoever appends many
/// keeps one of these.
#ifndef SRC_RB_CHAIN_TAIL_H
#define SRC_RB_CHAIN_TAIL_H

#include "kz/kz_rb.h"

namespace kz {

class ChainTail {
  public:
    /// Walks once to the end of the chain behind `link`: the address of a list, or of a node's next
    /// pointer.
    explicit ChainTail(resbuf** link) : link_(link) { walk(); }

    /// Appends; false when the node can't be made.
    bool append(int code, const void* value) { return link(kz_Rb_create(code, value)); }
    /// Appends a text cut at `max_chars` characters.
    bool appendText(int code, const kz_Char* text, size_t max_chars);
    /// Links a chain (may be NULL) behind the end and goes to its end.
    void join(resbuf* chain) {
        *link_ = chain;
        walk();
    }
    /// The pointer that the next node will hang on.
    resbuf** end() const { return link_; }

  private:
    bool link(resbuf* node) {
        if (node == nullptr) return false;
        *link_ = node;
        link_ = &node->rbnext;
        return true;
    }
    void walk() {
        while (*link_ != nullptr)
            link_ = &(*link_)->rbnext;
    }

    resbuf** link_;
};

}  // namespace kz

#endif
