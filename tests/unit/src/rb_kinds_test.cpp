/// Kinds of result-buffer values.
#include "chain_text.h"

namespace {

using test::ChainTest;

class RbKinds : public ChainTest {};

TEST_F(RbKinds, CodesFoldIntoKindsRangeByRange) {
    struct Range {
        int first;
        int last;
        int kind;
    };
    const Range ranges[] = {
        {-5, -5, RTNONE},
        {-4, -4, KZ_RB_STRING},
        {-3, -3, KZ_RB_SHORT},
        {-2, -1, KZ_RB_ENAME},
        {0, 4, KZ_RB_STRING},
        {5, 5, KZ_RB_HANDLE},
        {6, 9, KZ_RB_STRING},
        {10, 19, KZ_RB_POINT},
        {20, 59, KZ_RB_REAL},
        {60, 79, KZ_RB_SHORT},
        {80, 209, RTNONE},
        {210, 239, KZ_RB_POINT},
        {240, 998, RTNONE},
        {999, 999, KZ_RB_STRING},
        {1000, 1001, KZ_RB_STRING},
        {1002, 1002, 1002},
        {1003, 1004, KZ_RB_STRING},
        {1005, 1005, KZ_RB_HANDLE},
        {1010, 1019, KZ_RB_POINT},
        {1040, 1059, KZ_RB_REAL},
        {1070, 1070, KZ_RB_SHORT},
        {1071, 1071, KZ_RB_LONG},
        {1072, 1079, KZ_RB_SHORT},
        {2000, 2000, RTNONE},
        {5001, 5001, KZ_RB_REAL},
        {5002, 5002, KZ_RB_POINT},
        {5003, 5003, KZ_RB_SHORT},
        {5004, 5004, KZ_RB_REAL},
        {5005, 5005, KZ_RB_STRING},
        {5006, 5006, KZ_RB_ENAME},
        {5007, 5007, KZ_RB_SELSET},
        {5008, 5008, KZ_RB_REAL},
        {5009, 5009, KZ_RB_POINT},
        {5010, 5010, KZ_RB_LONG},
        {5016, 5016, KZ_RB_LISTBEGIN},
        {5017, 5017, KZ_RB_LISTEND},
        {5018, 5018, RTDOTE},
        {5019, 5019, KZ_RB_NIL},
        {5021, 5021, KZ_RB_T},
        {7777, 7777, 7777},
    };
    for (const Range& range : ranges) {
        for (int code = range.first; code <= range.last; ++code) {
            EXPECT_EQ(kz_Rb_type(code), range.kind) << "code " << code;
        }
    }
}

TEST_F(RbKinds, BracesReadAsListMarkersAndNothingAsNil) {
    const test::Arguments nodes("1002:{ 1002:} 1000:{ 1005:2F 5");
    resbuf* node = nodes.at;
    EXPECT_EQ(kz_Rb_typeRb(node), KZ_RB_LISTBEGIN);
    EXPECT_EQ(kz_Rb_typeRb(node->rbnext), KZ_RB_LISTEND);
    EXPECT_EQ(kz_Rb_typeRb(node->rbnext->rbnext), KZ_RB_STRING);
    EXPECT_EQ(kz_Rb_typeRb(nullptr), KZ_RB_NIL);
    for (int texts = 0; texts < 4; ++texts, node = node->rbnext) {
        EXPECT_EQ(kz_Rb_typeString(node), 1) << test::show(node);
    }
    EXPECT_EQ(kz_Rb_typeString(node), 0);
    EXPECT_EQ(kz_Rb_typeString(nullptr), 0);
}

}  // namespace
