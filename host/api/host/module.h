/// Native modules of the host.
#ifndef HOST_MODULE_H
#define HOST_MODULE_H

#include <string>

#include "host/export.h"

namespace host {

/// Loads a shared library, which then stays. Each function that it exports under a name ending in
/// "_li" becomes a Lisp function under that name without "_li". A library that exports
/// `extern "C" int acrxEntryPoint(int message, void* data)` is then called with the message 1 and
/// NULL, to register its services; a result other than 0 fails the loading.
/// @param count  number of functions defined, when not NULL
/// @return true; false with the cause in `error`
HOST_API bool loadModule(const std::string& path, std::string& error, int* count = nullptr);

}  // namespace host

#endif
