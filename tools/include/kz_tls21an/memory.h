/// The suite's heap. It is the runtime's heap: a block of kz_Malloc may go back by free, a string
/// of kz_Str_dup by kz_Free.
#ifndef KZ_TLS21AN_MEMORY_H
#define KZ_TLS21AN_MEMORY_H

#include "kz_tls21an/types.h"

extern "C" {

/// A block of `size` bytes, not cleared. @return NULL when there is no memory; caller frees with
/// kz_Free
KZ_TLS_API void* kz_Malloc(size_t size);

/// Gives a block back. NULL is ignored.
KZ_TLS_API void kz_Free(void* block);

/// Records of the tools library that live at the moment: lists of all kinds, matrices. A test
/// compares it before and after.
KZ_TLS_API int64_t kz_Record_count(void);

/// Tests only: the `count`-th kz_Malloc from now and all that follow give NULL; 0 ends the
/// shortage.
KZ_TLS_API void kz_Malloc_failFrom(size_t count);
}

#endif
