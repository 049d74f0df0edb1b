/// Symbol tables and the variables of the header.
#include <algorithm>

#include "db/database.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// Class marker of a table's records.
std::u16string recordMarker(std::string_view table) {
    static const std::unordered_map<std::string_view, std::u16string_view> kMarkers = {
        {"VPORT", u"AcDbViewportTableRecord"},    {"LTYPE", u"AcDbLinetypeTableRecord"},
        {"LAYER", u"AcDbLayerTableRecord"},       {"STYLE", u"AcDbTextStyleTableRecord"},
        {"VIEW", u"AcDbViewTableRecord"},         {"UCS", u"AcDbUCSTableRecord"},
        {"APPID", u"AcDbRegAppTableRecord"},      {"DIMSTYLE", u"AcDbDimStyleTableRecord"},
        {"BLOCK_RECORD", u"AcDbBlockTableRecord"}};
    const auto found = kMarkers.find(table);
    return std::u16string(found == kMarkers.end() ? std::u16string_view{} : found->second);
}

}  // namespace

SymbolTable* Database::table(std::string_view name) {
    const auto found = table_index_.find(dxf::upperAscii(name));
    return found == table_index_.end() ? nullptr : found->second;
}

SymbolTable& Database::addTable(std::string_view name) {
    if (SymbolTable* present = table(name)) return *present;
    tables_.push_back(std::make_unique<SymbolTable>());
    tables_.back()->name = dxf::upperAscii(name);
    table_index_[tables_.back()->name] = tables_.back().get();
    return *tables_.back();
}

Slot Database::needTableHead(std::string_view name) {
    SymbolTable& symbols = addTable(name);
    if (symbols.head != kNoSlot) return symbols.head;
    // The table itself is no change that anybody wants to undo.
    const UndoPause pause(undo_);
    Tags groups;
    groups.emplace_back(100, u"AcDbSymbolTable");
    groups.emplace_back(2, kz::toUtf16(symbols.name));
    groups.emplace_back(70, int64_t{0});
    symbols.head = makeRecord("TABLE", ObjectClass::TableHead, 0, std::move(groups));
    return symbols.head;
}

std::u16string Database::symbolName(Slot record) {
    const Tags& groups = tags(record);
    const size_t at = findTag(groups, 2);
    return at < groups.size() ? groups[at].text(codec_) : std::u16string{};
}

Slot Database::findSymbol(std::string_view table_name, std::u16string_view name) {
    // The stores look the same application up again and again.
    const bool is_app = table_name == "APPID";
    if (is_app && last_app_slot_ != kNoSlot && name == last_app_ &&
        !records_[last_app_slot_].erased) {
        return last_app_slot_;
    }
    SymbolTable* symbols = table(table_name);
    if (symbols == nullptr) return kNoSlot;
    const auto found = symbols->by_name.find(kz::toUpper(name));
    const bool missing = found == symbols->by_name.end() || records_[found->second].erased;
    const Slot slot = missing ? kNoSlot : found->second;
    if (is_app && !missing) {
        last_app_ = name;
        last_app_slot_ = slot;
    }
    return slot;
}

void Database::enterSymbol(SymbolTable& symbols, Slot record, std::u16string_view name) {
    records_[record].position = static_cast<uint32_t>(symbols.records.size());
    records_[record].owner = symbols.head;
    symbols.records.push_back(record);
    symbols.by_name.insert_or_assign(kz::toUpper(name), record);
}

Slot Database::makeSymbol(std::string_view table_name, std::u16string_view name, Tags wanted) {
    if (findSymbol(table_name, name) != kNoSlot) return kNoSlot;
    SymbolTable& symbols = addTable(table_name);
    Tags groups;
    groups.emplace_back(100, u"AcDbSymbolTableRecord");
    groups.emplace_back(100, recordMarker(symbols.name));
    groups.emplace_back(2, std::u16string(name));
    for (Tag& tag : wanted)
        groups.push_back(std::move(tag));
    const uint64_t head = symbols.head == kNoSlot ? 0 : records_[symbols.head].handle;
    const Slot slot = makeRecord(symbols.name, ObjectClass::TableRecord, head, std::move(groups));
    enterSymbol(symbols, slot, name);
    return slot;
}

bool Database::renameSymbol(Slot record, std::u16string_view old_name,
                            std::u16string_view new_name) {
    if (old_name == new_name) return true;
    SymbolTable* symbols = table(typeName(record));
    if (symbols == nullptr || acdbSNValid(std::u16string(new_name).c_str(), 0) != RTNORM)
        return false;
    const std::u16string upper = kz::toUpper(new_name);
    const auto taken = symbols->by_name.find(upper);
    if (taken != symbols->by_name.end() && taken->second != record &&
        !records_[taken->second].erased) {
        return false;
    }
    symbols->by_name.erase(kz::toUpper(old_name));
    last_app_slot_ = kNoSlot;
    symbols->by_name.insert_or_assign(upper, record);
    return true;
}

Slot Database::needLayer(std::u16string_view name) {
    const Slot present = findSymbol("LAYER", name);
    if (present != kNoSlot) return present;
    Tags tags;
    tags.emplace_back(70, int64_t{0});
    tags.emplace_back(62, int64_t{7});
    tags.emplace_back(6, std::u16string(u"Continuous"));
    return makeSymbol("LAYER", name, std::move(tags));
}

void Database::recountLockedLayers() {
    locked_layers_ = 0;
    const SymbolTable* layers = table("LAYER");
    if (layers == nullptr) return;
    for (const Slot slot : layers->records) {
        if (records_[slot].erased) continue;
        const Tags& groups = tags(slot);
        const size_t at = findTag(groups, 70);
        if (at < groups.size() && (groups[at].integer() & 4) != 0) ++locked_layers_;
    }
}

// --- header -------------------------------------------------------------------------------------

void Database::indexHeaders() {
    header_index_.clear();
    for (size_t i = 0; i < headers_.size(); ++i)
        header_index_.emplace(headers_[i].name, i);
}

HeaderVariable* Database::header(std::string_view name) {
    const auto found = header_index_.find(dxf::upperAscii(name));
    if (found == header_index_.end() || headers_[found->second].tags.empty()) return nullptr;
    return &headers_[found->second];
}

size_t Database::headerPlace(std::string_view name) {
    const auto [found, made] = header_index_.emplace(dxf::upperAscii(name), headers_.size());
    if (made) {
        headers_.emplace_back();
        headers_.back().name = found->first;
    }
    return found->second;
}

void Database::setHeader(std::string_view name, Tag tag) {
    Tags value;
    value.push_back(std::move(tag));
    setHeader(name, std::move(value));
}

void Database::setHeader(std::string_view name, Tags value) {
    const size_t place = headerPlace(name);
    undo_.keepHeader(place);
    headers_[place].tags = std::move(value);
    headers_[place].changed = true;
    noteChange();
}

}  // namespace host
