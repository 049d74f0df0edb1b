/// Entity lists to and from chains.
#include "lisp/entity_list.h"

#include "base/resbuf.h"
#include "lisp/native_call.h"

namespace host::lisp {

namespace {

constexpr int kXData = -3;
constexpr int kApplication = 1001;

Value groupValue(Interpreter& in, const resbuf& node) {
    const int code = node.restype == RTDXF0 ? 0 : node.restype;
    Value value = nodeValue(in, node);
    if (valueKind(node.restype) == ValueKind::Point && isPoint2d(&node)) {
        value = makeList(Value::real(node.resval.rpoint[0]), Value::real(node.resval.rpoint[1]));
    }
    return makeCons(Value::integer(code), std::move(value));
}

/// The applications of a chain from its first 1001 on, each as ("APP" group ...).
Value xdataList(Interpreter& in, const resbuf* chain) {
    ListBuilder applications;
    while (chain) {
        ListBuilder groups;
        groups.add(nodeValue(in, *chain));
        for (chain = chain->rbnext; chain && chain->restype != kApplication;
             chain = chain->rbnext) {
            groups.add(groupValue(in, *chain));
        }
        applications.add(groups.take());
    }
    return applications.take();
}

[[noreturn]] void refuse(Interpreter& in, const Value& group) {
    in.failWith(u"bad DXF group:", group);
}

int32_t wholeOf(Interpreter& in, const Value& group, const Value& value, int32_t least,
                int32_t most) {
    if (!value.isInteger() || value.integer() < least || value.integer() > most) refuse(in, group);
    return value.integer();
}

void setPoint(Interpreter& in, resbuf& node, const Value& group, const Value& value) {
    const int32_t count = value.isCons() ? listLength(value) : -1;
    if (count != 2 && count != 3) refuse(in, group);
    node.resval.rpoint[2] = 0.0;
    const Value* rest = &value;
    for (int32_t i = 0; i < count; ++i, rest = &rest->cons()->cdr) {
        if (!rest->cons()->car.isNumber()) refuse(in, group);
        node.resval.rpoint[i] = rest->cons()->car.number();
    }
    if (count == 2) markPoint2d(&node);
}

void addGroup(Interpreter& in, ChainBuilder& chain, const Value& group) {
    if (!group.isCons() || !group.cons()->car.isInteger()) refuse(in, group);
    const int32_t code = group.cons()->car.integer();
    const Value& value = group.cons()->cdr;
    if (code != static_cast<int16_t>(code)) refuse(in, group);
    switch (valueKind(code)) {
        case ValueKind::Text:
            if (!value.isText()) refuse(in, group);
            chain.addText(code, value.text());
            break;
        case ValueKind::Short:
            // Flags with the highest bit set are written either way.
            chain.add(code).resval.rint =
                static_cast<int16_t>(wholeOf(in, group, value, -0x8000, 0xFFFF));
            break;
        case ValueKind::Long:
            chain.add(code).resval.rlong = wholeOf(in, group, value, INT32_MIN, INT32_MAX);
            break;
        case ValueKind::Int64:
            if (!value.isNumber()) refuse(in, group);
            chain.add(code).resval.mnInt64 = static_cast<int64_t>(value.number());
            break;
        case ValueKind::Real:
            if (!value.isNumber()) refuse(in, group);
            chain.add(code).resval.rreal = value.number();
            break;
        case ValueKind::Point:
            setPoint(in, chain.add(code), group, value);
            break;
        case ValueKind::Name:
            if (!value.is(Kind::EntityName)) refuse(in, group);
            chain.addName(code, value.as<EntityName>()->name);
            break;
        case ValueKind::None:
            refuse(in, group);
    }
}

/// (-3 ("APP" group ...) ...): the groups of each application stand behind its 1001.
void addXData(Interpreter& in, ChainBuilder& chain, const Value& element) {
    chain.add(kXData);
    for (const Value* rest = &element.cons()->cdr; rest->isCons(); rest = &rest->cons()->cdr) {
        const Value& application = rest->cons()->car;
        if (!application.isCons() || !application.cons()->car.isText()) refuse(in, element);
        chain.addText(kApplication, application.cons()->car.text());
        for (const Value* group = &application.cons()->cdr; group->isCons();
             group = &group->cons()->cdr) {
            addGroup(in, chain, group->cons()->car);
        }
    }
}

}  // namespace

Value entityList(Interpreter& in, const resbuf* chain) {
    ListBuilder groups;
    for (; chain; chain = chain->rbnext) {
        if (chain->restype == kXData) {
            groups.add(makeCons(Value::integer(kXData), xdataList(in, chain->rbnext)));
            break;
        }
        groups.add(groupValue(in, *chain));
    }
    return groups.take();
}

void addEntityList(Interpreter& in, ChainBuilder& chain, const Value& list) {
    // XDATA ends a chain, wherever it stands in the list.
    const Value* xdata = nullptr;
    for (const Value* rest = &list; rest->isCons(); rest = &rest->cons()->cdr) {
        const Value& group = rest->cons()->car;
        const bool isXData = group.isCons() && group.cons()->car.same(Value::integer(kXData));
        if (isXData) {
            xdata = &group;
        } else {
            addGroup(in, chain, group);
        }
    }
    if (xdata) addXData(in, chain, *xdata);
}

}  // namespace host::lisp
