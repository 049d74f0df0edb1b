/// Lists under a function: removing, searching, sorting.
#include <algorithm>

#include "kz_tls21an/text.h"
#include "lisp/builtin.h"
#include "lisp/compare.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

/// Elements of a list for which `keep` holds.
template <class Keep>
Value filtered(Interpreter& in, const Value& list, Keep keep) {
    ListBuilder kept;
    for (const Value* rest = &listArg(in, list); rest->isCons(); rest = &rest->cons()->cdr) {
        if (keep(rest->cons()->car)) kept.add(rest->cons()->car);
    }
    return kept.take();
}

Value remove(Interpreter& in, Args args) {
    return filtered(in, args[1],
                    [&](const Value& element) { return !isEqual(in, args[0], element); });
}

Value removeIf(Interpreter& in, Args args) {
    const Value function = in.functionFor(args[0]);
    return filtered(in, args[1],
                    [&](const Value& element) { return !callWith(in, function, element); });
}

Value removeIfNot(Interpreter& in, Args args) {
    const Value function = in.functionFor(args[0]);
    return filtered(in, args[1],
                    [&](const Value& element) { return bool(callWith(in, function, element)); });
}

Value memberWhere(Interpreter& in, Args args, bool wanted) {
    const Value function = in.functionFor(args[0]);
    for (const Value* rest = &listArg(in, args[1]); rest->isCons(); rest = &rest->cons()->cdr) {
        if (bool(callWith(in, function, rest->cons()->car)) == wanted) return *rest;
    }
    return Value();
}

Value memberIf(Interpreter& in, Args args) {
    return memberWhere(in, args, true);
}
Value memberIfNot(Interpreter& in, Args args) {
    return memberWhere(in, args, false);
}

Value position(Interpreter& in, Args args) {
    int32_t index = 0;
    for (const Value* rest = &listArg(in, args[1]); rest->isCons(); rest = &rest->cons()->cdr) {
        if (isEqual(in, args[0], rest->cons()->car)) return Value::integer(index);
        ++index;
    }
    return Value();
}

/// Calls a function with the elements of several lists in step, until `stop` takes a value or the
/// shortest list ends.
template <class Stop>
void walk(Interpreter& in, Args args, Stop stop) {
    const Value function = in.functionFor(args[0]);
    std::vector<const Value*> lists;
    for (const Value& list : args.subspan(1))
        lists.push_back(&listArg(in, list));
    for (;;) {
        Arguments arguments(in);
        for (const Value*& list : lists) {
            if (!list->isCons()) return;
            arguments.push(list->cons()->car);
            list = &list->cons()->cdr;
        }
        in.checkInterrupt();
        if (stop(in.call(function, arguments.all()))) return;
    }
}

Value some(Interpreter& in, Args args) {
    Value found;
    walk(in, args, [&](Value value) {
        found = std::move(value);
        return bool(found);
    });
    return found;
}

Value every(Interpreter& in, Args args) {
    bool all = true;
    walk(in, args, [&](const Value& value) { return !(all = bool(value)); });
    return in.truth(all);
}

struct Ranked {
    Value value;
    int32_t index;
};

/// Merge sort by a Lisp function. The library's sorts may leave their range when a comparison
/// contradicts itself, and a user's function may do that.
void mergeSort(Interpreter& in, const Value& before, std::span<Ranked> items,
               std::vector<Ranked>& merged) {
    if (items.size() < 2) return;
    const size_t middle = items.size() / 2;
    mergeSort(in, before, items.first(middle), merged);
    mergeSort(in, before, items.subspan(middle), merged);
    merged.clear();
    size_t left = 0, right = middle;
    while (left < middle && right < items.size()) {
        const bool rightFirst = bool(callWith(in, before, items[right].value, items[left].value));
        merged.push_back(items[rightFirst ? right++ : left++]);
    }
    // What is left of the right half stands where it belongs already.
    std::copy(items.begin() + static_cast<ptrdiff_t>(left),
              items.begin() + static_cast<ptrdiff_t>(middle), std::back_inserter(merged));
    std::move(merged.begin(), merged.end(), items.begin());
}

std::vector<Ranked> sorted(Interpreter& in, Args args) {
    std::vector<Ranked> items;
    for (const Value* rest = &listArg(in, args[0]); rest->isCons(); rest = &rest->cons()->cdr) {
        items.push_back({rest->cons()->car, static_cast<int32_t>(items.size())});
    }
    std::vector<Ranked> merged;
    merged.reserve(items.size());
    mergeSort(in, in.functionFor(args[1]), items, merged);
    return items;
}

/// Equal integers are dropped but one; all other values stay.
Value sort(Interpreter& in, Args args) {
    ListBuilder list;
    const Value* previous = nullptr;
    const std::vector<Ranked> items = sorted(in, args);
    for (const Ranked& item : items) {
        if (previous && item.value.isInteger() && previous->same(item.value)) continue;
        list.add(item.value);
        previous = &item.value;
    }
    return list.take();
}

Value sortIndices(Interpreter& in, Args args) {
    ListBuilder list;
    for (const Ranked& item : sorted(in, args))
        list.add(Value::integer(item.index));
    return list.take();
}

Value sortTexts(Interpreter& in, Args args) {
    std::vector<Value> texts;
    for (const Value* rest = &listArg(in, args[0]); rest->isCons(); rest = &rest->cons()->cdr) {
        textArg(in, rest->cons()->car);
        texts.push_back(rest->cons()->car);
    }
    std::stable_sort(texts.begin(), texts.end(), [](const Value& a, const Value& b) {
        const int order = kz::compareNoCase(a.text(), b.text());
        return order != 0 ? order < 0 : a.text() < b.text();
    });
    ListBuilder list;
    for (Value& text : texts)
        list.add(std::move(text));
    return list.take();
}

const Builtin kRows[] = {
    {"vl-remove", 2, 2, remove, "(vl-remove value list)",
     "The list without the elements equal to a value."},
    {"vl-remove-if", 2, 2, removeIf, "(vl-remove-if function list)",
     "The list without the elements that the function accepts."},
    {"vl-remove-if-not", 2, 2, removeIfNot, "(vl-remove-if-not function list)",
     "The elements that the function accepts."},
    {"vl-member-if", 2, 2, memberIf, "(vl-member-if function list)",
     "Rest of the list from the first element that the function accepts."},
    {"vl-member-if-not", 2, 2, memberIfNot, "(vl-member-if-not function list)",
     "Rest of the list from the first element that the function refuses."},
    {"vl-position", 2, 2, position, "(vl-position value list)",
     "Index of a value, counted from 0."},
    {"vl-some", 2, kAnyNumber, some, "(vl-some function list ...)",
     "First value of the function over the elements that is not nil."},
    {"vl-every", 2, kAnyNumber, every, "(vl-every function list ...)",
     "T when the function is never nil over the elements."},
    {"vl-sort", 2, 2, sort, "(vl-sort list function)",
     "The list in the order of a comparison; equal integers are kept once."},
    {"vl-sort-i", 2, 2, sortIndices, "(vl-sort-i list function)",
     "Indices of the elements in the order of a comparison."},
    {"acad_strlsort", 1, 1, sortTexts, "(acad_strlsort list)",
     "Texts in alphabetical order, in any case."},
};

}  // namespace

std::span<const Builtin> sequenceBuiltins() {
    return kRows;
}

}  // namespace host::lisp
