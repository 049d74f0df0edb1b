/// System variables: reading one as the kind that is wanted.
#ifndef SRC_CAD_VARIABLES_H
#define SRC_CAD_VARIABLES_H

#include "kz/kz_platform.h"

namespace kz {

/// The value of a system variable at the moment of its making.
class Variable {
  public:
    explicit Variable(const kz_Char* name) : status_(acedGetVar(name, &node_)) {}
    ~Variable() {
        if (text() != nullptr) kz_Free(node_.resval.rstring);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

    /// What acedGetVar gave.
    int status() const { return status_; }
    /// The text, lent; NULL for a value of another kind, and without a value.
    const kz_Char* text() const { return is(RTSTR) ? node_.resval.rstring : nullptr; }
    bool isReal() const { return is(RTREAL); }
    double real() const { return node_.resval.rreal; }
    bool isInteger() const { return is(RTSHORT) || is(RTLONG); }
    /// The integer, or `otherwise` when the value is none.
    int integer(int otherwise) const {
        if (!isInteger()) return otherwise;
        return is(RTSHORT) ? node_.resval.rint : node_.resval.rlong;
    }
    bool isNumber() const { return isReal() || isInteger(); }
    double number() const { return isReal() ? real() : integer(0); }
    /// The three coordinates, lent; NULL for a value of another kind.
    const ads_real* point3d() const { return is(RT3DPOINT) ? node_.resval.rpoint : nullptr; }
    /// The first two coordinates of a point of any kind.
    const ads_real* point2d() const { return is(RTPOINT) ? node_.resval.rpoint : point3d(); }

  private:
    bool is(int16_t type) const { return status_ == RTNORM && node_.restype == type; }

    resbuf node_{};
    int status_;
};

/// The integer that a variable holds; `otherwise` when it has none.
inline int integerVariable(const kz_Char* name, int otherwise) {
    return Variable(name).integer(otherwise);
}

/// Copies a text whole into a buffer of `size` characters. @return 1; 0 with `out` untouched when
/// either is NULL or the text does not fit
inline int copyWhole(kz_Char* out, const kz_Char* text, size_t size) {
    if (out == nullptr || text == nullptr || kz_Str_len(text) >= size) return 0;
    kz_Str_ncpy(out, text, size - 1);
    return 1;
}

}  // namespace kz

#endif
