// Groups by their class: their entities in order, the reactors of these, undo, and what is written.
#include "acad/groups.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

#include "acad/dict.h"
#include "drawn.h"
#include "dxf_text.h"
#include "host/testing.h"
#include "host/undo.h"

namespace {

using drawn::Open;
using OpenGroup = Open<AcDbGroup>;

class Groups : public testing::Test {
  protected:
    Groups() {
        open(dxf_text::drawing(dxf_text::line("30") + dxf_text::line("31") + dxf_text::line("32") +
                               dxf_text::line("33")));
    }
    ~Groups() override {
        EXPECT_EQ(host::openObjectCount(), 0);
        host::closeDrawing();
    }
    void open(const std::string& text) {
        std::string error;
        ASSERT_TRUE(host::openDrawing(folder_.write("in.dxf", text), error)) << error;
    }
    std::string save() {
        std::string error;
        EXPECT_TRUE(host::saveDrawing(folder_.file("out.dxf"), error)) << error;
        return TempFolder::read(folder_.file("out.dxf"));
    }
    static AcDbDatabase* database() { return acdbHostApplicationServices()->workingDatabase(); }
    static AcDbObjectId object(const char16_t* handle) {
        AcDbObjectId id;
        EXPECT_EQ(database()->getAcDbObjectId(id, false, AcDbHandle(handle)), Acad::eOk);
        return id;
    }
    static AcDbObjectId make(const char16_t* key, const std::vector<const char16_t*>& handles) {
        AcDbDictionary* groups = nullptr;
        EXPECT_EQ(database()->getGroupDictionary(groups, AcDb::kForWrite), Acad::eOk);
        const Open<AcDbDictionary> holder(groups);
        auto* group = new AcDbGroup(u"PIPE", true);
        EXPECT_EQ(group->append(object(u"30")), Acad::eNoDatabase);
        AcDbObjectId id;
        EXPECT_EQ(groups->setAt(key, group, id), Acad::eOk);
        for (const char16_t* handle : handles)
            EXPECT_EQ(group->append(object(handle)), Acad::eOk);
        EXPECT_EQ(group->close(), Acad::eOk);
        return id;
    }
    /// Handles of the entities, by the iterator and by the list of all.
    static std::string entities(AcDbObjectId id) {
        const OpenGroup group(id, AcDb::kForRead, true);
        std::vector<AcDbObjectId> all;
        EXPECT_EQ(group->allEntityIds(all), group->numEntities());
        std::string out;
        const std::unique_ptr<AcDbGroupIterator> walk(group->newIterator());
        for (uint32_t n = 0; !walk->done(); walk->next(), ++n) {
            uint32_t index = 99;
            EXPECT_EQ(group->getIndex(walk->objectId(), index), Acad::eOk);
            EXPECT_EQ(index, n);
            EXPECT_EQ(all.at(n), walk->objectId());
            out += (n == 0 ? "" : " ") + handle(walk->objectId());
        }
        EXPECT_EQ(all.size(), group->numEntities());
        return out;
    }
    static std::string handle(AcDbObjectId id) {
        for (const char16_t* known : {u"30", u"31", u"32", u"33"}) {
            if (object(known) == id) return kz::toUtf8(known);
        }
        return "?";
    }
    /// Number of times that the object is among the groups of another, anywhere in the file.
    static int mentions(const std::string& file, int code, AcDbObjectId id) {
        return count(file, std::to_string(code) + "\n" + hex(id) + "\n");
    }
    static int count(const std::string& file, const std::string& text) {
        int found = 0;
        for (size_t at = file.find(text); at != std::string::npos; at = file.find(text, at + 1))
            ++found;
        return found;
    }
    static std::string hex(AcDbObjectId id) {
        ads_name name = {};
        EXPECT_EQ(acdbGetAdsName(name, id), Acad::eOk);
        resbuf* list = acdbEntGet(name);
        std::string out;
        for (const resbuf* node = list; node != nullptr; node = node->rbnext) {
            if (node->restype == 5) out = kz::toUtf8(node->resval.rstring);
        }
        acutRelRb(list);
        return out;
    }
    static void erase(AcDbObjectId id, bool erasing = true) {
        const Open<AcDbObject> opened(id, AcDb::kForWrite, true);
        ASSERT_EQ(opened.status, Acad::eOk);
        EXPECT_EQ(opened->erase(erasing), Acad::eOk);
    }

    TempFolder folder_;
};

TEST_F(Groups, EntitiesStandInOrderOnceEach) {
    const AcDbObjectId id = make(u"A", {u"30", u"31"});
    {
        const OpenGroup group(id);
        EXPECT_EQ(group->append(object(u"31")), 260);
        EXPECT_EQ(group->prepend(object(u"32")), Acad::eOk);
        EXPECT_EQ(group->insertAt(1, object(u"33")), Acad::eOk);
        EXPECT_EQ(group->insertAt(9, object(u"33")), Acad::eInvalidIndex);
        EXPECT_EQ(group->append(AcDbObjectId{}), Acad::eNullObjectId);
        EXPECT_EQ(group->append(id), Acad::eNotThatKindOfClass);
    }
    EXPECT_EQ(entities(id), "32 33 30 31");
    {
        const OpenGroup group(id);
        uint32_t index = 7;
        EXPECT_EQ(group->removeAt(4), Acad::eInvalidIndex);
        EXPECT_EQ(group->removeAt(1), Acad::eOk);
        EXPECT_EQ(group->remove(object(u"33")), Acad::eKeyNotFound);
        EXPECT_EQ(group->getIndex(object(u"33"), index), Acad::eKeyNotFound);
        EXPECT_EQ(index, 7U);
        EXPECT_EQ(group->replace(object(u"30"), object(u"33")), Acad::eOk);
        EXPECT_EQ(group->replace(object(u"33"), object(u"31")), Acad::eAlreadyInGroup);
        EXPECT_EQ(group->replace(object(u"30"), object(u"30")), Acad::eKeyNotFound);
    }
    EXPECT_EQ(entities(id), "32 33 31");
    const OpenGroup group(id);
    EXPECT_EQ(group->clear(), Acad::eOk);
    EXPECT_EQ(group->numEntities(), 0U);
    const std::unique_ptr<AcDbGroupIterator> walk(group->newIterator());
    EXPECT_TRUE(walk->done());
    EXPECT_TRUE(walk->objectId().isNull());
}

TEST_F(Groups, ManyEntitiesComeAndGoInAnyOrder) {
    std::string lines = dxf_text::line("30");
    for (int i = 0; i < 500; ++i)
        lines += dxf_text::line("A" + std::to_string(i + 100));
    open(dxf_text::drawing(lines));
    std::vector<AcDbObjectId> wanted;
    const AcDbObjectId id = make(u"MANY", {});
    {
        const OpenGroup group(id);
        for (int i = 0; i < 500; ++i) {
            const std::u16string name = kz::toUtf16("A" + std::to_string(i + 100));
            const AcDbObjectId entity = object(name.c_str());
            const auto at = static_cast<uint32_t>(i * 7919 % (i + 1));
            ASSERT_EQ(group->insertAt(at, entity), Acad::eOk);
            wanted.insert(wanted.begin() + at, entity);
        }
        for (uint32_t i = 0; i < 400; ++i) {
            const auto at = static_cast<uint32_t>(i * 31 % wanted.size());
            ASSERT_EQ(group->remove(wanted[at]), Acad::eOk);
            wanted.erase(wanted.begin() + at);
        }
    }
    const OpenGroup group(id, AcDb::kForRead);
    std::vector<AcDbObjectId> all;
    group->allEntityIds(all);
    EXPECT_EQ(all, wanted);
    for (uint32_t i = 0; i < wanted.size(); ++i) {
        uint32_t index = 0;
        EXPECT_EQ(group->getIndex(wanted[i], index), Acad::eOk);
        EXPECT_EQ(index, i);
    }
}

TEST_F(Groups, AttributesAreThoseOfTheFile) {
    const AcDbObjectId id = make(u"*A", {u"30"});
    {
        const OpenGroup group(id);
        EXPECT_STREQ(kz::toUtf8(group->description()).c_str(), "PIPE");
        EXPECT_TRUE(group->isSelectable());
        EXPECT_TRUE(group->isAnonymous());
        EXPECT_EQ(group->setDescription(nullptr), Acad::eInvalidInput);
        EXPECT_EQ(group->setDescription(u"VALVE"), Acad::eOk);
        EXPECT_EQ(group->setSelectable(false), Acad::eOk);
    }
    AcDbDictionary* groups = nullptr;
    ASSERT_EQ(database()->getGroupDictionary(groups, AcDb::kForWrite), Acad::eOk);
    EXPECT_TRUE(groups->setName(u"*A1", u"KZ_CN_1"));
    groups->close();
    const OpenGroup group(id, AcDb::kForRead);
    EXPECT_FALSE(group->isAnonymous());
    EXPECT_EQ(group->setSelectable(true), Acad::eNotOpenForWrite);
    EXPECT_EQ(group->append(object(u"31")), Acad::eNotOpenForWrite);
    EXPECT_NE(save().find("AcDbGroup\n300\nVALVE\n 70\n0\n 71\n0\n340\n30\n"), std::string::npos);
}

TEST_F(Groups, MembersListTheirGroupsAsReactors) {
    const AcDbObjectId a = make(u"A", {u"30", u"31"});
    const AcDbObjectId b = make(u"B", {u"30"});
    EXPECT_EQ(mentions(save(), 330, a), 2);
    EXPECT_EQ(mentions(save(), 330, b), 1);
    {
        const OpenGroup group(a);
        EXPECT_EQ(group->remove(object(u"30")), Acad::eOk);
    }
    EXPECT_EQ(mentions(save(), 330, a), 1);
    erase(a);
    EXPECT_EQ(mentions(save(), 330, a), 0) << "a group that is gone hears of nothing";
    erase(a, false);
    EXPECT_EQ(mentions(save(), 330, a), 1);
    AcDbDictionary* groups = nullptr;
    ASSERT_EQ(database()->getGroupDictionary(groups, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(groups->remove(u"B"), Acad::eOk);
    groups->close();
    const std::string file = save();
    EXPECT_EQ(mentions(file, 330, b), 0) << "nor one that is not saved";
    EXPECT_EQ(count(file, "{ACAD_REACTORS"), 2) << "of the line 31 and of the group A";
}

TEST_F(Groups, ErasedEntitiesStayButAreNotWritten) {
    make(u"A", {u"30", u"31", u"32"});
    open(save());
    const AcDbObjectId read = object(u"100");
    EXPECT_EQ(entities(read), "30 31 32");
    erase(object(u"31"));
    EXPECT_EQ(entities(read), "30 31 32");
    const std::string file = save();
    EXPECT_EQ(count(file, "340\n31\n"), 0);
    EXPECT_EQ(count(file, "340\n30\n340\n32\n"), 1);
    erase(object(u"31"), false);
    EXPECT_EQ(entities(read), "30 31 32");
    EXPECT_EQ(count(save(), "340\n30\n340\n31\n340\n32\n"), 1);
    {
        const OpenGroup group(read);
        erase(object(u"33"));
        EXPECT_EQ(group->append(object(u"33")), Acad::eOk)
            << "a container takes what its groups have";
    }
    EXPECT_EQ(count(save(), "340\n33\n"), 0);
}

TEST_F(Groups, UndoAndRedoBringEntitiesAndReactorsBack) {
    make(u"A", {u"30", u"31"});
    open(save());
    const AcDbObjectId read = object(u"100");
    const std::string before = save();
    const auto change = [&](const char* name, const std::function<void(AcDbGroup*)>& what) {
        const host::UndoStep step(name);
        const OpenGroup group(read);
        what(group.get());
    };
    change("ADD", [&](AcDbGroup* group) {
        group->prepend(object(u"32"));
        group->append(object(u"33"));
    });
    change("TYPE", [&](AcDbGroup* group) {
        group->setDescription(u"VALVE");
        group->remove(object(u"30"));
        group->setSelectable(false);
    });
    change("CLEAR", [&](AcDbGroup* group) { group->clear(); });
    {
        const host::UndoStep step("ERASE");
        erase(read);
    }
    host::undo(1);
    EXPECT_EQ(entities(read), "");
    host::undo(1);
    EXPECT_EQ(entities(read), "32 31 33");
    EXPECT_EQ(mentions(save(), 330, read), 3);
    host::undo(1);
    EXPECT_EQ(entities(read), "32 30 31 33");
    host::undo(1);
    EXPECT_EQ(entities(read), "30 31");
    EXPECT_EQ(save(), before) << "the group and the lines are as the file has them";
    host::redo();
    EXPECT_EQ(entities(read), "32 30 31 33");
    host::redo();
    EXPECT_EQ(entities(read), "32 31 33");
    EXPECT_EQ(count(save(), "300\nVALVE\n"), 1);
    EXPECT_EQ(mentions(save(), 330, read), 3);
}

TEST_F(Groups, UndoneCreationTakesTheReactorsAlong) {
    const std::string before = save();
    {
        const host::UndoStep step("GROUP");
        make(u"A", {u"30", u"31"});
    }
    host::undo(1);
    EXPECT_EQ(count(save(), "{ACAD_REACTORS"), 0);
    host::redo();
    EXPECT_EQ(count(save(), "{ACAD_REACTORS"), 3);
    EXPECT_EQ(count(save(), "340\n30\n340\n31\n"), 1);
}

TEST_F(Groups, DamagedMembersAreNone) {
    std::string text = dxf_text::drawing(dxf_text::line("30") + dxf_text::line("31"));
    const std::string group =
        "0 GROUP | 5 50 | 330 D | 100 AcDbGroup | 300 X | 70 0 | 71 1 | 340 30 | 340 30 | 340 99 | "
        "340 C | 340 0 | 340 31 | 0 ENDSEC | 0 EOF";
    text.erase(text.rfind("0\nENDSEC"));
    open(text + dxf_text::pairs(group));
    const AcDbObjectId id = object(u"50");
    EXPECT_EQ(entities(id), "30 31");
}

TEST_F(Groups, WalkGoesOnInAChangedGroupAndEndsWithTheDrawing) {
    const AcDbObjectId id = make(u"A", {u"30", u"31", u"32"});
    std::unique_ptr<AcDbGroupIterator> walk;
    {
        const OpenGroup group(id, AcDb::kForRead);
        walk.reset(group->newIterator());
    }
    walk->next();
    {
        const OpenGroup group(id);
        group->remove(object(u"31"));
    }
    EXPECT_EQ(walk->objectId(), object(u"32"));
    AcDbObject* line = nullptr;
    ASSERT_EQ(walk->getObject(line), Acad::eOk);
    line->close();
    EXPECT_FALSE(walk->next());
    EXPECT_EQ(walk->getObject(line), Acad::eIteratorDone);
    host::closeDrawing();
    EXPECT_TRUE(walk->done());
}

TEST_F(Groups, FaultsLeaveTheGroupAsItWas) {
    const AcDbObjectId id = make(u"A", {u"30", u"31"});
    const AcDbObjectId other = object(u"32");
    const OpenGroup group(id);
    uint32_t index = 5;
    const auto fails = [&](const char* call, const std::function<Acad::ErrorStatus()>& what) {
        ASSERT_TRUE(host::testing::failCall(call, 1, 3));
        EXPECT_EQ(what(), Acad::eInvalidInput) << call;
        EXPECT_TRUE(host::testing::faultFired()) << call;
        host::testing::clearFault();
    };
    fails("append", [&] { return group->append(other); });
    fails("prepend", [&] { return group->prepend(other); });
    fails("insertAt", [&] { return group->insertAt(0, other); });
    fails("remove", [&] { return group->remove(object(u"30")); });
    fails("removeAt", [&] { return group->removeAt(0); });
    fails("replace", [&] { return group->replace(object(u"30"), other); });
    fails("clear", [&] { return group->clear(); });
    fails("getIndex", [&] { return group->getIndex(object(u"30"), index); });
    fails("setDescription", [&] { return group->setDescription(u"X"); });
    fails("setSelectable", [&] { return group->setSelectable(false); });
    EXPECT_EQ(index, 5U);
    EXPECT_EQ(group->numEntities(), 2U);
    EXPECT_TRUE(group->isSelectable());
}

}  // namespace
