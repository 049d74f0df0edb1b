/// The database half of the XDATA field store: chains to and from objects, and the writing of
/// lists. Objects are opened erased ones too, since groups keep reading the data of erased members.
#include "ACAD/xd_rx/xd_rx.h"

#include <utility>

#include "checks.h"
#include "guards.h"
#include "kz/kz_xdata.h"
#include "trace.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/xd_rx";

constexpr int kAppName = 1001;

/// Writes a chain to the object.
int kz_Xdata_setFromEnt(const ads_name id, const resbuf* chain) {
    if (kz::isNull(id) || chain == nullptr) return 0;
    kz::Opened<AcDbObject> object(id, AcDb::kForWrite, true);
    if (!object) return 0;
    const bool good = object->setXData(chain) == Acad::eOk;
    object.close();
    return good;
}

/// Tells that the operation `name` could not write. @return 0
int writeFailed(const kz_Char* name) {
    KZ_TRACEF(kz::kTraceArgument, kz::kTraceData,
              KZ_T("Error '%i' returned from kz_Xdata_setFromEnt in %s."), kz_Diag_acadErrorNo(),
              name);
    return 0;
}

/// Writes the chain for the operation `name`, which a failure is told under.
int writeChain(const kz_Char* name, const ads_name id, const resbuf* chain) {
    return kz_Xdata_setFromEnt(id, chain) == 1 ? 1 : writeFailed(name);
}

/// Writes the list into what the object has now.
int rewriteFldList(const kz_Char* name, const ads_name id, kz_FldList* list, const kz_Char* app,
                   bool clear_existing) {
    kz::AppChain present;
    if (!kz::isEmpty(app)) present = kz::readAppChain(id, app);
    return kz::writeFldList(name, id, list, app, clear_existing, std::move(present));
}

}  // namespace

kz::AppChain kz::readAppChain(const ads_name id, const kz_Char* app) {
    if (isNull(id)) return {};
    Opened<AcDbObject> object(id, AcDb::kForRead, true);
    if (!object) return {};
    resbuf* chain = object->xData(nullptr);
    object.close();
    if (app != nullptr) kz_XData_getAppXData(&chain, app);
    return {OwnedChain(chain), true};
}

int kz::writeFldList(const kz_Char* operation, const ads_name id, kz_FldList* list,
                     const kz_Char* app, bool clear_existing, AppChain present) {
    KZ_TRACEF(kTraceEntry, kTraceData, KZ_T("Entering %s..."), operation);
    kz_FldList_printListDiag(list, kTraceEntry, kTraceData);
    if (isNull(id) || list == nullptr || isEmpty(app)) return 0;
    if (!present.known) return writeFailed(operation);
    OwnedChain chain = std::move(present.nodes);
    if (chain == nullptr) {
        acdbRegApp(app);
        chain.reset(acutBuildList(kAppName, app, 0));
    }
    if (kz_XData_fromFldList(chain.get(), list, clear_existing) != 1) return 0;
    return writeChain(operation, id, chain.get());
}

int kz_Diag_acadErrorNo(void) {
    resbuf value{};
    return acedGetVar(KZ_T("ERRNO"), &value) == RTNORM ? value.resval.rint : 0;
}

resbuf* kz_Xdata_getFromEnt(const ads_name id, const kz_Char* app) {
    return kz::readAppChain(id, app).nodes.release();
}

int kz_Xdata_setFromEntList(const kz_Char* app, resbuf* list) {
    const resbuf* entity = list;
    while (entity != nullptr && kz_Rb_typeRb(entity) != KZ_RB_ENAME)
        entity = entity->rbnext;
    if (entity == nullptr) return 0;
    kz::Opened<AcDbObject> object(entity->resval.rlname, AcDb::kForWrite, true);
    if (!object) return 0;
    const resbuf* part = kz_XData_getPointer(list, app, 0);
    const bool good = part != nullptr && object->setXData(part) == Acad::eOk;
    object.close();
    return good;
}

int kz_XData_initFldList(const ads_name id, kz_FldList* list, const kz_Char* app) {
    return rewriteFldList(KZ_T("kz_XData_initFldList"), id, list, app, true);
}

int kz_XData_modFldList(const ads_name id, kz_FldList* list, const kz_Char* app) {
    return rewriteFldList(KZ_T("kz_XData_modFldList"), id, list, app, false);
}

int kz_XData_setFldList(const ads_name id, kz_FldList* list, const kz_Char* app,
                        int clearExisting) {
    return rewriteFldList(KZ_T("kz_XData_setFldList"), id, list, app, clearExisting != 0);
}

int kz_XData_deleteFldList(const ads_name id, const kz_Char* app) {
    if (kz::isNull(id) || kz::isEmpty(app)) return 0;
    const kz::OwnedChain chain(kz_Xdata_getFromEnt(id, app));
    if (chain == nullptr || chain->rbnext == nullptr) return 0;
    kz_ResBuf_release(chain->rbnext);
    chain->rbnext = nullptr;
    return writeChain(KZ_T("kz_XData_deleteFldList"), id, chain.get());
}

kz_FldList* kz_XData_getFldListAlways(const ads_name id, kz_FldList* list, const kz_Char* app) {
    if (kz::isNull(id) || kz::isEmpty(app)) return nullptr;
    resbuf* entity = acdbEntGet(id);
    if (entity != nullptr) {
        kz_ResBuf_release(entity);
        return kz_XData_getFldList(id, list, app);
    }
    if (acdbEntDel(id) != RTNORM) return nullptr;
    kz_FldList* result = kz_XData_getFldList(id, list, app);
    acdbEntDel(id);
    return result;
}
