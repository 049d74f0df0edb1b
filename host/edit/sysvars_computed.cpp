/// System variables that follow from the state of the host: names of files, times, the view, the
/// user coordinate system, the space that is worked in.
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "base/search_path.h"
#include "edit/drawing_state.h"
#include "edit/shapes.h"
#include "edit/sysvar_table.h"
#include "edit/tag_values.h"
#include "host/undo.h"
#include "kz_tls21an/text.h"

namespace fs = std::filesystem;

namespace host {
namespace {

using Found = std::optional<VariableValue>;

std::function<int64_t()>& clockSource() {
    static std::function<int64_t()> source;
    return source;
}

int64_t milliseconds() {
    if (clockSource()) return clockSource()();
    using namespace std::chrono;
    return duration_cast<std::chrono::milliseconds>(system_clock::now().time_since_epoch()).count();
}

// --- files --------------------------------------------------------------------------------------

std::u16string folderText(const fs::path& folder) {
    return kz::toUtf16((folder / "").string());
}

fs::path fileOf(const Database* database) {
    std::error_code ignored;
    if (database == nullptr || database->path().empty()) return {};
    return fs::absolute(database->path(), ignored);
}

Found dwgName(Database* database) {
    const std::string name = fileOf(database).filename().string();
    return name.empty() ? std::u16string(u"Drawing1.dwg") : kz::toUtf16(name);
}

Found dwgPrefix(Database* database) {
    std::error_code ignored;
    const fs::path file = fileOf(database);
    return folderText(file.empty() ? fs::current_path(ignored) : file.parent_path());
}

Found dwgTitled(Database* database) {
    return fileOf(database).empty() ? 0 : 1;
}

Found saveName(Database* database) {
    return kz::toUtf16(fileOf(database).string());
}

Found dbMod(Database* database) {
    return database != nullptr && database->isUnsaved() ? 1 : 0;
}

Found searchFolders(Database*) {
    std::u16string folders;
    for (const std::string& folder : supportFolders())
        folders += (folders.empty() ? u"" : u";") + folderText(folder);
    return folders;
}

Found tempPrefix(Database*) {
    std::error_code error;
    const fs::path folder = fs::temp_directory_path(error);
    return folderText(error ? fs::path("/tmp") : folder);
}

Found undoControl(Database*) {
    return undoControlBits();
}

// --- the machine --------------------------------------------------------------------------------

Found loginName(Database*) {
    const passwd* entry = ::getpwuid(::getuid());
    return entry == nullptr ? std::u16string(u"user") : kz::toUtf16(entry->pw_name);
}

Found platform(Database*) {
    utsname names{};
    if (::uname(&names) != 0) return std::u16string(u"Linux");
    return kz::toUtf16(std::string(names.sysname) + " " + names.release + " (" + names.machine +
                       ")");
}

Found millisecs(Database*) {
    return static_cast<int32_t>(milliseconds() & INT32_MAX);
}

std::tm localTime() {
    const auto seconds = static_cast<std::time_t>(milliseconds() / 1000);
    std::tm local{};
    ::localtime_r(&seconds, &local);
    return local;
}

/// Days by the Julian calendar count, and the part of the local day that is gone.
Found date(Database*) {
    constexpr int64_t kDayOf1970 = 2440588;
    std::tm local = localTime();
    const int64_t seconds = ::timegm(&local);
    constexpr int64_t kDay = 86400;
    const int64_t day = seconds / kDay;
    const double part = static_cast<double>(seconds - day * kDay) +
                        static_cast<double>(milliseconds() % 1000) / 1000.0;
    return static_cast<double>(kDayOf1970 + day) + part / static_cast<double>(kDay);
}

/// Date and time as digits: YYYYMMDD.HHMMSSmmm.
Found calendarDate(Database*) {
    const std::tm local = localTime();
    const double day = (local.tm_year + 1900) * 10000.0 + (local.tm_mon + 1) * 100 + local.tm_mday;
    const double time = local.tm_hour * 1e-2 + local.tm_min * 1e-4 + local.tm_sec * 1e-6 +
                        static_cast<double>(milliseconds() % 1000) * 1e-9;
    return day + time;
}

// --- the user coordinate system -----------------------------------------------------------------

AcGePoint3d toUser(Database& database, const AcGePoint3d& world) {
    return currentUcs(database).toWorld().inverse() * world;
}
AcGePoint3d asPoint(const AcGeVector3d& vector) {
    return AcGePoint3d() + vector;
}

Found ucsOrigin(Database* database) {
    return database == nullptr ? Found() : currentUcs(*database).origin;
}
Found ucsXDirection(Database* database) {
    return database == nullptr ? Found() : asPoint(currentUcs(*database).x);
}
Found ucsYDirection(Database* database) {
    return database == nullptr ? Found() : asPoint(currentUcs(*database).y);
}
Found ucsName(Database* database) {
    return database == nullptr ? Found() : currentUcs(*database).name;
}
Found worldUcs(Database* database) {
    return database == nullptr ? Found() : currentUcs(*database).isWorld() ? 1 : 0;
}

Found lastPoint(Database* database) {
    if (database == nullptr) return {};
    return toUser(*database, drawingState(*database).last_point);
}
bool setLastPoint(Database& database, const VariableValue& value) {
    drawingState(database).last_point =
        currentUcs(database).toWorld() * std::get<AcGePoint3d>(value);
    return true;
}

// --- the view -----------------------------------------------------------------------------------

Found viewCentre(Database* database) {
    if (database == nullptr) return {};
    const View view = currentView(*database);
    return toUser(*database,
                  view.displayToWorld() * AcGePoint3d(view.centre.x, view.centre.y, 0.0));
}

/// A corner of the screen: -1 the lower left one, 1 the upper right one.
Found screenCorner(Database* database, double side) {
    if (database == nullptr) return {};
    const View view = currentView(*database);
    const double half = side * view.height / 2;
    const AcGePoint3d corner(view.centre.x + half * viewAspect(*database), view.centre.y + half,
                             0.0);
    return toUser(*database, view.displayToWorld() * corner);
}
Found screenMinimum(Database* database) {
    return screenCorner(database, -1.0);
}
Found screenMaximum(Database* database) {
    return screenCorner(database, 1.0);
}

Found viewDirection(Database* database) {
    if (database == nullptr) return {};
    AcGeVector3d direction = currentView(*database).direction;
    return asPoint(direction.transformBy(currentUcs(*database).toWorld().inverse()));
}
Found viewTarget(Database* database) {
    return database == nullptr ? Found() : toUser(*database, currentView(*database).target);
}
Found viewSize(Database* database) {
    return database == nullptr ? Found() : currentView(*database).height;
}
Found viewTwist(Database* database) {
    return database == nullptr ? Found() : currentView(*database).twist;
}
Found viewMode(Database* database) {
    return database == nullptr ? Found() : currentView(*database).mode;
}
Found lensLength(Database* database) {
    return database == nullptr ? Found() : currentView(*database).lens;
}
Found frontPlane(Database* database) {
    return database == nullptr ? Found() : currentView(*database).front;
}
Found backPlane(Database* database) {
    return database == nullptr ? Found() : currentView(*database).back;
}

constexpr int kFollowsUcs = 8;

Found ucsFollow(Database* database) {
    if (database == nullptr) return {};
    return (currentView(*database).mode & kFollowsUcs) != 0 ? 1 : 0;
}
bool setUcsFollow(Database& database, const VariableValue& value) {
    const Slot record = needViewRecord(database);
    Tags& tags = database.changeTags(record);
    const int64_t rest = integerOf(tags, 71, 0) & ~int64_t{kFollowsUcs};
    replaceTag(tags, Tag(71, rest | (std::get<int32_t>(value) != 0 ? kFollowsUcs : 0)));
    database.touch(record);
    return true;
}

Found screen(Database*) {
    return screenSize();
}

// --- spaces -------------------------------------------------------------------------------------

Found tileMode(Database* database) {
    if (database == nullptr) return {};
    return inModelTiles(*database) ? 1 : 0;
}
bool setTileMode(Database& database, const VariableValue& value) {
    database.setHeader("$TILEMODE", Tag(70, int64_t{std::get<int32_t>(value)}));
    drawingState(database).layout_viewport = 1;
    return true;
}

Found viewport(Database* database) {
    return database == nullptr ? Found() : currentViewport(*database);
}
bool setViewport(Database& database, const VariableValue& value) {
    return setCurrentViewport(database, std::get<int32_t>(value));
}

constexpr std::u16string_view kModelTab = u"Model";

/// Name of the layout whose paper space is the drawing's.
std::u16string layoutName(Database& database) {
    const uint64_t handle = [&] {
        const Tags& record = database.tags(database.paperSpace());
        const size_t at = findTag(record, 340);
        return at < record.size() ? record[at].handleValue() : 0;
    }();
    const Slot layout = handle == 0 ? kNoSlot : database.findHandle(handle);
    if (layout == kNoSlot) return u"Layout1";
    const Tags& tags = database.tags(layout);
    // The name stands in the layout's own part; before it are the plot settings with theirs.
    for (size_t at = findTag(tags, 100); at < tags.size(); at = findTag(tags, 100, at + 1)) {
        if (tags[at].text(database.codec()) != u"AcDbLayout") continue;
        const size_t name = findTag(tags, 1, at);
        if (name < tags.size()) return tags[name].text(database.codec());
    }
    return u"Layout1";
}

Found tab(Database* database) {
    if (database == nullptr) return {};
    return inModelTiles(*database) ? std::u16string(kModelTab) : layoutName(*database);
}
bool setTab(Database& database, const VariableValue& value) {
    const auto& name = std::get<std::u16string>(value);
    const bool model = kz::compareNoCase(name, kModelTab) == 0;
    if (!model && kz::compareNoCase(name, layoutName(database)) != 0) return false;
    return setTileMode(database, model ? 1 : 0);
}

// --- what is drawn ------------------------------------------------------------------------------

/// A corner of the box around what is drawn; that of the header where nothing is.
Found drawnCorner(Database* database, bool greatest) {
    if (database == nullptr) return {};
    const AcDbExtents box = drawnExtents(*database, currentSpace(*database));
    if (!box.isEmpty()) return greatest ? box.maxPoint() : box.minPoint();
    const bool paper = inPaperSpace(*database);
    const HeaderVariable* header = greatest ? database->header(paper ? "$PEXTMAX" : "$EXTMAX")
                                            : database->header(paper ? "$PEXTMIN" : "$EXTMIN");
    const AcGePoint3d nothing = greatest ? box.maxPoint() : box.minPoint();
    return header == nullptr ? nothing : pointOf(header->tags, 10, nothing);
}
Found extentsMinimum(Database* database) {
    return drawnCorner(database, false);
}
Found extentsMaximum(Database* database) {
    return drawnCorner(database, true);
}

constexpr WorkedOut kRows[] = {
    {"ACADPREFIX", searchFolders},
    {"BACKZ", backPlane},
    {"CDATE", calendarDate},
    {"CTAB", tab, setTab},
    {"CVPORT", viewport, setViewport},
    {"DATE", date},
    {"DBMOD", dbMod},
    {"DWGNAME", dwgName},
    {"DWGPREFIX", dwgPrefix},
    {"DWGTITLED", dwgTitled},
    {"EXTMAX", extentsMaximum},
    {"EXTMIN", extentsMinimum},
    {"FRONTZ", frontPlane},
    {"LASTPOINT", lastPoint, setLastPoint},
    {"LENSLENGTH", lensLength},
    {"LOGINNAME", loginName},
    {"MILLISECS", millisecs},
    {"PLATFORM", platform},
    {"SAVENAME", saveName},
    {"SCREENSIZE", screen},
    {"TARGET", viewTarget},
    {"TEMPPREFIX", tempPrefix},
    {"TILEMODE", tileMode, setTileMode},
    {"UCSFOLLOW", ucsFollow, setUcsFollow},
    {"UCSNAME", ucsName},
    {"UCSORG", ucsOrigin},
    {"UCSXDIR", ucsXDirection},
    {"UCSYDIR", ucsYDirection},
    {"UNDOCTL", undoControl},
    {"VIEWCTR", viewCentre},
    {"VIEWDIR", viewDirection},
    {"VIEWMODE", viewMode},
    {"VIEWSIZE", viewSize},
    {"VIEWTWIST", viewTwist},
    {"VSMAX", screenMaximum},
    {"VSMIN", screenMinimum},
    {"WORLDUCS", worldUcs},
};

}  // namespace

const WorkedOut* findWorkedOut(std::string_view name) {
    for (const WorkedOut& row : kRows) {
        if (row.name == name) return &row;
    }
    return nullptr;
}

void setClock(std::function<int64_t()> clock) {
    clockSource() = std::move(clock);
}

}  // namespace host
