/// kz groups: the forest of the groups of a drawing.
#include <memory>
#include <sstream>

#include "group_scan.h"
#include "host/output.h"
#include "json.h"
#include "kz_tls21an/text.h"
#include "options.h"
#include "session.h"

namespace console {

namespace {

struct GroupsOptions {
    std::string drawing;
    bool json = false;
    bool recover = false;
};

/// A group on the way through the forest.
struct Place {
    size_t group;
    int depth;
};

/// The groups in the order in which they are shown: each behind its parent. A group that no way
/// from a root leads to, in a damaged drawing, counts as a root; each comes once.
std::vector<Place> forestOf(const GroupScan& scan) {
    std::vector<Place> forest, waiting;
    std::vector<bool> seen(scan.groups.size());
    const std::vector<size_t> roots = scan.roots();
    const auto follow = [&](size_t root) {
        waiting.push_back({root, 0});
        while (!waiting.empty()) {
            const Place place = waiting.back();
            waiting.pop_back();
            if (seen[place.group]) continue;
            seen[place.group] = true;
            forest.push_back(place);
            const auto& children = scan.groups[place.group].references.children;
            for (auto child = children.rbegin(); child != children.rend(); ++child) {
                const size_t below = scan.groupNamed(*child);
                if (below != kNobody) waiting.push_back({below, place.depth + 1});
            }
        }
    };
    for (size_t i = 0; i < roots.size(); ++i) {
        if (roots[i] == i) follow(i);
    }
    for (size_t i = 0; i < roots.size(); ++i) {
        if (!seen[i] && !scan.groups[i].is_container) follow(i);
    }
    return forest;
}

/// Sub-groups with the number of their entities, as the master has them.
std::map<std::u16string, size_t> partsOf(const GroupScan& scan, const ScannedGroup& group) {
    std::map<std::u16string, size_t> parts;
    const size_t master = scan.entityOf(group.master);
    if (master == kNobody) return parts;
    for (const auto& [name, handles] : scan.entities[master].parts)
        parts[name] = handles.size();
    return parts;
}

void tell(const GroupScan& scan, const Place& place) {
    const ScannedGroup& group = scan.groups[place.group];
    std::ostringstream text;
    const size_t count = group.entities.size();
    text << std::string(static_cast<size_t>(place.depth) * 2, ' ') << kz::toUtf8(group.key) << "  "
         << kz::toUtf8(group.type) << "  " << count << (count == 1 ? " entity" : " entities");
    text << "  master " << (group.master.empty() ? "none" : kz::toUtf8(group.master));
    const char* between = "  sub-groups ";
    for (const auto& [name, size] : partsOf(scan, group)) {
        text << between << kz::toUtf8(name) << " (" << size << ")";
        between = ", ";
    }
    if (!group.references.container.empty()) {
        text << "  container " << kz::toUtf8(group.references.container);
    }
    host::write(host::Channel::Lisp, kz::toUtf16(text.str() + "\n"));
}

void addText(Json& json, const char* key, const std::u16string& value) {
    json.key(key);
    if (value.empty()) {
        json.plain("null");
    } else {
        json.string(kz::toUtf8(value));
    }
}

void addEntities(Json& json, const GroupScan& scan, const ScannedGroup& group) {
    json.key("entities");
    json.open('[');
    for (const size_t entity : group.entities)
        json.string(kz::toUtf8(scan.entities[entity].handle));
    json.close(']');
    json.key("subGroups");
    json.open('{');
    for (const auto& [name, size] : partsOf(scan, group)) {
        json.key(kz::toUtf8(name));
        json.plain(std::to_string(size));
    }
    json.close('}');
}

void add(Json& json, const GroupScan& scan, const Place& place) {
    const ScannedGroup& group = scan.groups[place.group];
    json.open('{');
    addText(json, "name", group.key);
    addText(json, "type", group.type);
    addText(json, "handle", group.handle);
    addText(json, "master", group.master);
    addText(json, "parent", group.references.parent);
    addText(json, "container", group.references.container);
    json.key("depth");
    json.plain(std::to_string(place.depth));
    addEntities(json, scan, group);
    json.close('}');
}

void show(bool as_json) {
    const GroupScan scan = scanGroups();
    const std::vector<Place> forest = forestOf(scan);
    if (!as_json) {
        for (const Place& place : forest)
            tell(scan, place);
        if (forest.empty()) host::write(host::Channel::Lisp, u"no groups\n");
        return;
    }
    Json json;
    json.open('[');
    for (const Place& place : forest)
        add(json, scan, place);
    json.close(']');
    host::write(host::Channel::Lisp, kz::toUtf16(json.text() + "\n"));
}

}  // namespace

Run defineGroups(Options& line) {
    const auto options = std::make_shared<GroupsOptions>();
    line.argument("FILE", options->drawing, "Drawing to look at");
    line.flag("--json", options->json, "As a JSON list of groups, each behind its parent");
    addRecoverOption(line, options->recover);
    return [options] {
        if (options->drawing.empty()) {
            complain("groups takes the drawing to look at");
            return kWrongUsage;
        }
        SessionOptions session;
        session.drawing = options->drawing;
        session.recover = options->recover;
        const Status status = openSession(session);
        if (status == kDone) show(options->json);
        return closeSession(session, status);
    };
}

}  // namespace console
