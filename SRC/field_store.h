/// Single fields of a place that keeps field lists. The places differ in how whole lists are read
/// and written; what is done with one field is the same for all of them.
#ifndef SRC_FIELD_STORE_H
#define SRC_FIELD_STORE_H

#include "guards.h"

namespace kz {

/// One place: the data of an application on an object, or a record of a drawing. Lives for the time
/// of one operation, so it may keep what it has read for the writing that follows.
class FieldStore {
  public:
    /// `missing` is what the removal of a field gives where there is none.
    explicit FieldStore(int missing) : missing_(missing) {}
    FieldStore(const FieldStore&) = delete;
    FieldStore& operator=(const FieldStore&) = delete;

    /// The request filled, or without one all fields as a new list; NULL when there is nothing.
    virtual kz_FldList* read(kz_FldList* request) = 0;
    /// Writes the list. @return 1 or 0
    virtual int write(kz_FldList* list, bool clear_existing) = 0;
    int missing() const { return missing_; }

  protected:
    ~FieldStore() = default;

  private:
    int missing_;
};

/// A list of the named field, or of all fields for a NULL or empty name; NULL when there is none.
OwnedFldList readField(FieldStore& store, const kz_Char* name);
/// Adds a value to the field, or with `clear_existing` gives it this one value. With `unique` a
/// value that is there already isn't added, and the field is written as it was. @return 1 or 0
int setField(FieldStore& store, int16_t type, const void* value, const kz_Char* name,
             bool clear_existing, bool unique);
/// Removes the field. @return 1 or 0; the store's own result when there is no such field
int deleteField(FieldStore& store, const kz_Char* name);
/// Removes the first equal value of the field, or all of them. @return 1; 0 when there is none
int deleteFieldValue(FieldStore& store, int16_t type, const void* value, const kz_Char* name,
                     bool all);

}  // namespace kz

#endif
