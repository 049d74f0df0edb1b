/// Attached drawings: their blocks, their files, and their layers and line types in the tables.
#include "db/attach.h"

#include <algorithm>
#include <filesystem>

#include "base/search_path.h"
#include "db/links.h"
#include "dxf/reader.h"
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

int64_t integerOf(Database& drawing, Slot slot, int code, int64_t otherwise) {
    const Tags& tags = drawing.tags(slot);
    const size_t at = findTag(tags, code);
    return at < tags.size() ? tags[at].integer() : otherwise;
}

Slot makeBlockEnd(Database& drawing, Slot record, std::string_view type, Tags tags) {
    const ObjectClass kind = type == "BLOCK" ? ObjectClass::BlockBegin : ObjectClass::BlockEnd;
    const Slot slot =
        drawing.makeRecord(type, kind, drawing.record(record).handle, std::move(tags));
    drawing.record(slot).owner = record;
    return slot;
}

Slot makeBlock(Database& drawing, std::u16string_view name, std::u16string_view path,
               int64_t flags) {
    Tags extra;
    extra.emplace_back(70, int64_t{0});
    extra.emplace_back(280, int64_t{1});
    extra.emplace_back(281, int64_t{0});
    const Slot record = drawing.makeSymbol("BLOCK_RECORD", name, std::move(extra));
    if (record == kNoSlot) return kNoSlot;
    Tags begin;
    begin.emplace_back(100, u"AcDbEntity");
    begin.emplace_back(8, u"0");
    begin.emplace_back(100, u"AcDbBlockBegin");
    begin.emplace_back(2, std::u16string(name));
    begin.emplace_back(70, flags);
    for (const int code : {10, 20, 30})
        begin.emplace_back(code, 0.0);
    begin.emplace_back(3, std::u16string(name));
    begin.emplace_back(1, std::u16string(path));
    Tags end;
    end.emplace_back(100, u"AcDbEntity");
    end.emplace_back(8, u"0");
    end.emplace_back(100, u"AcDbBlockEnd");
    const Slot first = makeBlockEnd(drawing, record, "BLOCK", std::move(begin));
    const Slot last = makeBlockEnd(drawing, record, "ENDBLK", std::move(end));
    Block& block = drawing.block(record);
    block.begin = first;
    block.end = last;
    return record;
}

// --- dependent symbols --------------------------------------------------------------------------

bool startsWithName(std::u16string_view text, std::u16string_view prefix) {
    return text.size() > prefix.size() &&
           kz::compareNoCase(text.substr(0, prefix.size()), prefix) == 0;
}

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
            groups.emplace_back(70, integerOf(from_, record, 70, 0) | kDependent | kResolved);
            groups.emplace_back(62, integerOf(from_, record, 62, 7));
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

void eraseDependentSymbols(Database& drawing, const std::u16string& name) {
    for (const char* table : {"LAYER", "LTYPE", "STYLE", "DIMSTYLE"}) {
        const SymbolTable* symbols = drawing.table(table);
        if (symbols == nullptr) continue;
        for (const Slot record : symbols->records) {
            if (drawing.record(record).erased) continue;
            if (startsWithName(drawing.symbolName(record), name + u"|")) {
                drawing.setErased(record, true);
            }
        }
    }
    drawing.recountLockedLayers();
}

/// The file of an attachment when it may be read; a sentence in `refusal` otherwise.
std::string usableFile(Database& drawing, std::u16string_view path, std::u16string& refusal) {
    std::string file = attachmentFile(drawing, path);
    if (file.empty()) {
        refusal = u"the file \"" + std::u16string(path) + u"\" is not found.";
    } else if (leadsBack(&drawing, file)) {
        refusal = u"\"" + std::u16string(path) + u"\" leads back to the drawing itself.";
        file.clear();
    }
    return file;
}

/// Reads a file for a block; what was read before is dropped once that has succeeded.
bool readFor(Database& drawing, Slot block, const std::string& file, std::u16string& refusal) {
    std::string error;
    std::unique_ptr<Database> read = dxf::readFile(file, error);
    if (read == nullptr) {
        refusal = kz::toUtf16(error) + u".";
        return false;
    }
    DatabaseLinks& links = drawing.links();
    read->links().host_drawing = &drawing;
    read->links().host_block = block;
    DependentSymbols(drawing, *read, drawing.symbolName(block)).enter();
    links.unloaded.erase(block);
    links.attached.insert_or_assign(block, std::move(read));
    return true;
}

void eraseReferences(Database& drawing, const std::u16string& name) {
    for (const Slot record : drawing.blockRecords()) {
        const Block* block = drawing.findBlock(record);
        for (size_t i = 0; block != nullptr && i < block->contents.size(); ++i) {
            const Slot slot = block->contents[i];
            if (drawing.record(slot).erased || drawing.typeName(slot) != "INSERT") continue;
            if (kz::compareNoCase(textOf(drawing, slot, 2), name) == 0) {
                drawing.setErased(slot, true);
            }
        }
    }
}

}  // namespace

bool describeAttachment(Database& drawing, Slot record, Attachment& out) {
    const Block* block = drawing.findBlock(record);
    if (block == nullptr || block->begin == kNoSlot || drawing.record(record).erased) return false;
    const int64_t flags = integerOf(drawing, block->begin, 70, 0);
    if ((flags & (kAttached | kOverlay)) == 0) return false;
    out.block = drawing.idOf(record);
    out.name = drawing.symbolName(record);
    out.path = textOf(drawing, block->begin, 1);
    out.overlay = (flags & kOverlay) != 0;
    return true;
}

std::string attachmentFile(const Database& drawing, std::u16string_view path) {
    const fs::path wanted = plainPath(kz::toUtf8(path));
    if (wanted.empty()) return {};
    const fs::path folder = fs::path(drawing.path()).parent_path();
    std::vector<fs::path> candidates = {folder / wanted, folder / wanted.filename()};
    for (const std::string& support : supportFolders()) {
        candidates.push_back(fs::path(support) / wanted);
        candidates.push_back(fs::path(support) / wanted.filename());
    }
    std::error_code error;
    for (const fs::path& candidate : candidates) {
        if (!fs::is_regular_file(candidate, error)) continue;
        const fs::path found = fs::canonical(candidate, error);
        if (!error) return found.string();
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
        refusal = u"there is a block " + std::u16string(name) + u" already.";
        return kNoSlot;
    }
    const std::string file = usableFile(drawing, path, refusal);
    if (file.empty()) return kNoSlot;
    const int64_t flags = kAttached | kResolved | (overlay ? kOverlay : 0);
    const Slot block = makeBlock(drawing, name, path, flags);
    if (block == kNoSlot || readFor(drawing, block, file, refusal)) return block;
    detachDrawing(drawing, block);
    return kNoSlot;
}

void detachDrawing(Database& drawing, Slot record) {
    const std::u16string name = drawing.symbolName(record);
    eraseReferences(drawing, name);
    eraseDependentSymbols(drawing, name);
    const Block& block = drawing.block(record);
    for (const Slot slot : block.contents)
        drawing.setErased(slot, true);
    for (const Slot slot : {block.begin, block.end, record}) {
        if (slot != kNoSlot) drawing.setErased(slot, true);
    }
    drawing.links().attached.erase(record);
    drawing.links().unloaded.erase(record);
}

void unloadDrawing(Database& drawing, Slot block) {
    drawing.links().attached.erase(block);
    drawing.links().unloaded.insert(block);
}

bool reloadDrawing(Database& drawing, Slot block, std::u16string& refusal) {
    Attachment attachment;
    if (!describeAttachment(drawing, block, attachment)) {
        refusal = u"not an attached drawing.";
        return false;
    }
    const std::string file = usableFile(drawing, attachment.path, refusal);
    return !file.empty() && readFor(drawing, block, file, refusal);
}

bool setAttachmentPath(Database& drawing, Slot block, std::u16string_view path,
                       std::u16string& refusal) {
    const std::string file = usableFile(drawing, path, refusal);
    if (file.empty() || !readFor(drawing, block, file, refusal)) return false;
    const Slot begin = drawing.block(block).begin;
    Tags& tags = drawing.changeTags(begin);
    const size_t at = findTag(tags, 1);
    Tag value(1, std::u16string(path));
    if (at < tags.size()) {
        tags[at] = std::move(value);
    } else {
        tags.push_back(std::move(value));
    }
    drawing.touch(begin);
    return true;
}

AttachmentState attachmentState(Database& drawing, Slot block) {
    Attachment attachment;
    if (!describeAttachment(drawing, block, attachment)) return AttachmentState::None;
    if (drawing.links().unloaded.contains(block)) return AttachmentState::Unloaded;
    const std::string file = attachmentFile(drawing, attachment.path);
    if (file.empty()) return AttachmentState::Missing;
    if (leadsBack(&drawing, file)) return AttachmentState::Circular;
    return attachedDrawing(attachment.block) != nullptr ? AttachmentState::Loaded
                                                        : AttachmentState::Broken;
}

}  // namespace host
