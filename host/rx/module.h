/// Native modules: shared libraries whose exported functions become Lisp functions.
#ifndef HOST_RX_MODULE_H
#define HOST_RX_MODULE_H

#include <functional>
#include <string>
#include <string_view>

namespace host {

/// Visits every function that a loaded shared library exports, in the order of its symbol table.
/// @param handle  what dlopen gave
/// @return false when the library's dynamic section lacks what is needed
bool forEachExport(void* handle,
                   const std::function<void(std::string_view name, void* address)>& visit);

}  // namespace host

#endif
