/// The chain of forms under evaluation where an error happened, for people.
#ifndef HOST_LISP_BACKTRACE_H
#define HOST_LISP_BACKTRACE_H

#include <string>
#include <vector>

#include "lisp/value.h"

namespace host::lisp {

class SourceMap;

/// Innermost form first. Of a long chain both ends are kept.
class Backtrace {
  public:
    /// Notes the next outer form.
    void add(const Cons* form);

    /// The chain as people read it, a line for each form: its number, the form shortened, the user
    /// function whose body it stands in, file and line.
    std::u16string text(const SourceMap& sources) const;
    size_t length() const { return count_; }

  private:
    static constexpr size_t kInner = 20, kOuter = 5;

    std::vector<Value> inner_;
    std::vector<Value> outer_;  ///< a ring: the form with number n stands at n modulo kOuter
    size_t count_ = 0;
};

}  // namespace host::lisp

#endif
