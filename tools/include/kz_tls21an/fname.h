/// File names as text; no file is looked at unless a line says so.
///
/// A name is a folder and a file. The folder goes up to and including the last separator or drive
/// colon; separators are '/' and '\' on every system, since drawings carry names from both. The
/// extension is what stands behind the last dot of the file; a dot at its start, and a file of
/// dots alone, makes none.
///
/// Functions that work in place give their argument back, NULL for NULL. The caller provides the
/// room for what they add.
#ifndef KZ_TLS21AN_FNAME_H
#define KZ_TLS21AN_FNAME_H

#include "kz_tls21an/types.h"

extern "C" {

/// Copies the folder, with the separator at its end. `out` may be `name`.
/// @return 1; 0 when the name holds no folder, and for NULL: `out` is then empty
KZ_TLS_API int kz_Fname_extractPath(const kz_Char* name, kz_Char* out);
/// Copies the extension, without its dot. `out` may be `name`.
/// @return 1; 0 when there is none, and for NULL: `out` is then empty
KZ_TLS_API int kz_Fname_extractExt(const kz_Char* name, kz_Char* out);
/// Removes the folder, in place.
KZ_TLS_API kz_Char* kz_Fname_rmvPath(kz_Char* name);
/// Removes the extension and its dot, in place; a dot alone at the end goes, too.
KZ_TLS_API kz_Char* kz_Fname_rmvExt(kz_Char* name);
/// Gives a name without an extension this one, in place. A name that has one keeps it, and so does
/// every name for a NULL or empty `extension`, which may bring its dot along.
KZ_TLS_API kz_Char* kz_Fname_addExt(kz_Char* name, const kz_Char* extension);
/// Gives the name this extension in the place of its own, in place; with `keep` not 0 a name that
/// has one keeps it. A NULL or empty `extension` removes.
KZ_TLS_API kz_Char* kz_Fname_modExt(kz_Char* name, const kz_Char* extension, int keep);
/// Brings a folder to its normal form, in place: without blanks around it, with the system's
/// separators, one each (a network name keeps the two at its start), and one at the end. An empty
/// text stays empty. It gets at most one character longer.
KZ_TLS_API kz_Char* kz_Fname_fixDir(kz_Char* folder);

/// The name from the root on, without "." and ".."; a relative one counts from the current folder,
/// an empty one is that. Names with a drive or on the network are such already, on every system.
/// @return text in storage of this function that holds until its next call; NULL for NULL, without
/// a current folder and without memory
KZ_TLS_API const kz_Char* kz_Fname_fullPath(const kz_Char* name);
/// Makes a new empty file with a name of its own in the system's folder for temporary files.
/// @return its full name, stored as above; NULL when no file can be made there
KZ_TLS_API const kz_Char* kz_Fname_createTemp(void);
}

#endif
