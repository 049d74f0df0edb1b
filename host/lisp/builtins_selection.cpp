/// Selection sets.
#include <algorithm>

#include "kz_tls21an/text.h"
#include "lisp/builtin.h"
#include "lisp/entity_list.h"
#include "lisp/interpreter.h"
#include "lisp/native_call.h"
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

/// The arguments of ssget, front to back.
class SelectionRequest {
  public:
    SelectionRequest(Interpreter& in, Args args) : in_(in), args_(args) {}

    int run(ads_name set) {
        if (at_ < args_.size() && args_[at_].isText()) mode_ = args_[at_++].text();
        const std::u16string form = formOf(mode_);
        ChainBuilder path(in_), filter(in_);
        ads_point first, second;
        const bool polygon = form == u"WP" || form == u"CP" || form == u"F";
        const bool window = form == u"W" || form == u"C" || form == u"B";
        if (polygon) {
            addPath(path);
        } else if (window) {
            needPoint(first);
            needPoint(second);
        }
        const bool picked = form.empty() && at_ < args_.size() && pointOf(args_[at_], first);
        if (picked) ++at_;
        if (at_ < args_.size()) addFilter(in_, filter, args_[at_++]);
        if (at_ < args_.size()) in_.fail(u"too many arguments");
        const void* start = polygon            ? static_cast<const void*>(path.get())
                            : window || picked ? static_cast<const void*>(first)
                                               : nullptr;
        return acedSSGet(mode_.c_str(), start, window ? second : nullptr, filter.get(), set);
    }

  private:
    /// The letters of a mode alone.
    static std::u16string formOf(const std::u16string& mode) {
        std::u16string form;
        for (const char16_t unit : kz::toUpper(mode)) {
            if (unit == u':') break;
            if (unit >= u'A' && unit <= u'Z') form += unit;
        }
        return form;
    }

    const Value& next() {
        if (at_ >= args_.size()) in_.fail(u"too few arguments");
        return args_[at_++];
    }
    void needPoint(ads_point out) {
        const Value& value = next();
        if (!pointOf(value, out)) in_.badArgument(u"point", value);
    }
    void addPath(ChainBuilder& chain) {
        for (const Value* rest = &listArg(in_, next()); rest->isCons(); rest = &rest->cons()->cdr) {
            ads_point point;
            if (!pointOf(rest->cons()->car, point)) in_.badArgument(u"point", rest->cons()->car);
            resbuf& node = chain.add(RT3DPOINT);
            std::copy(point, point + 3, node.resval.rpoint);
        }
    }

    Interpreter& in_;
    Args args_;
    size_t at_ = 0;
    std::u16string mode_;
};

Value ssget(Interpreter& in, Args args) {
    ads_name set;
    const int status = SelectionRequest(in, args).run(set);
    if (status == RTREJ) in.fail(u"bad SSGET mode string");
    if (status == RTCAN) in.fail(u"Function cancelled");
    return status == RTNORM ? selectionSetValue(set) : Value();
}

Value ssnamex(Interpreter& in, Args args) {
    const SelectionSet* set = setArg(in, args[0]);
    const double index = args.size() > 1 ? numberArg(in, args[1]) : -1.0;
    if (!(index >= -1 && index < INT32_MAX)) return {};
    resbuf* chain = nullptr;
    if (acedSSNameX(&chain, set->name, static_cast<int32_t>(index)) != RTNORM) return {};
    const OwnedChain owned(chain);
    return chainValue(in, chain);
}

Value sssetfirst(Interpreter& in, Args args) {
    if (!args[0].isNil()) setArg(in, args[0]);
    const Value& chosen = optionalArg(args, 1);
    const int64_t* name = chosen.isNil() ? nullptr : setArg(in, chosen)->name;
    if (acedSSSetFirst(name, nullptr) != RTNORM) return {};
    return makeList(args[0], chosen);
}

Value ssgetfirst(Interpreter&, Args) {
    resbuf* grips = nullptr;
    resbuf* chosen = nullptr;
    if (acedSSGetFirst(&grips, &chosen) != RTNORM) return {};
    const OwnedChain owned(chosen);
    Value set;
    if (chosen != nullptr) set = selectionSetValue(chosen->resval.rlname);
    return makeList(Value(), std::move(set));
}

const Builtin kRows[] = {
    {"ssget", 0, 4, ssget, "(ssget [mode] [point [point]] [points] [filter])",
     "A new set of what is chosen: by the user, at a point, or by a mode (\"X\" \"A\" \"L\" \"P\" "
     "\"I\"; \"W\" \"C\" \"B\" with two points; \"WP\" \"CP\" \"F\" with a list of points; behind "
     "a "
     "colon S E L N D), as far as the filter, an association list, lets it through; nil for "
     "nothing."},
    {"ssadd", 0, 2, ssadd, "(ssadd [entity [set]])",
     "Adds an entity to a set, or makes a new set; gives the set."},
    {"ssdel", 2, 2, ssdel, "(ssdel entity set)",
     "Takes an entity out of a set; nil when it is no member."},
    {"sslength", 1, 1, sslength, "(sslength set)", "Number of entities in a set."},
    {"ssname", 2, 2, ssname, "(ssname set index)", "Entity of a set by its index, counted from 0."},
    {"ssmemb", 2, 2, ssmemb, "(ssmemb entity set)", "The entity when it is in the set, else nil."},
    {"ssnamex", 1, 2, ssnamex, "(ssnamex set [index])",
     "How the members, or one of them, were chosen: lists (how entity 0 ...), then windows."},
    {"sssetfirst", 1, 2, sssetfirst, "(sssetfirst nil [set])",
     "Chooses the members of a set for the next prompt; without a set nothing."},
    {"ssgetfirst", 0, 0, ssgetfirst, "(ssgetfirst)",
     "A list of nil and a new set of what is chosen for the next prompt, or nil."},
};

}  // namespace

std::span<const Builtin> selectionBuiltins() {
    return kRows;
}

}  // namespace host::lisp
