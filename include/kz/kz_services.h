/// What the library reaches in other modules of the suite, by name, through the platform's service
/// registry, and the component table.
///
/// A forwarded function is looked up by its first call and from then on called directly, so the
/// module behind it must stay. While its service or symbol is missing, each call says so on the
/// command line and gives 0 or NULL; a later call finds what has been registered by then.
#ifndef KZ_SERVICES_H
#define KZ_SERVICES_H

#include "kz/kz_platform.h"

extern "C" {

// --- looking up ---------------------------------------------------------------------------------
//
// Address of a symbol; NULL, with a line on the command line, when it is missing. They differ in
// the service and in the name that the line begins with.

/// Session values, from the service KZ_START.
KZ_EXPORT void* kz_EnvFuncPtr_get(const kz_Char* symbol);
/// Drawings and their objects, from the service KZ_CADSERVICE, as the two that follow.
KZ_EXPORT void* kz_CADFuncPtr_get(const kz_Char* symbol);
/// Coordinate systems.
KZ_EXPORT void* kz_CoordFuncPtr_get(const kz_Char* symbol);
/// Reactors.
KZ_EXPORT void* kz_GroupFuncPtr_get(const kz_Char* symbol);

// --- session values -----------------------------------------------------------------------------
//
// Their symbols are the names without _stub.

/// The value of a name, lent by the module; NULL when it has none.
KZ_EXPORT const kz_Char* kz_Env_getSes_stub(const kz_Char* name);
/// Sets the value of a name.
KZ_EXPORT int kz_Env_setSes_stub(const kz_Char* name, const kz_Char* value);
/// Forgets all values.
KZ_EXPORT void kz_Env_resetSes_stub(void);
/// Values kept with the drawing don't exist: these say so on the command line. @return NULL, 0
KZ_EXPORT const kz_Char* kz_Env_getDwg(const kz_Char* name);
KZ_EXPORT int kz_Env_setDwg(const kz_Char* name, const kz_Char* value);

// --- drawings -----------------------------------------------------------------------------------

/// Names of the drawings attached to a drawing, as a new list that the caller destroys, or NULL.
KZ_EXPORT kz_StrList* kz_CAD_getAttachedDrawings(const kz_Char* drawing);

// --- reactors -----------------------------------------------------------------------------------
//
// The arguments go to the module as they are; what they mean is its matter.

KZ_EXPORT int kz_CommandReactor_create(void* first, void* second, int third, void* fourth,
                                       int fifth);
KZ_EXPORT void kz_CommandReactor_setExternalDwgPath(const kz_Char* path);
KZ_EXPORT int kz_Group_createReactor(void* first, int second, void* third, int fourth);
/// Keep the reactors of master entities from acting, and let them act again.
KZ_EXPORT void kz_Group_disableMasterEntReactor(void);
KZ_EXPORT void kz_Group_restoreMasterEntReactor(void);
KZ_EXPORT int kz_Reactor_disable(void* reactor);
KZ_EXPORT int kz_Reactor_enable(void* reactor);
KZ_EXPORT int kz_Reactor_isEnabled(void* reactor);
/// Says nothing when the service is missing.
KZ_EXPORT int kz_Reactor_remove(void* reactor);
KZ_EXPORT void kz_Reactor_removeAll(void);
KZ_EXPORT int kz_TagsReactor_create(void* first);

// --- component table ----------------------------------------------------------------------------
//
// Pointers under names. The table doesn't look at the pointers and doesn't own them.

/// Makes the table empty without freeing what it held.
KZ_EXPORT void TableInitialize(void);
/// Adds a pointer. Names are cut at 259 characters; an equal name is hidden, not replaced.
KZ_EXPORT void AddComponent(void* value, const kz_Char* name);
/// The pointer that was added last under exactly this name; the address of all bits set when there
/// is none.
KZ_EXPORT void GetComponent(void** out, const kz_Char* name);
/// Empties the table.
KZ_EXPORT void TableFinalize(void);
}

#endif
