/// Result buffers, names, and the flat functions of the platform: acut* (utilities), acdb* (drawing
/// database by entity name), aced* (editor).
///
/// A function that answers with an int gives RTNORM on success and one of the negative RT codes
/// otherwise, and then leaves its out arguments as they were.
#ifndef ACAD_ADS_H
#define ACAD_ADS_H

#include "acad/adesk.h"
#include "kz_tls21an/format.h"

/// Result type codes (restype of a node that holds no DXF group).
enum : int16_t {
    RTNONE = 5000,
    RTREAL = 5001,
    RTPOINT = 5002,
    RTSHORT = 5003,
    RTANG = 5004,
    RTSTR = 5005,
    RTENAME = 5006,
    RTPICKS = 5007,
    RTORINT = 5008,
    RT3DPOINT = 5009,
    RTLONG = 5010,
    RTVOID = 5014,
    RTLB = 5016,
    RTLE = 5017,
    RTDOTE = 5018,
    RTNIL = 5019,
    RTDXF0 = 5020,
    RTT = 5021,
    RTRESBUF = 5023
};

/// Status codes of the flat functions.
enum : int {
    RTNORM = 5100,
    RTERROR = -5001,
    RTCAN = -5002,
    RTREJ = -5003,
    RTFAIL = -5004,
    RTKWORD = -5005
};

typedef double ads_real;
typedef ads_real ads_point[3];
typedef ads_real ads_matrix[4][4];
/// Name of an entity or a selection set: two words, both zero for none. Never an address.
typedef int64_t ads_name[2];

/// Value of a node; the kind follows from restype.
union ads_u_val {
    ads_real rreal;
    ads_real rpoint[3];
    int16_t rint;
    int32_t rlong;
    int64_t mnInt64;
    ACHAR* rstring;  ///< owned by the node
    int64_t rlname[2];
};

/// A node of the platform's linked result buffer. Binary groups (310, 1004) hold hex text.
struct resbuf {
    resbuf* rbnext;
    int16_t restype;
    ads_u_val resval;
};

inline bool ads_name_nil(const ads_name name) {
    return name[0] == 0 && name[1] == 0;
}
inline void ads_name_clear(ads_name name) {
    name[0] = name[1] = 0;
}
inline void ads_name_set(const ads_name from, ads_name to) {
    to[0] = from[0];
    to[1] = from[1];
}
inline bool ads_name_equal(const ads_name a, const ads_name b) {
    return a[0] == b[0] && a[1] == b[1];
}

class AcDbObjectId;

extern "C" {

// --- result buffers ---------------------------------------------------------------------------

/// One node with no value. @return NULL when it can't be made; caller releases
ACAD_API resbuf* acutNewRb(int restype);
/// Frees a whole chain and the texts of its nodes of string kind; NULL is ignored. A node that was
/// released before is left alone. @return RTNORM
ACAD_API int acutRelRb(resbuf* chain);
/// A chain from pairs of code and value, ended by a code 0 (by RTNONE where group 0 is wanted with
/// RTDXF0): text as const ACHAR*, reals as double, shorts and longs as int, points as const
/// double*, names as const int64_t*, markers without a value. @return NULL without memory or for an
/// unknown code
ACAD_API resbuf* acutBuildList(int restype, ...);
/// RTNORM when `text` matches the wildcard `pattern` (# @ . * ? ~ [..] [~..] , and ` as escape).
ACAD_API int acutWcMatch(const ACHAR* text, const ACHAR* pattern);
/// Distance of two points.
ACAD_API ads_real acutDistance(const ads_point a, const ads_point b);

/// Prints formatted text on the command line; see acutPrintf below.
ACAD_API int acutPrintfArgs(const ACHAR* format, const kz_FormatArg* args, size_t count);

// --- the call from Lisp -----------------------------------------------------------------------

/// Arguments of the running call, or NULL when there are none. The callee may release the chain or
/// leave it: what is still alive when it returns is freed by the host.
ACAD_API resbuf* acedGetArgs(void);
/// The acedRet functions set the value of the running call; the last one before its end counts.
/// A chain is copied; its outer RTLB .. RTLE is the list itself. @return RTNORM; RTERROR outside of
/// a call or for a list whose markers don't match
ACAD_API int acedRetList(const resbuf* chain);
ACAD_API int acedRetNil(void);
ACAD_API int acedRetT(void);
ACAD_API int acedRetVoid(void);
ACAD_API int acedRetInt(int value);
ACAD_API int acedRetReal(ads_real value);
ACAD_API int acedRetStr(const ACHAR* value);
/// `type` is RTENAME or RTPICKS. A name of two zero words is a value too.
ACAD_API int acedRetName(const ads_name name, int type);
ACAD_API int acedRetPoint(const ads_point value);
ACAD_API int acedRetVal(const resbuf* node);

// --- entities by name -------------------------------------------------------------------------

/// Name of the entity (or other object) with this handle in the current drawing, erased ones too.
ACAD_API int acdbHandEnt(const ACHAR* handle, ads_name name);
/// Groups of an entity: -1 name, 0 type, then the others in file order; NULL for an erased entity
/// or a name that leads nowhere. Caller releases.
ACAD_API resbuf* acdbEntGet(const ads_name name);
/// The same with the XDATA of the applications named in `apps` (RTSTR nodes with wildcards): group
/// -3, then each application's groups from its 1001 on.
ACAD_API resbuf* acdbEntGetX(const ads_name name, const resbuf* apps);
/// Adds an entity, or a table record, to the current drawing; the name of the new one is given when
/// `name` is not NULL. @return RTNORM; RTREJ for a list that makes no entity (ERRNO says why)
ACAD_API int acdbEntMakeX(const resbuf* list, ads_name name);
/// Changes an entity: the groups of `list` replace those of the entity it names (-1). XDATA of the
/// applications named behind -3 is replaced.
ACAD_API int acdbEntMod(const resbuf* list);
/// Erases a living entity, brings an erased one back.
ACAD_API int acdbEntDel(const ads_name name);
/// The last living main entity of the current drawing.
ACAD_API int acdbEntLast(ads_name name);
/// The entity behind `name`, from the start of the drawing for NULL; sub-entities are met too.
ACAD_API int acdbEntNext(const ads_name name, ads_name next);
/// Registers an application name, which is never undone. @return RTNORM also when it is registered
/// already; RTERROR for a name that can't be one
ACAD_API int acdbRegApp(const ACHAR* app);
/// Groups of the table record (or block) `name`; NULL when there is none.
ACAD_API resbuf* acdbTblSearch(const ACHAR* table, const ACHAR* name, int setNext);
/// The next record of a table, from its first one after a rewind; NULL at the end.
ACAD_API resbuf* acdbTblNext(const ACHAR* table, int rewind);
/// Name of the table record's object.
ACAD_API int acdbTblObjName(const ACHAR* table, const ACHAR* name, ads_name object);
/// RTNORM for a valid symbol name; with `allowPipe` not 0 a '|' is accepted.
ACAD_API int acdbSNValid(const ACHAR* name, int allowPipe);

/// The drawing's named objects dictionary.
ACAD_API int acdbNamedObjDict(ads_name dictionary);
/// Groups of the entry `key`; NULL when there is none. With `setNext` the walk of acdbDictNext goes
/// on behind it.
ACAD_API resbuf* acdbDictSearch(const ads_name dictionary, const ACHAR* key, int setNext);
/// Groups of the next entry, from the first one after a rewind; NULL at the end.
ACAD_API resbuf* acdbDictNext(const ads_name dictionary, int rewind);
/// Puts a non-graphical object that no dictionary owns under `key`. @return RTREJ for a key in use
/// or an object that can't be entered
ACAD_API int acdbDictAdd(const ads_name dictionary, const ACHAR* key, const ads_name object);
/// Takes an entry out; its object stays in the drawing until it is saved.
ACAD_API int acdbDictRemove(const ads_name dictionary, const ACHAR* key);
/// Renames an entry. @return RTREJ for a missing old or a used new key
ACAD_API int acdbDictRename(const ads_name dictionary, const ACHAR* oldKey, const ACHAR* newKey);

// --- units --------------------------------------------------------------------------------------

/// Distance as text, with what DIMZIN and UNITMODE say. `unit` -1 is the drawing's linear unit, 1
/// to 5 as LUNITS; `precision` -1 is the drawing's (LUPREC). @return RTERROR for unknown units, no
/// number, and a text that does not fit `size` units with its end
ACAD_API int acdbRToS(ads_real value, int unit, int precision, ACHAR* text, size_t size);
/// Distance text to number: all spellings are read in all units. `unit` as in acdbRToS.
ACAD_API int acdbDisToF(const ACHAR* text, int unit, ads_real* value);
/// Direction [radians from the x axis] as text, counted from ANGBASE in the sense of ANGDIR. `unit`
/// -1 is the drawing's angular unit, 0 to 4 as AUNITS; `precision` -1 is the drawing's (AUPREC).
/// @return as acdbRToS
ACAD_API int acdbAngToS(ads_real radians, int unit, int precision, ACHAR* text, size_t size);
/// Angle text to direction, from 0 to below the full circle; the inverse of acdbAngToS. Marks in
/// the text win over `unit`.
ACAD_API int acdbAngToF(const ACHAR* text, int unit, ads_real* radians);

// --- editor -----------------------------------------------------------------------------------

/// Value of a system variable; a text is a heap copy that the caller frees.
ACAD_API int acedGetVar(const ACHAR* name, resbuf* value);
/// Sets a system variable. @return RTERROR for an unknown, read-only or unfit one
ACAD_API int acedSetVar(const ACHAR* name, const resbuf* value);
/// Adds an entity to a set: without a set (NULL or a nil name) a new one is made, without an entity
/// an empty one. At most 128 sets live at once. `result` may be the set itself.
ACAD_API int acedSSAdd(const ads_name entity, const ads_name set, ads_name result);
/// Selects entities as a new set. Points are in the user coordinate system; places are compared as
/// they are seen in the present view, however deep. Modes, in any case and with or without an
/// underscore:
///   NULL    asks the user; with a point `first` it takes what is seen there
///   X       model space and all layouts, hidden things too; A all of the current space that is not
///           on a frozen layer
///   W, C    what is inside of, or touches, the window of the points `first` and `second`; B is C
///           for a second point on the left
///   WP, CP  the same with a polygon, F what crosses an open path: `first` is a chain of points
///   L, P, I the last visible entity, the last choice at a prompt, what acedSSSetFirst has set
/// Behind a colon stand S (one choice), E (all that is under the pick box), L (nothing on locked
/// layers), N (objects in blocks, see acedSSNameX) and D (members may come twice); they may be
/// combined, as in ":S:E". `filter` lets entities through (NULL: all). Its groups must all be met;
/// texts are wildcard patterns, a node -4 in front of a group compares ("=", "<>", ">=", "&",
/// ">,>,*" ...) or opens and closes a group of tests ("<OR" ... "OR>", AND, XOR, NOT); behind -3
/// stand applications (1001) that must have XDATA on the entity. The members are in the order of
/// choosing, of one window in the order of the drawing. @return RTERROR for a chain that is no
/// filter, points that are missing or make no polygon, when nothing is selected, and when there is
/// no set left; RTCAN for a cancel; RTREJ for a mode that does not exist
ACAD_API int acedSSGet(const ACHAR* mode, const void* first, const void* second,
                       const resbuf* filter, ads_name result);
/// Takes an entity out of a set. @return RTERROR when it is no member
ACAD_API int acedSSDel(const ads_name entity, const ads_name set);
ACAD_API int acedSSLength(const ads_name set, int32_t* length);
/// Member `index`, counted from 0, in the order of adding.
ACAD_API int acedSSName(const ads_name set, int32_t index, ads_name entity);
/// RTNORM for a member.
ACAD_API int acedSSMemb(const ads_name entity, const ads_name set);
/// How member `index` was chosen, or all members with -1: in a list, a list (how entity 0 ...) for
/// each, how being 0 in no certain way, 1 at a point, 2 by a window or polygon, 3 by one that
/// crosses, 4 by a fence. Behind 1 and 4 stand points as (0 point [direction]) in the world, the
/// direction toward the viewer when it isn't the z axis; behind 2 and 3 a number below 0, which is
/// that of the list (number (0 corner) ...) behind those of the members. For an object in a block
/// the entity is that object, and the list ends in (insertion ...), from the inner to the outer
/// one. Caller releases.
ACAD_API int acedSSNameX(resbuf** chain, const ads_name set, int32_t index);
/// Transforms the members; points are multiplied from the right. @return RTERROR for a matrix that
/// is singular, and when members could not be transformed (erased, open, on a locked layer, or not
/// of a kind that takes the matrix); the others are
ACAD_API int acedXformSS(const ads_name set, ads_matrix matrix);
/// Makes the members of a set that are in the current space chosen before a command is given
/// (NULL or a nil name: none). The second set is not used. @return RTERROR when PICKFIRST is off,
/// and for a name that is no set
ACAD_API int acedSSSetFirst(const ads_name set, const ads_name unused);
/// The entities that are chosen so, as a new set in an RTPICKS node that the caller releases, the
/// set apart; NULL for none. The first is that of grips, which are not here: NULL.
ACAD_API int acedSSGetFirst(resbuf** grips, resbuf** chosen);
/// Frees a set; its name is refused from now on.
ACAD_API int acedSSFree(const ads_name set);

/// Shows an entity anew (1), takes it off the screen (2), highlights it (3) or ends that (4);
/// negative modes do so with the head of a complex entity alone. Without a name (NULL or a nil one)
/// all that was taken off the screen is shown again, whatever the mode. @return RTERROR for another
/// mode, and for a name that is no living entity's
ACAD_API int acedRedraw(const ads_name entity, int mode);
/// Takes off the screen what was drawn there and is no object, in a viewport or with 0 in all of
/// them. Here only objects are drawn, so it changes nothing. @return false when it can't be done
ACAD_API bool acgsRemoveAnonymousGraphics(int viewport);
/// Shows a text on the command line as it stands.
ACAD_API int acedPrompt(const ACHAR* text);
/// Point or displacement from one coordinate system to another. Each system is an RTSHORT (0 world,
/// 1 user, 2 display, 3 paper space display), an RTENAME (an entity's system) or an RT3DPOINT
/// (an extrusion direction).
ACAD_API int acedTrans(const ads_point point, const resbuf* from, const resbuf* to,
                       int displacement, ads_point result);
}

/// Prints formatted text on the command line, in the conventions of kz_Str_format.
template <class... Args>
int acutPrintf(const ACHAR* format, Args... args) {
    if constexpr (sizeof...(Args) == 0) {
        return acutPrintfArgs(format, nullptr, 0);
    } else {
        const kz_FormatArg list[] = {kz_formatArg(args)...};
        return acutPrintfArgs(format, list, sizeof...(Args));
    }
}

#endif
