// Dictionaries and xrecords by their classes: entries and their order, walks over what changes,
// objects that are handed over, what records hold, what is written of all that.
#include "acad/dict.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "dxf_text.h"
#include "entity_list.h"
#include "host/counters.h"
#include "host/drawing.h"
#include "host/testing.h"
#include "host/undo.h"
#include "kz_tls21an/memory.h"
#include "kz_tls21an/text.h"
#include "temp_folder.h"

namespace {

using dxf_text::pairs;

class Dictionaries : public testing::Test {
  protected:
    Dictionaries() { open(dxf_text::drawing(dxf_text::line("30"))); }
    ~Dictionaries() override {
        EXPECT_EQ(host::openObjectCount(), 0);
        EXPECT_EQ(host::resbufCount(), nodes_before_);
        host::closeDrawing();
    }

    void open(const std::string& text) {
        std::string error;
        EXPECT_TRUE(host::openDrawing(folder_.write("in.dxf", text), error)) << error;
    }
    std::string save() {
        std::string error;
        EXPECT_TRUE(host::saveDrawing(folder_.file("out.dxf"), error)) << error;
        return TempFolder::read(folder_.file("out.dxf"));
    }
    static AcDbDatabase* database() { return acdbHostApplicationServices()->workingDatabase(); }

    /// A dictionary while it is open.
    struct Opened {
        AcDbDictionary* dictionary = nullptr;
        explicit Opened(AcDb::OpenMode mode = AcDb::kForWrite) {
            EXPECT_EQ(database()->getNamedObjectsDictionary(dictionary, mode), Acad::eOk);
        }
        explicit Opened(AcDbDictionary* open) : dictionary(open) {}
        Opened(const Opened&) = delete;
        Opened& operator=(const Opened&) = delete;
        ~Opened() { close(); }
        void close() {
            if (dictionary != nullptr) dictionary->close();
            dictionary = nullptr;
        }
        AcDbDictionary* operator->() const { return dictionary; }
    };

    /// Enters a record with one integer.
    static AcDbObjectId add(AcDbDictionary* dictionary, const char16_t* key, int value = 0) {
        auto* record = new AcDbXrecord;
        AcDbObjectId id;
        EXPECT_EQ(dictionary->setAt(key, record, id), Acad::eOk) << kz::toUtf8(key);
        EXPECT_EQ(record->setFromRbChain(Chain(acutBuildList(70, value, 0)).get()), Acad::eOk);
        EXPECT_EQ(record->close(), Acad::eOk);
        return id;
    }
    /// A dictionary of our own under "OURS", open for write.
    static AcDbDictionary* addDictionary() {
        const Opened root;
        auto* made = new AcDbDictionary;
        AcDbObjectId id;
        EXPECT_EQ(root->setAt(u"OURS", made, id), Acad::eOk);
        return made;
    }
    /// The integer of a record; -1 for no record.
    static int valueAt(const AcDbDictionary* dictionary, const char16_t* key) {
        AcDbXrecord* record = nullptr;
        if (dictionary->getAt(key, record) != Acad::eOk) return -1;
        resbuf* nodes = nullptr;
        EXPECT_EQ(record->rbChain(&nodes), Acad::eOk);
        record->close();
        const Chain chain(nodes);
        return chain == nullptr ? -2 : chain->resval.rint;
    }
    static std::string keys(const AcDbDictionary* dictionary) {
        std::string out;
        const std::unique_ptr<AcDbDictionaryIterator> at(dictionary->newIterator());
        for (; !at->done(); at->next())
            out += kz::toUtf8(at->name()) + " ";
        return out;
    }
    static void erase(AcDbObjectId id, bool erasing = true) {
        AcDbObject* object = nullptr;
        ASSERT_EQ(acdbOpenObject(object, id, AcDb::kForWrite, true), Acad::eOk);
        EXPECT_EQ(object->erase(erasing), Acad::eOk);
        object->close();
    }

    /// Writes a chain into a new record and shows what it reads back, also from the file.
    Acad::ErrorStatus store(resbuf* nodes, std::string& back) {
        const Chain chain(nodes);
        const Opened root;
        auto* record = new AcDbXrecord;
        AcDbObjectId id;
        EXPECT_EQ(root->setAt(u"DATA", record, id), Acad::eOk);
        const Acad::ErrorStatus status = record->setFromRbChain(chain.get());
        resbuf* read = nullptr;
        EXPECT_EQ(record->rbChain(&read), Acad::eOk);
        record->close();
        back = show(Chain(read).get());
        return status;
    }
    static std::string show(const resbuf* chain) {
        std::string out;
        for (; chain != nullptr; chain = chain->rbnext) {
            const int code = chain->restype;
            out += (out.empty() ? "" : " ") + std::to_string(code) + ":";
            if (code < 10 || (code >= 100 && code < 110) || (code >= 300 && code < 320)) {
                out += kz::toUtf8(chain->resval.rstring);
            } else if (code < 20 || code == 210) {
                for (const double coordinate : chain->resval.rpoint)
                    out += std::to_string(static_cast<int>(coordinate)) + ",";
            } else if (code >= 330 && code < 370) {
                const Chain entity(acdbEntGet(chain->resval.rlname));
                out += kz::toUtf8(textAt(entity.get(), 5));
            } else if (code >= 90 && code < 100) {
                out += std::to_string(chain->resval.rlong);
            } else if (code >= 160 && code < 170) {
                out += std::to_string(chain->resval.mnInt64);
            } else if (code < 60 || (code >= 140 && code < 150)) {
                out += std::to_string(chain->resval.rreal);
            } else {
                out += std::to_string(chain->resval.rint);
            }
        }
        return out;
    }

    TempFolder folder_;
    int64_t nodes_before_ = host::resbufCount();
};

TEST_F(Dictionaries, keys_match_without_regard_to_case_and_keep_their_spelling) {
    const Opened ours(addDictionary());
    const AcDbObjectId id = add(ours.dictionary, u"Насос 泵", 7);
    EXPECT_EQ(valueAt(ours.dictionary, u"нАСОС 泵"), 7);
    EXPECT_TRUE(ours->has(u"насос 泵"));
    EXPECT_TRUE(ours->has(id));
    ACHAR* name = nullptr;
    ASSERT_EQ(ours->nameAt(id, name), Acad::eOk);
    EXPECT_EQ(std::u16string(name), u"Насос 泵");
    kz_Free(name);
    AcDbObjectId none;
    EXPECT_EQ(ours->getAt(u"nix", none), Acad::eKeyNotFound);
    EXPECT_EQ(ours->getAt(nullptr, none), Acad::eInvalidKey);
    EXPECT_TRUE(none.isNull());
    EXPECT_EQ(ours->nameAt(none, name), Acad::eKeyNotFound);
    EXPECT_FALSE(ours->has(u"nix") || ours->has(none) || ours->has(nullptr));
}

TEST_F(Dictionaries, entries_have_the_order_in_which_they_came) {
    Opened ours(addDictionary());
    for (const char16_t* key : {u"c", u"a", u"b", u"A2"})
        add(ours.dictionary, key);
    EXPECT_EQ(keys(ours.dictionary), "c a b A2 ");
    EXPECT_EQ(ours->remove(u"A"), Acad::eOk);
    EXPECT_EQ(ours->remove(u"a"), Acad::eKeyNotFound);
    add(ours.dictionary, u"a", 5);
    EXPECT_TRUE(ours->setName(u"B", u"second"));
    EXPECT_TRUE(ours->setName(u"second", u"SECOND")) << "its own key is not in its way";
    EXPECT_FALSE(ours->setName(u"second", u"C"));
    EXPECT_FALSE(ours->setName(u"nix", u"new"));
    EXPECT_FALSE(ours->setName(u"c", u""));
    EXPECT_EQ(keys(ours.dictionary), "c SECOND A2 a ");
    EXPECT_EQ(ours->numEntries(), 4U);
    ours.close();
    const std::string saved = save();
    open(saved);
    const Opened root(AcDb::kForRead);
    AcDbDictionary* again = nullptr;
    ASSERT_EQ(root->getAt(u"OURS", again), Acad::eOk);
    EXPECT_EQ(keys(again), "c SECOND A2 a ");
    EXPECT_EQ(valueAt(again, u"a"), 5);
    again->close();
    EXPECT_EQ(save(), saved);
}

TEST_F(Dictionaries, an_entry_is_replaced_and_the_old_object_is_not_saved) {
    Opened ours(addDictionary());
    const AcDbObjectId old = add(ours.dictionary, u"one", 1);
    add(ours.dictionary, u"two", 2);
    add(ours.dictionary, u"ONE", 3);
    EXPECT_EQ(keys(ours.dictionary), "two ONE ");
    EXPECT_EQ(valueAt(ours.dictionary, u"one"), 3);
    EXPECT_FALSE(ours->has(old));
    AcDbXrecord* record = nullptr;
    ASSERT_EQ(acdbOpenObject(record, old, AcDb::kForRead), Acad::eOk) << "it is there all the same";
    record->close();
    ours.close();
    const std::string saved = save();
    EXPECT_EQ(saved.find(" 70\n1\n"), std::string::npos);
    EXPECT_NE(saved.find(" 70\n3\n"), std::string::npos);
}

TEST_F(Dictionaries, the_key_of_a_star_and_A_makes_a_fresh_one) {
    const Opened ours(addDictionary());
    add(ours.dictionary, u"*A");
    add(ours.dictionary, u"*a41");
    add(ours.dictionary, u"*A");
    add(ours.dictionary, u"*A");
    EXPECT_EQ(keys(ours.dictionary), "*A1 *a41 *A42 *A43 ");
    EXPECT_EQ(ours->remove(u"*A43"), Acad::eOk);
    add(ours.dictionary, u"*A");
    EXPECT_EQ(keys(ours.dictionary), "*A1 *a41 *A42 *A44 ");
}

TEST_F(Dictionaries, a_walk_outlives_what_changes_under_it) {
    Opened ours(addDictionary());
    std::vector<AcDbObjectId> ids;
    for (const char16_t* key : {u"a", u"b", u"c", u"d", u"e"})
        ids.push_back(add(ours.dictionary, key));
    const std::unique_ptr<AcDbDictionaryIterator> at(ours->newIterator());
    erase(ids[0]);
    EXPECT_EQ(std::u16string(at->name()), u"b") << "it stands on the one behind it";
    EXPECT_EQ(ours->remove(ids[2]), Acad::eOk);
    add(ours.dictionary, u"f");
    ours.close();
    AcDbObject* object = nullptr;
    ASSERT_EQ(at->getObject(object, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(object->objectId(), ids[1]);
    object->close();
    EXPECT_TRUE(at->next());
    EXPECT_EQ(at->objectId(), ids[3]);
    erase(ids[0], false);
    erase(ids[3]);
    EXPECT_EQ(std::u16string(at->name()), u"e");
    EXPECT_TRUE(at->next());
    EXPECT_EQ(std::u16string(at->name()), u"f");
    EXPECT_FALSE(at->next());
    EXPECT_TRUE(at->done());
    EXPECT_EQ(at->name(), nullptr);
    EXPECT_TRUE(at->objectId().isNull());
    EXPECT_EQ(at->getObject(object), Acad::eIteratorDone);
    open(dxf_text::drawing(""));
    EXPECT_TRUE(at->done());
}

TEST_F(Dictionaries, erased_objects_take_their_entries_along_and_bring_them_back) {
    Opened ours(addDictionary());
    const AcDbObjectId first = add(ours.dictionary, u"first", 1);
    add(ours.dictionary, u"second", 2);
    erase(first);
    EXPECT_EQ(keys(ours.dictionary), "second ");
    EXPECT_FALSE(ours->has(u"first") || ours->has(first));
    EXPECT_EQ(ours->numEntries(), 1U);
    EXPECT_EQ(ours->remove(first), Acad::eKeyNotFound);
    erase(first, false);
    EXPECT_EQ(keys(ours.dictionary), "first second ");
    // While it is erased its key is free; whoever took it keeps it.
    erase(first);
    add(ours.dictionary, u"FIRST", 3);
    erase(first, false);
    EXPECT_EQ(keys(ours.dictionary), "second FIRST ");
    EXPECT_EQ(valueAt(ours.dictionary, u"first"), 3);
    // A dictionary goes with all that it holds.
    const AcDbObjectId id = ours->objectId();
    ours.close();
    erase(id);
    EXPECT_EQ(save().find("XRECORD"), std::string::npos);
    erase(id, false);
    EXPECT_NE(save().find("XRECORD"), std::string::npos);
}

TEST_F(Dictionaries, objects_are_handed_over_open_for_write) {
    Opened root;
    auto* record = new AcDbXrecord;
    EXPECT_EQ(record->database(), nullptr);
    EXPECT_TRUE(record->objectId().isNull());
    AcDbObjectId id;
    EXPECT_EQ(root->setAt(nullptr, record, id), Acad::eInvalidKey);
    EXPECT_EQ(root->setAt(u"", record, id), Acad::eInvalidKey);
    EXPECT_EQ(root->setAt(std::u16string(256, u'x').c_str(), record, id), Acad::eInvalidKey);
    EXPECT_EQ(root->setAt(u"NEW", nullptr, id), Acad::eNullObjectPointer);
    EXPECT_TRUE(id.isNull());
    const Chain chain(acutBuildList(1, u"filled before", 0));
    EXPECT_EQ(record->setFromRbChain(chain.get()), Acad::eOk);
    const std::u16string longest(255, u'x');
    EXPECT_EQ(root->setAt(longest.c_str(), record, id), Acad::eOk);
    EXPECT_EQ(record->objectId(), id);
    EXPECT_EQ(record->database(), database());
    EXPECT_TRUE(record->isWriteEnabled());
    EXPECT_EQ(root->setAt(u"AGAIN", record, id), Acad::eAlreadyInDb);
    AcDbObject* other = nullptr;
    EXPECT_EQ(acdbOpenObject(other, id, AcDb::kForRead), Acad::eWasOpenForWrite);
    EXPECT_EQ(record->close(), Acad::eOk);
    root.close();
    const Opened reader(AcDb::kForRead);
    const std::unique_ptr<AcDbXrecord> homeless(new AcDbXrecord);
    EXPECT_EQ(reader->setAt(u"NEW", homeless.get(), id), Acad::eNotOpenForWrite);
    EXPECT_EQ(reader->remove(u"ACAD_GROUP"), Acad::eNotOpenForWrite);
    EXPECT_FALSE(reader->setName(u"ACAD_GROUP", u"X"));
    EXPECT_NE(save().find("filled before"), std::string::npos);
}

TEST_F(Dictionaries, an_object_that_is_no_record_is_not_opened_as_one) {
    const Opened root(AcDb::kForRead);
    AcDbXrecord* record = nullptr;
    EXPECT_EQ(root->getAt(u"ACAD_GROUP", record), Acad::eNotThatKindOfClass);
    EXPECT_EQ(record, nullptr);
    AcDbObject* object = nullptr;
    ASSERT_EQ(root->getAt(u"acad_group", object), Acad::eOk);
    EXPECT_NE(dynamic_cast<AcDbDictionary*>(object), nullptr);
    object->close();
    EXPECT_EQ(host::openObjectCount(), 1);
}

TEST_F(Dictionaries, the_group_dictionary_is_made_where_there_is_none) {
    AcDbDictionary* groups = nullptr;
    ASSERT_EQ(database()->getGroupDictionary(groups, AcDb::kForRead), Acad::eOk);
    EXPECT_STREQ(groups->dxfName(), "DICTIONARY");
    groups->close();
    std::string text = dxf_text::drawing("");
    text.resize(text.find("  0\nSECTION\n  2\nOBJECTS") == std::string::npos
                    ? text.find("0\nSECTION\n2\nOBJECTS")
                    : text.find("  0\nSECTION\n  2\nOBJECTS"));
    open(text + "0\nEOF\n");
    ASSERT_EQ(database()->getGroupDictionary(groups, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(groups->numEntries(), 0U);
    groups->close();
    EXPECT_NE(save().find("ACAD_GROUP"), std::string::npos);
    const AcDbDatabase empty(false, true);
    EXPECT_EQ(empty.getGroupDictionary(groups), Acad::eNoDatabase);
    EXPECT_EQ(empty.getNamedObjectsDictionary(groups), Acad::eNoDatabase);
    EXPECT_EQ(groups, nullptr);
}

TEST_F(Dictionaries, owners_reactors_and_kinds_of_ownership_are_kept) {
    std::string text = dxf_text::drawing("");
    text.insert(text.rfind("0\nENDSEC"),
                pairs("0 DICTIONARY | 5 40 | 330 C | 100 AcDbDictionary | 280 1 | 281 0 | 3 Old | "
                      "360 41 | 0 XRECORD | 5 41 | 102 {ACAD_XDICTIONARY | 360 42 | 102 } | "
                      "102 {ACAD_REACTORS | 330 30 | 330 40 | 102 } | 330 40 | 100 AcDbXrecord | "
                      "280 1 | 70 4 | 330 D"));
    text.replace(text.find("3\nACAD_GROUP"), 0, "3\nHARD\n350\n40\n");
    open(text);
    Opened root;
    AcDbDictionary* hard = nullptr;
    ASSERT_EQ(root->getAt(u"HARD", hard, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(valueAt(hard, u"Old"), 4);
    add(hard, u"New", 5);
    hard->close();
    std::string saved = save();
    EXPECT_NE(saved.find("280\n1\n281\n0\n  3\nOld\n360\n41\n  3\nNew\n360\n100\n"),
              std::string::npos)
        << "a hard owner stays one";
    EXPECT_NE(saved.find("XRECORD\n  5\n100\n102\n{ACAD_REACTORS\n330\n40\n102\n}\n330\n40\n100\n"
                         "AcDbXrecord\n280\n1\n 70\n5\n"),
              std::string::npos);
    ASSERT_EQ(root->getAt(u"HARD", hard, AcDb::kForWrite), Acad::eOk);
    AcDbObjectId id;
    ASSERT_EQ(hard->getAt(u"Old", id), Acad::eOk);
    EXPECT_EQ(hard->remove(u"Old"), Acad::eOk);
    ads_name old;
    ads_name holder;
    acdbGetAdsName(old, id);
    acdbGetAdsName(holder, hard->objectId());
    hard->close();
    root.close();
    const Chain groups(acdbEntGet(old));
    EXPECT_EQ(show(groups.get()->rbnext->rbnext->rbnext),
              "102:{ACAD_XDICTIONARY 360:<none> 102:} 102:{ACAD_REACTORS 330:<none> 102:} "
              "330:<none> 100:AcDbXrecord 280:1 70:4 330:D")
        << "no owner, and no reactor but the other one";
    EXPECT_EQ(save().find("5\n41\n"), std::string::npos);
    EXPECT_EQ(acdbDictAdd(holder, u"Back", old), RTNORM);
    EXPECT_NE(save().find("102\n{ACAD_REACTORS\n330\n30\n330\n40\n102\n}\n330\n40\n"),
              std::string::npos);
}

TEST_F(Dictionaries, what_belongs_to_an_erased_entity_goes_with_it) {
    std::string text = dxf_text::drawing(
        pairs("0 LINE | 5 30 | 102 {ACAD_XDICTIONARY | 360 40 | 102 } | 330 1F | 100 AcDbEntity | "
              "8 0 | 100 AcDbLine | 10 0.0 | 20 0.0 | 30 0.0 | 11 4.0 | 21 6.0 | 31 0.0"));
    text.insert(text.rfind("0\nENDSEC"),
                pairs("0 DICTIONARY | 5 40 | 330 30 | 100 AcDbDictionary | 3 Mine | 360 41 | "
                      "0 XRECORD | 5 41 | 330 40 | 100 AcDbXrecord | 280 1 | 1 of the line | "
                      "0 PLACEHOLDER | 5 43 | 330 FFF | 100 AcDbPlaceHolder"));
    open(text);
    EXPECT_EQ(save(), text);
    ASSERT_EQ(acdbEntDel(Ename(u"30").name), RTNORM);
    const std::string saved = save();
    EXPECT_EQ(saved.find("of the line"), std::string::npos);
    EXPECT_NE(saved.find("PLACEHOLDER"), std::string::npos) << "what has no owner is nobody's";
    ASSERT_EQ(acdbEntDel(Ename(u"30").name), RTNORM);
    EXPECT_NE(save().find("of the line"), std::string::npos);
}

// --- records ------------------------------------------------------------------------------------

TEST_F(Dictionaries, a_record_holds_groups_of_all_kinds_in_their_order) {
    const ads_point point = {1, 2, 3};
    const Ename line(u"30");
    std::string back;
    EXPECT_EQ(store(acutBuildList(1, u"text ^J\n\t泵", 70, -5, 90, 70000, 40, 2.5, 10, point, 20,
                                  7.5, 210, point, 290, 1, 330, line.name, 310, u"0AFF", 300, u"",
                                  280, 3, 102, u"{", 6, u"30", 1, u"last", 0),
                    back),
              Acad::eOk);
    const std::string expected =
        "1:text ^J\n\t泵 70:-5 90:70000 40:2.500000 10:1,2,3, 20:7.500000 210:1,2,3, 290:1 330:30 "
        "310:0AFF 300: 280:3 102:{ 6:30 1:last";
    EXPECT_EQ(back, expected);
    open(save());
    const Opened root(AcDb::kForRead);
    AcDbXrecord* record = nullptr;
    ASSERT_EQ(root->getAt(u"data", record), Acad::eOk);
    resbuf* nodes = nullptr;
    EXPECT_EQ(record->rbChain(&nodes), Acad::eOk);
    record->close();
    EXPECT_EQ(show(Chain(nodes).get()), expected) << "as the file has it";
}

TEST_F(Dictionaries, an_empty_record_is_kept_and_reads_as_nothing) {
    std::string back;
    EXPECT_EQ(store(nullptr, back), Acad::eOk);
    EXPECT_EQ(back, "");
    open(save());
    const Opened root(AcDb::kForRead);
    EXPECT_EQ(valueAt(root.dictionary, u"DATA"), -2);
}

TEST_F(Dictionaries, what_a_record_can_not_hold_is_refused_and_changes_nothing) {
    const ads_name other = {12345, 6};
    const std::u16string longest(2049, u'я');
    std::string back;
    EXPECT_EQ(store(acutBuildList(1, longest.c_str(), 0), back), Acad::eOk);
    const std::string kept = back;
    const auto refused = [&](resbuf* nodes) {
        const Chain chain(nodes);
        const Opened root(AcDb::kForRead);
        AcDbXrecord* record = nullptr;
        EXPECT_EQ(root->getAt(u"DATA", record, AcDb::kForWrite), Acad::eOk);
        const Acad::ErrorStatus status = record->setFromRbChain(chain.get());
        resbuf* read = nullptr;
        EXPECT_EQ(record->rbChain(&read), Acad::eOk);
        record->close();
        EXPECT_EQ(show(Chain(read).get()), kept);
        return status;
    };
    EXPECT_EQ(refused(acutBuildList(1, (longest + u"x").c_str(), 0)), Acad::eInvalidInput);
    EXPECT_EQ(refused(acutBuildList(310, u"0AF", 0)), Acad::eInvalidInput);
    EXPECT_EQ(refused(acutBuildList(310, u"0G", 0)), Acad::eInvalidInput);
    EXPECT_EQ(refused(acutBuildList(330, other, 0)), Acad::eInvalidInput);
    for (const int code : {5, 100, 105, 999, 1000, 1005})
        EXPECT_EQ(refused(acutBuildList(code, u"30", 0)), Acad::eBadDxfSequence) << code;
    EXPECT_EQ(refused(acutBuildList(RTSTR, u"text", 0)), Acad::eBadDxfSequence);
    EXPECT_EQ(refused(acutBuildList(RTLB, RTLE, 0)), Acad::eBadDxfSequence);
    resbuf* unknown = acutNewRb(85);
    EXPECT_EQ(refused(unknown), Acad::eBadDxfSequence);
    const Opened root(AcDb::kForRead);
    AcDbXrecord* record = nullptr;
    ASSERT_EQ(root->getAt(u"DATA", record), Acad::eOk);
    EXPECT_EQ(record->setFromRbChain(nullptr), Acad::eNotOpenForWrite);
    record->close();
}

TEST_F(Dictionaries, records_of_before_R2000_have_no_flag_in_front_of_their_data) {
    std::string text = dxf_text::drawing("", "AC1014");
    text.insert(text.rfind("0\nENDSEC"),
                pairs("0 XRECORD | 5 41 | 330 C | 100 AcDbXrecord | 280 7 | 70 4"));
    text.replace(text.find("3\nACAD_GROUP"), 0, "3\nOLD\n350\n41\n");
    open(text);
    const Opened root;
    AcDbXrecord* record = nullptr;
    ASSERT_EQ(root->getAt(u"OLD", record), Acad::eOk);
    resbuf* nodes = nullptr;
    EXPECT_EQ(record->rbChain(&nodes), Acad::eOk);
    record->close();
    EXPECT_EQ(show(Chain(nodes).get()), "280:7 70:4");
    add(root.dictionary, u"NEW", 9);
    EXPECT_NE(save().find("100\nAcDbXrecord\n 70\n9\n"), std::string::npos);
}

// --- undo, faults, memory -----------------------------------------------------------------------

TEST_F(Dictionaries, undo_brings_entries_owners_and_records_back) {
    Opened ours(addDictionary());
    const AcDbObjectId one = add(ours.dictionary, u"one", 1);
    add(ours.dictionary, u"two", 2);
    {
        const host::UndoStep step("CHANGE");
        EXPECT_EQ(ours->remove(u"one"), Acad::eOk);
        add(ours.dictionary, u"two", 22);
        EXPECT_TRUE(ours->setName(u"two", u"three"));
        add(ours.dictionary, u"ONE", 11);
    }
    EXPECT_EQ(keys(ours.dictionary), "three ONE ");
    const std::string changed = save();
    ASSERT_EQ(host::undo(1).names.size(), 1U);
    EXPECT_EQ(keys(ours.dictionary), "one two ");
    EXPECT_EQ(valueAt(ours.dictionary, u"one") * 10 + valueAt(ours.dictionary, u"two"), 12);
    EXPECT_TRUE(ours->has(one));
    EXPECT_EQ(ours->numEntries(), 2U);
    EXPECT_NE(save().find(" 70\n1\n"), std::string::npos);
    ASSERT_EQ(host::redo().names.size(), 1U);
    EXPECT_EQ(keys(ours.dictionary), "three ONE ");
    EXPECT_EQ(valueAt(ours.dictionary, u"three"), 22);
    EXPECT_EQ(save(), changed);
}

TEST_F(Dictionaries, memory_may_end) {
    kz_Malloc_failFrom(1);
    EXPECT_EQ(new AcDbXrecord, nullptr);
    EXPECT_EQ(new AcDbDictionary, nullptr);
    AcDbDictionary* root = nullptr;
    EXPECT_EQ(database()->getNamedObjectsDictionary(root), Acad::eOutOfMemory);
    EXPECT_EQ(root, nullptr);
    kz_Malloc_failFrom(0);
    const Opened again(AcDb::kForRead);
    AcDbObjectId id;
    ASSERT_EQ(again->getAt(u"ACAD_GROUP", id), Acad::eOk);
    kz_Malloc_failFrom(1);
    ACHAR* name = nullptr;
    EXPECT_EQ(again->newIterator(), nullptr);
    EXPECT_EQ(again->nameAt(id, name), Acad::eOutOfMemory);
    kz_Malloc_failFrom(0);
    EXPECT_EQ(name, nullptr);
}

}  // namespace
