/// Functions of other modules, found by name. Each forwarder is a row: where it is looked up, its
/// result, its name, which is the symbol's, its parameters, and what goes on.
#include "APP/services.h"

namespace {

constexpr const kz_Char* kStartService = KZ_T("KZ_START");
constexpr const kz_Char* kCadService = KZ_T("KZ_CADSERVICE");

/// How the resolvers differ.
struct Wording {
    const kz_Char* service;
    const char* family;  ///< module name for kz_Msg
    const char* no_symbol;
};

/// Address of a symbol of a service that is there; NULL, and the line, when it lacks the symbol.
void* findSymbol(const Wording& wording, const kz_Char* symbol) {
    void* address = acrxGetServiceSymbolAddr(wording.service, symbol);
    if (address == nullptr) {
        acutPrintf(kz_Msg(wording.no_symbol, wording.family, 7), symbol, wording.service);
    }
    return address;
}

/// The same, and a line when the service is not there.
void* resolve(const Wording& wording, const char* no_service, const kz_Char* symbol) {
    if (acrxServiceIsRegistered(wording.service)) return findSymbol(wording, symbol);
    acutPrintf(kz_Msg(no_service, wording.family, 7), wording.service);
    return nullptr;
}

using Resolver = void* (*)(const kz_Char* symbol);

#if defined(__clang__)
// A module may declare its functions with other pointer types than the callers here.
#define KZ_CALLS_BY_ADDRESS __attribute__((no_sanitize("function")))
#else
#define KZ_CALLS_BY_ADDRESS
#endif

/// A forwarded function: `Self` is the forwarder, of which there is one slot each.
template <Resolver Resolve, auto Self>
struct Forwarded {
    const kz_Char* symbol;

    template <class... Args>
    KZ_CALLS_BY_ADDRESS auto operator()(Args... args) const {
        static decltype(Self) slot = nullptr;
        using Result = decltype(slot(args...));
        if (slot == nullptr) slot = reinterpret_cast<decltype(Self)>(Resolve(symbol));
        if (slot == nullptr) return Result();
        return slot(args...);
    }
};

}  // namespace

void* kz_EnvFuncPtr_get(const kz_Char* symbol) {
    constexpr Wording kWording = {kStartService, "TOOL",
                                  "kz_EnvFuncPtr_get: %s not registered in service %s."};
    if (acrxServiceIsRegistered(kStartService)) return findSymbol(kWording, symbol);
    acutPrintf(KZ_T("\nkz_EnvFuncPtr_get: %s service not loaded.\n"), kStartService);
    return nullptr;
}

void* kz_CADFuncPtr_get(const kz_Char* symbol) {
    constexpr Wording kWording = {kCadService, "CAD",
                                  "kz_CADFuncPtr_get: %s not registered in service %s."};
    return resolve(kWording, "kz_CADFuncPtr_get: %s service not loaded.", symbol);
}

void* kz_CoordFuncPtr_get(const kz_Char* symbol) {
    constexpr Wording kWording = {kCadService, "TOOL",
                                  "kz_CoordFuncPtr_get: %s not registered in service %s."};
    return resolve(kWording, "kz_CoordFuncPtr_get: %s service not loaded.", symbol);
}

void* kz_GroupFuncPtr_get(const kz_Char* symbol) {
    constexpr Wording kWording = {kCadService, "TOOL",
                                  "kz_GroupFuncPtr_get: %s not registered in service %s."};
    return resolve(kWording, "kz_GroupFuncPtr_get: %s service not loaded.", symbol);
}

// NOLINTBEGIN(bugprone-macro-parentheses): a result type and argument lists take none
#define FORWARDER(resolver, result, name, parameters, arguments)  \
    result name parameters {                                      \
        return Forwarded<resolver, &name>{KZ_T(#name)} arguments; \
    }
// NOLINTEND(bugprone-macro-parentheses)

// clang-format off: it takes the parameters for products

FORWARDER(kz_CADFuncPtr_get, kz_CADObject*, kz_CADBlockIns3d_create,
          (const kz_Char* block, const kz_Char* text, const kz_Point* at, double scale_x,
           double scale_y, double scale_z, const kz_Char* last),
          (block, text, at, scale_x, scale_y, scale_z, last))
FORWARDER(kz_CADFuncPtr_get, kz_CADDwgIdList*, kz_CADDwgIdList_create,
          (int first, int second, int third), (first, second, third))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADDwgIdList_destroy, (kz_CADDwgIdList * list), (list))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADDwgIdList_eol, (kz_CADDwgIdList * list), (list))
FORWARDER(kz_CADFuncPtr_get, kz_CADDwgId*, kz_CADDwgIdList_getCurr, (kz_CADDwgIdList * list),
          (list))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADDwgIdList_next, (kz_CADDwgIdList * list), (list))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADDwgIdList_start, (kz_CADDwgIdList * list), (list))
FORWARDER(kz_CADFuncPtr_get, kz_CADDwgId*, kz_CADDwgId_create, (const kz_Char* name, int mode),
          (name, mode))
FORWARDER(kz_CADFuncPtr_get, void, kz_CADDwgId_destroy, (kz_CADDwgId * drawing), (drawing))
FORWARDER(kz_CADFuncPtr_get, void, kz_CADDwgId_destroyAll, (void), ())
FORWARDER(kz_CADFuncPtr_get, kz_LnkList*, kz_CADDwgId_getCADObjIdListFromAttributes,
          (const kz_CADDwgId* drawing, kz_FldList* fields, int any), (drawing, fields, any))
FORWARDER(kz_CADFuncPtr_get, kz_LnkList*, kz_CADDwgId_getCADObjIdListFromColor,
          (const kz_CADDwgId* drawing, const kz_Char* color), (drawing, color))
FORWARDER(kz_CADFuncPtr_get, kz_LnkList*, kz_CADDwgId_getCADObjIdListFromLayer,
          (const kz_CADDwgId* drawing, const kz_Char* layer), (drawing, layer))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADDwgId_getName, (kz_Char * out, const kz_CADDwgId* drawing),
          (out, drawing))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADDwgId_getRefCount, (const kz_CADDwgId* drawing), (drawing))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADDwgId_getTransform,
          (int* flag, kz_Point* origin, kz_RotMatrix* rotation, double* angle,
           const kz_CADDwgId* drawing),
          (flag, origin, rotation, angle, drawing))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADDwgId_isAttached, (const kz_CADDwgId* drawing), (drawing))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADDwgId_isEqual, (const kz_CADDwgId* a, const kz_CADDwgId* b),
          (a, b))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADDwgId_isInEditor, (const kz_CADDwgId* drawing), (drawing))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADDwgId_isValid, (const kz_CADDwgId* drawing), (drawing))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADDwgId_save, (kz_CADDwgId * drawing), (drawing))
FORWARDER(kz_CADFuncPtr_get, int64_t, kz_CADDwgId_saveAs,
          (kz_CADDwgId * drawing, const kz_Char* file), (drawing, file))
FORWARDER(kz_CADFuncPtr_get, int, kz_CADObject_addToDrawing, (kz_CADObject * object), (object))
FORWARDER(kz_CADFuncPtr_get, kz_StrList*, kz_CAD_getAttachedDrawings, (const kz_Char* drawing),
          (drawing))

FORWARDER(kz_CoordFuncPtr_get, int, kz_CoordSys_fromVectorsXY,
          (const kz_Vector* origin, const kz_Vector* x, const kz_Vector* y), (origin, x, y))
FORWARDER(kz_CoordFuncPtr_get, int, kz_CoordSys_fromView, (const kz_Point* point), (point))
FORWARDER(kz_CoordFuncPtr_get, int, kz_CoordSys_previous, (void), ())
FORWARDER(kz_CoordFuncPtr_get, int, kz_CoordSys_rotateVectorUCStoLocal,
          (kz_Vector * out, const kz_Vector* vector), (out, vector))
FORWARDER(kz_CoordFuncPtr_get, resbuf*, kz_CoordSys_transPointListLocaltoUCS,
          (kz_PointList * points), (points))
FORWARDER(kz_CoordFuncPtr_get, int, kz_CoordSys_transPointLocaltoUCS,
          (kz_Point * out, const kz_Point* point), (out, point))
FORWARDER(kz_CoordFuncPtr_get, int, kz_CoordSys_transPointUCStoLocal,
          (kz_Point * out, const kz_Point* point), (out, point))
FORWARDER(kz_CoordFuncPtr_get, int, kz_CoordSys_transformPointWorld,
          (kz_Point * out, const kz_Point* point), (out, point))
FORWARDER(kz_CoordFuncPtr_get, int, kz_CoordSys_world, (void), ())

FORWARDER(kz_GroupFuncPtr_get, int, kz_CommandReactor_create,
          (void* first, void* second, int third, void* fourth, int fifth),
          (first, second, third, fourth, fifth))
FORWARDER(kz_GroupFuncPtr_get, void, kz_CommandReactor_setExternalDwgPath, (const kz_Char* path),
          (path))
FORWARDER(kz_GroupFuncPtr_get, int, kz_Group_attachMasterEntReactor,
          (const kz_GroupId* group, const kz_CADObjId* master), (group, master))
FORWARDER(kz_GroupFuncPtr_get, int, kz_Group_detachMasterEntReactor,
          (const kz_GroupId* group, const kz_CADObjId* master), (group, master))
FORWARDER(kz_GroupFuncPtr_get, int, kz_Group_createReactor,
          (void* first, int second, void* third, int fourth), (first, second, third, fourth))
FORWARDER(kz_GroupFuncPtr_get, void, kz_Group_disableMasterEntReactor, (void), ())
FORWARDER(kz_GroupFuncPtr_get, void, kz_Group_restoreMasterEntReactor, (void), ())
FORWARDER(kz_GroupFuncPtr_get, int, kz_Reactor_disable, (void* reactor), (reactor))
FORWARDER(kz_GroupFuncPtr_get, int, kz_Reactor_enable, (void* reactor), (reactor))
FORWARDER(kz_GroupFuncPtr_get, int, kz_Reactor_isEnabled, (void* reactor), (reactor))
FORWARDER(kz_GroupFuncPtr_get, void, kz_Reactor_removeAll, (void), ())
FORWARDER(kz_GroupFuncPtr_get, int, kz_TagsReactor_create, (void* first), (first))

// clang-format on

const kz_Char* kz_Env_getSes_stub(const kz_Char* name) {
    return Forwarded<kz_EnvFuncPtr_get, &kz_Env_getSes_stub>{KZ_T("kz_Env_getSes")}(name);
}

int kz_Env_setSes_stub(const kz_Char* name, const kz_Char* value) {
    return Forwarded<kz_EnvFuncPtr_get, &kz_Env_setSes_stub>{KZ_T("kz_Env_setSes")}(name, value);
}

void kz_Env_resetSes_stub(void) {
    Forwarded<kz_EnvFuncPtr_get, &kz_Env_resetSes_stub>{KZ_T("kz_Env_resetSes")}();
}

/// Cleaning up without the service is no mistake, so there is no line.
int kz_Reactor_remove(void* reactor) {
    if (!acrxServiceIsRegistered(kCadService)) return 0;
    return Forwarded<kz_GroupFuncPtr_get, &kz_Reactor_remove>{KZ_T("kz_Reactor_remove")}(reactor);
}

const kz_Char* kz_Env_getDwg(const kz_Char* /*name*/) {
    acutPrintf(kz_Msg("kz_Env_getDwg is not currently functional.", "TOOL", 3));
    return nullptr;
}

int kz_Env_setDwg(const kz_Char* /*name*/, const kz_Char* /*value*/) {
    acutPrintf(kz_Msg("kz_Env_setDwg is not currently functional.", "TOOL", 3));
    return 0;
}
