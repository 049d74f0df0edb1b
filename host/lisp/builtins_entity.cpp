/// Entities of the drawing as lists.
#include "db/database.h"
#include "lisp/builtin.h"
#include "lisp/entity_list.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

/// The applications whose XDATA is asked for, as a chain of names.
void addApplications(Interpreter& in, ChainBuilder& chain, const Value& list) {
    for (const Value* rest = &listArg(in, list); rest->isCons(); rest = &rest->cons()->cdr) {
        chain.addText(RTSTR, textArg(in, rest->cons()->car));
    }
}

Value entget(Interpreter& in, Args args) {
    const EntityName* entity = entityArg(in, args[0]);
    ChainBuilder applications(in);
    addApplications(in, applications, optionalArg(args, 1));
    const OwnedChain chain(applications.get() ? acdbEntGetX(entity->name, applications.get())
                                              : acdbEntGet(entity->name));
    return entityList(in, chain.get());
}

Value entmod(Interpreter& in, Args args) {
    ChainBuilder chain(in);
    addEntityList(in, chain, listArg(in, args[0]));
    return acdbEntMod(chain.get()) == RTNORM ? args[0] : Value();
}

bool make(Interpreter& in, const Value& list, ads_name name) {
    ChainBuilder chain(in);
    addEntityList(in, chain, listArg(in, list));
    return acdbEntMakeX(chain.get(), name) == RTNORM;
}

/// True for a list with (0 . "ENDBLK").
bool endsBlock(const Value& list) {
    for (const Value* rest = &list; rest->isCons(); rest = &rest->cons()->cdr) {
        const Value& group = rest->cons()->car;
        if (!group.isCons() || !group.cons()->car.same(Value::integer(0))) continue;
        const Value& type = group.cons()->cdr;
        return type.isText() && (type.text() == u"ENDBLK" || type.text() == u"endblk");
    }
    return false;
}

/// The end of a block gives the block's name, which the drawing has chosen for an anonymous one.
Value entmake(Interpreter& in, Args args) {
    ads_name name = {0, 0};
    if (args.empty() || !make(in, args[0], name)) return Value();
    if (!endsBlock(args[0])) return args[0];
    const OwnedChain record(acdbEntGet(name));
    for (const resbuf* node = record.get(); node; node = node->rbnext) {
        if (node->restype == 2) return makeText(node->resval.rstring);
    }
    return args[0];
}

Value entmakex(Interpreter& in, Args args) {
    ads_name name = {0, 0};
    return !args.empty() && make(in, args[0], name) ? makeEntityName(name) : Value();
}

Value entdel(Interpreter& in, Args args) {
    return acdbEntDel(entityArg(in, args[0])->name) == RTNORM ? args[0] : Value();
}

Value entnext(Interpreter& in, Args args) {
    const bool fromStart = optionalArg(args, 0).isNil();
    ads_name next;
    const int status = acdbEntNext(fromStart ? nullptr : entityArg(in, args[0])->name, next);
    return status == RTNORM ? makeEntityName(next) : Value();
}

Value entlast(Interpreter&, Args) {
    ads_name name;
    return acdbEntLast(name) == RTNORM ? makeEntityName(name) : Value();
}

Value handent(Interpreter& in, Args args) {
    const std::u16string handle(textArg(in, args[0]));
    ads_name name;
    return acdbHandEnt(handle.c_str(), name) == RTNORM ? makeEntityName(name) : Value();
}

// Nothing is on a screen that would have to be drawn anew.
Value entupd(Interpreter& in, Args args) {
    const OwnedChain chain(acdbEntGet(entityArg(in, args[0])->name));
    return chain ? args[0] : Value();
}

Value redraw(Interpreter& in, Args args) {
    const Value& entity = optionalArg(args, 0);
    const Value& mode = optionalArg(args, 1);
    constexpr int kShow = 1;
    acedRedraw(entity.isNil() ? nullptr : entityArg(in, entity)->name,
               mode.isNil() ? kShow : integerArg(in, mode));
    return {};
}

Value regapp(Interpreter& in, Args args) {
    const std::u16string application(textArg(in, args[0]));
    ads_name known;
    if (acdbTblObjName(u"APPID", application.c_str(), known) == RTNORM) return Value();
    return acdbRegApp(application.c_str()) == RTNORM ? args[0] : Value();
}

/// Size of the XDATA in a chain as the limit of objects counts it; -1 for what is none.
int32_t sizeOfXData(const resbuf* chain) {
    const Database* drawing = currentDatabase();
    XData data;
    if (drawing == nullptr || packXData(chain, drawing->codec(), data) != Acad::eOk) return -1;
    return static_cast<int32_t>(xdataSize(data));
}

Value xdsize(Interpreter& in, Args args) {
    const Value& list = listArg(in, args[0]);
    // The group -3 itself, a list that holds it, or its applications.
    const Value first = list.isCons() ? list.cons()->car : Value();
    const bool holds = first.isCons() && first.cons()->car.isInteger();
    const Value whole = holds               ? list
                        : first.isInteger() ? makeList(list)
                                            : makeList(makeCons(Value::integer(-3), list));
    ChainBuilder chain(in);
    addEntityList(in, chain, whole);
    const int32_t size = sizeOfXData(chain.get());
    return size < 0 ? Value() : Value::integer(size);
}

Value xdroom(Interpreter& in, Args args) {
    const EntityName* entity = entityArg(in, args[0]);
    ChainBuilder all(in);
    all.addText(RTSTR, u"*");
    const OwnedChain chain(acdbEntGetX(entity->name, all.get()));
    if (!chain) return {};
    const resbuf* node = chain.get();
    while (node && node->restype != -3)
        node = node->rbnext;
    const int32_t used = node ? sizeOfXData(node) : 0;
    return Value::integer(static_cast<int32_t>(kXDataLimit) - used);
}

const Builtin kRows[] = {
    {"entget", 1, 2, entget, "(entget entity [applications])",
     "Groups of an entity, with the XDATA of the named applications."},
    {"entmod", 1, 1, entmod, "(entmod list)",
     "Changes the entity that the list names under -1; gives the list, nil when it is refused."},
    {"entmake", 0, 1, entmake, "(entmake [list])",
     "Makes an entity; gives the list (at the end of a block its name), nil when it is refused."},
    {"entmakex", 0, 1, entmakex, "(entmakex [list])",
     "Makes an entity or object; gives its name, nil when it is refused."},
    {"xdsize", 1, 1, xdsize, "(xdsize list)",
     "Bytes that an XDATA list takes; nil for what is none."},
    {"xdroom", 1, 1, xdroom, "(xdroom entity)", "Bytes of XDATA that an entity has room for."},
    {"entdel", 1, 1, entdel, "(entdel entity)", "Erases an entity, or brings an erased one back."},
    {"entnext", 0, 1, entnext, "(entnext [entity])",
     "Entity behind another, or the first one; parts of complex entities are met too."},
    {"entlast", 0, 0, entlast, "(entlast)", "Last main entity of the drawing that is not erased."},
    {"handent", 1, 1, handent, "(handent handle)", "Entity with a handle; nil for none."},
    {"redraw", 0, 2, redraw, "(redraw [entity [mode]])",
     "Shows an entity (mode 1), takes it off the screen (2), highlights it (3) or ends that (4); "
     "without one brings back all that was taken off."},
    {"entupd", 1, 1, entupd, "(entupd entity)", "Brings the picture of an entity up to date."},
    {"regapp", 1, 1, regapp, "(regapp application)",
     "Registers an application for XDATA; nil when it is registered already."},
};

}  // namespace

std::span<const Builtin> entityBuiltins() {
    return kRows;
}

}  // namespace host::lisp
