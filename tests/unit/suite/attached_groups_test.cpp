// Groups of an attached drawing: found by their name, read with their tree and their entities, and
// placed where the attachment puts them.
#include <cmath>

#include "group_edit_test.h"

namespace {

class AttachedGroups : public test::GroupEditTest {
  protected:
    /// Attaches "unit.dxf", in which a valve is below a pump, at (10, 20, 0), turned by 90 degrees,
    /// and makes a tank here.
    void attachUnit() {
        draw({"P1", "P2", "V1"});
        ASSERT_EQ(make("KZ_0_PUMP", {"P1", "P2"}, "", "", "PUMP"), 1);
        ASSERT_EQ(make("KZ_0_VALVE", {"V1"}, "KZ_0_PUMP", "", "VALVE"), 1);
        saved("unit.dxf");
        attach("Unit", "unit.dxf");
        insert("Unit", "(10 10.0 20.0 0.0) (50 . 1.5707963267948966)");
        line("0");
        ads_name last = {};
        ASSERT_EQ(acdbEntLast(last), RTNORM);
        const test::Set tank(kz_CADSelSet_create());
        const test::Object wall(kz_CADObjId_fromADSEname(last));
        kz_CADSelSet_addObject(tank.get(), wall.get());
        const test::Group made(kz_Group_createFromSelSet(KZ_T("TANK"), KZ_T("KZ_0_TANK"), nullptr,
                                                         nullptr, tank.get(), nullptr));
        ASSERT_NE(made, nullptr);
        saved("plant.dxf");
        open("plant.dxf");
    }
    static std::string nameOf(const kz_GroupId* id) {
        kz_Char name[64] = {};
        return kz_Group_getName(name, id) == 1 ? kz::toUtf8(name) : "<none>";
    }
    static int entities(const kz_GroupId* id, bool with_children) {
        kz_CADObjIdList* list =
            kz_Group_getMemberList(id, nullptr, nullptr, with_children ? 0 : 1, 1);
        const int length = kz_CADObjIdList_length(list);
        kz_CADObjIdList_destroy(list);
        return length;
    }
};

TEST_F(AttachedGroups, AreFoundByNameAndReadAsThoseHere) {
    attachUnit();
    const test::Group pump = group("kz_0_pump"), valve = group("KZ_0_VALVE");
    ASSERT_NE(pump, nullptr);
    ASSERT_NE(valve, nullptr);
    EXPECT_EQ(nameOf(pump.get()), "KZ_0_PUMP");
    EXPECT_EQ(kz_Group_isTypeOf(pump.get(), KZ_T("pump")), 1);
    EXPECT_EQ(entities(pump.get(), false), 2);
    EXPECT_EQ(entities(pump.get(), true), 3);
    const test::Group parent(kz_Group_getParentGroup(valve.get()));
    EXPECT_EQ(kz_Group_isEqual(parent.get(), pump.get()), 1);
    const test::Object master(kz_Group_getMasterObject(pump.get()));
    ASSERT_NE(master, nullptr);
    const test::Group back(kz_Group_getFromMember(master.get(), 0));
    EXPECT_EQ(kz_Group_isEqual(back.get(), pump.get()), 1);
    EXPECT_EQ(group("KZ_0_NONE"), nullptr);
}

TEST_F(AttachedGroups, LiveInTheirDrawingAndArePlacedByIt) {
    attachUnit();
    const test::Group pump = group("KZ_0_PUMP"), tank = group("KZ_0_TANK");
    ASSERT_NE(pump, nullptr);
    ASSERT_NE(tank, nullptr);
    kz_Char file[600] = {};
    ASSERT_EQ(kz_Group_getDrawingName(file, pump.get()), 1);
    EXPECT_EQ(std::filesystem::path(kz::toUtf8(file)).filename().string(), "unit.dxf");
    const test::Group by_file(kz_Group_getIdFromDoc(KZ_T("KZ_0_PUMP"), file));
    EXPECT_EQ(kz_Group_isEqual(by_file.get(), pump.get()), 1);
    int attached = 0;
    kz_Point origin = {};
    kz_RotMatrix rotation = {};
    ASSERT_EQ(kz_Group_getDwgTransform(&attached, &origin, &rotation, pump.get()), 1);
    EXPECT_EQ(attached, 1);
    EXPECT_NEAR(std::hypot(origin.x - 10.0, origin.y - 20.0), 0.0, 1e-9);
    EXPECT_NEAR(rotation.element[1][0], 1.0, 1e-9);
    kz_Group_getDwgTransform(&attached, &origin, &rotation, tank.get());
    EXPECT_EQ(attached, 0);
    ASSERT_EQ(kz_Group_getDrawingName(file, tank.get()), 1);
    EXPECT_EQ(std::filesystem::path(kz::toUtf8(file)).filename().string(), "plant.dwg")
        << "the name of a drawing in the editor ends so";
}

TEST_F(AttachedGroups, DoNotMixWithThoseHere) {
    attachUnit();
    const test::Group pump = group("KZ_0_PUMP"), tank = group("KZ_0_TANK");
    ASSERT_NE(pump, nullptr);
    EXPECT_EQ(kz_Group_makeChild(pump.get(), tank.get(), 0), 0);
    EXPECT_EQ(kz_Group_getNumChildren(tank.get(), nullptr), 0);
    const test::Object master(kz_Group_getMasterObject(tank.get()));
    EXPECT_EQ(kz_Group_add(pump.get(), master.get(), nullptr), 0);
    EXPECT_EQ(kz_Group_setMasterObject(pump.get(), master.get()), 0);
    EXPECT_EQ(entities(pump.get(), false), 2);
    EXPECT_EQ(entities(tank.get(), true), 1);
}

}  // namespace
