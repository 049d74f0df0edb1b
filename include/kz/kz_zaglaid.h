/// All public headers of the library.
#ifndef KZ_ZAGLAID_H
#define KZ_ZAGLAID_H

#include "kz/kz_appdata.h"
#include "kz/kz_cad_env.h"
#include "kz/kz_diag.h"
#include "kz/kz_dwgdata.h"
#include "kz/kz_error.h"
#include "kz/kz_fldcnv.h"
#include "kz/kz_group.h"
#include "kz/kz_group_edit.h"
#include "kz/kz_group_fields.h"
#include "kz/kz_input.h"
#include "kz/kz_objid.h"
#include "kz/kz_objprops.h"
#include "kz/kz_point_cnv.h"
#include "kz/kz_rb.h"
#include "kz/kz_selset.h"
#include "kz/kz_services.h"
#include "kz/kz_ucs.h"
#include "kz/kz_xdata.h"

#endif
