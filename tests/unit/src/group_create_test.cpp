// A group that is made while nobody offers reactors: the caller is told so, the group stays.
#include "acad/rx.h"
#include "group_test.h"

namespace {

class GroupCreate : public test::GroupTest {};

TEST_F(GroupCreate, without_the_service_the_group_stays_and_no_id_comes) {
    ASSERT_FALSE(acrxServiceIsRegistered(KZ_T("KZ_CADSERVICE")));
    std::string shown;
    host::setSink(host::Channel::Message,
                  [&shown](std::u16string_view text) { shown += kz::toUtf8(text); });
    const test::Object master = objectOf(entity());
    EXPECT_EQ(
        kz_Group_createFromSelSet(nullptr, KZ_T("KZ_0_5"), nullptr, master.get(), nullptr, nullptr),
        nullptr);
    EXPECT_NE(shown.find("kz_GroupFuncPtr_get: KZ_CADSERVICE service not loaded."),
              std::string::npos)
        << shown;
    host::setSink(host::Channel::Message, {});
    const test::Group made(kz_Group_getId(KZ_T("KZ_0_5")));
    ASSERT_NE(made, nullptr);
    const test::Object found(kz_Group_getMasterObject(made.get()));
    EXPECT_EQ(kz_CADObjId_isEqual(found.get(), master.get()), 1);
    EXPECT_EQ(kz_Group_deleteByName(KZ_T("KZ_0_5"), 0, 0), 1);
}

}  // namespace
