/// Attached drawings: their blocks, their files, and their layers and line types in the tables.
#include "db/attach.h"

#include <algorithm>
#include <filesystem>
#include <unordered_set>

#include "base/search_path.h"
#include "db/links.h"
#include "dxf/reader.h"
#include "edit/block_definition.h"
#include "edit/input.h"
#include "edit/tag_values.h"
#include "kz_tls21an/text.h"

namespace fs = std::filesystem;

namespace host {
namespace {

/// Flags of a BLOCK.
constexpr int64_t kAttached = 4;
constexpr int64_t kOverlay = 8;
constexpr int64_t kResolved = 32;
/// Flags of a table record that comes from an attached drawing.
constexpr int64_t kDependent = 16;

std::u16string textOf(Database& drawing, Slot slot, int code) {
    const Tags& tags = drawing.tags(slot);
    const size_t at = findTag(tags, code);
    return at < tags.size() ? tags[at].text(drawing.codec()) : std::u16string();
}

Slot makeBlock(Database& drawing, std::u16string_view name, std::u16string_view path,
               int64_t flags) {
    const Slot record = drawing.makeSymbol("BLOCK_RECORD", name, blockRecordTags(drawing));
    if (record == kNoSlot) return kNoSlot;
    addBlockEnds(drawing, record, {});
    Tags& begin = drawing.changeTags(drawing.block(record).begin);
    replaceTag(begin, Tag(70, flags));
    replaceTag(begin, Tag(1, std::u16string(path)));
    return record;
}

// --- dependent symbols --------------------------------------------------------------------------

/// Groups of a line type without its references to other objects, which mean nothing elsewhere.
/// Empty for one that can't do without them.
Tags lineTypeGroups(Database& from, Slot record) {
    Tags out;
    const Tags& groups = from.tags(record);
    for (size_t i = findTag(groups, 2) + 1; i < groups.size(); ++i) {
        const int code = groups[i].code();
        if (code == 340) return {};
        if (code == 70) {
            out.emplace_back(70, groups[i].integer() | kDependent | kResolved);
        } else if (code == 3) {
            out.emplace_back(3, groups[i].text(from.codec()));
        } else if (code == 40 || code == 49) {
            out.emplace_back(code, groups[i].real());
        } else if (code == 72 || code == 73 || code == 74) {
            out.emplace_back(code, groups[i].integer());
        }
    }
    return out;
}

/// Enters the layers and line types of an attached drawing under NAME|SYMBOL. Those that are there
/// already keep what the drawing says of them.
class DependentSymbols {
  public:
    DependentSymbols(Database& to, Database& from, const std::u16string& name)
        : to_(to), from_(from), prefix_(name + u"|") {}

    void enter() {
        forEach("LTYPE", [this](Slot record, const std::u16string& name) {
            Tags groups = lineTypeGroups(from_, record);
            if (!groups.empty()) to_.makeSymbol("LTYPE", depending(name), std::move(groups));
        });
        forEach("LAYER", [this](Slot record, const std::u16string& name) {
            Tags groups;
            groups.emplace_back(70, integerOf(from_.tags(record), 70, 0) | kDependent | kResolved);
            groups.emplace_back(62, integerOf(from_.tags(record), 62, 7));
            groups.emplace_back(6, lineType(textOf(from_, record, 6)));
            to_.makeSymbol("LAYER", depending(name), std::move(groups));
        });
        to_.recountLockedLayers();
    }

  private:
    template <class Visit>
    void forEach(std::string_view table, Visit visit) {
        const SymbolTable* symbols = from_.table(table);
        if (symbols == nullptr) return;
        for (const Slot record : symbols->records) {
            const std::u16string name = from_.symbolName(record);
            const bool shared = name == u"0" || isShared(name);
            if (!from_.record(record).erased && !name.empty() && !shared) visit(record, name);
        }
    }
    static bool isShared(std::u16string_view name) {
        return kz::compareNoCase(name, u"Continuous") == 0 ||
               kz::compareNoCase(name, u"ByLayer") == 0 || kz::compareNoCase(name, u"ByBlock") == 0;
    }
    /// Names from deeper attachments have their prefix already.
    std::u16string depending(const std::u16string& name) const {
        return name.find(u'|') == std::u16string::npos ? prefix_ + name : name;
    }
    std::u16string lineType(const std::u16string& name) {
        if (isShared(name)) return name;
        const std::u16string full = depending(name);
        return to_.findSymbol("LTYPE", full) != kNoSlot ? full : u"Continuous";
    }

    Database& to_;
    Database& from_;
    std::u16string prefix_;
};

/// Names of blocks that go, in upper case.
using NameSet = std::unordered_set<std::u16string>;

void eraseDependentSymbols(Database& drawing, const NameSet& blocks) {
    for (const char* table : {"LAYER", "LTYPE", "STYLE", "DIMSTYLE"}) {
        const SymbolTable* symbols = drawing.table(table);
        if (symbols == nullptr) continue;
        for (const Slot record : symbols->records) {
            if (drawing.record(record).erased) continue;
            const std::u16string name = drawing.symbolName(record);
            const size_t bar = name.find(u'|');
            if (bar != std::u16string::npos && blocks.contains(kz::toUpper(name.substr(0, bar)))) {
                drawing.setErased(record, true);
            }
        }
    }
    drawing.recountLockedLayers();
}

void eraseReferences(Database& drawing, const NameSet& blocks) {
    for (const Slot record : drawing.blockRecords()) {
        const Block* block = drawing.findBlock(record);
        for (size_t i = 0; block != nullptr && i < block->contents.size(); ++i) {
            const Slot slot = block->contents[i];
            if (drawing.record(slot).erased || drawing.typeName(slot) != "INSERT") continue;
            if (blocks.contains(kz::toUpper(textOf(drawing, slot, 2)))) {
                drawing.setErased(slot, true);
            }
        }
    }
}

// --- unloaded attachments -----------------------------------------------------------------------

/// XDATA of this application marks the record of an unloaded one: it is undone, saved and read like
/// all that the drawing holds.
constexpr std::u16string_view kUnloadedMark = u"KZ_UNLOADED";

bool isUnloaded(Database& drawing, Slot block) {
    const XData& data = drawing.xdata(block);
    return std::any_of(data.begin(), data.end(),
                       [](const AppData& app) { return app.app == kUnloadedMark; });
}

void setUnloaded(Database& drawing, Slot block, bool unloaded) {
    if (isUnloaded(drawing, block) == unloaded) return;
    if (drawing.findSymbol("APPID", kUnloadedMark) == kNoSlot) {
        Tags tags;
        tags.emplace_back(70, int64_t{0});
        drawing.makeSymbol("APPID", kUnloadedMark, std::move(tags));
    }
    std::u16string name(kUnloadedMark);
    resbuf value{};
    value.restype = 1070;
    value.resval.rint = 1;
    resbuf application{};
    application.restype = 1001;
    application.resval.rstring = name.data();
    if (unloaded) application.rbnext = &value;
    drawing.changeTags(block);  // tells who goes by what is seen, also when this is undone
    drawing.setXData(block, &application);
}

// --- files --------------------------------------------------------------------------------------

/// The file of an attachment when it may be read; a sentence in `refusal` otherwise.
std::string usableFile(Database& drawing, std::u16string_view path, AttachmentState& state,
                       std::u16string& refusal) {
    std::string file = attachmentFile(drawing, path);
    if (file.empty()) {
        state = AttachmentState::Missing;
        refusal = u"the file \"" + std::u16string(path) + u"\" is not found.";
    } else if (leadsBack(&drawing, file)) {
        state = AttachmentState::Circular;
        refusal = u"\"" + std::u16string(path) + u"\" leads back to the drawing itself.";
        file.clear();
    }
    return file;
}

/// Reads the file of an attachment, whose block is noted later; a sentence in `refusal` where there
/// is no drawing.
AttachedFile readAttached(Database& drawing, std::u16string_view path, std::u16string& refusal) {
    AttachedFile read;
    read.path = path;
    const std::string file = usableFile(drawing, path, read.state, refusal);
    if (file.empty()) return read;
    std::string error;
    read.drawing = dxf::readFile(file, error);
    read.state = read.drawing == nullptr ? AttachmentState::Broken : AttachmentState::Loaded;
    if (read.drawing == nullptr) refusal = kz::toUtf16(error) + u".";
    return read;
}

/// Lets a block stand for what was read, in the place of what it stood for.
AttachedFile& keep(Database& drawing, Slot block, AttachedFile read) {
    if (read.drawing != nullptr) {
        read.drawing->links().host_drawing = &drawing;
        read.drawing->links().host_block = block;
    }
    return drawing.links().attached.insert_or_assign(block, std::move(read)).first->second;
}

/// The base point of an attached drawing is that of its block.
void takeBasePoint(Database& drawing, Slot block, Database& attached) {
    const HeaderVariable* variable = attached.header("$INSBASE");
    const AcGePoint3d base = variable == nullptr ? AcGePoint3d() : pointOf(variable->tags, 10);
    if (base.isEqualTo(blockBase(drawing, block))) return;
    const Slot begin = drawing.block(block).begin;
    replacePoint(drawing.changeTags(begin), 10, base);
    drawing.touch(begin);
}

/// Keeps a drawing that was read on demand of the user, with what it brings into the tables.
void take(Database& drawing, Slot block, AttachedFile read) {
    const AttachedFile& kept = keep(drawing, block, std::move(read));
    if (drawing.watcher() != nullptr) drawing.watcher()->changed(block);
    takeBasePoint(drawing, block, *kept.drawing);
    DependentSymbols(drawing, *kept.drawing, drawing.symbolName(block)).enter();
    setUnloaded(drawing, block, false);
}

void tellFailure(const Attachment& attachment, std::u16string_view why) {
    tell(u"Attached drawing \"" + attachment.name + u"\": " + std::u16string(why));
}

/// What a block stands for, and its drawing when it has one.
AttachmentState resolve(Database& drawing, Slot block, Database** out = nullptr) {
    Attachment attachment;
    if (!describeAttachment(drawing, block, attachment)) return AttachmentState::None;
    if (isUnloaded(drawing, block)) return AttachmentState::Unloaded;
    // An overlay is for the drawing that it was attached to, and not for those above.
    const bool nested = drawing.links().host_drawing != nullptr;
    if (attachment.overlay && nested) return AttachmentState::Hidden;
    const auto& attached = drawing.links().attached;
    const auto found = attached.find(block);
    const AttachedFile* file = found == attached.end() ? nullptr : &found->second;
    if (file == nullptr || file->path != attachment.path) {
        std::u16string why;
        file = &keep(drawing, block, readAttached(drawing, attachment.path, why));
        if (!why.empty()) tellFailure(attachment, why);
    }
    if (out != nullptr) *out = file->drawing.get();
    return file->state;
}

}  // namespace

bool describeAttachment(Database& drawing, Slot record, Attachment& out) {
    const Block* block = drawing.findBlock(record);
    if (block == nullptr || block->begin == kNoSlot || drawing.record(record).erased) return false;
    const int64_t flags = integerOf(drawing.tags(block->begin), 70, 0);
    if ((flags & (kAttached | kOverlay)) == 0) return false;
    out.block = drawing.idOf(record);
    out.name = drawing.symbolName(record);
    out.path = textOf(drawing, block->begin, 1);
    out.overlay = (flags & kOverlay) != 0;
    return true;
}

std::string attachmentFile(Database& drawing, std::u16string_view path) {
    const fs::path wanted = plainPath(kz::toUtf8(path));
    if (wanted.empty()) return {};
    std::vector<fs::path> folders;
    for (Database* at = &drawing; at != nullptr; at = at->links().host_drawing)
        folders.push_back(fs::path(at->path()).parent_path());
    for (const std::string& support : supportFolders())
        folders.emplace_back(support);
    // Of a DWG drawing what was saved as DXF is wanted.
    const bool is_dwg = kz::compareNoCase(kz::toUtf16(wanted.extension().string()), u".dwg") == 0;
    fs::path other = wanted;
    other = is_dwg ? other.replace_extension(".dxf") : fs::path(wanted.string() + ".dxf");
    std::vector<fs::path> names = {wanted, wanted.filename(), other, other.filename()};
    if (is_dwg) std::rotate(names.begin(), names.begin() + 2, names.end());
    std::error_code error;
    for (const fs::path& name : names) {
        for (const fs::path& folder : folders) {
            const fs::path candidate = spelledPath((folder / name).string());
            if (!fs::is_regular_file(candidate, error)) continue;
            const fs::path found = fs::canonical(candidate, error);
            if (!error) return found.string();
        }
    }
    return {};
}

bool leadsBack(Database* drawing, const std::string& file) {
    for (; drawing != nullptr; drawing = drawing->links().host_drawing) {
        std::error_code error;
        if (!drawing->path().empty() && fs::equivalent(drawing->path(), file, error)) return true;
    }
    return false;
}

Slot attachDrawing(Database& drawing, std::u16string_view name, std::u16string_view path,
                   bool overlay, std::u16string& refusal) {
    if (acdbSNValid(std::u16string(name).c_str(), 0) != RTNORM) {
        refusal = u"\"" + std::u16string(name) + u"\" can't be the name of a block.";
        return kNoSlot;
    }
    if (drawing.findSymbol("BLOCK_RECORD", name) != kNoSlot) {
        refusal = u"there is a block \"" + std::u16string(name) + u"\" already.";
        return kNoSlot;
    }
    AttachedFile read = readAttached(drawing, path, refusal);
    if (read.drawing == nullptr) return kNoSlot;
    const int64_t flags = kAttached | kResolved | (overlay ? kOverlay : 0);
    const Slot block = makeBlock(drawing, name, path, flags);
    if (block == kNoSlot) {
        refusal = u"the block can't be made.";
    } else {
        take(drawing, block, std::move(read));
    }
    return block;
}

void detachDrawings(Database& drawing, std::span<const Slot> blocks) {
    NameSet names;
    for (const Slot block : blocks)
        names.insert(kz::toUpper(drawing.symbolName(block)));
    eraseReferences(drawing, names);
    eraseDependentSymbols(drawing, names);
    for (const Slot record : blocks) {
        const Block& block = drawing.block(record);
        for (const Slot slot : block.contents) {
            if (!drawing.record(slot).erased) drawing.setErased(slot, true);
        }
        for (const Slot slot : {block.begin, block.end, record}) {
            if (slot != kNoSlot) drawing.setErased(slot, true);
        }
        drawing.links().attached.erase(record);
    }
}

void unloadDrawing(Database& drawing, Slot block) {
    drawing.links().attached.erase(block);
    setUnloaded(drawing, block, true);
    if (drawing.watcher() != nullptr) drawing.watcher()->changed(block);
}

bool reloadDrawing(Database& drawing, Slot block, std::u16string& refusal) {
    Attachment attachment;
    if (!describeAttachment(drawing, block, attachment)) {
        refusal = u"not an attached drawing.";
        return false;
    }
    AttachedFile read = readAttached(drawing, attachment.path, refusal);
    if (read.drawing == nullptr) return false;
    take(drawing, block, std::move(read));
    return true;
}

bool setAttachmentPath(Database& drawing, Slot block, std::u16string_view path,
                       std::u16string& refusal) {
    AttachedFile read = readAttached(drawing, path, refusal);
    if (read.drawing == nullptr) return false;
    const Slot begin = drawing.block(block).begin;
    replaceTag(drawing.changeTags(begin), Tag(1, std::u16string(path)));
    drawing.touch(begin);
    take(drawing, block, std::move(read));
    return true;
}

AttachmentState attachmentState(Database& drawing, Slot block) {
    return resolve(drawing, block);
}

Database* attachedDatabase(Database& drawing, Slot block) {
    Database* attached = nullptr;
    resolve(drawing, block, &attached);
    return attached;
}

void tellMissingAttachments(Database& drawing) {
    for (const Slot block : drawing.blockRecords()) {
        Attachment attachment;
        if (!describeAttachment(drawing, block, attachment) || isUnloaded(drawing, block)) continue;
        AttachedFile failed;
        failed.path = attachment.path;
        std::u16string why;
        if (!usableFile(drawing, attachment.path, failed.state, why).empty()) continue;
        keep(drawing, block, std::move(failed));
        tellFailure(attachment, why);
    }
}

}  // namespace host
