/// The service registry: modules offer functions under the name of a service and of a symbol, and
/// others find them there, so that neither has to be linked to the other. Names are compared
/// exactly. An address is the module's: it must stay good for as long as its service is registered,
/// and for callers that keep what they have found.
#ifndef ACAD_RX_H
#define ACAD_RX_H

#include "acad/adesk.h"

extern "C" {

/// True while a service of this name is registered.
ACAD_API bool acrxServiceIsRegistered(const ACHAR* service);
/// What the service has registered for the symbol; NULL when there is no such service or symbol.
ACAD_API void* acrxGetServiceSymbolAddr(const ACHAR* service, const ACHAR* symbol);

/// Registers a service, which has no symbols yet. @return false for no name or one in use
ACAD_API bool acrxRegisterService(const ACHAR* service);
/// Gives a registered service a symbol; a second time replaces its address.
/// @return false without a registered service, a symbol or an address
ACAD_API bool acrxRegisterSymbol(const ACHAR* service, const ACHAR* symbol, void* address);
/// Takes a service and its symbols away. @return false when it was not registered
ACAD_API bool acrxUnregisterService(const ACHAR* service);
}

#endif
