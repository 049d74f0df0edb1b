/// The editor: input from the user and commands.
///
/// An input function asks until it has an answer that fits; a wrong one is told and asked again. It
/// gives RTNORM with a value, RTNONE for Enter alone, RTKWORD for a keyword of the acedInitGet in
/// front of it (acedGetInput has it), RTCAN for a cancel or the end of all answers. What
/// acedInitGet says holds for one input function. Points are in the user coordinate system, angles
/// in radians. A NULL prompt is empty.
#ifndef ACAD_ED_H
#define ACAD_ED_H

#include "acad/ads.h"

/// Flags of acedInitGet.
enum : int {
    RSG_NONULL = 1,   ///< refuses Enter
    RSG_NOZERO = 2,   ///< refuses 0
    RSG_NONEG = 4,    ///< refuses negative values
    RSG_NOLIM = 8,    ///< points outside of the limits are good also when LIMCHECK is on
    RSG_2D = 64,      ///< acedGetDist gives a distance in the plane
    RSG_OTHER = 128,  ///< any text is an answer: RTKWORD
    RSG_ALLOWED = 1023
};

extern "C" {

/// Prepares the next input function. `keywords` are separated by blanks; their capitals, or what
/// stands behind a comma ("LTYPE,LT"), abbreviate them. Behind an underscore stand the words of
/// any language ("Ja Nein _Yes No"), which are what acedGetInput gives; they are typed with an
/// underscore in front. NULL: no keywords. @return RTERROR for unknown flags
ACAD_API int acedInitGet(int flags, const ACHAR* keywords);
/// A point: "1,2", "1,2,3", "@3,4", "5<45", "@5<45", "*1,2" in world coordinates. Relative ones
/// count from `base`, or from the last point without it.
ACAD_API int acedGetPoint(const ads_point base, const ACHAR* prompt, ads_point result);
/// A point, the corner of a window that starts at `base`.
ACAD_API int acedGetCorner(const ads_point base, const ACHAR* prompt, ads_point result);
/// An angle typed in the drawing's units, or by a point seen from `base` (or two points).
ACAD_API int acedGetAngle(const ads_point base, const ACHAR* prompt, ads_real* radians);
/// The same, always counted from the x axis counterclockwise.
ACAD_API int acedGetOrient(const ads_point base, const ACHAR* prompt, ads_real* radians);
/// A distance in the drawing's units, or by a point seen from `base` (or two points).
ACAD_API int acedGetDist(const ads_point base, const ACHAR* prompt, ads_real* distance);
ACAD_API int acedGetReal(const ACHAR* prompt, ads_real* value);
ACAD_API int acedGetInt(const ACHAR* prompt, int* value);
/// A text of up to 132 characters (room for 133); with `blanks` it may hold blanks, otherwise the
/// first one ends it. Enter gives an empty text.
ACAD_API int acedGetString(int blanks, const ACHAR* prompt, ACHAR* result);
/// One of the keywords (room for 133 characters; longer ones are cut here and whole in
/// acedGetInput).
ACAD_API int acedGetKword(const ACHAR* prompt, ACHAR* result);
/// The keyword of the last input function that gave RTKWORD or RTNORM for a keyword, as it stands
/// in the list (room for 256 characters). @return RTNONE when there was none
ACAD_API int acedGetInput(ACHAR* result);

/// The point of an entity near `point` that the object snap `modes` finds ("_end,_mid"), within the
/// aperture of the present view. @return RTERROR when there is none; `result` is then as it was
ACAD_API int acedOsnap(const ads_point point, const ACHAR* modes, ads_point result);

/// Asks for one entity: by a point, which picks the latest drawn entity of the present space in the
/// pick box (PICKBOX), by an entity name, or by "Last". A NULL prompt is "Select object: "; of
/// acedInitGet the keywords count. `point` gets the picked point, for a named entity the last
/// point.
/// @return RTERROR for a miss (ERRNO 7) and for Enter (ERRNO 52)
ACAD_API int acedEntSel(const ACHAR* prompt, ads_name entity, ads_point point);
/// The same for the innermost entity, in blocks and attached drawings too; of a POLYLINE the vertex
/// that the picked segment starts at, of an insertion the attribute. With `pointIsGiven` nothing is
/// asked, and `point` is the one to pick at.
/// @param matrix      gets the way from the coordinates of the entity's block to the world, for
///                    column vectors; the identity for an entity that is in no block; may be NULL
/// @param containers  gets the insertions around it, innermost first, as RTENAME nodes that the
///                    caller releases, or NULL for none; may be NULL
/// @return as acedEntSel
ACAD_API int acedNEntSelP(const ACHAR* prompt, ads_name entity, ads_point point, int pointIsGiven,
                          ads_matrix matrix, resbuf** containers);

/// Runs commands from pairs of type code and value, ended by RTNONE (or 0): texts, points, reals,
/// shorts, longs, entity names and selection sets; an empty text is Enter. A command that asks for
/// more is cancelled. @return RTNORM when all commands did their work, RTREJ while another command
/// runs, RTCAN for a cancelled one, RTERROR for an unknown command or a chain that is none
ACAD_API int acedCommandS(int restype, ...);
/// The same from a chain of result buffers.
ACAD_API int acedCmdS(const resbuf* chain);

/// Full path of a file (room for 513 characters): the name as it stands, beside the drawing in the
/// editor, or in a folder of the environment variable KZ_PATH. @return RTERROR when there is none
ACAD_API int acedFindFile(const ACHAR* name, ACHAR* result);

/// Switches between picture and text; nothing is to be seen here. @return RTNORM
ACAD_API int acedGraphScr(void);
ACAD_API int acedTextScr(void);
}

#endif
