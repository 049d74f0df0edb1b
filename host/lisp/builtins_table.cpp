/// Symbol tables and dictionaries.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "lisp/builtin.h"
#include "lisp/entity_list.h"
#include "lisp/interpreter.h"

namespace host::lisp {

namespace {

Value tblsearch(Interpreter& in, Args args) {
    const std::u16string table(textArg(in, args[0])), name(textArg(in, args[1]));
    const OwnedChain chain(acdbTblSearch(table.c_str(), name.c_str(), bool(optionalArg(args, 2))));
    return entityList(in, chain.get());
}

Value tblnext(Interpreter& in, Args args) {
    const std::u16string table(textArg(in, args[0]));
    const OwnedChain chain(acdbTblNext(table.c_str(), bool(optionalArg(args, 1))));
    return entityList(in, chain.get());
}

Value tblobjname(Interpreter& in, Args args) {
    const std::u16string table(textArg(in, args[0])), name(textArg(in, args[1]));
    ads_name object;
    const int status = acdbTblObjName(table.c_str(), name.c_str(), object);
    return status == RTNORM ? makeEntityName(object) : Value();
}

Value namedobjdict(Interpreter&, Args) {
    ads_name dictionary;
    return acdbNamedObjDict(dictionary) == RTNORM ? makeEntityName(dictionary) : Value();
}

Value dictsearch(Interpreter& in, Args args) {
    const EntityName* dictionary = entityArg(in, args[0]);
    const std::u16string key(textArg(in, args[1]));
    const OwnedChain chain(
        acdbDictSearch(dictionary->name, key.c_str(), bool(optionalArg(args, 2))));
    return entityList(in, chain.get());
}

Value dictnext(Interpreter& in, Args args) {
    const EntityName* dictionary = entityArg(in, args[0]);
    const OwnedChain chain(acdbDictNext(dictionary->name, bool(optionalArg(args, 1))));
    return entityList(in, chain.get());
}

Value dictadd(Interpreter& in, Args args) {
    const EntityName* dictionary = entityArg(in, args[0]);
    const std::u16string key(textArg(in, args[1]));
    const EntityName* object = entityArg(in, args[2]);
    const int status = acdbDictAdd(dictionary->name, key.c_str(), object->name);
    return status == RTNORM ? args[2] : Value();
}

Value dictremove(Interpreter& in, Args args) {
    const EntityName* dictionary = entityArg(in, args[0]);
    const std::u16string key(textArg(in, args[1]));
    const OwnedChain entry(acdbDictSearch(dictionary->name, key.c_str(), 0));
    if (!entry || acdbDictRemove(dictionary->name, key.c_str()) != RTNORM) return Value();
    return entry->restype == -1 ? makeEntityName(entry->resval.rlname) : in.truth(true);
}

Value dictrename(Interpreter& in, Args args) {
    const EntityName* dictionary = entityArg(in, args[0]);
    const std::u16string from(textArg(in, args[1])), to(textArg(in, args[2]));
    const int status = acdbDictRename(dictionary->name, from.c_str(), to.c_str());
    return status == RTNORM ? args[2] : Value();
}

Value snvalid(Interpreter& in, Args args) {
    const std::u16string name(textArg(in, args[0]));
    return in.truth(acdbSNValid(name.c_str(), bool(optionalArg(args, 1))) == RTNORM);
}

/// Names of the layouts of paper space in the order of their tabs.
Value layoutlist(Interpreter&, Args) {
    ads_name root, layouts;
    if (acdbNamedObjDict(root) != RTNORM) return {};
    const OwnedChain found(acdbDictSearch(root, u"ACAD_LAYOUT", 0));
    if (!found || found->restype != -1) return {};
    ads_name_set(found->resval.rlname, layouts);
    std::vector<std::pair<int, std::u16string>> names;
    for (int rewind = 1;; rewind = 0) {
        const OwnedChain layout(acdbDictNext(layouts, rewind));
        if (!layout) break;
        int tab = 0;
        bool own = false;  // groups in front are those of the plot settings
        std::u16string name;
        for (const resbuf* node = layout.get(); node; node = node->rbnext) {
            if (node->restype == 100)
                own = std::u16string_view(node->resval.rstring) == u"AcDbLayout";
            if (own && node->restype == 1) name = node->resval.rstring;
            if (own && node->restype == 71) tab = node->resval.rint;
        }
        if (tab > 0) names.emplace_back(tab, name);
    }
    std::sort(names.begin(), names.end());
    ListBuilder list;
    for (const auto& [tab, name] : names)
        list.add(makeText(name));
    return list.take();
}

const Builtin kRows[] = {
    {"tblsearch", 2, 3, tblsearch, "(tblsearch table name [set-next])",
     "Groups of a table record; nil for none."},
    {"tblnext", 1, 2, tblnext, "(tblnext table [rewind])",
     "Groups of the next record of a table; nil at its end."},
    {"tblobjname", 2, 2, tblobjname, "(tblobjname table name)",
     "Name of a table record as an entity name."},
    {"namedobjdict", 0, 0, namedobjdict, "(namedobjdict)", "Root dictionary of the drawing."},
    {"dictsearch", 2, 3, dictsearch, "(dictsearch dictionary key [set-next])",
     "Groups of an entry; nil for none."},
    {"dictnext", 1, 2, dictnext, "(dictnext dictionary [rewind])",
     "Groups of the next entry; nil at the end."},
    {"dictadd", 3, 3, dictadd, "(dictadd dictionary key object)",
     "Enters an object; nil when the key is in use."},
    {"dictremove", 2, 2, dictremove, "(dictremove dictionary key)",
     "Takes an entry out; gives the object's name."},
    {"dictrename", 3, 3, dictrename, "(dictrename dictionary old new)",
     "Gives an entry another key."},
    {"layoutlist", 0, 0, layoutlist, "(layoutlist)",
     "Names of the layouts of paper space in the order of their tabs."},
    {"snvalid", 1, 2, snvalid, "(snvalid name [allow-pipe])",
     "T for a valid name of a table record."},
};

}  // namespace

std::span<const Builtin> tableBuiltins() {
    return kRows;
}

}  // namespace host::lisp
