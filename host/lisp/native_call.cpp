/// Calls of native functions.
#include "lisp/native_call.h"

#include <algorithm>

#include "base/call_frame.h"
#include "base/resbuf.h"
#include "lisp/chain.h"
#include "lisp/printer.h"
#include "lisp/selection_set.h"

namespace host::lisp {

namespace {

/// Number of elements when a list holds two or three reals and nothing else, else 0.
int pointSize(const Value& list) {
    int count = 0;
    const Value* rest = &list;
    for (; rest->isCons() && rest->cons()->car.isReal(); rest = &rest->cons()->cdr) {
        if (++count > 3) return 0;
    }
    return rest->isNil() && count >= 2 ? count : 0;
}

void addPoint(ChainBuilder& chain, const Value& list, int size) {
    resbuf& node = chain.add(size == 2 ? RTPOINT : RT3DPOINT);
    node.resval.rpoint[2] = 0.0;
    const Value* rest = &list;
    for (int i = 0; i < size; ++i, rest = &rest->cons()->cdr) {
        node.resval.rpoint[i] = rest->cons()->car.real();
    }
}

void addInteger(ChainBuilder& chain, int32_t number) {
    if (number == static_cast<int16_t>(number)) {
        chain.add(RTSHORT).resval.rint = static_cast<int16_t>(number);
    } else {
        chain.add(RTLONG).resval.rlong = number;
    }
}

void addValue(Interpreter& in, ChainBuilder& chain, const Value& value);

void addList(Interpreter& in, ChainBuilder& chain, const Value& list) {
    in.checkStack();
    if (const int size = pointSize(list)) return addPoint(chain, list, size);
    chain.add(RTLB);
    const Value* rest = &list;
    for (; rest->isCons(); rest = &rest->cons()->cdr)
        addValue(in, chain, rest->cons()->car);
    if (rest->isNil()) {
        chain.add(RTLE);
    } else {
        addValue(in, chain, *rest);
        chain.add(RTDOTE);
    }
}

void addValue(Interpreter& in, ChainBuilder& chain, const Value& value) {
    if (value.isNil()) {
        chain.add(RTNIL);
    } else if (value.isInteger()) {
        addInteger(chain, value.integer());
    } else if (value.isReal()) {
        chain.add(RTREAL).resval.rreal = value.real();
    } else if (value.isText()) {
        chain.addText(RTSTR, value.text());
    } else if (value.isCons()) {
        addList(in, chain, value);
    } else if (value.is(Kind::EntityName)) {
        chain.addName(RTENAME, value.as<EntityName>()->name);
    } else if (value.is(Kind::SelectionSet)) {
        chain.addName(RTPICKS, value.as<SelectionSet>()->name);
    } else if (value.same(in.nothing())) {
        chain.add(RTVOID);
    } else if (value.isSymbol() && value.symbol() == in.symbols.t) {
        chain.add(RTT);
    } else {
        chain.addText(RTSTR, printed(value, PrintForm::Plain));
    }
}

Value pointValue(const ads_point point, int size) {
    Value rest = size == 3 ? makeList(Value::real(point[2])) : Value();
    return makeCons(Value::real(point[0]), makeCons(Value::real(point[1]), std::move(rest)));
}

}  // namespace

Value nodeValue(Interpreter& in, const resbuf& node) {
    switch (node.restype) {
        case RTT:
            return in.truth(true);
        case RTVOID:
            return in.nothing();
        case RTPICKS:
            return selectionSetValue(node.resval.rlname);
        case RTPOINT:
            return pointValue(node.resval.rpoint, 2);
        default:
            break;
    }
    switch (valueKind(node.restype)) {
        case ValueKind::Text:
            return node.resval.rstring ? makeText(node.resval.rstring) : Value();
        case ValueKind::Short:
            return Value::integer(node.resval.rint);
        case ValueKind::Long:
            return Value::integer(node.resval.rlong);
        case ValueKind::Int64:
            return Value::real(static_cast<double>(node.resval.mnInt64));
        case ValueKind::Real:
            return Value::real(node.resval.rreal);
        case ValueKind::Point:
            return pointValue(node.resval.rpoint, 3);
        case ValueKind::Name:
            return makeEntityName(node.resval.rlname);
        case ValueKind::None:
            break;
    }
    return Value();
}

namespace {

/// A dotted pair is written RTLB a b RTDOTE or RTLB a RTDOTE b RTLE. In the first form RTDOTE
/// stands in the place of RTLE, so the counts of the markers tell which form a chain has.
bool dotStandsBetween(const resbuf* chain) {
    int open = 0, closed = 0;
    for (const resbuf* node = chain; node; node = node->rbnext) {
        open += node->restype == RTLB;
        closed += node->restype == RTLE;
    }
    return open == closed;
}

/// The lists of a chain that are open, as one row of values with the place where each list begins.
class ListStack {
  public:
    void open() { lists_.push_back({values_.size(), false}); }
    bool isOpen() const { return !lists_.empty(); }
    void add(Value value) { values_.push_back(std::move(value)); }
    void markDotted() { lists_.back().dotted = true; }
    /// Ends the innermost list; the last value is its tail when it is dotted.
    void close(bool dotted) {
        const size_t begin = lists_.back().begin;
        dotted = (dotted || lists_.back().dotted) && values_.size() > begin;
        lists_.pop_back();
        Value list;
        if (dotted) list = take();
        while (values_.size() > begin)
            list = makeCons(take(), std::move(list));
        values_.push_back(std::move(list));
    }
    Value result() const { return values_.empty() ? Value() : values_.front(); }

  private:
    struct List {
        size_t begin;
        bool dotted;
    };
    Value take() {
        Value value = std::move(values_.back());
        values_.pop_back();
        return value;
    }

    std::vector<Value> values_;
    std::vector<List> lists_;
};

}  // namespace

Value chainValue(Interpreter& in, const resbuf* chain) {
    if (!chain->rbnext && chain->restype != RTLB) return nodeValue(in, *chain);
    const bool between = dotStandsBetween(chain);
    ListStack lists;
    for (const resbuf* node = chain; node; node = node->rbnext) {
        if (node->restype == RTLB) {
            lists.open();
        } else if (node->restype == RTDOTE && between && lists.isOpen()) {
            lists.markDotted();
        } else if ((node->restype == RTLE || node->restype == RTDOTE) && lists.isOpen()) {
            lists.close(node->restype == RTDOTE);
        } else {
            lists.add(nodeValue(in, *node));
        }
    }
    while (lists.isOpen())
        lists.close(false);
    return lists.result();
}

Value callNative(Interpreter& in, const External& external, Args args) {
    ChainBuilder chain(in);
    for (const Value& arg : args)
        addValue(in, chain, arg);
    CallFrame frame(chain.release());
    in.nativeGaveNothing = false;
    const int status = external.function();
    if (status < 0) in.fail(u"ADS request error");
    if (frame.result()) return chainValue(in, frame.result());
    in.nativeGaveNothing = true;
    return Value();
}

}  // namespace host::lisp
