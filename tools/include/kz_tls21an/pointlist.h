/// List of points with a current position: a kz_LnkList whose elements are kz_Point copies that the
/// list owns. A NULL list is empty.
#ifndef KZ_TLS21AN_POINTLIST_H
#define KZ_TLS21AN_POINTLIST_H

#include "kz_tls21an/lnklist.h"
#include "kz_tls21an/point.h"

typedef kz_LnkList kz_PointList;

extern "C" {

/// A new empty list. @return NULL when there is no memory; caller destroys
KZ_TLS_API kz_PointList* kz_PointList_create(void);
/// Destroys the list with its points. @return 1; 0 for a NULL list
KZ_TLS_API int kz_PointList_destroy(kz_PointList* list);
/// Appends a copy of `point`. The position stays. @return 1; 0 for a NULL argument or without
/// memory
KZ_TLS_API int kz_PointList_insEnd(kz_PointList* list, const kz_Point* point);

/// Position operations, as those of kz_LnkList.
KZ_TLS_API int kz_PointList_start(kz_PointList* list);
KZ_TLS_API int kz_PointList_next(kz_PointList* list);
KZ_TLS_API int kz_PointList_eol(const kz_PointList* list);
/// The current point, lent; NULL at the end.
KZ_TLS_API kz_Point* kz_PointList_getCurr(const kz_PointList* list);
/// Number of points.
KZ_TLS_API int kz_PointList_length(const kz_PointList* list);
}

#endif
