/// Field lists to and from the chains of records: a record holds the form of the fields in extended
/// data in codes of its own.
#include "ACAD/dwgd_rx/dwgd_rx.h"
#include "field_chain.h"
#include "kz/kz_fldcnv.h"

namespace {

struct CodePair {
    int16_t xdata;
    int16_t record;
};

constexpr CodePair kCodes[] = {{1000, 1},  {1002, 2},  {1005, 6},  {1040, 40}, {1070, 70},
                               {1071, 90}, {1010, 10}, {1011, 11}, {1012, 12}, {1013, 13}};

/// Gives each node the code that stands beside its own in the table.
void translate(resbuf* chain, int16_t CodePair::*from, int16_t CodePair::*to) {
    for (resbuf* node = chain; node != nullptr; node = node->rbnext) {
        for (const CodePair& row : kCodes) {
            if (node->restype != row.*from) continue;
            node->restype = row.*to;
            break;
        }
    }
}

}  // namespace

void kz::toXDataCodes(resbuf* chain) {
    translate(chain, &CodePair::record, &CodePair::xdata);
}

void kz::toRecordCodes(resbuf* chain) {
    translate(chain, &CodePair::xdata, &CodePair::record);
}

int kz_AcDwgData_fromFldList(resbuf** chain, kz_FldList* list, int clearExisting) {
    if (chain == nullptr || list == nullptr) return 0;
    if (clearExisting != 0) {
        kz_ResBuf_release(*chain);
        *chain = nullptr;
    }
    kz::toXDataCodes(*chain);
    if (!kz::mergeFields(chain, list, *chain != nullptr)) return 0;
    kz::toRecordCodes(*chain);
    return 1;
}

kz_FldList* kz_AcDwgData_toFldList(resbuf* chain) {
    kz::toXDataCodes(chain);
    resbuf* cursor = chain;
    kz_FldList* list = nullptr;
    if (kz_Rb_convertRbToFldList(&list, &cursor, 1) != 1) return nullptr;
    kz_FldList_start(list);
    return list;
}

int kz_AcDwgData_updateFldList(resbuf* chain, kz_FldList* list) {
    if (chain == nullptr || list == nullptr) return 0;
    kz::toXDataCodes(chain);
    kz::fillFields(chain, list, nullptr);
    kz::toRecordCodes(chain);
    kz_FldList_start(list);
    return 1;
}
