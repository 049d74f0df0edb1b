/// Lists of names and wildcards.
#include "command/name_lists.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "base/wildcard.h"

namespace host {
namespace {

/// The record with this name, or those that it matches as a pattern.
std::vector<Slot> matching(Database& drawing, std::string_view table, const std::u16string& item,
                           const std::function<bool(Slot)>& counts) {
    const auto good = [&](Slot record) { return !counts || counts(record); };
    if (const Slot record = drawing.findSymbol(table, item); record != kNoSlot) {
        return good(record) ? std::vector<Slot>{record} : std::vector<Slot>{};
    }
    std::vector<Slot> records;
    const SymbolTable* symbols = drawing.table(table);
    if (symbols == nullptr || !hasWildcard(item)) return records;
    for (const Slot record : symbols->records) {
        if (drawing.record(record).erased || !good(record)) continue;
        if (wildcardMatchNoCase(drawing.symbolName(record), item)) records.push_back(record);
    }
    return records;
}

}  // namespace

std::vector<Slot> listedRecords(Database& drawing, std::string_view table, std::u16string_view list,
                                const std::function<bool(Slot)>& counts,
                                const std::function<void(const std::u16string&)>& unknown) {
    std::vector<Slot> records;
    std::unordered_set<Slot> seen;
    for (size_t at = 0; at <= list.size();) {
        const size_t end = std::min(list.find(u',', at), list.size());
        const std::u16string item(list.substr(at, end - at));
        at = end + 1;
        if (item.empty()) continue;
        const std::vector<Slot> found = matching(drawing, table, item, counts);
        if (found.empty()) unknown(item);
        for (const Slot record : found) {
            if (seen.insert(record).second) records.push_back(record);
        }
    }
    return records;
}

}  // namespace host
