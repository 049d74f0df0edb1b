/// Building of result-buffer chains.
#include "lisp/chain.h"

#include "base/resbuf.h"

namespace host::lisp {

resbuf& ChainBuilder::append(resbuf* node) {
    if (!node) in_.fail(u"insufficient memory");
    (head_ ? tail_->rbnext : head_) = node;
    tail_ = node;
    return *node;
}

resbuf& ChainBuilder::addText(int restype, std::u16string_view text) {
    return append(newTextNode(restype, text));
}

resbuf& ChainBuilder::addName(int restype, const ads_name name) {
    resbuf& node = add(restype);
    ads_name_set(name, node.resval.rlname);
    return node;
}

}  // namespace host::lisp
