/// Field lists in the records of a drawing: this folder holds the records, the conversion between
/// their chains and field lists, the store on top of them, and the drawing's code. Here is what its
/// sources share.
#ifndef SRC_ACAD_DWGD_RX_H
#define SRC_ACAD_DWGD_RX_H

#include "field_store.h"
#include "kz/kz_dwgdata.h"

namespace kz {

/// Where a record is.
struct RecordPlace {
    AcDbDatabase* database;    ///< NULL: no place
    const kz_Char* dict_name;  ///< key of the application's dictionary
    const kz_Char* group;      ///< key of the record in it

    bool isComplete() const;
};

/// A record's chain as the drawing has it.
struct RecordChain {
    OwnedChain nodes;     ///< NULL: an empty record, or none
    bool known = false;   ///< false: it could not be read, though it may be there
    bool exists = false;  ///< there is such a record
};

RecordChain readRecord(const RecordPlace& place);

/// The fields of one record.
class RecordFields final : public FieldStore {
  public:
    explicit RecordFields(const RecordPlace& place) : FieldStore(0), place_(place) {}

    kz_FldList* read(kz_FldList* request) override;
    int write(kz_FldList* list, bool clear_existing) override;

  private:
    RecordPlace place_;
    OwnedChain chain_;  ///< as it was last read, in the codes of extended data
    bool known_ = false;
};

/// Codes of a record's chain to those of extended data, and back. Other codes stay.
void toXDataCodes(resbuf* chain);
void toRecordCodes(resbuf* chain);

}  // namespace kz

#endif
