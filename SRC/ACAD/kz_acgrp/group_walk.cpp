/// The walk over the groups of a drawing. There is one in the process.
#include "ACAD/cad_rx/cad_rx.h"
#include "ACAD/kz_acgrp/kz_acgrp.h"

namespace {

constexpr const char* kTraceSource = "SRC/ACAD/kz_acgrp";

class Walk {
  public:
    bool begin(const kz_CADDwgId* drawing);
    /// The same again, for the drawing that it was begun with.
    bool beginAgain();
    void end();
    bool runs() const { return iterator_ != nullptr; }
    /// From the next entry on, from the first one of a fresh walk.
    void step();
    void forgetFresh() { fresh_ = false; }
    /// The object of the first entry that fits, where the walk stands or behind; null at the end.
    AcDbObjectId settle(const kz_Char* type, bool containers);

  private:
    bool open(const AcDbDatabase* database);
    void close();
    static bool fits(const kz_Char* key, const AcDbObjectId& object, const kz_Char* type,
                     bool containers);

    std::unique_ptr<AcDbDictionaryIterator> iterator_;
    AcDbDictionary* dictionary_ = nullptr;
    AcDbObjectId dictionary_id_;  ///< tells whether the dictionary's drawing is still open
    const kz_CADDwgId* drawing_ = nullptr;
    bool fresh_ = false;  ///< just begun: nothing was fetched yet
};

/// Nothing may be open when the library is unloaded, so nothing is left for a destructor to do.
Walk& walk() {
    static Walk instance;
    return instance;
}

void Walk::close() {
    ads_name name = {};
    iterator_.reset();
    // A drawing that was closed took its dictionary along.
    const bool there =
        dictionary_ != nullptr && acdbGetAdsName(name, dictionary_id_) != Acad::ePermanentlyErased;
    if (there) dictionary_->close();
    dictionary_ = nullptr;
    fresh_ = false;
}

bool Walk::open(const AcDbDatabase* database) {
    close();
    const bool opened =
        database != nullptr && database->getGroupDictionary(dictionary_) == Acad::eOk;
    if (opened) {
        dictionary_id_ = dictionary_->objectId();
        iterator_.reset(dictionary_->newIterator());
    }
    KZ_ASSERTION(iterator_ != nullptr);
    if (iterator_ == nullptr) close();
    fresh_ = iterator_ != nullptr;
    return fresh_;
}

bool Walk::begin(const kz_CADDwgId* drawing) {
    drawing_ = drawing;
    return open(kz::databaseOf(drawing));
}

bool Walk::beginAgain() {
    // The id may have been destroyed meanwhile.
    const bool gone =
        drawing_ != nullptr && kz_CADDwgId_check(const_cast<kz_CADDwgId*>(drawing_), 1) == nullptr;
    return open(gone ? nullptr : kz::databaseOf(drawing_));
}

void Walk::end() {
    drawing_ = nullptr;
    close();
}

void Walk::step() {
    if (!fresh_ && !iterator_->done()) iterator_->next();
    fresh_ = false;
}

bool Walk::fits(const kz_Char* key, const AcDbObjectId& object, const kz_Char* type,
                bool containers) {
    const bool container = kz_Group_isAContainerGroupName(key) == 1;
    const bool ours = kz_Group_isAMovarGroupName(key) == 1;
    if (!ours || (container && !containers) || object.isNull()) return false;
    return kz::isAny(type) || kz_AcDbGroup_isTypeOf(&object, type) == 1;
}

AcDbObjectId Walk::settle(const kz_Char* type, bool containers) {
    for (; !iterator_->done(); iterator_->next()) {
        // The iterator lends its key until the next call.
        const ACHAR* key = iterator_->name();
        if (key == nullptr) break;
        const std::u16string name = key;
        const AcDbObjectId object = iterator_->objectId();
        if (fits(name.c_str(), object, type, containers)) return object;
    }
    return {};
}

/// The group that the walk settles on, and whether it is erased.
kz_GroupId* fetch(int* erased, const kz_Char* type, int containers) {
    KZ_ASSERTION(walk().runs());
    if (!walk().runs()) return nullptr;
    const AcDbObjectId object = walk().settle(type, containers != 0);
    if (object.isNull()) return nullptr;
    kz_GroupId* id = kz_GroupId_fromAcDbObjectId(&object);
    if (id != nullptr && erased != nullptr) *erased = kz_Group_isErased(id);
    return id;
}

}  // namespace

int kz_AcGroup_beginGetNext(const kz_CADDwgId* drawing) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_beginGetNext"));
    return walk().begin(drawing) ? 1 : 0;
}

kz_GroupId* kz_AcGroup_getNext(int* erased, const kz_Char* type, int includeContainers,
                               int restart) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getNext"));
    if (erased != nullptr) *erased = 0;
    if (restart != 0 || !walk().runs()) {
        walk().beginAgain();
        walk().forgetFresh();
    } else {
        walk().step();
    }
    return fetch(erased, type, includeContainers);
}

kz_GroupId* kz_AcGroup_getCurr(int* erased, const kz_Char* type, int includeContainers) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_getCurr"));
    if (erased != nullptr) *erased = 0;
    if (!walk().runs()) walk().begin(nullptr);
    walk().forgetFresh();
    return fetch(erased, type, includeContainers);
}

void kz_AcGroup_endGetNext(void) {
    const kz::GroupTrace trace(KZ_T("kz_AcGroup_endGetNext"));
    walk().end();
}
