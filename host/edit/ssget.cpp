/// acedSSGet: selecting entities.
#include "base/faults.h"
#include "db/database.h"
#include "edit/select_filter.h"
#include "edit/sysvars.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

/// True for the record of a block that is drawn: model space and the layouts.
bool isSpace(Database& drawing, Slot record) {
    const std::u16string name = kz::toUpper(drawing.symbolName(record));
    return name.starts_with(u"*MODEL_SPACE") || name.starts_with(u"*PAPER_SPACE");
}

/// Adds what the filter lets through. @return a status of acedSSGet
int addAll(Database& drawing, const SelectFilter& filter, const Block& block, ads_name set) {
    for (const Slot slot : block.contents) {
        const ObjectRecord& record = drawing.record(slot);
        if (record.erased || record.object_class != ObjectClass::Entity) continue;
        if (!filter.matches(drawing, slot)) continue;
        ads_name entity;
        drawing.nameOf(slot, entity);
        if (acedSSAdd(entity, set, set) != RTNORM) return RTERROR;
    }
    return RTNORM;
}

/// The entities of all spaces that the filter lets through.
int selectAll(const resbuf* chain, ads_name result) {
    Database* drawing = currentDatabase();
    SelectFilter filter;
    if (drawing == nullptr || !filter.read(chain)) return RTERROR;
    ads_name set = {0, 0};
    int status = RTNORM;
    for (const Slot record : drawing->blockRecords()) {
        const Block* block = drawing->findBlock(record);
        if (status != RTNORM || block == nullptr || !isSpace(*drawing, record)) continue;
        status = addAll(*drawing, filter, *block, set);
    }
    if (status == RTNORM && !ads_name_nil(set)) {
        ads_name_set(set, result);
        return RTNORM;
    }
    if (!ads_name_nil(set)) acedSSFree(set);
    return RTERROR;
}

}  // namespace
}  // namespace host

extern "C" int acedSSGet(const ACHAR* mode, const void*, const void*, const resbuf* filter,
                         ads_name result) {
    int status = 0;
    if (host::mustFail(host::Call::acedSSGet, status)) return status;
    if (result == nullptr) return RTERROR;
    std::u16string_view plain = mode == nullptr ? u"" : mode;
    if (plain.starts_with(u'_')) plain.remove_prefix(1);
    if (kz::compareNoCase(plain, u"X") != 0) return RTREJ;
    return host::selectAll(filter, result);
}
