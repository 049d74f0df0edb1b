/// Native modules: shared libraries whose exported functions become Lisp functions.
#ifndef HOST_RX_MODULE_H
#define HOST_RX_MODULE_H

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace host {

/// Visits every function that a loaded shared library exports, in the order of its symbol table.
/// @param handle  what dlopen gave
/// @return false when the library's dynamic section lacks what is needed
bool forEachExport(void* handle,
                   const std::function<void(std::string_view name, void* address)>& visit);

/// The name that a module goes by: that of its file without folder, "lib" in front and extension,
/// in lower case.
std::string moduleName(const std::string& file);
/// Names of the modules that were loaded, in this order.
const std::vector<std::string>& loadedModules();

}  // namespace host

#endif
