/// A chain of result buffers under construction, and the owner of one that was received.
#ifndef HOST_LISP_CHAIN_H
#define HOST_LISP_CHAIN_H

#include <memory>

#include "lisp/interpreter.h"

namespace host::lisp {

struct ReleaseChain {
    void operator()(resbuf* chain) const { acutRelRb(chain); }
};
/// A chain that is released with its owner.
using OwnedChain = std::unique_ptr<resbuf, ReleaseChain>;

class ChainBuilder {
  public:
    explicit ChainBuilder(Interpreter& in) : in_(in) {}
    ~ChainBuilder() { acutRelRb(head_); }
    ChainBuilder(const ChainBuilder&) = delete;
    ChainBuilder& operator=(const ChainBuilder&) = delete;

    /// Appends a node without a value; ends in a Lisp error when there is no memory.
    resbuf& add(int restype) { return append(acutNewRb(restype)); }
    resbuf& addText(int restype, std::u16string_view text);
    resbuf& addName(int restype, const ads_name name);
    /// The chain so far; NULL for an empty one.
    const resbuf* get() const { return head_; }
    resbuf* release() { return std::exchange(head_, nullptr); }

  private:
    resbuf& append(resbuf* node);

    Interpreter& in_;
    resbuf* head_ = nullptr;
    resbuf* tail_ = nullptr;
};

}  // namespace host::lisp

#endif
