// Blocks by their classes: the table and its order, new blocks and entities in them, walks,
// attached drawings, and what is written of it.
#include "acad/blocks.h"

#include <vector>

#include "drawn.h"
#include "host/testing.h"
#include "host/undo.h"

namespace {

using drawn::Open;
using drawn::text;

class Blocks : public drawn::Drawing {
  protected:
    static AcDbBlockTable* table(AcDb::OpenMode mode = AcDb::kForRead) {
        AcDbBlockTable* opened = nullptr;
        EXPECT_EQ(database()->getSymbolTable(opened, mode), Acad::eOk);
        return opened;
    }
    static AcDbObjectId recordId(const char16_t* name) {
        const Open<AcDbBlockTable> blocks(table());
        AcDbObjectId id;
        EXPECT_EQ(blocks->getAt(name, id), Acad::eOk);
        return id;
    }
    static std::string nameOf(const AcDbBlockTableRecord* record) {
        ACHAR* name = nullptr;
        EXPECT_EQ(record->getName(name), Acad::eOk);
        return text(name);
    }
    /// Names of all blocks in the order of the table.
    static std::string names() {
        std::string all;
        const Open<AcDbBlockTable> blocks(table());
        AcDbSymbolTableIterator* made = nullptr;
        EXPECT_EQ(blocks->newIterator(made), Acad::eOk);
        const std::unique_ptr<AcDbSymbolTableIterator> walk(made);
        for (; !walk->done(); walk->step()) {
            AcDbBlockTableRecord* opened = nullptr;
            EXPECT_EQ(walk->getRecord(opened), Acad::eOk);
            const Open<AcDbBlockTableRecord> record(opened);
            all += nameOf(record.get()) + " ";
        }
        return all;
    }
    static AcDbObjectId addBlock(const char16_t* name) {
        const Open<AcDbBlockTable> blocks(table(AcDb::kForWrite));
        auto* record = new AcDbBlockTableRecord;
        EXPECT_EQ(record->setName(name), Acad::eOk);
        AcDbObjectId id;
        EXPECT_EQ(blocks->add(id, record), Acad::eOk);
        EXPECT_EQ(record->close(), Acad::eOk);
        return id;
    }
    /// Ids of a block's entities.
    static std::vector<AcDbObjectId> walk(AcDbObjectId block, bool forward = true,
                                          bool skip_erased = true) {
        const Open<AcDbBlockTableRecord> record(block, AcDb::kForRead);
        AcDbBlockTableRecordIterator* made = nullptr;
        EXPECT_EQ(record->newIterator(made, forward, skip_erased), Acad::eOk);
        const std::unique_ptr<AcDbBlockTableRecordIterator> iterator(made);
        std::vector<AcDbObjectId> found;
        for (; !iterator->done(); iterator->step(forward, skip_erased)) {
            AcDbEntity* opened = nullptr;
            EXPECT_EQ(iterator->getEntity(opened, AcDb::kForRead, !skip_erased), Acad::eOk);
            found.push_back(opened->objectId());
            opened->close();
        }
        return found;
    }
    static size_t referencesTo(AcDbObjectId block) {
        const Open<AcDbBlockTableRecord> record(block, AcDb::kForRead);
        AcDbBlockReferenceIdIterator* made = nullptr;
        EXPECT_EQ(record->newBlockReferenceIdIterator(made), Acad::eOk);
        const std::unique_ptr<AcDbBlockReferenceIdIterator> iterator(made);
        size_t count = 0;
        for (AcDbObjectId id; iterator->getBlockReferenceId(id) == Acad::eOk; iterator->step())
            ++count;
        return count;
    }
    static void attach(const std::string& path, int flags) {
        draw(
            "((0 . \"LINE\") (10 0.0 0.0 0.0) (11 1.0 0.0 0.0)) ((0 . \"BLOCK\") (2 . \"XR\") "
            "(70 . " +
            std::to_string(flags) + ") (10 0.0 0.0 0.0) (1 . \"" + path +
            "\")) ((0 . \"ENDBLK\"))");
    }
};

TEST_F(Blocks, the_table_is_walked_in_its_order_and_erased_records_are_passed_over) {
    const std::string before = names();
    EXPECT_TRUE(before.starts_with("*Model_Space *Paper_Space ")) << before;
    const AcDbObjectId one = addBlock(u"One");
    addBlock(u"Two");
    EXPECT_EQ(names(), before + "One Two ");
    {
        Open<AcDbBlockTableRecord> record(one);
        EXPECT_EQ(record->erase(), Acad::eOk);
    }
    EXPECT_EQ(names(), before + "Two ");
}

TEST_F(Blocks, names_are_found_in_any_case) {
    addBlock(u"Valve");
    const Open<AcDbBlockTable> blocks(table());
    EXPECT_TRUE(blocks->has(u"VALVE"));
    EXPECT_FALSE(blocks->has(u"Pump"));
    EXPECT_FALSE(blocks->has(nullptr));
    AcDbBlockTableRecord* record = nullptr;
    EXPECT_EQ(blocks->getAt(u"valve", record, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(nameOf(record), "Valve");
    record->close();
    EXPECT_EQ(blocks->getAt(u"Pump", record, AcDb::kForRead), Acad::eKeyNotFound);
    EXPECT_EQ(record, nullptr);
}

TEST_F(Blocks, a_block_that_can_not_be_added_stays_the_callers) {
    addBlock(u"Valve");
    AcDbBlockTableRecord record;
    {
        const Open<AcDbBlockTable> blocks(table());
        EXPECT_EQ(blocks->add(&record), Acad::eNotOpenForWrite);
    }
    const Open<AcDbBlockTable> blocks(table(AcDb::kForWrite));
    EXPECT_EQ(blocks->add(nullptr), Acad::eNullObjectPointer);
    EXPECT_EQ(blocks->add(&record), Acad::eInvalidInput);
    EXPECT_EQ(record.setName(u"a|b"), Acad::eInvalidInput);
    record.setName(u"VALVE");
    EXPECT_EQ(blocks->add(&record), Acad::eDuplicateKey);
    EXPECT_EQ(record.database(), nullptr);
}

TEST_F(Blocks, a_new_entity_keeps_the_properties_that_it_got_before) {
    line();  // its layer
    auto* point = new AcDbPoint({1.0, 2.0, 3.0});
    EXPECT_EQ(point->setColorIndex(0), Acad::eOk);
    EXPECT_EQ(point->setLayer(u"WALLS"), Acad::eOk);
    AcDbObjectId id;
    {
        Open<AcDbBlockTableRecord> record(addBlock(u"Master"));
        EXPECT_EQ(record->appendAcDbEntity(id, point), Acad::eOk);
        EXPECT_EQ(record->appendAcDbEntity(point), Acad::eAlreadyInDb);
    }
    EXPECT_TRUE(point->isWriteEnabled());
    EXPECT_EQ(point->database(), database());
    EXPECT_EQ(point->close(), Acad::eOk);
    EXPECT_EQ(group(id, 0) + group(id, 62) + group(id, 8), "POINT0Walls");
    EXPECT_EQ(walk(recordId(u"Master")), std::vector<AcDbObjectId>{id});
}

TEST_F(Blocks, what_does_not_fit_into_a_block_stays_the_callers) {
    const AcDbObjectId part = recordId(u"*Model_Space");
    const AcDbObjectId outer = addBlock(u"Outer");
    AcDbBlockReference without_block;
    AcDbBlockReference to_itself({0, 0, 0}, outer);
    AcDbPoint point;
    {
        const Open<AcDbBlockTableRecord> reading(part, AcDb::kForRead);
        EXPECT_EQ(reading->appendAcDbEntity(&point), Acad::eNotOpenForWrite);
    }
    Open<AcDbBlockTableRecord> record(outer);
    EXPECT_EQ(record->appendAcDbEntity(nullptr), Acad::eNullObjectPointer);
    EXPECT_EQ(record->appendAcDbEntity(&without_block), Acad::eKeyNotFound);
    EXPECT_EQ(record->appendAcDbEntity(&to_itself), Acad::eSelfReference);
    EXPECT_EQ(point.database(), nullptr);
    EXPECT_EQ(without_block.database(), nullptr);
}

TEST_F(Blocks, undo_takes_back_a_block_with_what_is_in_it) {
    const std::string before = names();
    {
        const host::UndoStep step("MAKE");
        Open<AcDbBlockTableRecord> record(addBlock(u"Master"));
        auto* circle = new AcDbCircle({1, 1, 0}, {0, 0, 1}, 2.0);
        EXPECT_EQ(record->appendAcDbEntity(circle), Acad::eOk);
        circle->close();
    }
    host::undo(1);
    EXPECT_EQ(names(), before);
    host::redo();
    EXPECT_EQ(names(), before + "Master ");
    EXPECT_EQ(walk(recordId(u"Master")).size(), 1U);
}

TEST_F(Blocks, new_blocks_and_entities_are_in_the_file) {
    {
        Open<AcDbBlockTableRecord> record(addBlock(u"Master"));
        auto* ellipse = new AcDbEllipse({1, 2, 0}, {0, 0, 1}, {3, 0, 0}, 0.5);
        EXPECT_EQ(record->appendAcDbEntity(ellipse), Acad::eOk);
        ellipse->close();
    }
    {
        Open<AcDbBlockTableRecord> paper(recordId(u"*Paper_Space"));
        auto* insert = new AcDbBlockReference({4, 5, 6}, recordId(u"master"));
        EXPECT_EQ(paper->appendAcDbEntity(insert), Acad::eOk);
        insert->close();
    }
    std::string error;
    const std::string file = folder_.file("out.dxf");
    ASSERT_TRUE(host::saveDrawing(file, error)) << error;
    ASSERT_TRUE(host::openDrawing(file, error)) << error;
    EXPECT_TRUE(names().ends_with("Master "));
    EXPECT_EQ(walk(recordId(u"Master")).size(), 1U);
    const std::vector<AcDbObjectId> on_paper = walk(recordId(u"*Paper_Space"));
    ASSERT_EQ(on_paper.size(), 1U);
    EXPECT_EQ(group(on_paper[0], 67), "1");
    EXPECT_EQ(referencesTo(recordId(u"Master")), 1U);
}

TEST_F(Blocks, a_walk_meets_main_entities_in_both_directions) {
    const AcDbObjectId first = line();
    const AcDbObjectId second = polyline();
    const AcDbObjectId third = line();
    const AcDbObjectId space = recordId(u"*Model_Space");
    {
        Open<AcDbEntity> entity(first);
        EXPECT_EQ(entity->erase(), Acad::eOk);
    }
    using Ids = std::vector<AcDbObjectId>;
    EXPECT_EQ(walk(space), (Ids{second, third}));
    EXPECT_EQ(walk(space, false), (Ids{third, second}));
    EXPECT_EQ(walk(space, true, false), (Ids{first, second, third}));
}

TEST_F(Blocks, a_walk_goes_on_over_what_is_drawn_meanwhile_and_ends_with_its_drawing) {
    const AcDbObjectId first = line();
    AcDbBlockTableRecordIterator* made = nullptr;
    {
        const Open<AcDbBlockTableRecord> record(recordId(u"*Model_Space"), AcDb::kForRead);
        EXPECT_EQ(record->newIterator(made), Acad::eOk);
    }
    const std::unique_ptr<AcDbBlockTableRecordIterator> iterator(made);
    {
        Open<AcDbEntity> entity(first);
        entity->erase();
    }
    const AcDbObjectId second = line();
    iterator->step();
    AcDbObjectId id;
    EXPECT_EQ(iterator->getEntityId(id), Acad::eOk);
    EXPECT_EQ(id, second);
    host::newDrawing();
    AcDbEntity* entity = nullptr;
    EXPECT_TRUE(iterator->done());
    EXPECT_EQ(iterator->getEntity(entity), Acad::eIteratorDone);
}

TEST_F(Blocks, references_are_found_in_all_blocks) {
    reference();
    const AcDbObjectId part = recordId(u"Part");
    draw(
        "((0 . \"BLOCK\") (2 . \"Outer\") (70 . 0) (10 0.0 0.0 0.0)) "
        "((0 . \"INSERT\") (2 . \"PART\") (10 0.0 0.0 0.0)) ((0 . \"ENDBLK\"))");
    EXPECT_EQ(referencesTo(part), 2U);
    EXPECT_EQ(referencesTo(recordId(u"Outer")), 0U);
    lisp("(entdel (entlast))");
    EXPECT_EQ(referencesTo(part), 1U);
}

TEST_F(Blocks, a_block_may_stand_for_another_drawing) {
    line();
    std::string error;
    ASSERT_TRUE(host::saveDrawing(folder_.file("other.dxf"), error)) << error;
    host::newDrawing();
    attach("other.dxf", 12);
    ASSERT_TRUE(host::saveDrawing(folder_.file("host.dxf"), error)) << error;
    ASSERT_TRUE(host::openDrawing(folder_.file("host.dxf"), error)) << error;
    Open<AcDbBlockTableRecord> record(recordId(u"XR"));
    EXPECT_TRUE(record->isFromExternalReference());
    EXPECT_TRUE(record->isFromOverlayReference());
    AcDbDatabase* other = record->xrefDatabase(true);
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->xrefBlockId(), record->objectId());
    ACHAR* path = nullptr;
    EXPECT_EQ(acdbOriginalXrefFullPathFor(other, path), Acad::eOk);
    EXPECT_TRUE(text(path).ends_with("/other.dxf"));
    EXPECT_EQ(record->pathName(path), Acad::eOk);
    EXPECT_EQ(text(path), "other.dxf");
    EXPECT_EQ(record->setPathName(u"elsewhere.dxf"), Acad::eOk);
    EXPECT_EQ(record->pathName(path), Acad::eOk);
    EXPECT_EQ(text(path), "elsewhere.dxf");
}

TEST_F(Blocks, a_block_of_the_drawing_itself_stands_for_no_other) {
    Open<AcDbBlockTableRecord> record(addBlock(u"Own"));
    EXPECT_FALSE(record->isFromExternalReference());
    EXPECT_FALSE(record->isFromOverlayReference());
    EXPECT_EQ(record->xrefDatabase(true), nullptr);
    EXPECT_EQ(record->setPathName(u"x.dxf"), Acad::eNotApplicable);
    ACHAR* path = nullptr;
    EXPECT_EQ(record->pathName(path), Acad::eOk);
    EXPECT_EQ(text(path), "");
}

TEST_F(Blocks, a_drawing_without_tables_has_the_table_of_blocks) {
    std::string error;
    const std::string file = folder_.write(
        "bare.dxf",
        "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1015\n0\nENDSEC\n0\nSECTION\n2\nENTITIES\n"
        "0\nPOINT\n8\n0\n10\n1.0\n20\n2.0\n30\n0.0\n0\nENDSEC\n0\nEOF\n");
    ASSERT_TRUE(host::openDrawing(file, error)) << error;
    EXPECT_EQ(names(), "*Model_Space *Paper_Space ");
    const AcDbObjectId space = recordId(u"*MODEL_SPACE");
    ASSERT_EQ(walk(space).size(), 1U);
    const Open<AcDbPoint> point(walk(space)[0], AcDb::kForRead);
    EXPECT_EQ(point->position().y, 2.0);
    EXPECT_EQ(text(point->layer()), "0");
}

TEST_F(Blocks, faults_reach_the_caller_and_leave_nothing_open) {
    const AcDbObjectId space = recordId(u"*Model_Space");
    const auto refused = [](const char* call) {
        EXPECT_TRUE(host::testing::failCall(call, 1, Acad::eOutOfMemory));
    };
    AcDbBlockTable* blocks = nullptr;
    refused("getSymbolTable");
    EXPECT_EQ(database()->getSymbolTable(blocks, AcDb::kForRead), Acad::eOutOfMemory);
    EXPECT_EQ(blocks, nullptr);
    AcDbPoint point;
    Open<AcDbBlockTableRecord> record(space);
    refused("appendAcDbEntity");
    EXPECT_EQ(record->appendAcDbEntity(&point), Acad::eOutOfMemory);
    AcDbBlockTableRecordIterator* iterator = nullptr;
    refused("newIterator");
    EXPECT_EQ(record->newIterator(iterator), Acad::eOutOfMemory);
    EXPECT_EQ(iterator, nullptr);
    host::testing::clearFault();
    EXPECT_EQ(point.database(), nullptr);
}

}  // namespace
