/// The linked list: position rules, destructors, and lists that are NULL. Elements are digits, so
/// that a list can be compared as a text.
#include "kz_tls21an/lnklist.h"

#include <gtest/gtest.h>

#include <string>

#include "kz_tls21an/memory.h"
#include "kz_tls21an/pointlist.h"

namespace {

char elements[] = "0123456789";
std::string destroyed;

void noteDestroyed(void* element) {
    destroyed += *static_cast<char*>(element);
}

class LnkList : public testing::Test {
  protected:
    LnkList() : list_(kz_LnkList_create()) { destroyed.clear(); }
    ~LnkList() override { kz_LnkList_destroy(list_, nullptr); }

    void fill(const std::string& digits) {
        for (const char digit : digits)
            kz_LnkList_insEnd(list_, &elements[digit - '0']);
    }

    /// All elements as a text, with the position left where it was; checks the way back, too.
    std::string text() {
        const kz_LnkPos position = kz_LnkList_getPos(list_);
        std::string forward;
        for (kz_LnkList_start(list_); !kz_LnkList_eol(list_); kz_LnkList_next(list_)) {
            forward += current();
        }
        std::string back;
        for (kz_LnkList_end(list_); !kz_LnkList_eol(list_); kz_LnkList_prev(list_)) {
            back += current();
        }
        EXPECT_EQ(std::string(forward.rbegin(), forward.rend()), back);
        EXPECT_EQ(kz_LnkList_length(list_), static_cast<int>(forward.size()));
        kz_LnkList_setPos(list_, position);
        return forward;
    }

    char current() {
        const auto* element = static_cast<char*>(kz_LnkList_getCurr(list_));
        return element ? *element : '-';
    }

    kz_LnkList* list_;
};

TEST_F(LnkList, insertingLeavesThePositionOnItsElement) {
    fill("12");
    EXPECT_EQ(current(), '-');
    kz_LnkList_start(list_);
    kz_LnkList_next(list_);
    kz_LnkList_insStart(list_, &elements[0]);
    kz_LnkList_insBefore(list_, &elements[5]);
    fill("3");
    EXPECT_EQ(current(), '2');
    EXPECT_EQ(text(), "01523");
}

TEST_F(LnkList, insBeforeAppendsAtTheEnd) {
    fill("12");
    kz_LnkList_insBefore(list_, &elements[3]);
    EXPECT_EQ(text(), "123");
}

TEST_F(LnkList, removingMovesThePositionToTheFollowingElement) {
    fill("12345");
    kz_LnkList_start(list_);
    kz_LnkList_next(list_);
    EXPECT_EQ(kz_LnkList_delCurr(list_, noteDestroyed), 1);
    EXPECT_EQ(current(), '3');
    EXPECT_EQ(kz_LnkList_delNth(list_, 0, noteDestroyed), 1);
    EXPECT_EQ(current(), '3');
    EXPECT_EQ(kz_LnkList_delNth(list_, 0, noteDestroyed), 1);
    EXPECT_EQ(current(), '4');
    kz_LnkList_end(list_);
    EXPECT_EQ(kz_LnkList_delCurr(list_, noteDestroyed), 1);
    EXPECT_EQ(kz_LnkList_delCurr(list_, noteDestroyed), 0);
    EXPECT_EQ(kz_LnkList_delNth(list_, 1, noteDestroyed), 0);
    EXPECT_EQ(kz_LnkList_delNth(list_, -1, noteDestroyed), 0);
    EXPECT_EQ(text(), "4");
    EXPECT_EQ(destroyed, "2135");
}

TEST_F(LnkList, delAllDestroysInOrderAndTheListStaysUsable) {
    fill("123");
    kz_LnkList_start(list_);
    EXPECT_EQ(kz_LnkList_delAll(list_, noteDestroyed), 1);
    EXPECT_EQ(destroyed, "123");
    EXPECT_EQ(kz_LnkList_eol(list_), 1);
    fill("4");
    EXPECT_EQ(text(), "4");
}

TEST_F(LnkList, stepsTellWhetherAnElementIsCurrent) {
    EXPECT_EQ(kz_LnkList_start(list_), 0);
    fill("123");
    EXPECT_EQ(kz_LnkList_start(list_), 1);
    EXPECT_EQ(kz_LnkList_skip(list_, 2), 1);
    EXPECT_EQ(kz_LnkList_isLast(list_), 1);
    EXPECT_EQ(kz_LnkList_skip(list_, -1), 0);
    EXPECT_EQ(current(), '3');
    EXPECT_EQ(kz_LnkList_next(list_), 0);
    EXPECT_EQ(kz_LnkList_next(list_), 0);
    EXPECT_EQ(kz_LnkList_isLast(list_), 0);
    kz_LnkList_start(list_);
    EXPECT_EQ(kz_LnkList_prev(list_), 0);
    EXPECT_EQ(kz_LnkList_eol(list_), 1);
}

TEST_F(LnkList, getNthFindsEveryElementFromEitherEnd) {
    fill("0123456789");
    for (int n = 0; n < 10; ++n)
        EXPECT_EQ(kz_LnkList_getNth(list_, n), &elements[n]);
    EXPECT_EQ(kz_LnkList_getNth(list_, 10), nullptr);
    EXPECT_EQ(kz_LnkList_getNth(list_, -1), nullptr);
}

TEST_F(LnkList, joinMovesTheElementsAndConsumesTheTail) {
    const auto tail = [](char* element) {
        kz_LnkList* made = kz_LnkList_create();
        if (element) kz_LnkList_insEnd(made, element);
        return made;
    };
    EXPECT_EQ(kz_LnkList_join(list_, tail(&elements[1])), 1);
    EXPECT_EQ(kz_LnkList_join(list_, tail(nullptr)), 1);
    EXPECT_EQ(kz_LnkList_join(list_, tail(&elements[2])), 1);
    EXPECT_EQ(kz_LnkList_join(list_, list_), 0);
    EXPECT_EQ(kz_LnkList_join(list_, nullptr), 0);
    EXPECT_EQ(text(), "12");
}

TEST_F(LnkList, aNullListIsEmptyAndCannotChange) {
    EXPECT_EQ(kz_LnkList_destroy(nullptr, nullptr), 0);
    EXPECT_EQ(kz_LnkList_insEnd(nullptr, elements), nullptr);
    EXPECT_EQ(kz_LnkList_eol(nullptr), 1);
    EXPECT_EQ(kz_LnkList_length(nullptr), 0);
    EXPECT_EQ(kz_LnkList_getNth(nullptr, 0), nullptr);
    EXPECT_EQ(kz_LnkList_delNth(nullptr, 0, nullptr), 0);
    EXPECT_EQ(kz_LnkList_skip(nullptr, 1), 0);
    kz_LnkList_setPos(nullptr, kz_LnkList_getPos(nullptr));
}

TEST_F(LnkList, aShortageLeavesTheListAsItWas) {
    fill("12");
    kz_Malloc_failFrom(1);
    EXPECT_EQ(kz_LnkList_insEnd(list_, elements), nullptr);
    EXPECT_EQ(kz_LnkList_insStart(list_, elements), nullptr);
    EXPECT_EQ(kz_LnkList_create(), nullptr);
    kz_Malloc_failFrom(0);
    EXPECT_EQ(text(), "12");
}

TEST(PointList, keepsCopiesOfItsPoints) {
    kz_PointList* list = kz_PointList_create();
    kz_Point point{1.0, 2.0, 3.0};
    EXPECT_EQ(kz_PointList_insEnd(list, &point), 1);
    point.x = 9.0;
    EXPECT_EQ(kz_PointList_insEnd(list, nullptr), 0);
    kz_Malloc_failFrom(2);  // the copy is made, the node is not
    EXPECT_EQ(kz_PointList_insEnd(list, &point), 0);
    kz_Malloc_failFrom(0);
    EXPECT_EQ(kz_PointList_length(list), 1);
    kz_PointList_start(list);
    EXPECT_EQ(kz_PointList_getCurr(list)->x, 1.0);
    EXPECT_EQ(kz_PointList_next(list), 0);
    EXPECT_EQ(kz_PointList_eol(list), 1);
    EXPECT_EQ(kz_PointList_destroy(list), 1);
}

}  // namespace
