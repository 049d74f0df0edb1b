/// Field lists to and from chains, in the Lisp form and the XData form.
#include "chain_text.h"

namespace {

using test::Arguments;
using test::ChainTest;
using test::show;
using test::take;

class FldListConversion : public ChainTest {
  protected:
    /// Reads a field list argument; "refused" when it is none.
    static std::string read(const std::string& text) {
        Arguments arguments(text);
        kz_FldList* list = nullptr;
        if (kz_Rb_getNextFldList(&list, &arguments.at, nullptr, 0) == 0) {
            EXPECT_EQ(list, nullptr);
            return "refused";
        }
        EXPECT_EQ(arguments.rest(), "") << text;
        return take(list);
    }

    static std::string readXData(const std::string& text) {
        Arguments arguments(text);
        kz_FldList* list = nullptr;
        return kz_Rb_convertRbToFldList(&list, &arguments.at, 1) == 1 ? take(list) : "refused";
    }

    /// The list that a Lisp form makes; the caller destroys it.
    static kz_FldList* listOf(const std::string& text) {
        Arguments arguments(text);
        kz_FldList* list = kz_FldList_fromRb(&arguments.at, 0);
        EXPECT_NE(list, nullptr) << text;
        return list;
    }
};

TEST_F(FldListConversion, LispFormsReadAsFields) {
    const std::pair<const char*, const char*> cases[] = {
        {"( ( \"a\" 1 ) ( \"b\" \"x\" \"y\" ) )", "A:I=1 B:V[C=x C=y]"},
        {"( \"a\" ( \"b\" ) )", "A:U B:U"},
        {"( ( \"a\" 70000L 2.5 T nil ) )", "A:V[L=70000 N=2.5 I=1 I=0]"},
        {"( ( \"a\" nil ) )", "A:I=0"},
        {"( ( \"a\" 5:2F ) )", "A:H=2F"},
        {"( ( \"a\" 1 ) ( \"A\" 2 ) )", "A:I=2"},
        {"( )", ""},
        // points and their tags
        {"( ( \"a\" <1,2,3> \"M\" ) )", "A:M=1,2,3"},
        {"( ( \"a\" <1,2,3> \"displacement\" ) )", "A:D=1,2,3"},
        {"( ( \"a\" <1,2,3> \"O\" <4,5,6> \"other\" 7 ) )", "A:V[O=1,2,3 O=4,5,6 I=7]"},
        {"( ( \"a\" <1,2,3> \"x\" ) )", "A:P=1,2,3"},
        {"( ( \"a\" <1,2,3> ) )", "A:P=1,2,3"},
        // pairs of group code and value
        {"( ( \"a\" ( 1005 \"2F\" ) ) )", "A:H=2F"},
        {"( ( \"a\" ( 1005 \"2F\" .) ) )", "A:H=2F"},
        {"( ( \"a\" ( 1011 1.0 2.0 3.0 ) 8 ) )", "A:V[M=1,2,3 I=8]"},
        {"( ( \"a\" ( 1013 <1,2,3> ) ) )", "A:O=1,2,3"},
        {"( ( \"a\" 8 ( 1040 2.5 .) ( 1000 \"x\" ) ( 1071 9L ) ) )", "A:V[I=8 N=2.5 C=x L=9]"},
        // only one level of sublists has meaning: a deeper one opens a field
        {"( ( \"a\" ( \"b\" 1 ) 2 ) )", "B:V[I=1 I=2]"},
    };
    for (const auto& [form, fields] : cases)
        EXPECT_EQ(read(form), fields) << form;
}

TEST_F(FldListConversion, WhatIsNoFieldListIsRefusedWithItsReason) {
    const std::string improper = " value in Field list in kz_Rb_convertRbToFldList.";
    const std::string pair =
        "Unable to interpret resbuf node for Field list in kz_Rb_convertRbToFldList.";
    const std::string mismatch = "Mismatched variable type passed to kz_Rb_convertRbNode.\n";
    const std::pair<const char*, std::string> cases[] = {
        {"( 1 2 )", "Improper use of int" + improper},
        {"( 5L )", "Improper use of long" + improper},
        {"( ( 2.5 ) )", "Improper use of real" + improper},
        {"( 5:2F )", "Improper use of handle" + improper},
        {"( T )", "Improper use of t" + improper},
        {"( nil )", "Improper use of nil" + improper},
        {"( <1,2,3> )", "Improper use of point" + improper},
        {"( ( \"a\" ename:5 ) )", "Unsupport variable type passed to kz_Rb_convertRbToFldList."},
        {"( ( \"a\" ( 1071 5 ) ) )", mismatch + pair},
        {"( ( \"a\" ( 1040 5 ) ) )", mismatch + pair},
        {"( ( \"a\" ( 330 5 ) ) )", mismatch + pair},
        {"( ( 1005 \"2F\" ) )", pair},
        {"( ( \"a\" ( 10 1.0 2.0 3.0 ) ) )", pair},
        {"( ( \"a\" ( -1 ename:5 ) ) )",
         "Unsupport variable type passed to kz_Rb_convertRbNode.\n" + pair},
    };
    traceAt(0);
    for (const auto& [form, reason] : cases) {
        EXPECT_EQ(read(form), "refused") << form;
        EXPECT_EQ(traced(), reason + "\nArgument error in kz_Rb_getNextFldList.");
    }
}

TEST_F(FldListConversion, ARefusalDestroysTheCallersListAndPassesTheNode) {
    kz_FldList* list = listOf("( ( \"kept\" 1 ) )");
    Arguments arguments("( \"a\" ) 5 T");
    EXPECT_EQ(kz_Rb_convertRbToFldList(&list, &arguments.at, 0), 0);
    EXPECT_EQ(list, nullptr);
    EXPECT_EQ(arguments.rest(), "T");
}

TEST_F(FldListConversion, ReadingAddsToTheListThatIsThere) {
    kz_FldList* list = listOf("( ( \"kept\" 1 ) ( \"b\" 1 ) )");
    Arguments arguments("( \"b\" \"new\" ) ) T");
    EXPECT_EQ(kz_Rb_convertRbToFldList(&list, &arguments.at, 0), 1);
    EXPECT_EQ(arguments.rest(), "T");
    EXPECT_EQ(take(list), "KEPT:I=1 B:C=new");
}

TEST_F(FldListConversion, AFieldListArgumentIsNeverSearchedBehindMarkers) {
    traceAt(0);
    Arguments arguments("nil 5 ) ( ( \"a\" 1 ) )");
    kz_FldList* list = nullptr;
    int is_nil = 99;
    EXPECT_EQ(kz_Rb_getNextFldList(&list, &arguments.at, &is_nil, 0), 0);
    EXPECT_EQ(traced(), "Argument required in kz_Rb_getNextFldList.");
    EXPECT_EQ(kz_Rb_getNextFldList(&list, &arguments.at, &is_nil, 1), 1);
    EXPECT_EQ(is_nil, 1);
    EXPECT_EQ(kz_Rb_getNextFldList(&list, &arguments.at, &is_nil, 1), 0);
    EXPECT_EQ(is_nil, 0);
    EXPECT_EQ(traced(), "Incorrect argument passed to kz_Rb_getNextFldList.");
    EXPECT_EQ(arguments.rest(), "5 ) ( ( \"a\" 1 ) )");
}

TEST_F(FldListConversion, FieldsInARowReadAsOneListWhenTheMarkerIsKept) {
    Arguments row("( \"a\" 1 ) ( \"b\" 2 )");
    EXPECT_EQ(take(kz_FldList_fromRb(&row.at, 1)), "A:I=1 B:I=2");
    traceAt(0);
    Arguments others("nil 5 ( 1 )");
    EXPECT_EQ(kz_FldList_fromRb(&others.at, 0), nullptr);
    EXPECT_EQ(traced(), "");
    EXPECT_EQ(kz_FldList_fromRb(&others.at, 0), nullptr);
    EXPECT_EQ(traced(), "Incorrect argument passed to kz_FldList_fromRb.");
    EXPECT_EQ(others.rest(), "5 ( 1 )");
    others.at = others.at->rbnext;
    EXPECT_EQ(kz_FldList_fromRb(&others.at, 0), nullptr);
    EXPECT_NE(traced().find("Argument error in kz_FldList_fromRb."), std::string::npos);
}

TEST_F(FldListConversion, ExtendedDataReadsByGroupCode) {
    const std::pair<const char*, const char*> cases[] = {
        {"1002:{ 1000:flag 1070:2 1002:}", "FLAG:I=2"},
        {"1002:{ 1000:A 1002:} 1002:{ 1000:B 1071:70000 1040:2.5 1002:}", "A:U B:V[L=70000 N=2.5]"},
        {"1002:{ 1000:A 1005:2F 1000:x 1003:LAYER 1042:2.0 1002:}", "A:V[H=2F C=x C=LAYER N=2]"},
        {"1002:{ 1000:A 1010:1,0,0 1011:2,0,0 1012:3,0,0 1013:4,0,0 1002:}",
         "A:V[P=1,0,0 M=2,0,0 D=3,0,0 O=4,0,0]"},
        // a point that no field has leaves no value, but a text behind it stays a value
        {"1002:{ 1000:A 1014:1,0,0 1000:M 1002:}", "A:C=M"},
        {"1002:{ 1000:A 1014:1,0,0 1002:}", ""},
        // a group that occurs twice: the later one holds
        {"1002:{ 1000:A 1070:1 1002:} 1002:{ 1000:A 1070:2 1002:}", "A:I=2"},
        // a further application reads as a field
        {"1002:{ 1000:A 1070:1 1002:} 1001:OTHER 1002:{ 1000:B 1070:2 1002:}",
         "A:I=1 OTHER:U B:I=2"},
        {"1070:2", "refused"},
    };
    for (const auto& [nodes, fields] : cases)
        EXPECT_EQ(readXData(nodes), fields) << nodes;
}

/// Appends every field of the list in this form.
std::string written(kz_FldList* list, int xdata, int open, int close, int wrap, int markers) {
    resbuf* chain = nullptr;
    for (kz_FldList_start(list); kz_FldList_eol(list) == 0; kz_FldList_next(list)) {
        EXPECT_EQ(kz_Rb_convertFldListToRbExt(&chain, list, xdata, open, close, wrap, markers), 1);
    }
    return take(chain);
}

TEST_F(FldListConversion, AFieldIsWrittenAsTheFlagsSay) {
    kz_FldList* list = listOf("( ( \"v\" 1 2 ) ( \"p\" <1,2,3> \"D\" ) )");
    EXPECT_EQ(written(list, 1, 1, 1, 1, 0),
              "1002:{ 1000:V 1070:1 1070:2 1002:} 1002:{ 1000:P 1012:1,2,3 1002:}");
    EXPECT_EQ(written(list, 1, 0, 1, 1, 0), "1070:1 1070:2 1002:} 1012:1,2,3 1002:}");
    EXPECT_EQ(written(list, 0, 1, 1, 0, 0), "1 2 <1,2,3>");
    EXPECT_EQ(written(list, 0, 1, 1, 1, 0), "( \"V\" 1 2 ) ( \"P\" <1,2,3> )");
    EXPECT_EQ(written(list, 1, 1, 1, 1, 1), "( 1000:V 1070:1 1070:2 ) ( 1000:P 1012:1,2,3 )");
    EXPECT_EQ(written(list, 0, 1, 0, 1, 1), "( \"V\" 1 2 ( \"P\" <1,2,3>");
    kz_FldList_destroy(list);
}

TEST_F(FldListConversion, EveryTypeIsWrittenUnderItsCodes) {
    kz_FldList* list = listOf(
        "( ( \"c\" \"x\" ) ( \"h\" 5:2F ) ( \"i\" 1 ) ( \"l\" 2L ) ( \"n\" 2.5 ) ( \"p\" <1,0,0> ) "
        "( \"m\" <1,0,0> \"M\" ) ( \"d\" <1,0,0> \"D\" ) ( \"o\" <1,0,0> \"O\" ) \"u\" )");
    EXPECT_EQ(written(list, 1, 0, 0, 0, 0),
              "1000:x 1005:2F 1070:1 1071:2 1040:2.5 1010:1,0,0 1011:1,0,0 1012:1,0,0 1013:1,0,0");
    EXPECT_EQ(written(list, 0, 0, 0, 0, 0),
              "\"x\" \"2F\" 1 2L 2.5 <1,0,0> <1,0,0> <1,0,0> <1,0,0>");
    kz_FldList_destroy(list);
}

TEST_F(FldListConversion, AnUnknownLetterFailsOnlyInExtendedData) {
    kz_FldList* list = listOf("( ( \"a\" 1 ) )");
    kz_FldList_start(list);
    kz_FldList_curr(list)->type = 'Q';
    resbuf* chain = nullptr;
    EXPECT_EQ(kz_Rb_convertFldListToRb(&chain, list, 1, 1, 1, 1), 0);
    EXPECT_EQ(take(chain), "1002:{ 1000:A 1002:}") << "the field is closed all the same";
    chain = nullptr;
    EXPECT_EQ(kz_Rb_convertFldListToRb(&chain, list, 0, 1, 1, 1), 1);
    EXPECT_EQ(take(chain), "( \"A\" nil )");
    kz_FldList_curr(list)->type = 'I';
    kz_FldList_next(list);
    chain = nullptr;
    EXPECT_EQ(kz_Rb_convertFldListToRb(&chain, list, 0, 1, 1, 1), 0) << "no current field";
    kz_FldList_destroy(list);
}

TEST_F(FldListConversion, AWholeListIsWrittenForLisp) {
    kz_FldList* list = listOf("( ( \"a\" 1 ) \"u\" )");
    EXPECT_EQ(take(kz_FldList_toRb(list, 1, 0)), "( \"A\" 1 ) ( \"U\" )");
    EXPECT_EQ(take(kz_FldList_toRb(list, 1, 1)), "( ( \"A\" 1 ) ( \"U\" ) )");
    EXPECT_EQ(take(kz_FldList_toRb(list, 0, 0)), "\"A\" \"U\"");
    EXPECT_EQ(take(kz_FldList_toRbForInvoke(list, 1, 1)), "( ( \"A\" 1 ) ( \"U\" ) )");
    kz_FldList_destroy(list);
    kz_FldList* empty = kz_FldList_create(nullptr, 0, nullptr, 0);
    EXPECT_EQ(kz_FldList_toRb(empty, 1, 0), nullptr);
    EXPECT_EQ(take(kz_FldList_toRb(empty, 1, 1)), "( )");
    kz_FldList_destroy(empty);
    EXPECT_EQ(kz_FldList_toRb(nullptr, 1, 1), nullptr);
}

TEST_F(FldListConversion, NamesAndTextsAreCutAtTheirBuffers) {
    const std::string longer(600, 'x');
    kz_FldList* list = listOf("( ( \"" + longer + "\" \"" + longer + "\" ) )");
    kz_FldList_start(list);
    EXPECT_EQ(kz_Str_len(kz_FldList_curr(list)->name), 511U);
    resbuf* chain = kz_FldList_toRb(list, 1, 0);
    EXPECT_EQ(kz_Str_len(chain->rbnext->resval.rstring), 511U);
    EXPECT_EQ(kz_Str_len(chain->rbnext->rbnext->resval.rstring), 511U);
    kz_ResBuf_release(chain);
    kz_FldList_destroy(list);
}

}  // namespace
