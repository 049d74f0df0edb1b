// Layer and line type tables through their classes: looking up, walking, adding, changing, and what
// follows for entities, undo and the file.
#include <gtest/gtest.h>

#include <memory>

#include "acad/tables.h"
#include "dxf_text.h"
#include "host/counters.h"
#include "host/drawing.h"
#include "host/lisp.h"
#include "host/testing.h"
#include "host/undo.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/text.h"
#include "temp_folder.h"

namespace {

class Tables : public testing::Test {
  protected:
    Tables() { host::newDrawing(); }
    ~Tables() override {
        host::testing::clearFault();
        EXPECT_EQ(host::openObjectCount(), 0);
        host::closeDrawing();
    }

    static AcDbDatabase& drawing() { return *acdbHostApplicationServices()->workingDatabase(); }
    static std::string eval(const std::string& text) {
        const host::LispOutcome outcome = host::evalLisp(kz::toUtf16(text));
        return kz::toUtf8(outcome.ok() ? outcome.value : u"error: " + outcome.message);
    }

    /// The layer table while the test holds it.
    class Layers {
      public:
        explicit Layers(AcDb::OpenMode mode = AcDb::kForRead, AcDbDatabase& of = drawing()) {
            status_ = of.getSymbolTable(table_, mode);
        }
        ~Layers() {
            if (table_ != nullptr) table_->close();
        }
        Layers(const Layers&) = delete;
        Layers& operator=(const Layers&) = delete;
        AcDbLayerTable* operator->() const { return table_; }
        Acad::ErrorStatus status() const { return status_; }

      private:
        AcDbLayerTable* table_ = nullptr;
        Acad::ErrorStatus status_;
    };

    /// Adds a layer and closes it again.
    static Acad::ErrorStatus add(const ACHAR* name) {
        auto layer = std::make_unique<AcDbLayerTableRecord>();
        layer->setName(name);
        const Layers layers(AcDb::kForWrite);
        const Acad::ErrorStatus status = layers->add(layer.get());
        if (status == Acad::eOk) layer.release()->close();
        return status;
    }
    /// Opens a layer, lets `change` have it and closes it.
    template <class Change>
    static Acad::ErrorStatus change(const ACHAR* name, Change change) {
        AcDbLayerTableRecord* layer = nullptr;
        Acad::ErrorStatus status = Layers()->getAt(name, layer, AcDb::kForWrite);
        if (status != Acad::eOk) return status;
        status = change(*layer);
        layer->close();
        return status;
    }
    static std::string names(AcDbDatabase& of = drawing(), bool skip_deleted = true,
                             bool forward = true) {
        std::string all;
        AcDbSymbolTableIterator* raw = nullptr;
        EXPECT_EQ(Layers(AcDb::kForRead, of)->newIterator(raw, forward, skip_deleted), Acad::eOk);
        const std::unique_ptr<AcDbSymbolTableIterator> walk(raw);
        for (; !walk->done(); walk->step(forward, skip_deleted)) {
            AcDbLayerTableRecord* layer = nullptr;
            EXPECT_EQ(walk->getRecord(layer, AcDb::kForRead, true), Acad::eOk);
            ACHAR* name = nullptr;
            EXPECT_EQ(layer->getName(name), Acad::eOk);
            all += (all.empty() ? "" : " ") + kz::toUtf8(name);
            kz_Free(name);
            layer->close();
        }
        return all;
    }

    TempFolder folder_;
};

TEST_F(Tables, records_are_found_by_name_in_any_case) {
    EXPECT_EQ(add(u"Pipes"), Acad::eOk);
    const Layers layers;
    AcDbObjectId id;
    EXPECT_EQ(layers->getAt(u"PIPES", id), Acad::eOk);
    EXPECT_TRUE(layers->has(u"pipes"));
    EXPECT_TRUE(layers->has(id));
    const AcDbObjectId before = id;
    EXPECT_EQ(layers->getAt(u"Valves", id), Acad::eKeyNotFound);
    EXPECT_EQ(layers->getAt(nullptr, id), Acad::eKeyNotFound);
    EXPECT_EQ(id, before);
    EXPECT_FALSE(layers->has(u"Valves"));
    EXPECT_FALSE(layers->has(layers->objectId()));
    AcDbLinetypeTable* linetypes = nullptr;
    EXPECT_EQ(drawing().getSymbolTable(linetypes), Acad::eOk);
    EXPECT_TRUE(linetypes->has(u"CONTINUOUS"));
    EXPECT_FALSE(linetypes->has(id));
    EXPECT_EQ(linetypes->getAt(u"ByLayer", id), Acad::eOk);
    AcDbLayerTableRecord* layer = nullptr;
    EXPECT_EQ(linetypes->getAt(u"ByLayer", layer), Acad::eNotThatKindOfClass);
    EXPECT_EQ(linetypes->close(), Acad::eOk);
}

TEST_F(Tables, walks_pass_over_what_is_erased) {
    for (const ACHAR* name : {u"A", u"B", u"C"})
        EXPECT_EQ(add(name), Acad::eOk);
    EXPECT_EQ(change(u"B", [](AcDbLayerTableRecord& layer) { return layer.erase(); }), Acad::eOk);
    EXPECT_EQ(names(), "0 A C");
    EXPECT_EQ(names(drawing(), true, false), "C A 0");
    EXPECT_EQ(names(drawing(), false), "0 A B C");
    EXPECT_EQ(add(u"b"), Acad::eOk);
    EXPECT_EQ(names(), "0 A C b");
    AcDbSymbolTableIterator* raw = nullptr;
    EXPECT_EQ(Layers()->newIterator(raw), Acad::eOk);
    const std::unique_ptr<AcDbSymbolTableIterator> walk(raw);
    host::closeDrawing();
    AcDbObjectId id;
    EXPECT_TRUE(walk->done());
    EXPECT_EQ(walk->getRecordId(id), Acad::eIteratorDone);
}

TEST_F(Tables, adding_refuses_what_is_no_new_record_of_the_table) {
    EXPECT_EQ(add(u"Pipes"), Acad::eOk);
    EXPECT_EQ(add(u"PIPES"), Acad::eDuplicateKey);
    EXPECT_EQ(add(u"a*b"), Acad::eInvalidInput);
    EXPECT_EQ(add(u""), Acad::eInvalidInput);
    const Layers layers(AcDb::kForWrite);
    EXPECT_EQ(layers->add(nullptr), Acad::eNullObjectPointer);
    AcDbLinetypeTableRecord linetype;
    EXPECT_EQ(linetype.setName(u"Dash"), Acad::eOk);
    EXPECT_EQ(layers->add(&linetype), Acad::eNotThatKindOfClass);
    AcDbLayerTableRecord* present = nullptr;
    EXPECT_EQ(layers->getAt(u"Pipes", present, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(layers->add(present), Acad::eAlreadyInDb);
    EXPECT_EQ(present->setName(u"PIPES"), Acad::eOk);
    EXPECT_EQ(present->setName(u"Other"), Acad::eNotApplicable);
    present->close();
    EXPECT_EQ(eval("(cdr (assoc 2 (tblsearch \"LAYER\" \"pipes\")))"), "\"PIPES\"");
    AcDbLayerTableRecord layer;
    layer.setName(u"More");
    EXPECT_EQ(layers->downgradeOpen(), Acad::eOk);
    EXPECT_EQ(layers->add(&layer), Acad::eNotOpenForWrite);
    host::testing::failCall("add", 1, Acad::eOutOfMemory);
    EXPECT_EQ(layers->add(&layer), Acad::eOutOfMemory);
}

TEST_F(Tables, the_state_of_a_layer_is_its_groups) {
    add(u"Pipes");
    const auto groups = [] {
        return eval(
            "(mapcar '(lambda (c) (cdr (assoc c (tblsearch \"LAYER\" \"Pipes\")))) '(70 62 6))");
    };
    EXPECT_EQ(groups(), "(0 7 \"Continuous\")");
    AcDbLinetypeTable* linetypes = nullptr;
    AcDbObjectId by_layer;
    drawing().getSymbolTable(linetypes);
    linetypes->getAt(u"BYLAYER", by_layer);
    linetypes->close();
    EXPECT_EQ(change(u"Pipes",
                     [&](AcDbLayerTableRecord& layer) {
                         AcCmColor red;
                         red.setColorIndex(1);
                         EXPECT_EQ(layer.setIsOff(true), Acad::eOk);
                         EXPECT_EQ(layer.setColor(red), Acad::eOk);
                         EXPECT_EQ(layer.setIsFrozen(true), Acad::eOk);
                         EXPECT_EQ(layer.setIsLocked(true), Acad::eOk);
                         EXPECT_TRUE(layer.isOff() && layer.isFrozen() && layer.isLocked());
                         EXPECT_EQ(layer.color(), red);
                         EXPECT_EQ(layer.setColor(AcCmColor()), Acad::eInvalidInput);
                         EXPECT_EQ(layer.setLinetypeObjectId(layer.objectId()),
                                   Acad::eNotThatKindOfClass);
                         EXPECT_EQ(layer.setLinetypeObjectId({}), Acad::eNullObjectId);
                         EXPECT_EQ(layer.setLinetypeObjectId(by_layer), Acad::eOk);
                         EXPECT_EQ(layer.linetypeObjectId(), by_layer);
                         EXPECT_FALSE(layer.isDependent());
                         return layer.setIsOff(true);
                     }),
              Acad::eOk);
    EXPECT_EQ(groups(), "(5 -1 \"ByLayer\")");
    eval("(entmod (subst '(70 . 16) '(70 . 5) (entget (tblobjname \"LAYER\" \"Pipes\"))))");
    AcDbLayerTableRecord* layer = nullptr;
    EXPECT_EQ(Layers()->getAt(u"Pipes", layer), Acad::eOk);
    EXPECT_TRUE(layer->isDependent());
    EXPECT_EQ(layer->setIsFrozen(true), Acad::eNotOpenForWrite);
    EXPECT_EQ(layer->setIsOff(false), Acad::eNotOpenForWrite);
    EXPECT_EQ(layer->setColor(AcCmColor()), Acad::eNotOpenForWrite);
    EXPECT_EQ(layer->setName(u"PIPES"), Acad::eNotOpenForWrite);
    layer->close();
    ACHAR* name = nullptr;
    EXPECT_EQ(layer->getName(name), Acad::eNotOpenForRead);
    EXPECT_FALSE(layer->isOff());
    EXPECT_EQ(change(u"0", [](AcDbLayerTableRecord& zero) { return zero.setIsFrozen(true); }),
              Acad::eInvalidInput);
}

TEST_F(Tables, a_locked_layer_keeps_its_entities_as_they_are) {
    add(u"Pipes");
    eval("(setq e (entmakex '((0 . \"LINE\") (8 . \"Pipes\") (10 0 0 0) (11 1 0 0))))");
    const auto lock = [](bool on) {
        return change(u"Pipes",
                      [on](AcDbLayerTableRecord& layer) { return layer.setIsLocked(on); });
    };
    EXPECT_EQ(lock(true), Acad::eOk);
    EXPECT_EQ(eval("(entdel e)"), "nil");
    EXPECT_EQ(lock(false), Acad::eOk);
    EXPECT_NE(eval("(entdel e)"), "nil");
}

TEST_F(Tables, what_is_done_can_be_undone) {
    add(u"Pipes");
    {
        const host::UndoStep step("TEST");
        add(u"More");
        change(u"Pipes", [](AcDbLayerTableRecord& layer) { return layer.setIsLocked(true); });
    }
    EXPECT_EQ(names(), "0 Pipes More");
    host::undo(1);
    EXPECT_EQ(names(), "0 Pipes");
    EXPECT_EQ(eval("(cdr (assoc 70 (tblsearch \"LAYER\" \"Pipes\")))"), "0");
}

TEST_F(Tables, new_layers_are_in_the_file) {
    add(u"Pipes");
    std::string error;
    ASSERT_TRUE(host::saveDrawing(folder_.file("out.dxf"), error)) << error;
    ASSERT_TRUE(host::openDrawing(folder_.file("out.dxf"), error)) << error;
    EXPECT_EQ(names(), "0 Pipes");
}

TEST_F(Tables, a_drawing_without_tables_gets_them_when_they_are_written_to) {
    const std::string bare = dxf_text::pairs(
        "0 SECTION | 2 HEADER | 9 $ACADVER | 1 AC1032 | 0 ENDSEC | 0 SECTION | 2 ENTITIES | "
        "0 ENDSEC | 0 EOF");
    std::string error;
    ASSERT_TRUE(host::openDrawing(folder_.write("bare.dxf", bare), error)) << error;
    EXPECT_EQ(Layers().status(), Acad::eKeyNotFound);
    EXPECT_FALSE(host::drawingIsUnsaved());
    EXPECT_EQ(add(u"Pipes"), Acad::eOk);
    ASSERT_TRUE(host::saveDrawing(folder_.file("out.dxf"), error)) << error;
    ASSERT_TRUE(host::openDrawing(folder_.file("out.dxf"), error)) << error;
    EXPECT_EQ(names(), "Pipes");
    EXPECT_EQ(add(u"More"), Acad::eOk);
    EXPECT_EQ(names(), "Pipes More");
}

TEST_F(Tables, a_line_type_of_another_drawing_is_none) {
    AcDbDatabase other;
    AcDbLinetypeTable* linetypes = nullptr;
    AcDbObjectId foreign;
    EXPECT_EQ(other.getSymbolTable(linetypes), Acad::eOk);
    linetypes->getAt(u"Continuous", foreign);
    linetypes->close();
    AcDbLayerTableRecord layer;
    layer.setName(u"Pipes");
    EXPECT_EQ(layer.setLinetypeObjectId(foreign), Acad::eOk);
    EXPECT_EQ(layer.linetypeObjectId(), foreign);
    EXPECT_EQ(Layers(AcDb::kForWrite)->add(&layer), Acad::eNotThatKindOfClass);
    EXPECT_EQ(Layers(AcDb::kForWrite, other).status(), Acad::eOk);
    const AcDbDatabase nothing(false);
    EXPECT_EQ(nothing.getSymbolTable(linetypes), Acad::eNoDatabase);
    EXPECT_EQ(linetypes, nullptr);
}

}  // namespace
