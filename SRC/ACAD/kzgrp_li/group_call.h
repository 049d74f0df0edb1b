/// The frame of the twins on groups, and the template that makes a twin of a service: what its
/// arguments are read with, in order, and what becomes of its result. A wrong argument prints
/// nothing, is not traced and adds no error; the result is then that of a service that gave 0.
#ifndef SRC_ACAD_KZGRP_LI_GROUP_CALL_H
#define SRC_ACAD_KZGRP_LI_GROUP_CALL_H

#include <tuple>

#include "ACAD/cad_li/cad_call.h"
#include "ACAD/kz_acgrp/group_edit.h"

namespace kz {

/// What a removal gives that has ended the group, beside 1 and 0.
inline constexpr int kGroupEnded = -1;

class GroupCall : public CadCall {
  public:
    /// With a `refusal` a refused argument is told as CadCall tells it.
    explicit GroupCall(const kz_Char* name = KZ_T(""), const kz_Char* refusal = nullptr);

    // --- readers ---------------------------------------------------------------------------------

    /// A group; the name of two zero words is a null id.
    const kz_GroupId* group() { return readGroup(false); }
    /// The same; NULL for nil.
    const kz_GroupId* groupOrNull() { return readGroup(true); }
    /// A group that is no null id.
    const kz_GroupId* someGroup();
    const kz_CADObjId* object() { return readObject(false); }
    const kz_CADObjId* objectOrNull() { return readObject(true); }
    const kz_CADObjId* someObject();
    /// A selection set, which stays with Lisp.
    const kz_CADSelSet* set() { return readSet(false); }
    const kz_CADSelSet* setOrNull() { return readSet(true); }
    /// A type; empty for nil.
    const kz_Char* type() { return readText(kTypeSize, true); }
    /// The name of a group or sub-group.
    const kz_Char* groupName() { return readText(kNameSize, false); }
    const kz_Char* groupNameOrEmpty() { return readText(kNameSize, true); }
    /// A name that is not empty.
    const kz_Char* someGroupName();
    /// 1 for any value but nil.
    int truth();
    /// An index; 0 for nil.
    int index() { return integer(0); }

    // --- answers ---------------------------------------------------------------------------------

    /// T for all but 0.
    void answerTruth(int value);
    void answerInteger(int value) { acedRetInt(value); }
    /// As answerStatus, or kGroupEnded.
    void answerRemoval(int status);
    /// The group or object, whose id is freed; nil for NULL.
    void answerGroup(kz_GroupId* id);
    void answerObject(kz_CADObjId* id);
    /// The set, which goes to Lisp; nil for NULL.
    void answerSet(kz_CADSelSet* set);
    /// The objects, whose list is destroyed; nil for NULL.
    void answerObjects(kz_CADObjIdList* list);

  private:
    /// The most that a twin reads of one kind.
    static constexpr int kMostTexts = 3;
    static constexpr int kMostIds = 2;

    /// @return true for a name, false for nil and for what is none
    bool readName(ads_name out, bool nil_allowed);
    const kz_GroupId* readGroup(bool nil_allowed);
    const kz_CADObjId* readObject(bool nil_allowed);
    const kz_CADSelSet* readSet(bool nil_allowed);
    const kz_Char* readText(int size, bool nil_allowed);
    void require(bool there);

    kz_GroupId groups_[kMostIds] = {};
    kz_CADObjId objects_[kMostIds] = {};
    kz_CADSelSet chosen_ = {};
    kz_Char words_[kMostTexts][kTypeSize];
    int group_count_ = 0;
    int object_count_ = 0;
    int word_count_ = 0;
};

// --- rows ---------------------------------------------------------------------------------------

// What arguments are read with.
inline constexpr auto kGroup = &GroupCall::group;
inline constexpr auto kGroupOrNil = &GroupCall::groupOrNull;
inline constexpr auto kSomeGroup = &GroupCall::someGroup;
inline constexpr auto kObject = &GroupCall::object;
inline constexpr auto kObjectOrNil = &GroupCall::objectOrNull;
inline constexpr auto kSomeObject = &GroupCall::someObject;
inline constexpr auto kSet = &GroupCall::set;
inline constexpr auto kSetOrNil = &GroupCall::setOrNull;
inline constexpr auto kType = &GroupCall::type;
inline constexpr auto kName = &GroupCall::groupName;
inline constexpr auto kNameOrNil = &GroupCall::groupNameOrEmpty;
inline constexpr auto kSomeName = &GroupCall::someGroupName;
inline constexpr auto kFlag = &GroupCall::truth;
inline constexpr auto kIndex = &GroupCall::index;
inline constexpr auto kGiven = &GroupCall::given;  ///< looked at, not read

// What becomes of the result.
inline constexpr auto kStatus = &GroupCall::answerStatus;
inline constexpr auto kTruth = &GroupCall::answerTruth;
inline constexpr auto kInteger = &GroupCall::answerInteger;
inline constexpr auto kRemoval = &GroupCall::answerRemoval;
inline constexpr auto kToGroup = &GroupCall::answerGroup;
inline constexpr auto kToObject = &GroupCall::answerObject;
inline constexpr auto kToSet = &GroupCall::answerSet;
inline constexpr auto kToObjects = &GroupCall::answerObjects;

/// A whole twin.
template <auto Service, auto Answer, auto... Readers>
int groupTwin() {
    GroupCall call;
    // Braces read the arguments in this order.
    const std::tuple arguments{(call.*Readers)()...};
    using Result = decltype(std::apply(Service, arguments));
    (call.*Answer)(call.readAll() ? std::apply(Service, arguments) : Result{});
    return 1;
}

/// A twin that answers with a text of one group; `Size` is that of the service's buffer.
template <auto Service, int Size, auto Reader>
int groupTextTwin() {
    GroupCall call;
    const kz_GroupId* id = (call.*Reader)();
    kz_Char text[Size] = {};
    if (call.readAll() && Service(text, id) == 1) acedRetStr(text);
    return 1;
}

}  // namespace kz

#endif
