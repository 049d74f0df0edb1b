/// The module's entry: it registers the two services with all of their symbols.
#include "acad/rx.h"
#include "cadservice.h"

namespace {

const kz_Char kStart[] = KZ_T("KZ_START");
const kz_Char kCadService[] = KZ_T("KZ_CADSERVICE");
/// Message of the host behind the loading of a module, and the answers to it.
constexpr int kInitialize = 1;
constexpr int kOk = 0;
constexpr int kError = 3;

struct Symbol {
    const kz_Char* name;
    void* address;
};

#define SYMBOL(function) \
    { KZ_T(#function), reinterpret_cast<void*>(function) }

const Symbol kStartSymbols[] = {SYMBOL(kz_Env_getSes), SYMBOL(kz_Env_setSes),
                                SYMBOL(kz_Env_resetSes)};

const Symbol kCadSymbols[] = {
    SYMBOL(kz_CADBlockIns3d_create),
    SYMBOL(kz_CADDwgIdList_create),
    SYMBOL(kz_CADDwgIdList_destroy),
    SYMBOL(kz_CADDwgIdList_eol),
    SYMBOL(kz_CADDwgIdList_getCurr),
    SYMBOL(kz_CADDwgIdList_next),
    SYMBOL(kz_CADDwgIdList_start),
    SYMBOL(kz_CADDwgId_create),
    SYMBOL(kz_CADDwgId_destroy),
    SYMBOL(kz_CADDwgId_destroyAll),
    SYMBOL(kz_CADDwgId_getCADObjIdListFromAttributes),
    SYMBOL(kz_CADDwgId_getCADObjIdListFromColor),
    SYMBOL(kz_CADDwgId_getCADObjIdListFromLayer),
    SYMBOL(kz_CADDwgId_getName),
    SYMBOL(kz_CADDwgId_getRefCount),
    SYMBOL(kz_CADDwgId_getTransform),
    SYMBOL(kz_CADDwgId_isAttached),
    SYMBOL(kz_CADDwgId_isEqual),
    SYMBOL(kz_CADDwgId_isInEditor),
    SYMBOL(kz_CADDwgId_isValid),
    SYMBOL(kz_CADDwgId_save),
    SYMBOL(kz_CADDwgId_saveAs),
    SYMBOL(kz_CADObject_addToDrawing),
    SYMBOL(kz_CAD_getAttachedDrawings),
    SYMBOL(kz_CommandReactor_create),
    SYMBOL(kz_CommandReactor_setExternalDwgPath),
    SYMBOL(kz_CoordSys_fromVectorsXY),
    SYMBOL(kz_CoordSys_fromView),
    SYMBOL(kz_CoordSys_previous),
    SYMBOL(kz_CoordSys_rotateVectorUCStoLocal),
    SYMBOL(kz_CoordSys_transPointListLocaltoUCS),
    SYMBOL(kz_CoordSys_transPointLocaltoUCS),
    SYMBOL(kz_CoordSys_transPointUCStoLocal),
    SYMBOL(kz_CoordSys_transformPointWorld),
    SYMBOL(kz_CoordSys_world),
    SYMBOL(kz_Group_attachMasterEntReactor),
    SYMBOL(kz_Group_createReactor),
    SYMBOL(kz_Group_detachMasterEntReactor),
    SYMBOL(kz_Group_disableMasterEntReactor),
    SYMBOL(kz_Group_getMasterEntEvents),
    SYMBOL(kz_Group_restoreMasterEntReactor),
    SYMBOL(kz_Reactor_disable),
    SYMBOL(kz_Reactor_enable),
    SYMBOL(kz_Reactor_isEnabled),
    SYMBOL(kz_Reactor_remove),
    SYMBOL(kz_Reactor_removeAll),
    SYMBOL(kz_TagsReactor_create),
};

#undef SYMBOL

template <size_t count>
bool offer(const kz_Char* service, const Symbol (&symbols)[count]) {
    if (!acrxRegisterService(service)) return false;
    for (const Symbol& symbol : symbols) {
        if (!acrxRegisterSymbol(service, symbol.name, symbol.address)) return false;
    }
    return true;
}

}  // namespace

/// Called by the host with a message and its data. @return 0, or 3 when a service is there already
extern "C" __attribute__((visibility("default"))) int acrxEntryPoint(int message, void*) {
    if (message != kInitialize) return kOk;
    const bool done = offer(kStart, kStartSymbols) && offer(kCadService, kCadSymbols);
    return done ? kOk : kError;
}
