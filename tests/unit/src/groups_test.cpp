/// Groups: names and codes, their fields, trees that are whole and trees that are not, the walk and
/// the fetching of entities.
#include "group_test.h"
#include "host/testing.h"
#include "host/undo.h"

namespace {

using test::Group;
using test::Object;

class GroupNames : public test::GroupTest {
  protected:
    static std::string text(const kz_Char* given) {
        return given == nullptr ? "(null)" : kz::toUtf8(given);
    }
    static std::string prefixed(const kz_Char* name, const kz_Char* prefix) {
        kz_Char out[32] = {};
        EXPECT_EQ(kz_Group_prefixName(out, name, prefix), out);
        return text(out);
    }
    static std::string unique(const kz_Char* prefix = nullptr) {
        kz_Char out[32] = KZ_T("untouched");
        return kz_Group_getUniqueName(out, prefix) == 1 ? text(out) : "failed, " + text(out);
    }
};

TEST_F(GroupNames, KindIsInTheForm) {
    const std::pair<const kz_Char*, int> kNames[] = {{KZ_T("KZ_0_5"), 0},
                                                     {KZ_T("KZ_0"), 0},
                                                     {KZ_T("KZ__0"), 0},
                                                     {KZ_T("KZ_12"), -1},
                                                     {KZ_T("KZ_AB_3"), 1},
                                                     {KZ_T("kz_ab__3"), 1},
                                                     {KZ_T("KZ_X12"), -1},
                                                     {KZ_T("KZ_CN0_"), 2},
                                                     {KZ_T("KZ_CN_AB"), 3},
                                                     {KZ_T("kz_cn_a_b"), 3},
                                                     {KZ_T("KZ_CN"), -1},
                                                     {KZ_T("KZ_ANNOT0_3"), 4},
                                                     {KZ_T("KZ_ANNOT_AB_3"), 5},
                                                     {KZ_T("KZ_ANNOT"), 5},
                                                     {KZ_T("KZ_"), -1},
                                                     {KZ_T("KZ"), -1},
                                                     {KZ_T("AKZ_AB_3"), -1},
                                                     {KZ_T("KZ_2F"), -1},
                                                     {KZ_T(""), -1},
                                                     {nullptr, -1}};
    for (const auto& [name, kind] : kNames) {
        EXPECT_EQ(kz_Group_getGroupNameType(name), kind) << text(name);
        EXPECT_EQ(kz_Group_isAMovarGroupName(name), kind >= 0 && kind <= 3 ? 1 : 0) << text(name);
    }
    EXPECT_EQ(kz_Group_isAContainerGroupName(KZ_T("kz_cn_a_b")), 0) << "case counts here";
    EXPECT_EQ(kz_Group_isAContainerGroupName(KZ_T("KZ_CN_A_B")), 1);
    EXPECT_EQ(kz_Group_isAContainerGroupName(KZ_T("KZ_CN0_B")), 1);
    EXPECT_EQ(kz_Group_isAContainerGroupName(nullptr), 0);
}

TEST_F(GroupNames, CodesArePiecesOfTheName) {
    EXPECT_EQ(text(kz_Group_getDwgIdCode(KZ_T("KZ_AB_3"))), "AB");
    EXPECT_EQ(text(kz_Group_getGroupCode(KZ_T("KZ_AB_3"))), "3");
    EXPECT_EQ(text(kz_Group_getDwgIdCode(KZ_T("KZ_CN_AB_3_X"))), "AB");
    EXPECT_EQ(text(kz_Group_getGroupCode(KZ_T("KZ_ANNOT_AB_3"))), "3");
    EXPECT_EQ(text(kz_Group_getGroupCode(KZ_T("KZ_CN_AB"))), "(null)");
    EXPECT_EQ(text(kz_Group_getGroupCode(KZ_T("KZ_0_5"))), "(null)");
    EXPECT_EQ(text(kz_Group_getDwgIdCode(nullptr)), "(null)");
    const kz_Char* code = kz_Group_getDwgIdCode(KZ_T("KZ_AB_3"));
    kz_Group_getGroupCode(KZ_T("KZ_CD_4"));
    EXPECT_EQ(text(code), "AB") << "each has a buffer of its own";
}

TEST_F(GroupNames, PrefixesAreCutToFit) {
    EXPECT_EQ(prefixed(KZ_T("*A12"), KZ_T("KZ_CN_")), "KZ_CN_12");
    EXPECT_EQ(prefixed(KZ_T("*a12"), KZ_T("KZ_")), "KZ_X12");
    EXPECT_EQ(prefixed(KZ_T("*A12"), KZ_T("kz_")), "kz_12");
    EXPECT_EQ(prefixed(KZ_T("KZ_CN_12"), KZ_T("KZ_CN_")), "KZ_CN_12");
    EXPECT_EQ(prefixed(KZ_T("kz_12"), KZ_T("KZ_")), "kz_12");
    EXPECT_EQ(prefixed(KZ_T("*A12"), nullptr), "*A12");
    EXPECT_EQ(prefixed(KZ_T("01234567890123456789012345678"), KZ_T("KZ_")),
              "KZ_0123456789012345678901234");
    EXPECT_EQ(prefixed(nullptr, KZ_T("0123456789012345678901234567890123456789")).size(), 28U);
    kz_Char same[32] = KZ_T("12");
    kz_Group_prefixName(same, same, KZ_T("KZ_"));
    EXPECT_EQ(text(same), "KZ_12");
}

TEST_F(GroupNames, NewNamesCountUpOverTheDrawing) {
    kz_DwgIdCode_set(nullptr, KZ_T("1A2B"));
    EXPECT_EQ(unique(), "KZ_1A2B_0");
    EXPECT_EQ(text(kz_Group_getCachedGroupCode(nullptr)), "1");
    EXPECT_EQ(unique(KZ_T("KZ_CN_")), "KZ_CN_1A2B_1");
    EXPECT_EQ(unique(KZ_T("KZ_ANNOT")), "KZ_ANNOT_1A2B_2");
    EXPECT_EQ(unique(KZ_T("kz_")), "kz_1A2B_3");
    EXPECT_EQ(unique(KZ_T("012345678901234567890123456789")).size(), 28U);
    kz_Group_setCachedGroupCode(nullptr, KZ_T("Z"));
    EXPECT_EQ(unique(), "KZ_1A2B_Z");
    EXPECT_EQ(unique(), "KZ_1A2B_10");
    EXPECT_EQ(kz_Group_setCachedGroupCode(nullptr, nullptr), 0);
    EXPECT_EQ(kz_Group_getUniqueName(nullptr, nullptr), 0);
    EXPECT_EQ(unique(), "KZ_1A2B_11") << "none was used up";
}

TEST_F(GroupNames, LostCountIsFoundInTheNames) {
    kz_DwgIdCode_set(nullptr, KZ_T("AB"));
    make(KZ_T("KZ_AB_Z"));
    make(KZ_T("KZ_AB_3"));
    make(KZ_T("KZ_AB_Z-Y"));
    make(KZ_T("KZ_0_ZZ"));
    EXPECT_EQ(unique(), "KZ_AB_10");
    EXPECT_EQ(text(kz_Group_getCachedGroupCode(nullptr)), "11");
    kz_Group_setCachedGroupCode(nullptr, KZ_T("no code"));
    EXPECT_EQ(unique(), "KZ_AB_10") << "what is no code counts as none";
}

TEST_F(GroupNames, CountOutlivesUndo) {
    kz_DwgIdCode_set(nullptr, KZ_T("AB"));
    unique();
    {
        const host::UndoStep step("GROUP");
        makeLine(line_);
        unique();
    }
    ASSERT_EQ(host::undo(1).names.size(), 1U);
    EXPECT_EQ(unique(), "KZ_AB_2");
    EXPECT_TRUE(database()->undoRecording());
    database()->disableUndoRecording(true);
    unique();
    EXPECT_FALSE(database()->undoRecording()) << "who switched it off finds it so";
    database()->disableUndoRecording(false);
}

TEST_F(GroupNames, WithoutCodesThereIsNoName) {
    ASSERT_TRUE(host::testing::failCall("setAt", 1, 3));
    EXPECT_EQ(unique(), "failed, untouched");
    host::testing::clearFault();
    kz_DwgIdCode_set(nullptr, KZ_T("AB"));
    ASSERT_TRUE(host::testing::failCall("setAt", 1, 3));
    EXPECT_EQ(unique(), "failed, untouched");
    host::testing::clearFault();
}

class Groups : public test::GroupTest {};

TEST_F(Groups, IdsAreCopiesOfNames) {
    const Group id = make(KZ_T("KZ_AB_1"));
    const Group copy(kz_Group_dupId(id.get()));
    const Group null(kz_Group_createId(nullptr));
    EXPECT_EQ(kz_Group_isEqual(id.get(), copy.get()), 1);
    EXPECT_EQ(kz_Group_isEqual(nullptr, nullptr), 1);
    EXPECT_EQ(kz_Group_isEqual(nullptr, null.get()), 0);
    EXPECT_EQ(kz_Group_isNull(null.get()), 1);
    EXPECT_EQ(kz_Group_isNull(nullptr), 1);
    EXPECT_EQ(kz_Group_dupId(nullptr), nullptr);
    EXPECT_EQ(kz_Group_isValid(null.get()), 0);
    EXPECT_EQ(kz_Group_isValid(id.get()), 1);
    EXPECT_EQ(kz_Group_copyId(copy.get(), nullptr), 1);
    EXPECT_EQ(kz_Group_isNull(copy.get()), 1);
    EXPECT_EQ(kz_Group_copyId(nullptr, id.get()), 0);
    ads_name name = {7, 7};
    EXPECT_EQ(kz_GroupId_toADSEname(name, null.get()), 0);
    EXPECT_EQ(name[0], 7);
    erase(id->ename);
    EXPECT_EQ(kz_Group_isValid(id.get()), 1) << "erasure is not looked at";
    EXPECT_EQ(kz_Group_isErased(id.get()), 1);
    kz_GroupIdList* list =
        kz_GroupIdList_create(kz_Group_dupId(id.get()), kz_Group_createId(nullptr), nullptr);
    EXPECT_EQ(kz_Group_isEqual(kz_GroupIdList_getCurr(list), id.get()), 1);
    EXPECT_EQ(kz_Group_isNull(kz_GroupIdList_getNth(list, 1)), 1);
    EXPECT_EQ(kz_GroupIdList_getNth(list, 2), nullptr);
    EXPECT_EQ(kz_GroupIdList_destroy(list), 1);
}

TEST_F(Groups, AreFoundByNameInAnyCase) {
    const Group id = make(KZ_T("KZ_AB_1"), KZ_T("Pipe"));
    EXPECT_EQ(nameOf(kz_Group_getId(KZ_T("kz_ab_1"))), "KZ_AB_1");
    EXPECT_EQ(kz_Group_isValidByName(KZ_T("KZ_AB_1")), 1);
    EXPECT_EQ(kz_Group_isValidByName(KZ_T("KZ_AB_2")), 0);
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(nameOf(kz_Group_getId(KZ_T("*"))), "(null)");
    EXPECT_EQ(nameOf(kz_Group_getIdFromDoc(nullptr, nullptr)), "(null)");
    EXPECT_EQ(errors(), "2, No group name specified\n2, No group name specified\n");

    kz_Char text[256] = {};
    EXPECT_EQ(kz_Group_getType(text, id.get()), 1);
    EXPECT_EQ(kz::toUtf8(text), "Pipe");
    EXPECT_EQ(kz_Group_isTypeOf(id.get(), KZ_T("PIPE")), 1);
    EXPECT_EQ(kz_Group_isTypeOf(id.get(), KZ_T("PIP")), 0);
    EXPECT_EQ(kz_Group_isTypeOf(nullptr, KZ_T("*")), 1);
    EXPECT_EQ(kz_Group_getNameFromDict(text, id.get()), 1);
    EXPECT_EQ(kz::toUtf8(text), "KZ_AB_1");
    EXPECT_EQ(kz_Group_getOldName(text, id.get()), 0);
    EXPECT_EQ(kz_Group_setOldName(id.get(), KZ_T("BEFORE")), 1);
    EXPECT_EQ(kz_Group_getOldName(text, id.get()), 1);
    EXPECT_EQ(kz::toUtf8(text), "BEFORE");
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(kz_Group_getName(text, nullptr), 0);
    EXPECT_EQ(errors(), "3, No group id specified\n");
}

TEST_F(Groups, LongTypeIsCutToTheBuffer) {
    const Group id = make(KZ_T("KZ_AB_1"), std::u16string(400, u'x').c_str());
    kz_Char text[257] = {};
    text[256] = u'!';
    EXPECT_EQ(kz_Group_getType(text, id.get()), 1);
    EXPECT_EQ(kz_Str_len(text), 255U);
    EXPECT_EQ(text[256], u'!');
}

TEST_F(Groups, MembersLeadToTheirMasterAndGroup) {
    const Group id = make(KZ_T("KZ_AB_1"), KZ_T("PIPE"), 2);
    const auto& all = entities_["KZ_AB_1"];
    for (const Entity& member : all) {
        const Object object = objectOf(member);
        const Object master(kz_Group_getMasterFromMember(object.get()));
        ASSERT_NE(master, nullptr);
        EXPECT_EQ(which(master->ename), "KZ_AB_1.0");
        EXPECT_EQ(kz_Group_isAMember(object.get()), 1);
        EXPECT_EQ(nameOf(kz_Group_getFromMember(object.get(), 0)), "KZ_AB_1");
    }
    const Object line(kz_CADObjId_fromADSEname(line_));
    EXPECT_EQ(kz_Group_isAMember(line.get()), 0);
    EXPECT_EQ(kz_Group_isAMember(nullptr), 0);
    EXPECT_EQ(kz_Group_getMasterFromMember(line.get()), nullptr);
    EXPECT_EQ(kz_Group_getFromMember(line.get(), 0), nullptr);
    EXPECT_EQ(kz_Group_getFromMember(nullptr, 1), nullptr);

    const std::u16string handle = kz::toUtf16(handleOf(all[1].name));
    EXPECT_EQ(nameOf(kz_Group_getFromPersistObjId(handle.c_str(), nullptr, 0)), "KZ_AB_1");
    EXPECT_EQ(kz_Group_getFromPersistObjId(nullptr, nullptr, 0), nullptr);
    ads_name master = {1, 1};
    EXPECT_EQ(kz_AcGroup_getMasterEntName(master, id.get(), 0), 1);
    EXPECT_EQ(which(master), "KZ_AB_1.0");
    EXPECT_EQ(errors(), "");
}

TEST_F(Groups, ChainsOfBothFormsLeadToTheGroup) {
    make(KZ_T("KZ_AB_1"));
    const ads_name& member = entities_["KZ_AB_1"][1].name;
    const kz_Char* value = KZ_T("MS");
    EXPECT_EQ(kz_XData_setFld(member, KZ_FLD_CHAR, value, KZ_T("MT"), KZ_T("OTHER"), 1, 1), 1);
    resbuf* bare = kz_Xdata_getFromEnt(member, nullptr);
    EXPECT_EQ(nameOf(kz_Group_getFromXdata(bare, 0)), "KZ_AB_1");
    const std::string after = test::take(bare);
    EXPECT_NE(after.find("1001:OTHER"), std::string::npos) << "the chain is whole again";
    resbuf* filter = test::chain("\"*\"");
    resbuf* list = acdbEntGetX(member, filter);
    EXPECT_EQ(nameOf(kz_Group_getFromXdata(list, 0)), "KZ_AB_1");
    kz_ResBuf_release(filter);
    kz_ResBuf_release(list);
    EXPECT_EQ(kz_Group_getFromXdata(nullptr, 0), nullptr);
}

TEST_F(Groups, DamagedMembersAreReported) {
    const Group id = make(KZ_T("KZ_AB_1"), KZ_T("PIPE"), 2);
    auto& all = entities_["KZ_AB_1"];
    const Object object = objectOf(all[1]);
    kz_Ename_setCharFieldReference(all[1].name, KZ_T("MN"), KZ_T("FFFF"), 1, KZ_T("KZ_GRP"));
    EXPECT_EQ(kz_Group_getFromMember(object.get(), 0), nullptr);
    EXPECT_EQ(errors(), "8, Invalid entity handle\n");
    kz_Ename_delCharFieldReference(all[1].name, KZ_T("MN"), nullptr, 1);
    EXPECT_EQ(kz_Group_getFromMember(object.get(), 0), nullptr);
    EXPECT_EQ(errors(), "10, Field not found in xdata\n");
    // A member of itself, and two of each other.
    const std::u16string own = kz::toUtf16(handleOf(all[1].name));
    kz_Ename_setCharFieldReference(all[1].name, KZ_T("MN"), own.c_str(), 1, KZ_T("KZ_GRP"));
    EXPECT_EQ(kz_Group_getFromMember(object.get(), 1), nullptr);
    setField(all[1], KZ_T("MT"), KZ_T("XX"));
    EXPECT_EQ(kz_Group_getFromMember(object.get(), 1), nullptr);
    EXPECT_EQ(errors(), "");
    kz_Ename_delCharFieldReference(id->ename, KZ_T("MN"), nullptr, 0);
    EXPECT_EQ(kz_Group_getMasterObject(id.get()), nullptr);
    EXPECT_EQ(kz_Group_getMasterObject(nullptr), nullptr);
    EXPECT_EQ(errors(), "3, No group id specified\n9, Invalid entity name\n");
    EXPECT_EQ(kz_Group_isErased(id.get()), 0) << "a group without a readable master is there";
    kz_Char handle[33] = {};
    EXPECT_EQ(kz_Group_getMasterHandle(handle, nullptr), 0);
    EXPECT_EQ(errors(), "1, Invalid group identifier\n");
}

class GroupTrees : public test::GroupTest {
  protected:
    /// A root with the children B (PIPE) and C (VALVE), and D below B.
    void SetUp() override {
        test::GroupTest::SetUp();
        a_ = make(KZ_T("KZ_AB_A"));
        b_ = make(KZ_T("KZ_AB_B"));
        c_ = make(KZ_T("KZ_AB_C"), KZ_T("VALVE"));
        d_ = make(KZ_T("KZ_AB_D"));
        tie(b_, KZ_T("KZ_AB_B"), a_, KZ_T("KZ_AB_A"));
        tie(c_, KZ_T("KZ_AB_C"), a_, KZ_T("KZ_AB_A"));
        tie(d_, KZ_T("KZ_AB_D"), b_, KZ_T("KZ_AB_B"));
    }
    static std::string children(const Group& id, const kz_Char* type) {
        std::string out;
        const int count = kz_Group_getNumChildren(id.get(), type);
        for (int i = 0; i < count; ++i)
            out += nameOf(kz_Group_getNthChild(id.get(), type, i)) + " ";
        EXPECT_EQ(nameOf(kz_Group_getNthChild(id.get(), type, count)), "(null)");
        EXPECT_EQ(nameOf(kz_Group_getNthChild(id.get(), type, -1)), "(null)");
        return out;
    }
    Group a_, b_, c_, d_;
};

TEST_F(GroupTrees, AreReadByNames) {
    EXPECT_EQ(nameOf(kz_Group_getParentGroup(d_.get())), "KZ_AB_B");
    EXPECT_EQ(nameOf(kz_Group_getParentGroup(a_.get())), "(null)");
    EXPECT_EQ(nameOf(kz_Group_getRootGroup(d_.get())), "KZ_AB_A");
    EXPECT_EQ(nameOf(kz_Group_getRootGroup(a_.get())), "KZ_AB_A");
    EXPECT_EQ(kz_Group_isARootGroup(a_.get()), 1);
    EXPECT_EQ(kz_Group_isARootGroup(d_.get()), 0);
    EXPECT_EQ(children(a_, nullptr), "KZ_AB_B KZ_AB_C ");
    EXPECT_EQ(children(a_, KZ_T("valve")), "KZ_AB_C ");
    EXPECT_EQ(children(d_, nullptr), "");
    EXPECT_EQ(kz_Group_isAChildOf(d_.get(), a_.get(), 0), 1);
    EXPECT_EQ(kz_Group_isAChildOf(d_.get(), a_.get(), 1), 0);
    EXPECT_EQ(kz_Group_isAChildOf(d_.get(), b_.get(), 1), 1);
    EXPECT_EQ(kz_Group_isAChildOf(a_.get(), d_.get(), 0), 0);
    const Object member = objectOf(entities_["KZ_AB_D"][1]);
    EXPECT_EQ(nameOf(kz_Group_getFromMember(member.get(), 1)), "KZ_AB_A");
    EXPECT_EQ(nameOf(kz_Group_getFromMember(member.get(), 0)), "KZ_AB_D");
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(kz_Group_isAChildOf(nullptr, a_.get(), 0), 0);
    EXPECT_EQ(kz_Group_getContainerGroup(nullptr), nullptr);
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(kz_Group_isARootGroup(nullptr), 1);
    EXPECT_EQ(kz_Group_getNumChildren(nullptr, nullptr), 0);
    EXPECT_EQ(errors(), "3, No group id specified\n3, No group id specified\n");
}

TEST_F(GroupTrees, WaysThatLeadBackEnd) {
    tie(a_, KZ_T("KZ_AB_A"), d_, KZ_T("KZ_AB_D"));
    EXPECT_EQ(kz_Group_getRootGroup(d_.get()), nullptr);
    EXPECT_EQ(kz_Group_isAChildOf(d_.get(), c_.get(), 0), 0);
    EXPECT_EQ(kz_Group_isAChildOf(a_.get(), b_.get(), 0), 1);
    const Object member = objectOf(entities_["KZ_AB_D"][1]);
    EXPECT_EQ(kz_Group_getFromMember(member.get(), 1), nullptr);
    EXPECT_EQ(show(kz_Group_getMemberList(a_.get(), nullptr, nullptr, 0, 0)),
              "KZ_AB_D.1 KZ_AB_B.1 KZ_AB_C.1 KZ_AB_A.1");
    tie(c_, KZ_T("KZ_AB_C"), c_, KZ_T("KZ_AB_C"));
    EXPECT_EQ(kz_Group_getRootGroup(c_.get()), nullptr);
    EXPECT_EQ(show(kz_Group_getMemberList(c_.get(), nullptr, nullptr, 0, 0)), "KZ_AB_C.1");
}

TEST_F(GroupTrees, MissingRelativesAreLeftOut) {
    erase(b_->ename);
    EXPECT_EQ(kz_Group_getRootGroup(d_.get()), nullptr);
    EXPECT_EQ(kz_Group_getNumChildren(a_.get(), nullptr), 2) << "as many as it names";
    EXPECT_EQ(kz_Group_getNthChild(a_.get(), nullptr, 0), nullptr);
    EXPECT_EQ(children(a_, KZ_T("VALVE")), "KZ_AB_C ");
    EXPECT_EQ(show(kz_Group_getMemberList(a_.get(), nullptr, nullptr, 0, 1)),
              "KZ_AB_C.0 KZ_AB_C.1 KZ_AB_A.0 KZ_AB_A.1");
    EXPECT_EQ(errors(), "1, Invalid group identifier\n");
}

TEST_F(GroupTrees, ReferencesStandOnGroupAndMaster) {
    const auto both = [&](const Group& id, const kz_Char* field) {
        kz_Char on_group[64] = {}, on_master[64] = {};
        kz_AcGroup_getCharFieldValFromEname(on_group, 64, field, id->ename);
        kz_Group_getCharFieldValFromMaster(on_master, 64, field, id.get());
        return kz::toUtf8(on_group) + "|" + kz::toUtf8(on_master);
    };
    EXPECT_EQ(both(d_, KZ_T("PR")), "KZ_AB_B|KZ_AB_B");
    EXPECT_EQ(both(d_, KZ_T("GN")), "KZ_AB_D|KZ_AB_D");
    EXPECT_EQ(kz_Group_addChildGroupReference(a_.get(), KZ_T("KZ_AB_B"), 1), 1);
    EXPECT_EQ(kz_Group_getNumChildren(a_.get(), nullptr), 2) << "no name twice";
    for (const int from_master : {0, 1}) {
        kz_FldList* names = kz_Group_getXDataFld(a_.get(), from_master, KZ_T("CH"));
        EXPECT_EQ(kz_FldList_count(names), 2);
        kz_FldList_destroy(names);
    }
    EXPECT_EQ(kz_Group_removeChildGroupReference(a_.get(), KZ_T("KZ_AB_B")), 1);
    EXPECT_EQ(kz_Group_removeChildGroupReference(a_.get(), KZ_T("KZ_AB_B")), 0);
    EXPECT_EQ(kz_Group_removeChildGroupReference(a_.get(), nullptr), 0);
    EXPECT_EQ(children(a_, nullptr), "KZ_AB_C ");
    EXPECT_EQ(kz_Group_removeChildGroupReference(a_.get(), KZ_T("KZ_AB_C")), 1);
    EXPECT_EQ(children(a_, nullptr), "");
    EXPECT_EQ(kz_Group_removeParentGroupReference(d_.get()), 1);
    EXPECT_EQ(both(d_, KZ_T("PR")), "|");
    EXPECT_EQ(kz_Group_setContainerGroupReference(a_.get(), KZ_T("KZ_AB_C"), 1), 1);
    EXPECT_EQ(nameOf(kz_Group_getContainerGroup(a_.get())), "KZ_AB_C");
    EXPECT_EQ(kz_Group_removeContainerGroupReference(a_.get()), 1);
    EXPECT_EQ(kz_Group_getContainerGroup(a_.get()), nullptr);
    EXPECT_EQ(kz_Group_setCharFieldReference(a_.get(), 1, 1, KZ_T("OWN"), KZ_T("x"), 0), 1);
    EXPECT_EQ(both(a_, KZ_T("OWN")), "x|");
    EXPECT_EQ(kz_Group_setCharFieldReference(a_.get(), 1, 1, KZ_T(""), KZ_T("x"), 0), 0);
    erase(entities_["KZ_AB_A"][0].name);
    EXPECT_EQ(kz_Group_isErased(a_.get()), 1);
    EXPECT_EQ(kz_AcGroup_isErased(a_.get(), 0), 0);
    EXPECT_EQ(kz_Group_addChildGroupReference(a_.get(), KZ_T("KZ_AB_B"), 1), 0);
    EXPECT_EQ(kz_Group_setParentGroupReference(a_.get(), KZ_T("KZ_AB_B"), 1), 0);
    EXPECT_EQ(kz_Group_isErased(nullptr), 1);
}

TEST_F(GroupTrees, EntitiesOfChildrenComeFirst) {
    EXPECT_EQ(show(kz_Group_getMemberList(a_.get(), nullptr, nullptr, 0, 0)),
              "KZ_AB_D.1 KZ_AB_B.1 KZ_AB_C.1 KZ_AB_A.1");
    EXPECT_EQ(show(kz_Group_getMemberSelSet(a_.get(), nullptr, nullptr, 0, 1)),
              "KZ_AB_D.0 KZ_AB_D.1 KZ_AB_B.0 KZ_AB_B.1 KZ_AB_C.0 KZ_AB_C.1 KZ_AB_A.0 KZ_AB_A.1");
    EXPECT_EQ(show(kz_Group_getMemberList(a_.get(), KZ_T("pipe"), nullptr, 0, 0)),
              "KZ_AB_D.1 KZ_AB_B.1 KZ_AB_A.1");
    EXPECT_EQ(show(kz_Group_getMemberList(a_.get(), KZ_T("VALVE"), nullptr, 0, 0)), "KZ_AB_C.1");
    EXPECT_EQ(show(kz_Group_getMemberList(a_.get(), nullptr, nullptr, 1, 1)),
              "KZ_AB_A.0 KZ_AB_A.1");
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(show(kz_Group_getMemberList(nullptr, nullptr, nullptr, 0, 1)), "(null)");
    EXPECT_EQ(show(kz_Group_getMemberSelSet(nullptr, nullptr, nullptr, 0, 1)), "(null)");
    EXPECT_EQ(errors(), "1, Invalid group identifier\n1, Invalid group identifier\n");
    const Group alone = make(KZ_T("KZ_AB_X"), KZ_T("PIPE"), 0);
    EXPECT_EQ(show(kz_Group_getMemberSelSet(alone.get(), nullptr, nullptr, 0, 0)), "(null)");
    EXPECT_EQ(show(kz_Group_getMemberSelSet(alone.get(), nullptr, nullptr, 0, 1)), "KZ_AB_X.0");
    kz_Ename_delCharFieldReference(alone->ename, KZ_T("MN"), nullptr, 0);
    EXPECT_EQ(show(kz_Group_getMemberSelSet(alone.get(), nullptr, nullptr, 0, 1)), "(null)")
        << "as a container, which has no master";
}

TEST_F(GroupTrees, SubGroupsFilterAllLevels) {
    const kz_Char* kLong = KZ_T("a sub-group's name of far too many characters");
    for (const char* group : {"KZ_AB_D", "KZ_AB_A"}) {
        const auto& all = entities_[group];
        EXPECT_EQ(kz_Group_setSubGroupRef(all[1].name, kLong), 1);
        EXPECT_EQ(kz_SubGroup_setMemberRef(all[0].name, kLong, all[1].name), 1);
        EXPECT_EQ(kz_SubGroup_setMemberRef(all[0].name, kLong, all[1].name), 1);
    }
    EXPECT_EQ(show(kz_Group_getMemberList(a_.get(), nullptr, kLong, 0, 0)), "KZ_AB_D.1 KZ_AB_A.1");
    const auto& all = entities_["KZ_AB_A"];
    const Object member = objectOf(all[1]);
    kz_Char name[32] = KZ_T("x");
    EXPECT_EQ(kz_Group_getSubGroupName(name, member.get()), 1);
    EXPECT_EQ(kz::toUtf8(name), "A SUB-GROUP'S NAME OF FAR TO");
    EXPECT_EQ(kz_Group_isAMemberOfSubGroup(member.get(), kLong), 1);
    EXPECT_EQ(kz_Group_isAMemberOfSubGroup(member.get(), KZ_T("other")), 0);
    EXPECT_EQ(kz_Group_isAMemberOfSubGroup(nullptr, KZ_T("*")), 1);
    kz_FldList* handles = kz_XData_getFldList(all[0].name, nullptr, KZ_T("KZ_SUBGRP"));
    kz_FldList_start(handles);
    kz_Char handle[33] = {};
    EXPECT_EQ(kz_FldList_currHandle(handles, handle, 33), 1) << "one handle, entered once";
    EXPECT_EQ(kz::toUtf8(handle), handleOf(all[1].name));
    kz_FldList_destroy(handles);
    EXPECT_EQ(kz_SubGroup_removeMemberRef(all[0].name, nullptr, all[1].name), 1);
    EXPECT_EQ(kz_SubGroup_removeMemberRef(all[0].name, nullptr, all[1].name), 0);
    EXPECT_EQ(kz_Group_removeSubGroupRef(all[1].name), 1);
    EXPECT_EQ(kz_Group_getSubGroupName(name, member.get()), 0);
    EXPECT_EQ(*name, 0);
    EXPECT_EQ(kz_SubGroup_removeMemberRef(all[0].name, KZ_T("*"), all[1].name), 0);
    EXPECT_EQ(kz_Group_removeSubGroupRef(nullptr), 0);
}

TEST_F(GroupTrees, ListOfHandlesTakesThePlaceOfAnother) {
    const auto& a = entities_["KZ_AB_A"];
    const auto& b = entities_["KZ_AB_B"];
    kz_SubGroup_setMemberRef(a[0].name, KZ_T("sub"), a[1].name);
    kz_LnkList* handles = kz_LnkList_create();
    EXPECT_EQ(kz_SubGroup_setMemberRefs(a[0].name, KZ_T("sub"), handles), 0);
    EXPECT_EQ(kz_SubGroup_addEnameToHandleList(handles, b[0].name), 1);
    EXPECT_EQ(kz_SubGroup_addEnameToHandleList(handles, b[1].name), 1);
    EXPECT_EQ(kz_SubGroup_setMemberRefs(a[0].name, KZ_T("sub"), handles), 1);
    EXPECT_EQ(kz_SubGroup_setMemberRefs(nullptr, KZ_T("sub"), handles), 0);
    kz_LnkList_destroy(handles, kz_Free);
    EXPECT_EQ(test::take(kz_XData_getFldList(a[0].name, nullptr, KZ_T("KZ_SUBGRP"))),
              "SUB:V[H=" + handleOf(b[0].name) + " H=" + handleOf(b[1].name) + "]");
    EXPECT_EQ(kz_Group_removeSubGroupRefs(a[0].name), 1);
}

TEST_F(GroupTrees, MastersOfManyAreGivenOnce) {
    kz_CADObjIdList* list = kz_CADObjIdList_create(nullptr);
    for (const char* group : {"KZ_AB_D", "KZ_AB_A", "KZ_AB_D"}) {
        for (const Entity& entity : entities_[group])
            kz_CADObjIdList_insEnd(list, kz_CADObjId_fromADSEname(entity.name));
    }
    kz_CADObjIdList_insEnd(list, kz_CADObjId_fromADSEname(line_));
    EXPECT_EQ(show(kz_Group_getMasters(list)), "KZ_AB_D.0 KZ_AB_A.0");
    kz_CADObjIdList_destroy(list);
    kz_CADSelSet* set = kz_CADSelSet_create();
    EXPECT_EQ(kz_Group_getMastersFromCADSelSetId(set, 0), nullptr);
    for (const char* group : {"KZ_AB_A", "KZ_AB_D"}) {
        kz_CADObjId* id = kz_CADObjId_fromADSEname(entities_[group][1].name);
        kz_CADSelSet_addObject(set, id);
        kz_CADObjId_destroy(id);
    }
    EXPECT_EQ(show(kz_Group_getMastersFromCADSelSetId(set, 0)), "KZ_AB_A.0 KZ_AB_D.0");
    kz_CADSelSet_destroy(set);
    EXPECT_EQ(kz_Group_getMasters(nullptr), nullptr);
}

TEST_F(GroupTrees, ErasedEntitiesKeepTheirPlace) {
    erase(entities_["KZ_AB_D"][1].name);
    EXPECT_EQ(show(kz_Group_getMemberList(d_.get(), nullptr, nullptr, 1, 1)),
              "KZ_AB_D.0 KZ_AB_D.1");
    kz_GroupId* gone = kz_Group_dupId(d_.get());
    EXPECT_EQ(kz_AcGroup_deleteByGroupObjId(&gone), 1);
    EXPECT_EQ(gone, nullptr);
    EXPECT_EQ(kz_AcGroup_isAdsNameErased(d_->ename), 1);
    EXPECT_EQ(errors(), "");
    gone = kz_Group_dupId(d_.get());
    EXPECT_EQ(kz_AcGroup_deleteByGroupObjId(&gone), 0);
    EXPECT_EQ(errors(), "5, Attempt to open group object failed\n");
    EXPECT_EQ(kz_AcGroup_deleteByGroupObjId(&gone), 0);
    EXPECT_EQ(kz_Group_getId(KZ_T("KZ_AB_D")), nullptr);
}

TEST_F(GroupTrees, SelectabilityAndVisibilityAreTheGroups) {
    EXPECT_EQ(kz_Group_isSelectable(a_.get()), 1);
    EXPECT_EQ(kz_Group_setSelectable(a_.get(), 1, 0), 1);
    EXPECT_EQ(kz_Group_isSelectable(a_.get()), 1);
    EXPECT_EQ(kz_Group_setSelectable(a_.get(), 0, 0), 1);
    EXPECT_EQ(kz_Group_isSelectable(a_.get()), 0);
    EXPECT_EQ(kz_Group_setSelectable(a_.get(), 0, 1), 0);
    EXPECT_EQ(kz_Group_isSelectable(a_.get()), 1);
    EXPECT_EQ(kz_Group_setVisibility(a_.get(), nullptr, nullptr, 0, 0, 0), 1);
    EXPECT_EQ(kz_CADObjId_isVisible(objectOf(entities_["KZ_AB_D"][1]).get()), 0);
    EXPECT_EQ(kz_CADObjId_isVisible(objectOf(entities_["KZ_AB_D"][0]).get()), 1);
    EXPECT_EQ(kz_Group_setVisibility(nullptr, nullptr, nullptr, 0, 0, 0), 0);
    EXPECT_EQ(errors(), "");
    EXPECT_EQ(kz_Group_setSelectable(nullptr, 0, 1), 0);
    EXPECT_EQ(errors(), "3, No group id specified\n");
}

class GroupWalk : public test::GroupTest {
  protected:
    static std::string next(const kz_Char* type = nullptr, int restart = 0) {
        int erased = 7;
        const std::string name = nameOf(kz_Group_getNext(&erased, type, restart));
        return name + (erased == 1 ? " erased" : "");
    }
    static std::string current() {
        int erased = 7;
        return nameOf(kz_Group_getCurr(&erased, nullptr));
    }
};

TEST_F(GroupWalk, GoesOverTheSystemsGroups) {
    EXPECT_EQ(kz_Group_beginGetNext(nullptr), 1);
    EXPECT_EQ(next(), "(null)");
    kz_Group_endGetNext();
    make(KZ_T("FOREIGN"));
    make(KZ_T("KZ_AB_1"));
    make(KZ_T("KZ_ANNOT_AB_2"));
    make(KZ_T("KZ_CN_AB_3"));
    make(KZ_T("KZ_AB_4"), KZ_T("VALVE"));
    EXPECT_EQ(kz_Group_beginGetNext(nullptr), 1);
    EXPECT_EQ(next(), "KZ_AB_1");
    EXPECT_EQ(next(), "KZ_AB_4");
    EXPECT_EQ(next(), "(null)");
    EXPECT_EQ(next(), "(null)");
    EXPECT_EQ(next(nullptr, 1), "KZ_AB_1");
    EXPECT_EQ(next(KZ_T("valve"), 1), "KZ_AB_4");
    EXPECT_EQ(next(KZ_T("*"), 1), "KZ_AB_1");
    EXPECT_EQ(nameOf(kz_AcGroup_getNext(nullptr, nullptr, 1, 0)), "KZ_CN_AB_3");
    kz_Group_endGetNext();
    kz_Group_endGetNext();
    EXPECT_EQ(next(), "KZ_AB_1") << "begins by itself";
}

TEST_F(GroupWalk, GoesOnBehindADeletedGroup) {
    const Group first = make(KZ_T("KZ_AB_1"));
    make(KZ_T("KZ_AB_2"));
    make(KZ_T("KZ_AB_3"));
    erase(entities_["KZ_AB_2"][0].name);
    kz_Group_beginGetNext(nullptr);
    EXPECT_EQ(next(), "KZ_AB_1");
    kz_GroupId* gone = kz_Group_dupId(first.get());
    EXPECT_EQ(kz_AcGroup_deleteByGroupObjId(&gone), 1);
    EXPECT_EQ(current(), "KZ_AB_2");
    EXPECT_EQ(current(), "KZ_AB_2");
    EXPECT_EQ(next(), "KZ_AB_3");
    EXPECT_EQ(next(nullptr, 1), "KZ_AB_2 erased");
}

TEST_F(GroupWalk, EndsWithItsDrawing) {
    make(KZ_T("KZ_AB_1"));
    kz_Group_beginGetNext(nullptr);
    host::newDrawing();
    EXPECT_EQ(next(), "(null)");
    kz_Group_endGetNext();
    EXPECT_EQ(host::openObjectCount(), 0);
}

// --- faults -------------------------------------------------------------------------------------

TEST_F(GroupTrees, NothingStaysOpenWhateverFails) {
    const auto& all = entities_["KZ_AB_D"];
    const Object member = objectOf(all[1]);
    const std::pair<const char*, std::function<void()>> kOperations[] = {
        {"name",
         [] {
             kz_Char name[32];
             kz_Group_getUniqueName(name, nullptr);
         }},
        {"search", [] { Group(kz_Group_getId(KZ_T("KZ_AB_D"))); }},
        {"missing", [] { Group(kz_Group_getId(KZ_T("KZ_AB_Y"))); }},
        {"attributes",
         [&] {
             kz_Char text[256];
             kz_Group_getType(text, d_.get());
             kz_Group_getNameFromDict(text, d_.get());
             kz_Group_setOldName(d_.get(), KZ_T("OLD"));
         }},
        {"root", [&] { Group(kz_Group_getFromMember(member.get(), 1)); }},
        {"master", [&] { Object(kz_AcGroup_getMasterObjectX(d_.get(), 0)); }},
        {"children", [&] { Group(kz_Group_getNthChild(a_.get(), KZ_T("VALVE"), 0)); }},
        {"references",
         [&] {
             kz_Group_addChildGroupReference(c_.get(), KZ_T("KZ_AB_D"), 1);
             kz_Group_removeChildGroupReference(c_.get(), KZ_T("KZ_AB_D"));
         }},
        {"sub-groups",
         [&] {
             kz_Group_setSubGroupRef(all[1].name, KZ_T("SUB"));
             kz_SubGroup_setMemberRef(all[0].name, KZ_T("SUB"), all[1].name);
             kz_SubGroup_removeMemberRef(all[0].name, nullptr, all[1].name);
         }},
        {"members", [&] { show(kz_Group_getMemberList(a_.get(), nullptr, KZ_T("SUB"), 0, 1)); }},
        {"set", [&] { show(kz_Group_getMemberSelSet(a_.get(), nullptr, nullptr, 0, 1)); }},
        {"selectable", [&] { kz_Group_setSelectable(a_.get(), 0, 0); }},
        {"drawing",
         [&] {
             kz_Char text[600];
             kz_Group_getQualifiedName(text, text, a_.get());
         }},
        {"walk", [] {
             kz_Group_beginGetNext(nullptr);
             for (Group id(kz_Group_getNext(nullptr, nullptr, 0)); id != nullptr;)
                 id.reset(kz_Group_getNext(nullptr, KZ_T("PIPE"), 0));
             kz_Group_endGetNext();
         }}};
    for (const std::string_view call : host::testing::platformCalls()) {
        for (const auto& [name, operation] : kOperations) {
            for (int nth = 1; nth < 100; ++nth) {
                ASSERT_TRUE(host::testing::failCall(call, nth, 3));
                operation();
                const bool fired = host::testing::faultFired();
                host::testing::clearFault();
                ASSERT_EQ(host::openObjectCount(), 0) << name << ", " << call << " " << nth;
                if (!fired) break;
            }
        }
    }
}

}  // namespace
