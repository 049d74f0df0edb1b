/// Selection sets.
#include "lisp/builtin.h"
#include "lisp/entity_list.h"
#include "lisp/interpreter.h"
#include "lisp/selection_set.h"

namespace host::lisp {

namespace {

Value ssadd(Interpreter& in, Args args) {
    const Value& entity = optionalArg(args, 0);
    const Value& set = optionalArg(args, 1);
    const int64_t* member = entity.isNil() ? nullptr : entityArg(in, entity)->name;
    if (!set.isNil()) {
        ads_name same;
        const int64_t* name = setArg(in, set)->name;
        return acedSSAdd(member, name, same) == RTNORM ? set : Value();
    }
    ads_name fresh;
    return acedSSAdd(member, nullptr, fresh) == RTNORM ? selectionSetValue(fresh) : Value();
}

Value ssdel(Interpreter& in, Args args) {
    const EntityName* entity = entityArg(in, args[0]);
    return acedSSDel(entity->name, setArg(in, args[1])->name) == RTNORM ? args[1] : Value();
}

Value sslength(Interpreter& in, Args args) {
    int32_t length = 0;
    acedSSLength(setArg(in, args[0])->name, &length);
    return Value::integer(length);
}

Value ssname(Interpreter& in, Args args) {
    const SelectionSet* set = setArg(in, args[0]);
    const double index = numberArg(in, args[1]);  // callers beyond 32767 pass reals
    ads_name entity;
    if (!(index >= 0 && index < INT32_MAX)) return Value();
    const int status = acedSSName(set->name, static_cast<int32_t>(index), entity);
    return status == RTNORM ? makeEntityName(entity) : Value();
}

Value ssmemb(Interpreter& in, Args args) {
    const EntityName* entity = entityArg(in, args[0]);
    return acedSSMemb(entity->name, setArg(in, args[1])->name) == RTNORM ? args[0] : Value();
}

/// A filter keeps its order, XDATA too: it may stand inside a group of tests.
void addFilter(Interpreter& in, ChainBuilder& chain, const Value& filter) {
    for (const Value* rest = &listArg(in, filter); rest->isCons(); rest = &rest->cons()->cdr)
        addEntityList(in, chain, makeList(rest->cons()->car));
}

Value ssget(Interpreter& in, Args args) {
    const std::u16string mode(textArg(in, args[0]));
    ChainBuilder filter(in);
    addFilter(in, filter, optionalArg(args, 1));
    ads_name set;
    const int status = acedSSGet(mode.c_str(), nullptr, nullptr, filter.get(), set);
    if (status == RTREJ) in.fail(u"bad SSGET mode string");
    return status == RTNORM ? selectionSetValue(set) : Value();
}

const Builtin kRows[] = {
    {"ssget", 1, 2, ssget, "(ssget \"X\" [filter])",
     "The entities of all spaces that pass the filter, an association list; nil when none does."},
    {"ssadd", 0, 2, ssadd, "(ssadd [entity [set]])",
     "Adds an entity to a set, or makes a new set; gives the set."},
    {"ssdel", 2, 2, ssdel, "(ssdel entity set)",
     "Takes an entity out of a set; nil when it is no member."},
    {"sslength", 1, 1, sslength, "(sslength set)", "Number of entities in a set."},
    {"ssname", 2, 2, ssname, "(ssname set index)", "Entity of a set by its index, counted from 0."},
    {"ssmemb", 2, 2, ssmemb, "(ssmemb entity set)", "The entity when it is in the set, else nil."},
};

}  // namespace

std::span<const Builtin> selectionBuiltins() {
    return kRows;
}

}  // namespace host::lisp
