/// Picks: by the user and at a point, also of objects inside attached drawings.
#include <memory>

#include "ACAD/cad_rx/cad_rx.h"
#include "checks.h"
#include "kz/kz_error.h"
#include "kz/kz_group.h"
#include "kz/kz_objprops.h"
#include "kz/kz_point_cnv.h"
#include "local_points.h"

namespace {

/// Code of the entry for a pick that the platform refuses.
constexpr int kRefused = 11;
/// States of an id: an object of the drawing, or one inside an attached drawing.
constexpr int kPicked = 1;
constexpr int kPickedInside = 2;
/// Of acedNEntSelP: the point is given.
constexpr int kUsePoint = 1;
/// Groups of an entity's list.
constexpr int kType = 0;
constexpr int kOwner = -2;
constexpr int kXData = -3;

using OwnedId = std::unique_ptr<kz_CADObjId, kz::Destroyer<kz_CADObjId_destroy>>;
using OwnedTMatrix = std::unique_ptr<kz_TMatrix, kz::Destroyer<kz_TMatrix_destroy>>;

// --- what a picked entity stands for
// --------------------------------------------------------------

/// The groups of an entity with all its XDATA; NULL when it can't be read.
kz::OwnedChain groupsOf(const ads_name name) {
    kz_Char all[] = KZ_T("*");
    resbuf filter = {};
    filter.restype = RTSTR;
    filter.resval.rstring = all;
    return kz::OwnedChain(acdbEntGetX(name, &filter));
}

bool hasType(const kz::OwnedChain& groups, const kz_Char* type) {
    const kz_Char* text = kz_Rb_getString(kz_Rb_entitem(groups.get(), kType));
    return text != nullptr && kz_Str_cmpi(text, type) == 0;
}

/// The entity that a vertex or an attribute is part of, as the end of its sequence names it.
bool ownerOf(ads_name out, const ads_name part) {
    ads_name at;
    ads_name_set(part, at);
    while (acdbEntNext(at, at) == RTNORM) {
        const kz::OwnedChain groups(acdbEntGet(at));
        if (groups == nullptr) return false;
        if (!hasType(groups, KZ_T("SEQEND"))) continue;
        const resbuf* owner = kz_Rb_entitem(groups.get(), kOwner);
        if (owner == nullptr) return false;
        ads_name_set(owner->resval.rlname, out);
        return true;
    }
    return false;
}

/// Resolves one entity, without what is around it.
bool resolve(ads_name out, const ads_name picked, bool& has_data) {
    kz::OwnedChain groups = groupsOf(picked);
    if (groups == nullptr) return false;
    ads_name name;
    ads_name_set(picked, name);
    if (hasType(groups, KZ_T("VERTEX")) || hasType(groups, KZ_T("ATTRIB"))) {
        if (!ownerOf(name, picked)) return false;
        groups = groupsOf(name);
        if (groups == nullptr) return false;
    }
    has_data = kz_Rb_entitem(groups.get(), kXData) != nullptr;
    ads_name_set(name, out);
    return true;
}

// --- attached drawings
// ----------------------------------------------------------------------------

enum class Block { None, Own, Attached };

/// What block an object inserts.
Block insertedBlock(const AcDbObjectId& object) {
    const kz::Opened<AcDbEntity> entity = kz::openObject<AcDbEntity>(object, AcDb::kForRead);
    const AcDbBlockReference* reference = AcDbBlockReference::cast(entity.get());
    if (reference == nullptr) return Block::None;
    AcDbBlockTableRecord* record = nullptr;
    const Acad::ErrorStatus status =
        acdbOpenObject(record, reference->blockTableRecord(), AcDb::kForRead);
    if (status != Acad::eOk) {
        kz::submitStatus(KZ_T("acdbOpenAcDbObject"), status);
        return Block::Own;
    }
    const kz::Opened<AcDbBlockTableRecord> block(record);
    return kz::isAttachment(*block.get()) ? Block::Attached : Block::Own;
}

/// True when one of the insertions around an object is that of an attached drawing.
bool liesInAttachment(const resbuf* containers) {
    for (const resbuf* node = containers; node != nullptr; node = node->rbnext) {
        AcDbObjectId object;
        const bool known =
            node->restype == RTENAME && acdbGetObjectId(object, node->resval.rlname) == Acad::eOk;
        if (known && insertedBlock(object) == Block::Attached) return true;
    }
    return false;
}

// --- picks
// ----------------------------------------------------------------------------------------

/// What acedNEntSelP finds.
struct NestedPick {
    ads_name name = {};
    ads_matrix matrix = {};
    kz::OwnedChain containers;

    /// Picks at a point of the UCS; a failure is told on the error list.
    bool at(const ads_point given) {
        ads_point point = {given[0], given[1], given[2]};
        resbuf* chain = nullptr;
        const int status = acedNEntSelP(nullptr, name, point, kUsePoint, matrix, &chain);
        containers.reset(chain);
        if (status == RTNORM) return true;
        kz_Char* text = kz_Diag_getDiagMsgBuf();
        kz_Error_getADSErrorMsg(text, KZ_T("acedNEntSelP"), status);
        kz_Error_submitCustomError(text, kRefused, nullptr, nullptr);
        return false;
    }
};

bool hasXData(const ads_name name) {
    const kz::Opened<AcDbObject> object(name, AcDb::kForRead, false);
    const kz::OwnedChain data(object ? object->xData(nullptr) : nullptr);
    return data != nullptr;
}

bool isGroupMember(const ads_name name) {
    kz_CADObjId id = {};
    ads_name_set(name, id.ename);
    return hasXData(name) && kz_Group_isAMember(&id) == 1;
}

/// Goes over to the first group member from the innermost object outward; stays when there is none.
void preferGroupMember(NestedPick& pick) {
    if (isGroupMember(pick.name)) return;
    for (const resbuf* node = pick.containers.get(); node != nullptr; node = node->rbnext) {
        if (node->restype != RTENAME || !isGroupMember(node->resval.rlname)) continue;
        ads_name_set(node->resval.rlname, pick.name);
        return;
    }
}

/// Lets a pick be of the entity that it stands for. False, told on the error list, for a name that
/// the platform refuses.
bool settle(NestedPick& pick) {
    AcDbObjectId object;
    const Acad::ErrorStatus status = acdbGetObjectId(object, pick.name);
    if (status != Acad::eOk) {
        kz::submitStatus(KZ_T("acdbGetObjectId"), status);
        return false;
    }
    ads_name name;
    if (kz_AcCAD_resolvePickedEntity(name, pick.name, pick.containers.get(), nullptr) == 1) {
        ads_name_set(name, pick.name);
    }
    return true;
}

kz_CADObjId* makeId(const NestedPick& pick, int state) {
    OwnedId id(kz_CADObjId_create(nullptr));
    if (id == nullptr) return nullptr;
    ads_name_set(pick.name, id->ename);
    if (state == kPickedInside) {
        OwnedTMatrix matrix(kz_TMatrix_create());
        if (matrix == nullptr || kz_TMatrix_fromADSMatrix(matrix.get(), pick.matrix) != 1) {
            return nullptr;
        }
        kz_CADObjId_setTMatrix(id.get(), matrix.release());
    }
    kz_CADObjId_setNestedState(id.get(), state);
    return id.release();
}

}  // namespace

int kz_AcCAD_resolvePickedEntity(ads_name out, const ads_name picked, const resbuf* containers,
                                 int* hasData) {
    if (hasData != nullptr) *hasData = 0;
    if (out != nullptr && picked != out) ads_name_clear(out);
    if (out == nullptr || picked == nullptr) return 0;
    ads_name inner;
    ads_name_set(picked, inner);
    ads_name_clear(out);
    bool has_data = false;
    if (!resolve(out, inner, has_data)) return 0;
    const resbuf* node = containers;
    for (; !has_data && node != nullptr && node->restype == RTENAME; node = node->rbnext) {
        ads_name outer = {};
        if (!resolve(outer, node->resval.rlname, has_data)) break;
        if (has_data) ads_name_set(outer, out);
    }
    if (hasData != nullptr) *hasData = has_data ? 1 : 0;
    return 1;
}

kz_CADObjId* kz_CADObjId_select(const kz_Char* prompt, kz_Point* point) {
    NestedPick pick;
    ads_point picked = {};
    if (acedEntSel(prompt, pick.name, picked) != RTNORM) return nullptr;
    if (point != nullptr) *point = kz::ucsToLocal(kz_Point{picked[0], picked[1], picked[2]});
    AcDbObjectId object;
    if (acdbGetObjectId(object, pick.name) != Acad::eOk) return nullptr;
    if (!kz::openObject<AcDbEntity>(object, AcDb::kForRead)) return nullptr;
    const Block block = insertedBlock(object);
    if (block == Block::None) return makeId(pick, kPicked);
    if (block == Block::Attached) {
        if (!pick.at(picked)) return nullptr;
        preferGroupMember(pick);
    }
    const int state = pick.containers != nullptr ? kPickedInside : kPicked;
    return settle(pick) ? makeId(pick, state) : nullptr;
}

kz_CADObjId* kz_CADObjId_getAtPoint(const kz_Point* point) {
    if (point == nullptr) return nullptr;
    ads_point at = {};
    const kz_Point in_ucs = kz::localToUcs(*point);
    kz_Point_toADSPoint(at, &in_ucs);
    NestedPick pick;
    if (!pick.at(at) || !settle(pick)) return nullptr;
    const bool inside = liesInAttachment(pick.containers.get());
    return makeId(pick, inside ? kPickedInside : kPicked);
}
