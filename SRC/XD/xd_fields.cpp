/// Reading and changing the fields of one object: whole lists and single fields. All of it is built
/// on the reading and writing of an application's chain.
#include <utility>

#include "ACAD/xd_rx/xd_rx.h"
#include "checks.h"
#include "field_store.h"
#include "kz/kz_fldcnv.h"
#include "kz/kz_xdata.h"
#include "trace.h"

namespace {

/// The application's chain for a read.
kz::AppChain readChain(const ads_name id, kz_FldList* request, const kz_Char* app) {
    kz_FldList_printListDiag(request, kz::kTraceEntry, kz::kTraceData);
    if (kz::isNull(id) || kz::isEmpty(app)) return {};
    acdbRegApp(app);
    return kz::readAppChain(id, app);
}

/// The request filled from the chain, or without a request all fields as a new list.
kz_FldList* readFields(resbuf* chain, kz_FldList* request) {
    if (chain == nullptr) return nullptr;
    if (request != nullptr) return kz_XData_updateFldList(chain, request) == 1 ? request : nullptr;
    resbuf* cursor = chain->rbnext;
    kz_FldList* all = nullptr;
    if (cursor == nullptr || kz_Rb_convertRbToFldList(&all, &cursor, 1) != 1) return nullptr;
    return all;
}

/// The fields that an application has on an object.
class ObjectFields final : public kz::FieldStore {
  public:
    ObjectFields(const ads_name id, const kz_Char* app) : FieldStore(1), id_(id), app_(app) {}

    kz_FldList* read(kz_FldList* request) override {
        chain_ = readChain(id_, request, app_);
        was_read_ = true;
        return readFields(chain_.nodes.get(), request);
    }
    int write(kz_FldList* list, bool clear_existing) override {
        if (!was_read_) return kz_XData_setFldList(id_, list, app_, clear_existing ? 1 : 0);
        was_read_ = false;
        return kz::writeFldList(KZ_T("kz_XData_setFldList"), id_, list, app_, clear_existing,
                                std::move(chain_));
    }

  private:
    const int64_t* id_;
    const kz_Char* app_;
    kz::AppChain chain_;  ///< as it was last read
    bool was_read_ = false;
};

}  // namespace

kz_FldList* kz_XData_getFldList(const ads_name id, kz_FldList* list, const kz_Char* app) {
    const kz::AppChain chain = readChain(id, list, app);
    return readFields(chain.nodes.get(), list);
}

kz_FldList* kz_XData_getFld(const ads_name id, const kz_Char* fieldName, const kz_Char* app) {
    ObjectFields fields(id, app);
    return kz::readField(fields, fieldName).release();
}

int kz_XData_setFld(const ads_name id, int16_t type, const void* value, const kz_Char* fieldName,
                    const kz_Char* app, int clearExisting, int uniqueData) {
    ObjectFields fields(id, app);
    return kz::setField(fields, type, value, fieldName, clearExisting != 0, uniqueData != 0);
}

int kz_XData_deleteFld(const ads_name id, const kz_Char* fieldName, const kz_Char* app) {
    ObjectFields fields(id, app);
    return kz::deleteField(fields, fieldName);
}

int kz_XData_deleteFldValue(const ads_name id, int16_t type, const void* value,
                            const kz_Char* fieldName, const kz_Char* app, int clearAll) {
    ObjectFields fields(id, app);
    return kz::deleteFieldValue(fields, type, value, fieldName, clearAll != 0);
}

kz_FldList* kz_XData_getHandle(const ads_name id, const kz_Char* fieldName, const kz_Char* app) {
    return kz_XData_getFld(id, fieldName, app);
}

int kz_XData_setHandle(const ads_name id, const kz_Char* handle, const kz_Char* fieldName,
                       const kz_Char* app, int clearExisting) {
    return kz_XData_setFld(id, KZ_FLD_HANDLE, handle, fieldName, app, clearExisting, 1);
}

int kz_XData_deleteHandle(const ads_name id, const kz_Char* handle, const kz_Char* fieldName,
                          const kz_Char* app) {
    return kz_XData_deleteFldValue(id, KZ_FLD_HANDLE, handle, fieldName, app, 0);
}
