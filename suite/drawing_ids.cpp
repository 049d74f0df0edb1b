/// Drawing ids: one record for each drawing that somebody asked for, with its uses counted; the
/// list of known drawings; and the files attached to a drawing.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "cadservice.h"
#include "host/drawings.h"
#include "kz_tls21an/text.h"

namespace fs = std::filesystem;

struct kz_CADDwgIdList {
    std::vector<kz_CADDwgId*> drawings;
    size_t at = 0;
};

namespace {

constexpr kz_Char kSignature[] = KZ_T("KZ_D");
constexpr int kModeFile = 2;
constexpr int kModeKnown = 3;

/// A record with what only this module knows of it.
struct Drawing {
    kz_CADDwgId id{};
    int uses = 0;
    std::u16string name;
    std::unique_ptr<AcDbDatabase> own;  ///< read for this record
};

std::u16string fileOf(const AcDbDatabase* database) {
    const ACHAR* name = nullptr;
    const bool named = database != nullptr && database->getFilename(name) == Acad::eOk;
    return named ? std::u16string(name) : std::u16string{};
}

bool isSameFile(const std::u16string& a, const std::u16string& b) {
    if (a.empty() || b.empty()) return false;
    std::error_code error;
    return a == b || fs::equivalent(kz::toUtf8(a), kz::toUtf8(b), error);
}

/// True when a drawing's file is meant by a name, which may lack the folder.
bool isMeant(const std::u16string& file, const std::u16string& name) {
    if (isSameFile(file, name)) return true;
    if (name.find_first_of(u"/\\") != std::u16string::npos || file.empty()) return false;
    const std::u16string last = file.substr(file.find_last_of(u'/') + 1);
    return kz::compareNoCase(last, name) == 0;
}

AcDbDatabase* editorDrawing() {
    return acdbHostApplicationServices()->workingDatabase();
}

/// Appends the drawings attached to `from`, and those attached to them. The host refuses circles,
/// so this ends.
void addAttached(AcDbDatabase* from, std::vector<AcDbDatabase*>& out) {
    for (const host::Attachment& attachment : host::attachments(from)) {
        AcDbDatabase* const attached = host::attachedDrawing(attachment.block);
        if (attached == nullptr) continue;
        out.push_back(attached);
        addAttached(attached, out);
    }
}

AcDbDatabase* findMeant(const std::vector<AcDbDatabase*>& among, const std::u16string& name) {
    const auto found = std::find_if(among.begin(), among.end(), [&](const AcDbDatabase* database) {
        return isMeant(fileOf(database), name);
    });
    return found == among.end() ? nullptr : *found;
}

/// The drawing that a block's record lies in.
AcDbDatabase* drawingOfBlock(AcDbObjectId block) {
    AcDbObject* object = nullptr;
    if (acdbOpenAcDbObject(object, block, AcDb::kForRead, true) != Acad::eOk) return nullptr;
    AcDbDatabase* const database = object->database();
    object->close();
    return database;
}

/// `inner` seen through `outer`.
host::Placement combine(const host::Placement& outer, const host::Placement& inner) {
    host::Placement out;
    out.angle = outer.angle + inner.angle;
    for (int i = 0; i < 3; ++i) {
        out.origin[i] = outer.origin[i];
        for (int k = 0; k < 3; ++k) {
            out.origin[i] += outer.axes[k][i] * inner.origin[k];
            out.axes[k][i] = 0.0;
            for (int m = 0; m < 3; ++m)
                out.axes[k][i] += outer.axes[m][i] * inner.axes[k][m];
        }
    }
    return out;
}

/// All living records and lists.
class DrawingTable {
  public:
    static DrawingTable& instance() {
        static DrawingTable table;
        return table;
    }

    /// The living record at an address; NULL for any other address.
    Drawing* find(const kz_CADDwgId* id) const {
        const auto found = drawings_.find(id);
        return found == drawings_.end() ? nullptr : found->second.get();
    }

    /// The same when its drawing is still there.
    Drawing* findOpen(const kz_CADDwgId* id) const {
        Drawing* const drawing = find(id);
        return drawing == nullptr || drawing->id.database == nullptr ? nullptr : drawing;
    }

    /// One more use of the drawing's record, which is made when there is none.
    kz_CADDwgId* use(AcDbDatabase* database) {
        for (const auto& [id, drawing] : drawings_) {
            if (drawing->id.database == database) return addUse(*drawing);
        }
        auto made = std::make_unique<Drawing>();
        made->name = fileOf(database);
        std::memcpy(made->id.signature, kSignature, sizeof made->id.signature);
        made->id.name = made->name.empty() ? nullptr : made->name.data();
        made->id.database = database;
        kz_CADDwgId* const id = &made->id;
        drawings_.emplace(id, std::move(made));
        return addUse(*drawings_.at(id));
    }

    /// Reads a file for a record of its own.
    kz_CADDwgId* read(const std::u16string& file) {
        auto database = std::make_unique<AcDbDatabase>(false, true);
        if (database->dxfIn(file.c_str()) != Acad::eOk) return nullptr;
        kz_CADDwgId* const id = use(database.get());
        find(id)->own = std::move(database);
        return id;
    }

    /// The drawings that were read for records.
    std::vector<AcDbDatabase*> ownDrawings() const {
        std::vector<AcDbDatabase*> found;
        for (const auto& [id, drawing] : drawings_) {
            if (drawing->own != nullptr) found.push_back(drawing->own.get());
        }
        return found;
    }

    void release(const kz_CADDwgId* id) {
        Drawing* const drawing = find(id);
        if (drawing == nullptr || --drawing->uses > 0) return;
        // Out of the table first: the drawing says that it closes when it is freed.
        const auto node = drawings_.extract(id);
    }

    void releaseAll() {
        for (kz_CADDwgIdList* list : lists_)
            *list = {};
        const auto all = std::exchange(drawings_, {});
    }

    bool isList(const kz_CADDwgIdList* list) const {
        return lists_.count(const_cast<kz_CADDwgIdList*>(list)) != 0;
    }
    kz_CADDwgIdList* makeList() {
        auto list = std::make_unique<kz_CADDwgIdList>();
        lists_.insert(list.get());
        return list.release();
    }
    void freeList(kz_CADDwgIdList* list) {
        for (const kz_CADDwgId* id : list->drawings)
            release(id);
        lists_.erase(list);
        delete list;
    }

  private:
    DrawingTable() {
        host::onDrawingClosing([this](AcDbDatabase* closing) {
            for (const auto& [id, drawing] : drawings_) {
                if (drawing->id.database == closing) drawing->id.database = nullptr;
            }
        });
    }
    ~DrawingTable() {
        host::onDrawingClosing({});
        for (kz_CADDwgIdList* list : lists_)
            delete list;
    }

    static kz_CADDwgId* addUse(Drawing& drawing) {
        ++drawing.uses;
        return &drawing.id;
    }

    std::unordered_map<const kz_CADDwgId*, std::unique_ptr<Drawing>> drawings_;
    std::unordered_set<kz_CADDwgIdList*> lists_;
};

DrawingTable& table() {
    return DrawingTable::instance();
}

/// The drawing of this name, if it is here already; with mode 2 none that is attached.
AcDbDatabase* findHere(const std::u16string& name, int mode) {
    AcDbDatabase* const editor = editorDrawing();
    if (editor != nullptr && isMeant(fileOf(editor), name)) return editor;
    std::vector<AcDbDatabase*> among;
    if (mode == kModeKnown) addAttached(editor, among);
    AcDbDatabase* const attached = findMeant(among, name);
    return attached != nullptr ? attached : findMeant(table().ownDrawings(), name);
}

/// Saves to a file without a backup.
bool saveTo(const Drawing& drawing, const std::u16string& file) {
    return !file.empty() && drawing.id.database->saveAs(file.c_str(), false) == Acad::eOk;
}

}  // namespace

namespace suite {

AcDbDatabase* databaseOf(const kz_CADDwgId* id) {
    if (id == nullptr) return editorDrawing();
    const Drawing* const drawing = table().findOpen(id);
    return drawing == nullptr ? nullptr : drawing->id.database;
}

}  // namespace suite

kz_CADDwgId* kz_CADDwgId_create(const kz_Char* name, int mode) {
    return suite::guarded<kz_CADDwgId*>(nullptr, [&]() -> kz_CADDwgId* {
        if (mode != kModeFile && mode != kModeKnown) return nullptr;
        const std::u16string wanted = name == nullptr ? u"" : name;
        AcDbDatabase* const here = wanted.empty() ? editorDrawing() : findHere(wanted, mode);
        if (here != nullptr) return table().use(here);
        return wanted.empty() ? nullptr : table().read(wanted);
    });
}

void kz_CADDwgId_destroy(kz_CADDwgId* id) {
    table().release(id);
}

void kz_CADDwgId_destroyAll(void) {
    table().releaseAll();
}

int kz_CADDwgId_getName(kz_Char* out, const kz_CADDwgId* id) {
    const Drawing* const drawing = table().find(id);
    if (out == nullptr) return 0;
    *out = 0;
    if (drawing == nullptr || drawing->id.name == nullptr) return 0;
    std::memcpy(out, drawing->name.c_str(), (drawing->name.size() + 1) * sizeof(kz_Char));
    return 1;
}

int kz_CADDwgId_getRefCount(const kz_CADDwgId* id) {
    const Drawing* const drawing = table().find(id);
    return drawing == nullptr ? 0 : drawing->uses;
}

int kz_CADDwgId_getTransform(int* attached, kz_Point* origin, kz_RotMatrix* rotation, double* angle,
                             const kz_CADDwgId* id) {
    return suite::guarded(0, [&] {
        const Drawing* const drawing = table().findOpen(id);
        if (drawing == nullptr) return 0;
        host::Placement whole;
        const AcDbDatabase* database = drawing->id.database;
        while (database != nullptr && !database->xrefBlockId().isNull()) {
            const AcDbObjectId block = database->xrefBlockId();
            host::Placement placement;
            if (host::firstPlacement(block, placement)) whole = combine(placement, whole);
            database = drawingOfBlock(block);
        }
        if (attached != nullptr) *attached = kz_CADDwgId_isAttached(id);
        if (angle != nullptr) *angle = whole.angle;
        kz_Point_set(origin, whole.origin[0], whole.origin[1], whole.origin[2]);
        for (int row = 0; row < 3; ++row) {
            for (int column = 0; column < 3; ++column)
                kz_RotMatrix_setElement(rotation, row, column, whole.axes[column][row]);
        }
        return 1;
    });
}

int kz_CADDwgId_isAttached(const kz_CADDwgId* id) {
    const Drawing* const drawing = table().findOpen(id);
    return drawing != nullptr && !drawing->id.database->xrefBlockId().isNull() ? 1 : 0;
}

int kz_CADDwgId_isInEditor(const kz_CADDwgId* id) {
    const Drawing* const drawing = table().findOpen(id);
    return drawing != nullptr && drawing->id.database == editorDrawing() ? 1 : 0;
}

int kz_CADDwgId_isEqual(const kz_CADDwgId* a, const kz_CADDwgId* b) {
    return suite::guarded(0, [&] {
        const Drawing* const first = table().find(a);
        const Drawing* const second = table().find(b);
        if (first == nullptr || second == nullptr) return 0;
        return first == second || isSameFile(first->name, second->name) ? 1 : 0;
    });
}

int kz_CADDwgId_isValid(const kz_CADDwgId* id) {
    return table().findOpen(id) != nullptr ? 1 : 0;
}

int kz_CADDwgId_save(kz_CADDwgId* id) {
    return suite::guarded(0, [&] {
        const Drawing* const drawing = table().findOpen(id);
        return drawing != nullptr && saveTo(*drawing, fileOf(drawing->id.database)) ? 1 : 0;
    });
}

int64_t kz_CADDwgId_saveAs(kz_CADDwgId* id, const kz_Char* fileName) {
    return suite::guarded<int64_t>(0, [&]() -> int64_t {
        Drawing* const drawing = table().findOpen(id);
        if (drawing == nullptr || fileName == nullptr || !saveTo(*drawing, fileName)) return 0;
        if (drawing->name.empty()) {
            drawing->name = fileOf(drawing->id.database);
            drawing->id.name = drawing->name.data();
        }
        return 1;
    });
}

// --- the known drawings -------------------------------------------------------------------------

kz_CADDwgIdList* kz_CADDwgIdList_create(int, int, int) {
    return suite::guarded<kz_CADDwgIdList*>(nullptr, [] {
        std::vector<AcDbDatabase*> known;
        if (AcDbDatabase* const editor = editorDrawing()) known.push_back(editor);
        addAttached(editorDrawing(), known);
        const std::vector<AcDbDatabase*> own = table().ownDrawings();
        known.insert(known.end(), own.begin(), own.end());
        kz_CADDwgIdList* const list = table().makeList();
        list->drawings.reserve(known.size());
        for (AcDbDatabase* database : known)
            list->drawings.push_back(table().use(database));
        return list;
    });
}

int kz_CADDwgIdList_destroy(kz_CADDwgIdList* list) {
    if (!table().isList(list)) return 0;
    table().freeList(list);
    return 1;
}

int kz_CADDwgIdList_start(kz_CADDwgIdList* list) {
    if (!table().isList(list)) return 0;
    list->at = 0;
    return list->drawings.empty() ? 0 : 1;
}

int kz_CADDwgIdList_next(kz_CADDwgIdList* list) {
    if (kz_CADDwgIdList_eol(list) != 0) return 0;
    ++list->at;
    return kz_CADDwgIdList_eol(list) != 0 ? 0 : 1;
}

int kz_CADDwgIdList_eol(const kz_CADDwgIdList* list) {
    return table().isList(list) && list->at < list->drawings.size() ? 0 : 1;
}

kz_CADDwgId* kz_CADDwgIdList_getCurr(const kz_CADDwgIdList* list) {
    return kz_CADDwgIdList_eol(list) != 0 ? nullptr : list->drawings[list->at];
}

// --- attached drawings --------------------------------------------------------------------------

kz_StrList* kz_CAD_getAttachedDrawings(const kz_Char* drawingName) {
    return suite::guarded<kz_StrList*>(nullptr, [&]() -> kz_StrList* {
        kz_CADDwgId* const id = kz_CADDwgId_create(drawingName, kModeKnown);
        if (id == nullptr) return nullptr;
        std::vector<AcDbDatabase*> attached;
        addAttached(id->database, attached);
        kz_StrList* files = nullptr;
        std::unordered_set<std::u16string> seen;
        for (const AcDbDatabase* database : attached) {
            const std::u16string file = fileOf(database);
            if (!seen.insert(file).second) continue;
            if (files == nullptr) {
                files = kz_StrList_create(file.c_str());
            } else {
                kz_StrList_insEnd(files, file.c_str());
            }
        }
        kz_StrList_start(files);
        kz_CADDwgId_destroy(id);
        return files;
    });
}
