/// The frame of the twins on groups: readers and answers.
#include "ACAD/kzgrp_li/group_call.h"

#include "chain_tail.h"

namespace kz {
namespace {

constexpr TwinFamily kFamily = {"SRC/ACAD/kzgrp_li", 0};

}  // namespace

GroupCall::GroupCall(const kz_Char* name, const kz_Char* refusal)
    : CadCall(kFamily, name, refusal) {}

// --- readers ------------------------------------------------------------------------------------

bool GroupCall::readName(ads_name out, bool nil_allowed) {
    int is_nil = 0;
    read([&](resbuf** cursor) {
        return kz_Rb_getNextADSName(out, cursor, &is_nil, nil_allowed ? 1 : 0);
    });
    return readAll() && is_nil == 0;
}

void GroupCall::require(bool there) {
    read([there](resbuf**) { return there ? 1 : 0; });
}

const kz_GroupId* GroupCall::readGroup(bool nil_allowed) {
    kz_GroupId& id = groups_[group_count_++];
    return readName(id.ename, nil_allowed) ? &id : nullptr;
}

const kz_GroupId* GroupCall::someGroup() {
    const kz_GroupId* id = group();
    require(kz_Group_isNull(id) == 0);
    return id;
}

const kz_CADObjId* GroupCall::readObject(bool nil_allowed) {
    kz_CADObjId& id = objects_[object_count_++];
    return readName(id.ename, nil_allowed) ? &id : nullptr;
}

const kz_CADObjId* GroupCall::someObject() {
    const kz_CADObjId* id = object();
    require(kz_CADObjId_isNull(id) == 0);
    return id;
}

const kz_CADSelSet* GroupCall::readSet(bool nil_allowed) {
    int is_nil = 0;
    read([&](resbuf** cursor) {
        return kz_Rb_getNextSelSet(chosen_.name, cursor, &is_nil, nil_allowed ? 1 : 0);
    });
    return readAll() && is_nil == 0 ? &chosen_ : nullptr;
}

const kz_Char* GroupCall::readText(int size, bool nil_allowed) {
    kz_Char* text = words_[word_count_++];
    *text = 0;
    read([&](resbuf** cursor) {
        return kz_Rb_getNextString(text, size, cursor, nullptr, nil_allowed ? 1 : 0);
    });
    return text;
}

const kz_Char* GroupCall::someGroupName() {
    const kz_Char* name = groupName();
    require(!isEmpty(name));
    return name;
}

int GroupCall::truth() {
    int16_t type = 0;
    int is_nil = 1;
    read([&](resbuf** cursor) { return kz_Rb_getNextType(&type, cursor, &is_nil, 1); });
    return is_nil == 0 ? 1 : 0;
}

// --- answers ------------------------------------------------------------------------------------

void GroupCall::answerTruth(int value) {
    answerStatus(value != 0 ? 1 : 0);
}

void GroupCall::answerRemoval(int status) {
    if (status == kGroupEnded) {
        answerInteger(kGroupEnded);
    } else {
        answerStatus(status);
    }
}

void GroupCall::answerGroup(kz_GroupId* id) {
    const OwnedGroup owned(id);
    if (id != nullptr) answerName(id->ename);
}

void GroupCall::answerObject(kz_CADObjId* id) {
    const OwnedObject owned(id);
    if (id != nullptr) answerName(id->ename);
}

void GroupCall::answerSet(kz_CADSelSet* set) {
    if (set == nullptr) return;
    // A set that Lisp did not take has nobody else who would free it.
    if (acedRetName(set->name, RTPICKS) == RTNORM) {
        kz_Free(set);
    } else {
        kz_CADSelSet_destroy(set);
    }
}

void GroupCall::answerObjects(kz_CADObjIdList* list) {
    const OwnedObjects owned(list);
    resbuf* chain = nullptr;
    ChainTail tail(&chain);
    if (list != nullptr) kz_LnkList_start(list);
    for (; list != nullptr && kz_LnkList_eol(list) != 1; kz_LnkList_next(list)) {
        const auto* id = static_cast<const kz_CADObjId*>(kz_LnkList_getCurr(list));
        if (kz_CADObjId_isNull(id) == 0) tail.append(RTENAME, id->ename);
    }
    const OwnedChain names(chain);
    if (chain != nullptr) kz_ResBuf_returnList(chain);
}

}  // namespace kz
