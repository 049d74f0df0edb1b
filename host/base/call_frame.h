/// The frame of a native function called from Lisp: its arguments, and the value that it gave back.
#ifndef HOST_BASE_CALL_FRAME_H
#define HOST_BASE_CALL_FRAME_H

#include "acad/ads.h"

namespace host {

/// Pushed for the time of one call; calls nest. Owns the argument chain: what the callee left alive
/// of it is released when the frame ends, node by node, whatever the callee relinked.
class CallFrame {
  public:
    /// Takes over `args` (may be NULL).
    explicit CallFrame(resbuf* args);
    ~CallFrame();
    CallFrame(const CallFrame&) = delete;
    CallFrame& operator=(const CallFrame&) = delete;

    /// The value set by the last acedRet call: a chain of one value (a node, or RTLB .. RTLE), or
    /// NULL when none was set. Lent; ends with the frame.
    const resbuf* result() const { return result_; }

    /// The innermost running call; NULL outside of any.
    static CallFrame* current();
    resbuf* args() const { return args_; }
    /// Takes over `chain` as the result in place of the one before.
    void setResult(resbuf* chain);

  private:
    resbuf* args_;
    size_t kept_begin_;
    resbuf* result_ = nullptr;
    CallFrame* outer_;
};

}  // namespace host

#endif
