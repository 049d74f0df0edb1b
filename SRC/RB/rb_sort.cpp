/// Comparison and sorting. The comparison is no strict order, which is why short lists are sorted
/// in the way that defines the result and only long ones in the fast way.
#include <cmath>

#include "kz/kz_rb.h"

namespace {

constexpr double kTolerance = 0.001;
/// Lists up to this length are sorted by selection.
constexpr int kSelectionLimit = 64;

int compareNumbers(double a, double b) {
    const double difference = a - b;
    if (std::fabs(difference) < kTolerance) return 0;
    return difference < 0.0 ? -1 : 1;
}

int compareTexts(const kz_Char* a, const kz_Char* b) {
    if (a == nullptr || b == nullptr) return (a != nullptr) - (b != nullptr);
    while (*a != 0 && *a == *b) {
        ++a;
        ++b;
    }
    return static_cast<int>(*a) - static_cast<int>(*b);
}

int compareValues(int kind, const resbuf* a, const resbuf* b) {
    switch (kind) {
        case KZ_RB_REAL:
        case KZ_RB_LONG:
        case KZ_RB_SHORT:
            return compareNumbers(kz_Rb_num(a), kz_Rb_num(b));
        case KZ_RB_POINT:
            return acutDistance(a->resval.rpoint, b->resval.rpoint) < kTolerance ? 0 : 1;
        case KZ_RB_STRING:
        case KZ_RB_HANDLE:
        case 1002:
            return compareTexts(a->resval.rstring, b->resval.rstring);
        case KZ_RB_ENAME:
        case KZ_RB_SELSET:
            return ads_name_equal(a->resval.rlname, b->resval.rlname) ? 0 : -1;
        default:
            return 0;
    }
}

/// The link to the first of the smallest nodes from `link` on.
resbuf** smallestFrom(resbuf** link) {
    resbuf** smallest = link;
    for (resbuf** at = &(*link)->rbnext; *at != nullptr; at = &(*at)->rbnext) {
        if (kz_Rb_cmp(*at, *smallest) < 0) smallest = at;
    }
    return smallest;
}

void selectionSort(resbuf** list) {
    for (resbuf** place = list; *place != nullptr; place = &(*place)->rbnext) {
        resbuf** smallest = smallestFrom(place);
        resbuf* node = *smallest;
        *smallest = node->rbnext;
        node->rbnext = *place;
        *place = node;
    }
}

/// Merges two sorted lists; of equal nodes that of `first` comes first.
resbuf* merge(resbuf* first, resbuf* second) {
    resbuf* head = nullptr;
    resbuf** link = &head;
    while (first != nullptr && second != nullptr) {
        resbuf*& smaller = kz_Rb_cmp(second, first) < 0 ? second : first;
        *link = smaller;
        link = &smaller->rbnext;
        smaller = smaller->rbnext;
    }
    *link = first != nullptr ? first : second;
    return head;
}

/// Takes the first `length` nodes (1 or more) off the list and sorts them.
resbuf* mergeSort(resbuf*& list, int length) {
    if (length == 1) {
        resbuf* node = list;
        list = node->rbnext;
        node->rbnext = nullptr;
        return node;
    }
    resbuf* first = mergeSort(list, length / 2);
    resbuf* second = mergeSort(list, length - length / 2);
    return merge(first, second);
}

}  // namespace

int kz_Rb_cmp(const resbuf* a, const resbuf* b) {
    if (a == nullptr || b == nullptr) return -2;
    if (a->restype != b->restype) return a->restype < b->restype ? -1 : 1;
    return compareValues(kz_Rb_type(a->restype), a, b);
}

void kz_Rb_sort(resbuf** list) {
    if (list == nullptr) return;
    const int length = kz_Rb_length(*list);
    if (length <= kSelectionLimit) {
        selectionSort(list);
    } else {
        resbuf* rest = *list;
        *list = mergeSort(rest, length);
    }
}
