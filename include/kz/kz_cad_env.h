/// The drawing in the editor and its settings: current properties, colours, layers, names, units
/// and view, in the vocabulary that the suite's callers use.
///
/// Where a text is handed out, the caller's buffer holds 256 characters, or 512 for the name of a
/// file or folder; a longer text is refused, and the buffer stays as it was. Unless a line says
/// otherwise a function gives 1, or 0 when the platform refuses and for NULL, with its outs
/// untouched.
#ifndef KZ_CAD_ENV_H
#define KZ_CAD_ENV_H

#include "kz/kz_objid.h"

/// In the place of a colour, layer, line style or line weight (in any case): the editor's current
/// one.
#define KZ_CAD_DEFAULT KZ_T("USE_CADENGINE_DEFAULT")

extern "C" {

// --- current settings ---------------------------------------------------------------------------

/// Colour and layer of new objects. The two names of each do the same.
KZ_EXPORT int kz_AcCADEngine_getColor(kz_Char* out);
KZ_EXPORT int kz_CAD_ColorGet(kz_Char* out);
KZ_EXPORT int kz_AcCADEngine_getCurrLayer(kz_Char* out);
KZ_EXPORT int kz_CAD_LayerGet(kz_Char* out);
/// Line type of new objects, and the scale of all line types.
KZ_EXPORT int kz_AcCADEngine_getLineStyle(kz_Char* out);
KZ_EXPORT int kz_AcCADEngine_getLineStyleScale(double* out);
/// Width of new polylines [drawing units]; as a text it is what the suite calls a line weight.
KZ_EXPORT int kz_AcCADEngine_getPlineWid(double* out);
KZ_EXPORT int kz_AcCADEngine_getLineWeight(kz_Char* out);
/// Sets the colour of new objects: a name of the standard table, or a number from 0 to 256. Any
/// other name counts as 0.
KZ_EXPORT int kz_CAD_ColorSet(const kz_Char* color);

/// The system variable of the name; 0 when it has no integer, 1 for the last two.
KZ_EXPORT int kz_CAD_getObjectSnapMode(void);
KZ_EXPORT int kz_CAD_getOrthoMode(void);
KZ_EXPORT int kz_CAD_getTileMode(void);
KZ_EXPORT int kz_CAD_getCurrViewPort(void);
KZ_EXPORT int kz_CAD_isDrawingTitled(void);
KZ_EXPORT int kz_CAD_setObjectSnapMode(int mode);
KZ_EXPORT int kz_CAD_setTileMode(int mode);
/// Which zeros of feet and inches are left out (DIMZIN); 0 when there is no integer.
KZ_EXPORT int kz_CAD_getFeetInchSuppression(void);

/// 1 while objects are drawn in paper space, and the opposite.
KZ_EXPORT int kz_CAD_inPaperSpace(void);
KZ_EXPORT int kz_CAD_inModelSpace(void);
/// Switch to a space by commands and by TILEMODE. @return 1
KZ_EXPORT int kz_CAD_setModelSpace(void);
KZ_EXPORT int kz_CAD_setPaperSpace(void);

/// 1 when the editor's profile is one of the suite's.
KZ_EXPORT int kz_CAD_IsQuillmontPipingProfile(void);
/// Hidden lines can always be removed. @return 1
KZ_EXPORT int kz_CAD_isHlrAvailable(void);
/// Nothing is loaded or unloaded here. @return 0
KZ_EXPORT int kz_CAD_propertiesLoad(void);
KZ_EXPORT int kz_CAD_propertiesUnload(void);

// --- colours ------------------------------------------------------------------------------------
//
// A colour is a text: a name of the standard table in any case ("RED"), a number ("1"), or
// KZ_CAD_DEFAULT.

/// The number of a name of the table; any other text as it is, cut at 255 characters. `out` may be
/// `color`; NULL does nothing.
KZ_EXPORT void kz_CAD_translateColor(kz_Char* out, const kz_Char* color);
/// The standard table as a new list that the caller destroys: with `numbers` not 0 the numbers,
/// otherwise the names. @return NULL without memory
KZ_EXPORT kz_StrList* kz_CAD_getStandardColors(int numbers);
/// Index of a colour text: 256 for "BYLAYER", 0 for "BYBLOCK", a number as it is, and 0 for any
/// other name: translate it first.
KZ_EXPORT int kz_AcCAD_xlatedColorToACADColorIndex(const kz_Char* color);
KZ_EXPORT uint16_t kz_AsAcDbColorIndex(const kz_Char* color);

// --- layers -------------------------------------------------------------------------------------
//
// Names are compared without regard to case.

/// 1 for a layer of the drawing in the editor.
KZ_EXPORT int kz_CAD_LayerExists(const kz_Char* name);
/// kz_CAD_createLayer and kz_CAD_setLayer in the working database.
KZ_EXPORT int kz_CAD_LayerCreate(const kz_Char* name);
KZ_EXPORT int kz_CAD_LayerSet(const kz_Char* name);
/// A new layer with the line type CONTINUOUS. A NULL drawing is the working database.
/// @return also 0 for a name that exists or can't be one, and without that line type
KZ_EXPORT int kz_CAD_createLayer(const kz_CADDwgId* drawing, const kz_Char* name);
/// Makes a layer current. @return also 0 for one that is missing or frozen
KZ_EXPORT int kz_CAD_setLayer(const kz_CADDwgId* drawing, const kz_Char* name);
/// State of a layer of the working database; 0 for a missing one.
KZ_EXPORT int kz_CAD_LayerIsFrozen(const kz_Char* name);
KZ_EXPORT int kz_CAD_LayerIsLocked(const kz_Char* name);
KZ_EXPORT int kz_CAD_LayerIsOff(const kz_Char* name);
/// Whether two layer names are equal; with `wildcard` not 0 whether the first one matches the
/// second as a pattern. With `strip` not 0 what stands up to the last '|' doesn't count.
KZ_EXPORT int kz_CAD_LayerIsEqual(const kz_Char* a, const kz_Char* b, int wildcard, int strip);
/// Gives a layer a colour from 1 to 255. @return also 0 for any other colour
KZ_EXPORT int kz_CAD_LayerSetColor(const kz_CADDwgId* drawing, const kz_Char* name,
                                   const kz_Char* color);
/// The flags of a layer of the drawing in the editor (1 frozen, 4 locked); 0 for a missing one.
KZ_EXPORT int kz_AcCAD_getLayerFlags(const kz_Char* name);
/// Copies what of a text may stand in a layer name: letters, digits, '$', '-' and '_'. Any other
/// character becomes `replacement`, or goes when that is 0. `out` gets at most `limit` characters
/// and the terminator; it may be `text`.
KZ_EXPORT int kz_CAD_fixLayerName(kz_Char* out, const kz_Char* text, kz_Char replacement,
                                  int limit);
/// 1 for a valid symbol name; with `allowPipe` not 0 it may hold a '|'.
KZ_EXPORT int kz_CAD_isValidSymbolName(const kz_Char* name, int allowPipe);
/// A valid name made of one that may be none: without outer blanks, with '_' for the others, or a
/// new code. @return a static text that the next call overwrites; empty when there is no code
KZ_EXPORT const kz_Char* kz_CAD_validateSymbolName(const kz_Char* name, int allowPipe);

// --- names of the drawing and the program -------------------------------------------------------
//
// A variable that can't be read is told on the command line and traced.

/// File of the drawing in the editor, with its folder and the extension "dwg".
KZ_EXPORT int kz_CAD_getDrawingName(kz_Char* out);
/// 1 when the name is that of the drawing in the editor, folder and all, in any case. With
/// `ignoreExtension` not 0 the extensions don't count.
KZ_EXPORT int kz_CAD_isCurrentDrawing(const kz_Char* name, int ignoreExtension);
/// 1 when the file of the name, without folder and extension, is UNNAMED in any case.
KZ_EXPORT int kz_CAD_isUnnamedDwg(const kz_Char* name);
/// The file that the drawing was last saved to.
KZ_EXPORT int kz_CAD_getSaveName(kz_Char* out);
/// The folder for temporary files.
KZ_EXPORT int kz_CAD_getTemporaryPathName(kz_Char* out);
/// The program's version, and the name of its build.
KZ_EXPORT int kz_CAD_getVersion(kz_Char* out);
KZ_EXPORT int kz_CAD_getTVersion(kz_Char* out);

// --- units and text -----------------------------------------------------------------------------
//
// Linear units are 2 decimal, 3 engineering, 4 architectural, 5 fractional; angular ones 0 to 4 as
// AUNITS, where 0 stands for any other number. `ok`, which may be NULL, gets 1, or 0 when there is
// no result. Static texts are overwritten by the next call of their function.

/// The drawing's linear units; 2 for any others.
KZ_EXPORT int kz_CAD_getUnits(void);
/// Decimals of the drawing's distances; 0 when they can't be read.
KZ_EXPORT int kz_CAD_getUnitsPrec(void);
/// A distance [drawing units; inches where feet are shown] as text. Units 0 are the drawing's; so
/// is the precision -1, and -2, which is 6 where the drawing has engineering or architectural
/// units. Any other units show six decimals. One sign is shown, in front.
/// @return static text of up to 39 characters; empty with `ok` 0 for a longer one
KZ_EXPORT const kz_Char* kz_CAD_strFromDouble(double value, int units, int precision, int* ok);
/// The distance that a text shows, in any spelling. Units 0 are the drawing's.
KZ_EXPORT double kz_CAD_strToDouble(const kz_Char* text, int units, int* ok);
/// A direction [radians] as text; units and precision -1 are the drawing's. @return static text
KZ_EXPORT const kz_Char* kz_CAD_strFromAngle(double radians, int units, int precision, int* ok);
/// The direction [radians] that a text shows; units -1 are the drawing's.
KZ_EXPORT double kz_CAD_strToAngle(const kz_Char* text, int units, int* ok);

// --- view ---------------------------------------------------------------------------------------
//
// What is read is given in local coordinates; the result is then that of the coordinate service,
// and without it the point is in the UCS. What is shown is given in the UCS.

/// Corners of what the drawing holds.
KZ_EXPORT int kz_CAD_getDrawingExtentsMin(kz_Point* out);
KZ_EXPORT int kz_CAD_getDrawingExtentsMax(kz_Point* out);
/// Centre of the view; z is 0. The origin when there is none.
KZ_EXPORT int kz_CAD_getViewCenter(kz_Point* out);
/// Direction from what is looked at to who looks.
KZ_EXPORT int kz_CAD_getViewDir(kz_Vector* out);
/// Half the side of the pick box [drawing units]; 0.0 when there is no view.
KZ_EXPORT double kz_CAD_getPickBoxSizeInDwgUnits(void);
/// Shows the view larger by a factor.
KZ_EXPORT int kz_CAD_zoom(double factor);
/// Shows a centre with a height [drawing units], of 1e-5 or less with the present one.
KZ_EXPORT int kz_CAD_zoomCenter(const kz_Point* center, double height);
/// Shows all there is, the view before, and a window.
KZ_EXPORT int kz_CAD_zoomExtents(void);
KZ_EXPORT int kz_CAD_zoomPrevious(void);
KZ_EXPORT int kz_CAD_zoomWindow(const kz_Point* first, const kz_Point* second);
/// Inserts a block as a mark at a point in local coordinates; with a NULL point it is only made
/// sure that the block is there. A missing one is made of a point.
KZ_EXPORT void kz_CAD_highlightPosition(const kz_Point* point, const kz_Char* block);
/// Erases all insertions of the block.
KZ_EXPORT void kz_CAD_dehighlightPosition(const kz_Char* block);
}

#endif
