/// The store of drawing data: its chains, its records in a drawing, and the drawing's code. What a
/// Lisp call can show stands in tests/lisp/dwgdata.lsp.
#include <chrono>

#include "ACAD/dwgd_rx/id_code.h"
#include "drawing_test.h"
#include "host/lisp.h"
#include "host/module.h"
#include "host/output.h"
#include "host/testing.h"
#include "host/undo.h"

namespace {

using test::Arguments;
using test::chain;
using test::show;
using test::take;
using test::wide;

kz_FldList* listOf(const std::string& form) {
    Arguments arguments(form);
    return kz_FldList_fromRb(&arguments.at, 0);
}

// --- chains -------------------------------------------------------------------------------------

class RecordChains : public test::ChainTest {
  protected:
    static constexpr const char* kTwoFields =
        "2:{ 1:FLAG 70:2 2:} 2:{ 1:ENDS 10:0,0,0 10:5,0,0 2:}";

    static std::string write(const std::string& nodes, const std::string& form, int clear = 0,
                             int expected = 1) {
        resbuf* data = chain(nodes);
        kz_FldList* list = listOf(form);
        EXPECT_EQ(kz_AcDwgData_fromFldList(&data, list, clear), expected);
        kz_FldList_destroy(list);
        return take(data);
    }
    static std::string read(const std::string& nodes) {
        const Arguments data(nodes);
        return take(kz_AcDwgData_toFldList(data.at));
    }
};

TEST_F(RecordChains, FieldsAreWrittenInTheCodesOfRecords) {
    EXPECT_EQ(write("", "( ( \"flag\" 2 ) ( \"ends\" <0,0,0> <5,0,0> ) )"), kTwoFields);
    EXPECT_EQ(write("",
                    "( ( \"a\" \"x\" ( 1005 \"2F\" ) 5 70000L 2.5 <1,2,3> \"P\" <1,2,3> \"M\" "
                    "<1,2,3> \"D\" <1,2,3> \"O\" ) \"b\" )"),
              "2:{ 1:A 1:x 6:2F 70:5 90:70000 40:2.5 10:1,2,3 11:1,2,3 12:1,2,3 13:1,2,3 2:} "
              "2:{ 1:B 2:}");
}

TEST_F(RecordChains, FieldsAreReplacedInTheirPlaceOrAppended) {
    EXPECT_EQ(write(kTwoFields, "( ( \"new\" \"x\" ) ( \"Flag\" 7L 8 ) )"),
              "2:{ 1:FLAG 90:7 70:8 2:} 2:{ 1:ENDS 10:0,0,0 10:5,0,0 2:} 2:{ 1:NEW 1:x 2:}");
    EXPECT_EQ(write(kTwoFields, "( ( \"only\" 1 ) )", 1), "2:{ 1:ONLY 70:1 2:}");
    EXPECT_EQ(write(kTwoFields, "( )", 1), "");
    EXPECT_EQ(write(kTwoFields, "( )"), kTwoFields);
}

TEST_F(RecordChains, AChainThatStartsEmptyHasNoFieldsToLookIn) {
    for (const int clear : {0, 1}) {
        resbuf* data = clear != 0 ? chain(kTwoFields) : nullptr;
        kz_FldList* list = kz_FldList_create(nullptr, 0, nullptr, 0);
        kz_FldList_appInt(list, KZ_T("A"), 1);
        kz_FldList_appInt(list, KZ_T("A"), 2);
        EXPECT_EQ(kz_AcDwgData_fromFldList(&data, list, clear), 1);
        EXPECT_EQ(take(data), "2:{ 1:A 70:1 2:} 2:{ 1:A 70:2 2:}");
        data = chain("2:{ 1:A 70:0 2:}");
        EXPECT_EQ(kz_AcDwgData_fromFldList(&data, list, 0), 1);
        EXPECT_EQ(take(data), "2:{ 1:A 70:2 2:}");
        kz_FldList_destroy(list);
    }
}

TEST_F(RecordChains, OtherCodesPassThrough) {
    EXPECT_EQ(write("2:{ 1:A 70:1 2:} 3:more 71:4 300:foreign", "( ( \"a\" 2 ) ( \"b\" 3 ) )"),
              "2:{ 1:A 70:2 2:} 3:more 71:4 300: 2:{ 1:B 70:3 2:}");
    EXPECT_EQ(read("2:{ 1:A 71:4 41:2.5 2:}"), "A:V[I=4 N=2.5]");
    EXPECT_EQ(read("2:{ 1:A 290:1 2:}"), "(null)") << "no field has such a value";
    EXPECT_EQ(read("70:5"), "(null)");
    EXPECT_EQ(read(""), "");
}

TEST_F(RecordChains, AFailureLeavesThePartInTheCodesOfExtendedData) {
    EXPECT_EQ(write("2:{ 1:A 70:1 2:} 2:{ 1:B", "( ( \"a\" 2 ) ( \"b\" 3 ) )", 0, 0),
              "1002:{ 1000:A 1070:2 1002:} 1002:{ 1000:B");
    resbuf* none = nullptr;
    kz_FldList* list = listOf("( ( \"a\" 1 ) )");
    EXPECT_EQ(kz_AcDwgData_fromFldList(nullptr, list, 0), 0);
    EXPECT_EQ(kz_AcDwgData_fromFldList(&none, nullptr, 0), 0);
    EXPECT_EQ(kz_AcDwgData_updateFldList(nullptr, list), 0);
    kz_FldList_destroy(list);
}

TEST_F(RecordChains, ARequestIsFilledAndTheChainKeepsItsCodes) {
    const Arguments data(kTwoFields);
    kz_FldList* list = listOf("( ( \"ends\" 1 ) \"nix\" \"flag\" )");
    traceAt(3, 0x400);
    EXPECT_EQ(kz_AcDwgData_updateFldList(data.at, list), 1);
    EXPECT_EQ(traced(), "") << "a missing field is no matter";
    EXPECT_EQ(show(data.at), kTwoFields);
    EXPECT_EQ(test::narrow(kz_FldList_curr(list)->name), "ENDS") << "the list stands at its start";
    EXPECT_EQ(take(list), "ENDS:V[P=0,0,0 P=5,0,0] FLAG:I=2");
    EXPECT_EQ(kz_AcDwgData_updateFldList(data.at, nullptr), 0);
}

/// Names are hashed when many are looked for: the result must be the same as by walking.
TEST_F(RecordChains, LongListsFindTheirFieldsLikeShortOnes) {
    std::string nodes;
    std::string form = "( ";
    std::string expected;
    for (int i = 0; i < 40; ++i) {
        const std::string name = "F" + std::to_string(i);
        nodes += "2:{ 1:" + name + " 70:1 2:} ";
        if (i % 2 == 0) form += "( \"f" + std::to_string(i) + "\" 2 ) ";
        expected += "2:{ 1:" + name + (i % 2 == 0 ? " 70:2" : " 70:1") + " 2:} ";
    }
    EXPECT_EQ(write(nodes + "2:{ 1:F0 70:9 2:}", form + "( \"new\" 3 ) ( \"NEW\" 4 ) )"),
              expected + "2:{ 1:F0 70:9 2:} 2:{ 1:NEW 70:4 2:}");
    // A field without its closing brace takes the next one along, wherever that was noted.
    nodes = "2:{ 1:A 70:1 2:{ 1:B 70:2 2:} " + nodes;
    form += "( \"a\" 5 ) ( \"b\" 6 ) )";
    EXPECT_EQ(write(nodes, form), "2:{ 1:A 70:5 2:} " + expected + "2:{ 1:B 70:6 2:}");
}

// --- records ------------------------------------------------------------------------------------

class DrawingData : public test::DrawingTest {
  protected:
    static constexpr const kz_Char* kApp = KZ_T("APP");
    static constexpr const kz_Char* kGroup = KZ_T("GROUP");

    static AcDbDatabase* database() { return acdbHostApplicationServices()->workingDatabase(); }
    static int write(const std::string& form, int clear = 0, const kz_Char* group = kGroup) {
        kz_FldList* list = listOf(form);
        const int status = kz_DwgData_setFldList(nullptr, kApp, group, list, clear);
        kz_FldList_destroy(list);
        return status;
    }
    static std::string read(const kz_Char* group = kGroup) {
        return take(kz_DwgData_getFldList(nullptr, kApp, group, nullptr));
    }
    static std::string record() { return take(kz_AcXrecord_getFromDict(nullptr, kApp, kGroup)); }
    static std::string keys(kz_StrList* list) {
        std::string out;
        for (; kz_StrList_eol(list) == 0; kz_StrList_next(list))
            out += test::narrow(kz_StrList_getCurr(list)) + " ";
        kz_StrList_destroy(list);
        return out;
    }
    /// Puts an object of another maker under a key of the root, or of the application's dictionary.
    static void enterForeign(AcDbObject* object, const kz_Char* key, bool in_application) {
        AcDbDictionary* root = nullptr;
        AcDbDictionary* application = nullptr;
        ASSERT_EQ(database()->getNamedObjectsDictionary(root, AcDb::kForWrite), Acad::eOk);
        if (in_application) root->getAt(kApp, application, AcDb::kForWrite);
        AcDbObjectId id;
        EXPECT_EQ((in_application ? application : root)->setAt(key, object, id), Acad::eOk);
        object->close();
        root->close();
        if (application != nullptr) application->close();
    }
    static AcDbXrecord* recordOf(const std::string& nodes) {
        auto* made = new AcDbXrecord;
        resbuf* data = chain(nodes);
        EXPECT_EQ(made->setFromRbChain(data), Acad::eOk);
        kz_ResBuf_release(data);
        return made;
    }
};

TEST_F(DrawingData, TheFirstWriteMakesDictionaryAndRecord) {
    EXPECT_EQ(keys(kz_DwgData_getXGroups(nullptr, kApp)), "");
    EXPECT_EQ(write("( ( \"flag\" 2 ) )"), 1);
    EXPECT_EQ(record(), "2:{ 1:FLAG 70:2 2:}");
    EXPECT_EQ(read(), "FLAG:I=2");
    EXPECT_EQ(write("( ( \"other\" 1 ) )", 0, KZ_T("Second")), 1);
    EXPECT_EQ(keys(kz_DwgData_getXGroups(nullptr, KZ_T("app"))), "GROUP Second ");
    EXPECT_EQ(keys(kz_AcXrecord_GetKeysFromDict(database(), kApp)), "GROUP Second ");
}

TEST_F(DrawingData, AnEmptyRecordIsThereAndHasNoFields) {
    write("( ( \"flag\" 2 ) )");
    EXPECT_EQ(write("( )", 1), 1);
    EXPECT_EQ(record(), "");
    EXPECT_EQ(read(), "(null)");
    EXPECT_EQ(keys(kz_DwgData_getXGroups(nullptr, kApp)), "GROUP ");
    EXPECT_EQ(write("( ( \"again\" 1 ) )"), 1);
    EXPECT_EQ(read(), "AGAIN:I=1");
}

TEST_F(DrawingData, ADictionaryIsReadAndRemovedAsAWhole) {
    EXPECT_EQ(kz_AcDwgData_getDict(nullptr, kApp), nullptr);
    EXPECT_EQ(kz_AcDwgData_delDict(nullptr, kApp), 1) << "there was none";
    write("( ( \"a\" 1 ) )");
    write("( )", 1, KZ_T("EMPTY"));
    write("( ( \"b\" 2 ) )", 0, KZ_T("LAST"));
    enterForeign(recordOf("40:1.5"), KZ_T("FOREIGN"), true);
    kz_LnkList* lists = kz_AcDwgData_getDict(database(), kApp);
    std::string shown;
    for (kz_LnkList_start(lists); kz_LnkList_eol(lists) == 0; kz_LnkList_next(lists))
        shown += show(static_cast<kz_FldList*>(kz_LnkList_getCurr(lists))) + ";";
    EXPECT_EQ(shown, "A:I=1;;B:I=2;");
    kz_LnkList_destroy(lists,
                       [](void* list) { kz_FldList_destroy(static_cast<kz_FldList*>(list)); });
    EXPECT_EQ(kz_AcDwgData_delDict(nullptr, kApp), 1);
    EXPECT_EQ(read(), "(null)");
    EXPECT_EQ(kz_AcDwgData_delDict(nullptr, kApp), 1);
}

TEST_F(DrawingData, ARequestThatFailsKeepsItsContent) {
    kz_FldList* request = listOf("( ( \"a\" 7 ) \"b\" )");
    EXPECT_EQ(kz_DwgData_getFldList(nullptr, kApp, kGroup, request), nullptr);
    EXPECT_EQ(show(request), "A:I=7 B:U");
    write("( ( \"b\" 1 2 ) )");
    EXPECT_EQ(kz_AcDwgData_getFldListFromAcDbDatabase(nullptr, kApp, kGroup, request), request);
    EXPECT_EQ(take(request), "B:V[I=1 I=2]");
    kz_FldList* one = kz_AcDwgData_getFldFromAcDbDatabase(database(), kApp, kGroup, KZ_T("b"));
    ASSERT_NE(one, nullptr);
    EXPECT_EQ(kz_FldList_eol(one), 0) << "it is started";
    EXPECT_EQ(take(one), "b:V[I=1 I=2]");
    EXPECT_EQ(kz_AcDwgData_getFldFromAcDbDatabase(nullptr, kApp, kGroup, KZ_T("c")), nullptr);
}

TEST_F(DrawingData, MissingArgumentsGiveFailureAndChangeNothing) {
    kz_FldList* list = listOf("( ( \"a\" 1 ) )");
    const int16_t one = 1;
    for (const kz_Char* none : {static_cast<const kz_Char*>(nullptr), KZ_T("")}) {
        for (const auto& [dict, group] : {std::pair{none, kGroup}, std::pair{kApp, none}}) {
            EXPECT_EQ(kz_DwgData_setFldList(nullptr, dict, group, list, 1), 0);
            EXPECT_EQ(kz_DwgData_getFldList(nullptr, dict, group, nullptr), nullptr);
            EXPECT_EQ(kz_DwgData_getFld(nullptr, dict, group, KZ_T("A")), nullptr);
            EXPECT_EQ(kz_DwgData_setFld(nullptr, dict, group, KZ_T("A"), 'I', &one, 1, 0), 0);
            EXPECT_EQ(kz_DwgData_deleteFldList(nullptr, dict, group), 0);
            EXPECT_EQ(kz_DwgData_deleteFld(nullptr, dict, group, KZ_T("A")), 0);
            EXPECT_EQ(kz_AcXrecord_getFromDict(nullptr, dict, group), nullptr);
            EXPECT_EQ(kz_AcXrecord_saveToDict(nullptr, dict, group, nullptr), 0);
            EXPECT_EQ(kz_AcXrecord_removeFromDict(nullptr, dict, group), 0);
        }
        EXPECT_EQ(kz_DwgData_setFld(nullptr, kApp, kGroup, none, 'I', &one, 0, 0), 0);
        EXPECT_EQ(kz_DwgData_deleteFld(nullptr, kApp, kGroup, none), 0);
        EXPECT_EQ(kz_DwgData_getXGroups(nullptr, none), nullptr);
        EXPECT_EQ(kz_AcDwgData_getDict(nullptr, none), nullptr);
        EXPECT_EQ(kz_AcDwgData_delDict(nullptr, none), 0);
    }
    EXPECT_EQ(kz_DwgData_setFldList(nullptr, kApp, kGroup, nullptr, 0), 0);
    EXPECT_EQ(kz_DwgData_setFld(nullptr, kApp, kGroup, KZ_T("A"), 0, &one, 0, 0), 0);
    EXPECT_EQ(kz_DwgData_setFld(nullptr, kApp, kGroup, KZ_T("A"), 'I', nullptr, 0, 0), 0);
    EXPECT_EQ(kz_DwgIdCode_set(nullptr, nullptr), 0);
    EXPECT_EQ(keys(kz_DwgData_getXGroups(nullptr, kApp)), "");
    const std::u16string longest(255, u'x');
    EXPECT_EQ(kz_DwgData_setFldList(nullptr, longest.c_str(), longest.c_str(), list, 0), 1);
    EXPECT_EQ(kz_DwgData_setFldList(nullptr, (longest + u"x").c_str(), kGroup, list, 0), 0);
    EXPECT_EQ(kz_DwgData_setFldList(nullptr, kApp, (longest + u"x").c_str(), list, 0), 0);
    kz_FldList_destroy(list);
}

TEST_F(DrawingData, ObjectsOfAnotherKindAreNeitherReadNorTakenForNothing) {
    enterForeign(recordOf("1:mine"), kApp, false);
    EXPECT_EQ(write("( ( \"a\" 1 ) )"), 0) << "a record where the dictionary should be";
    EXPECT_EQ(read(), "(null)");
    EXPECT_EQ(kz_DwgData_getXGroups(nullptr, kApp), nullptr);
    EXPECT_EQ(kz_AcXrecord_removeFromDict(nullptr, kApp, kGroup), 0);
    EXPECT_EQ(kz_AcDwgData_delDict(nullptr, kApp), 1);
    write("( ( \"a\" 1 ) )", 0, KZ_T("OTHER"));
    enterForeign(new AcDbDictionary, kGroup, true);
    EXPECT_EQ(read(), "(null)") << "a dictionary where the record should be";
    EXPECT_EQ(kz_DwgData_deleteFld(nullptr, kApp, kGroup, KZ_T("A")), 0);
    EXPECT_EQ(write("( ( \"a\" 2 ) )"), 1) << "it gives way";
    EXPECT_EQ(read(), "A:I=2");
}

TEST_F(DrawingData, WhatAnotherProgramPutIntoARecordStays) {
    write("( ( \"other\" 1 ) )", 0, KZ_T("OTHER"));
    enterForeign(recordOf("2:{ 1:mine 70:1 2:} 3:note 71:4 90:7"), kGroup, true);
    EXPECT_EQ(write("( ( \"MINE\" 2.5 ) ( \"new\" 1 ) )"), 1);
    EXPECT_EQ(record(), "2:{ 1:mine 40:2.5 2:} 3:note 71:4 90:7 2:{ 1:NEW 70:1 2:}");
    EXPECT_EQ(read(), "(null)") << "not all of it is fields";
    EXPECT_EQ(take(kz_DwgData_getFld(nullptr, kApp, kGroup, KZ_T("mine"))), "mine:N=2.5");
}

TEST_F(DrawingData, ARefusedWriteLeavesTheRecordAlone) {
    write("( ( \"a\" 1 ) )");
    kz_FldList* list = listOf("( ( \"b\" 2 ) )");
    ads_name root;
    acdbNamedObjDict(root);
    resbuf* held = acdbDictSearch(root, kApp, 0);
    AcDbObjectId id;
    ASSERT_EQ(acdbGetObjectId(id, held->resval.rlname), Acad::eOk);
    kz_ResBuf_release(held);
    AcDbObject* open = nullptr;
    ASSERT_EQ(acdbOpenObject(open, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(kz_DwgData_setFldList(nullptr, kApp, kGroup, list, 0), 0);
    EXPECT_EQ(kz_DwgData_setFldList(nullptr, kApp, kGroup, list, 1), 0);
    EXPECT_EQ(kz_DwgData_deleteFldList(nullptr, kApp, kGroup), 0);
    open->close();
    kz_FldList_destroy(list);
    resbuf* foreign = chain("1:text 1003:layer");
    EXPECT_EQ(kz_AcXrecord_saveToDict(nullptr, kApp, kGroup, foreign), 0);
    EXPECT_EQ(kz_AcXrecord_saveToDict(nullptr, KZ_T("NEW"), kGroup, foreign), 0);
    kz_ResBuf_release(foreign);
    EXPECT_EQ(read(), "A:I=1");
    EXPECT_EQ(kz_DwgData_getXGroups(nullptr, KZ_T("NEW")), nullptr);
}

TEST_F(DrawingData, EachDrawingHasItsOwn) {
    write("( ( \"a\" 1 ) )");
    AcDbDatabase other;
    resbuf* nodes = chain("2:{ 1:A 70:2 2:}");
    EXPECT_EQ(kz_AcXrecord_saveToDict(&other, kApp, kGroup, nodes), 1);
    kz_ResBuf_release(nodes);
    EXPECT_EQ(take(kz_AcDwgData_getFldListFromAcDbDatabase(&other, kApp, kGroup, nullptr)),
              "A:I=2");
    EXPECT_EQ(read(), "A:I=1");
    kz_CADDwgId id = {{'K', 'Z', '_', 'D'}, nullptr, &other};
    EXPECT_EQ(kz_DwgIdCode_set(&id, KZ_T("K1")), 1);
    EXPECT_EQ(test::narrow(kz_DwgIdCode_get(&id)), "K1");
    EXPECT_EQ(kz_DwgIdCode_get(nullptr), nullptr);
    kz_DwgData_disableUndoRecording(&id, 1);
    EXPECT_FALSE(other.undoRecording());
    EXPECT_TRUE(database()->undoRecording());
    kz_DwgData_disableUndoRecording(&id, 0);
    EXPECT_TRUE(other.undoRecording());
    // The id of a drawing that was closed is not that of the one in the editor.
    id.database = nullptr;
    EXPECT_EQ(kz_DwgData_getFldList(&id, kApp, kGroup, nullptr), nullptr);
    EXPECT_EQ(kz_DwgIdCode_set(&id, KZ_T("K2")), 0);
    EXPECT_EQ(kz_DwgData_deleteFldList(&id, kApp, kGroup), 0);
    EXPECT_EQ(kz_DwgData_getXGroups(&id, kApp), nullptr);
    kz_DwgData_disableUndoRecording(&id, 1);
    EXPECT_TRUE(database()->undoRecording());
    EXPECT_EQ(read(), "A:I=1");
}

TEST_F(DrawingData, WithoutADrawingEverythingFails) {
    host::closeDrawing();
    EXPECT_EQ(write("( ( \"a\" 1 ) )"), 0);
    EXPECT_EQ(read(), "(null)");
    EXPECT_EQ(kz_DwgData_getXGroups(nullptr, kApp), nullptr);
    EXPECT_EQ(kz_AcDwgData_delDict(nullptr, kApp), 0);
    EXPECT_EQ(kz_AcXrecord_removeFromDict(nullptr, kApp, kGroup), 0);
    EXPECT_EQ(kz_DwgIdCode_addToDrawing(nullptr, 1), 0);
    kz_DwgData_disableUndoRecording(nullptr, 1);
}

TEST_F(DrawingData, ObjectsThatCanNotBeMadeAreAnAssertion) {
    traceAt(1);
    kz_Malloc_failFrom(1);
    EXPECT_EQ(kz_AcXrecord_saveToDict(nullptr, kApp, kGroup, nullptr), 0);
    kz_Malloc_failFrom(0);
    EXPECT_EQ(traced(), "KZ_Assertion failed");
    write("( ( \"a\" 1 ) )");
    host::testing::failCall("newIterator", 1, 0);
    EXPECT_EQ(kz_DwgData_getXGroups(nullptr, kApp), nullptr);
    host::testing::clearFault();
    EXPECT_EQ(traced(), "KZ_Assertion failed");
    EXPECT_EQ(kz_DwgData_getFldList(nullptr, kApp, KZ_T("NIX"), nullptr), nullptr);
    EXPECT_EQ(traced(), "") << "what is missing is no failure";
}

TEST_F(DrawingData, AWriteIsUndoneAsAWhole) {
    write("( ( \"a\" 1 ) )");
    {
        const host::UndoStep step("WRITE");
        write("( ( \"a\" 2 ) )");
        write("( ( \"b\" 3 ) )", 0, KZ_T("NEW"));
        EXPECT_EQ(kz_DwgData_deleteFldList(nullptr, kApp, kGroup), 1);
    }
    EXPECT_EQ(keys(kz_DwgData_getXGroups(nullptr, kApp)), "NEW ");
    ASSERT_EQ(host::undo(1).names.size(), 1U);
    EXPECT_EQ(keys(kz_DwgData_getXGroups(nullptr, kApp)), "GROUP ");
    EXPECT_EQ(read(), "A:I=1");
}

// --- twins --------------------------------------------------------------------------------------

TEST_F(DrawingData, TwinsPrintNothingAndTraceTheirExit) {
    std::string error;
    ASSERT_TRUE(host::loadModule(KZ_BUILD_DIR "/libkz_zaglaid.so", error)) << error;
    std::string printed;
    host::setSink(host::Channel::Message,
                  [&printed](std::u16string_view text) { printed += kz::toUtf8(text); });
    traceAt(2, 0x400);
    const auto call = [](const std::string& name, const std::string& arguments) {
        const host::LispOutcome outcome =
            host::evalLisp(wide("(kz_DwgData_" + name + " " + arguments + ")"));
        EXPECT_TRUE(outcome.ok()) << name << ' ' << arguments;
        return kz::toUtf8(outcome.value);
    };
    for (const char* name : {"getFldList", "getFld", "getXGroups", "setFldList", "setFld",
                             "deleteFldList", "deleteFld", "deleteFldValue"}) {
        for (const char* arguments : {"", "5 5 5 5 5", "nil nil nil nil", "\"A\" 5"}) {
            traced();
            EXPECT_EQ(call(name, arguments), "nil") << name << ' ' << arguments;
            const std::string exit = "kz_DwgData_" + std::string(name) + "_li exiting...error";
            EXPECT_NE(traced().find(exit), std::string::npos) << name << ' ' << arguments;
        }
    }
    EXPECT_EQ(call("setFld", "\"A\" \"B\" \"F\" \"C\" \"text\""), "") << "no value";
    EXPECT_EQ(traced(), "kz_DwgData_setFld_li exiting...successful");
    EXPECT_EQ(printed, "");
    host::setSink(host::Channel::Message, {});
}

// --- the drawing's code -------------------------------------------------------------------------

TEST_F(DrawingData, TheCodeIsTheTimeInBase36) {
    kz_Char code[kz::kIdCodeSize];
    EXPECT_TRUE(kz::writeIdCode(code, 1700000000, 123));
    EXPECT_EQ(test::narrow(code), "LOYW3V5N");
    EXPECT_TRUE(kz::writeIdCode(code, 0, 0));
    EXPECT_EQ(test::narrow(code), "0");
    EXPECT_FALSE(kz::writeIdCode(code, -5, 0));
    // CN000000 is 990 435 962 880 milliseconds: May 2001.
    EXPECT_TRUE(kz::writeIdCode(code, 990435962, 880));
    EXPECT_EQ(test::narrow(code), "CO000000");
    EXPECT_TRUE(kz::writeIdCode(code, 990435962, 879));
    EXPECT_EQ(test::narrow(code), "CMZZZZZZ");
    const auto now = [] {
        const auto since = std::chrono::system_clock::now().time_since_epoch();
        return static_cast<double>(
            std::chrono::duration_cast<std::chrono::milliseconds>(since).count());
    };
    const std::u16string before = kz_Base36_fromBase10(now());
    const std::u16string made = kz_DwgIdCode_create();
    const std::u16string after = kz_Base36_fromBase10(now());
    EXPECT_EQ(made.size(), 8U);
    EXPECT_LE(before, made);
    EXPECT_LE(made, after);
}

TEST_F(DrawingData, ACodeIsAddedOnceUnlessItIsForced) {
    EXPECT_EQ(kz_DwgIdCode_get(nullptr), nullptr);
    EXPECT_EQ(kz_DwgIdCode_addToDrawing(nullptr, 0), 1);
    const kz_Char* added = kz_DwgIdCode_get(nullptr);
    ASSERT_NE(added, nullptr);
    EXPECT_EQ(test::narrow(added).size(), 8U);
    EXPECT_EQ(kz_DwgIdCode_set(nullptr, KZ_T("OURS")), 1);
    EXPECT_EQ(kz_DwgIdCode_addToDrawing(nullptr, 0), 0);
    EXPECT_EQ(test::narrow(kz_DwgIdCode_get(nullptr)), "OURS");
    EXPECT_EQ(kz_DwgIdCode_addToDrawing(nullptr, 1), 1);
    EXPECT_NE(test::narrow(kz_DwgIdCode_get(nullptr)), "OURS");
    EXPECT_EQ(kz_DwgIdCode_set(nullptr, KZ_T("LONGERTHAN8")), 1);
    EXPECT_EQ(test::narrow(kz_DwgIdCode_get(nullptr)), "LONGERTH");
    EXPECT_EQ(take(kz_AcXrecord_getFromDict(nullptr, KZ_T("KZ_MOVAR_APP"), KZ_T("DWGINFO"))),
              "2:{ 1:DWGIDCODE 1:LONGERTHAN8 2:}");
    EXPECT_EQ(kz_DwgIdCode_set(nullptr, KZ_T("")), 1);
    EXPECT_EQ(kz_DwgIdCode_get(nullptr), nullptr);
    const int16_t number = 5;
    EXPECT_EQ(kz_DwgData_setFld(nullptr, KZ_T("KZ_MOVAR_APP"), KZ_T("DWGINFO"), KZ_T("DWGIDCODE"),
                                KZ_FLD_INT, &number, 1, 0),
              1);
    EXPECT_EQ(kz_DwgIdCode_get(nullptr), nullptr) << "no text";
}

}  // namespace
