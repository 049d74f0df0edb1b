/// What OOPS brings back.
#include "command/erased.h"

#include <utility>

namespace host {
namespace {

std::vector<AcDbObjectId>& erased() {
    static std::vector<AcDbObjectId> ids;
    return ids;
}

}  // namespace

void rememberErased(std::vector<AcDbObjectId> ids) {
    erased() = std::move(ids);
}

std::vector<AcDbObjectId> takeErased() {
    return std::exchange(erased(), {});
}

}  // namespace host
