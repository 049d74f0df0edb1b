/// The counter behind kz_Record_count; each family that has create and destroy keeps it.
#ifndef TOOLS_RECORD_COUNT_H
#define TOOLS_RECORD_COUNT_H

#include <cstdint>

extern int64_t livingRecords;

#endif
