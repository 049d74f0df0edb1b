/// The pass over a drawing file, section by section.
#include "dxf/reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "base/progress.h"
#include "dxf/binary.h"
#include "dxf/lift.h"
#include "dxf/recover.h"
#include "dxf/save_file.h"
#include "dxf/values.h"
#include "kz_tls21an/text.h"

namespace host::dxf {
namespace {

/// What one look at an object's pairs finds.
struct Scan {
    const char* begin = nullptr;
    std::string_view type;
    const char* handle_at = nullptr;
    uint64_t handle = 0;
    uint64_t owner = 0;
    std::string_view name;        ///< first group 2
    const char* xdata = nullptr;  ///< first pair of the XDATA
    bool in_paper_space = false;  ///< group 67 is 1
    const char* end = nullptr;
};

constexpr const char* kUnsaidVersion = "AC1015";

bool isSubEntity(std::string_view type) {
    return type == "VERTEX" || type == "ATTRIB" || type == "SEQEND";
}

/// False for what Reader refuses at once.
bool looksLikeText(std::string_view image) {
    return !image.empty() && !image.starts_with("AC10");
}

class Reader {
  public:
    explicit Reader(Database& database)
        : database_(database),
          cursor_(database.image().data() + markSize(database.image()),
                  database.image().data() + database.image().size()),
          progress_(Work::Reading, database.image().size()) {}

    void read() {
        checkFileKind();
        // For a drawing that doesn't say.
        database_.setVersion(kUnsaidVersion);
        database_.setCodec(TextCodec(kUnsaidVersion, {}));
        database_.reserve(database_.image().size() / 250);
        next();
        if (pair_.code != 0 || trimmed(pair_.value) != "SECTION") {
            throw FormatError(pair_.begin, "no DXF drawing: it starts with group " +
                                               std::to_string(pair_.code) + " " +
                                               quoted(pair_.value) + " and not with SECTION");
        }
        while (!isMarker("EOF"))
            readSection();
        database_.insertPoints().eof = pair_.begin;
        finish();
    }

  private:
    // --- pairs ----------------------------------------------------------------------------------

    /// The next pair that is no comment; the end of the file is an error.
    void next() {
        do {
            if (!cursor_.next(pair_)) {
                throw FormatError(cursor_.end(), "the file ends without EOF" + sectionWords());
            }
        } while (pair_.code == 999);
    }

    bool isMarker(std::string_view name) const {
        return pair_.code == 0 && trimmed(pair_.value) == name;
    }

    std::string sectionWords() const {
        return section_.empty() ? std::string{} : " (in section " + std::string(section_) + ")";
    }

    [[noreturn]] void fail(const std::string& cause) const {
        throw FormatError(pair_.begin, cause);
    }

    // --- file -----------------------------------------------------------------------------------

    void checkFileKind() const {
        const std::string_view image = database_.image();
        if (image.empty()) throw FormatError(nullptr, "the file is empty");
        if (image.size() >= 6 && image.starts_with("AC10") && isDigit(image[4]) &&
            isDigit(image[5])) {
            throw FormatError(nullptr,
                              "a DWG file; save it as DXF in a CAD program and open that file");
        }
    }

    void readSection() {
        if (!isMarker("SECTION")) {
            fail("expected SECTION or EOF, found group " + std::to_string(pair_.code) + " " +
                 quoted(pair_.value));
        }
        const char* begin = pair_.begin;
        next();
        if (pair_.code != 2) fail("a section without a name");
        section_ = trimmed(pair_.value);
        InsertPoints& points = database_.insertPoints();
        next();
        if (section_ == "HEADER") {
            readHeader();
            points.header_end = pair_.begin;
        } else if (section_ == "TABLES") {
            readTables();
            points.tables_end = pair_.begin;
        } else if (section_ == "BLOCKS") {
            readBlocks();
            points.blocks_end = pair_.begin;
        } else if (section_ == "ENTITIES") {
            points.entities_begin = begin;
            readEntities();
            points.entities_end = pair_.begin;
        } else if (section_ == "OBJECTS") {
            readObjects();
            points.objects_end = pair_.begin;
        } else {
            while (!atSectionEnd())
                next();
        }
        section_ = {};
        next();
    }

    /// True at ENDSEC; a section that is left open is an error.
    bool atSectionEnd() const {
        if (pair_.code != 0) return false;
        const std::string_view value = trimmed(pair_.value);
        if (value == "ENDSEC") return true;
        if (value == "SECTION" || value == "EOF") {
            fail("section " + std::string(section_) + " has no ENDSEC before " +
                 std::string(value));
        }
        return false;
    }

    // --- header ---------------------------------------------------------------------------------

    void readHeader() {
        std::vector<HeaderVariable>& headers = database_.headers();
        while (!atSectionEnd()) {
            if (pair_.code == 9) {
                headers.emplace_back();
                headers.back().name = std::string(trimmed(pair_.value));
                headers.back().begin = pair_.begin;
            } else if (headers.empty()) {
                fail("a header value without a variable");
            } else {
                checkValue(pair_);
                headers.back().tags.emplace_back(pair_);
            }
            headers.back().end = pair_.end;
            next();
        }
        database_.indexHeaders();
        const auto value = [this](std::string_view name) {
            const HeaderVariable* variable = database_.header(name);
            return variable == nullptr || variable->tags.empty()
                       ? std::string_view{}
                       : trimmed(variable->tags.front().sourceValue());
        };
        const std::string_view stated = value("$ACADVER");
        const std::string_view version = stated.empty() ? kUnsaidVersion : stated;
        database_.setVersion(std::string(version));
        database_.setCodec(TextCodec(version, value("$DWGCODEPAGE")));
        uint64_t seed = 0;
        if (parseHandle(value("$HANDSEED"), seed)) database_.raiseHandleSeed(seed);
    }

    // --- objects --------------------------------------------------------------------------------

    /// Scans the object whose 0 group is the present pair; afterwards that of the next is.
    Scan scanObject() {
        Scan scan;
        scan.begin = pair_.begin;
        scan.type = trimmed(pair_.value);
        bool in_braces = false;
        bool in_class = false;
        while (true) {
            if (!cursor_.next(pair_)) next();
            const int code = pair_.code;
            if (code == 0) break;
            checkValue(pair_);
            if (scan.xdata != nullptr) continue;
            if (code == 1001) {
                scan.xdata = pair_.begin;
            } else if (code == 102) {
                in_braces = trimmed(pair_.value).starts_with('{');
            } else if (in_braces) {
                continue;
            } else if (code == 5 || code == 105) {
                if (scan.handle_at == nullptr) readHandle(scan);
            } else if (code == 100) {
                in_class = true;
            } else if (code == 330) {
                if (scan.owner == 0 && !in_class) parseHandle(pair_.value, scan.owner);
            } else if (code == 2) {
                if (scan.name.data() == nullptr) scan.name = pair_.value;
            } else if (code == 67) {
                scan.in_paper_space = trimmed(pair_.value) == "1";
            }
        }
        scan.end = pair_.begin;
        return scan;
    }

    void readHandle(Scan& scan) const {
        // Group 105 is the handle of DIMSTYLE records, whose group 5 is a block name.
        if ((pair_.code == 105) != (scan.type == "DIMSTYLE")) return;
        if (!parseHandle(pair_.value, scan.handle) || scan.handle == 0) {
            fail(quoted(pair_.value) + " is no handle (object " + std::string(scan.type) + ")");
        }
        scan.handle_at = pair_.begin;
    }

    Slot addObject(const Scan& scan, ObjectClass object_class) {
        const Slot slot = database_.addRecord(scan.type, object_class);
        ObjectRecord& record = database_.record(slot);
        progress_.at(static_cast<uint64_t>(scan.end - database_.image().data()));
        const auto size = static_cast<size_t>(scan.end - scan.begin);
        if (size > UINT32_MAX) throw FormatError(scan.begin, "an object larger than 4 GB");
        record.bytes = scan.begin;
        record.size = static_cast<uint32_t>(size);
        record.xdata_offset =
            scan.xdata == nullptr ? record.size : static_cast<uint32_t>(scan.xdata - scan.begin);
        if (scan.handle == 0) {
            without_handle_.push_back(slot);
        } else if (!database_.setHandle(slot, scan.handle)) {
            settleHandle(slot, scan);
        }
        return slot;
    }

    /// The handle is in use: by an object that was made for lack of one in the file, which gives it
    /// up, or by another object of the file, which is an error.
    void settleHandle(Slot slot, const Scan& scan) {
        const Slot other = database_.findHandle(scan.handle);
        const char* other_bytes = database_.record(other).bytes;
        if (other_bytes == nullptr) {
            database_.moveHandle(other, slot);
            without_handle_.push_back(other);
            return;
        }
        const auto first_line = std::count(database_.image().data(), other_bytes, '\n') + 1;
        throw FormatError(scan.handle_at, "handle " + kz::toUtf8(handleText(scan.handle)) +
                                              " stands twice; the " + database_.typeName(other) +
                                              " at line " + std::to_string(first_line) +
                                              " has it already");
    }

    // --- tables ---------------------------------------------------------------------------------

    void readTables() {
        while (!atSectionEnd()) {
            if (!isMarker("TABLE")) {
                fail("expected TABLE or ENDSEC, found " + quoted(pair_.value));
            }
            readTable();
            next();
        }
    }

    void readTable() {
        const Scan head = scanObject();
        const std::string name(trimmed(head.name));
        if (name.empty()) throw FormatError(head.begin, "a table without a name");
        SymbolTable& table = database_.addTable(name);
        if (table.head != kNoSlot && database_.record(table.head).bytes == nullptr)
            throw FormatError(head.begin, "table " + name + " stands behind what it is needed for");
        table.head = addObject(head, ObjectClass::TableHead);
        while (!isMarker("ENDTAB")) {
            atSectionEnd();
            if (isMarker("ENDSEC") || isMarker("TABLE")) {
                fail("table " + name + " has no ENDTAB");
            }
            const Scan scan = scanObject();
            if (scan.type != table.name && isTableRecord(scan.type)) {
                throw FormatError(scan.begin,
                                  "a record of " + std::string(scan.type) + " in table " + name);
            }
            const Slot slot = addObject(scan, ObjectClass::TableRecord);
            database_.enterSymbol(table, slot, database_.codec().decode(trimmed(scan.name)));
        }
        table.insert_at = pair_.begin;
    }

    // --- blocks and entities --------------------------------------------------------------------

    void readBlocks() {
        while (!atSectionEnd()) {
            if (!isMarker("BLOCK")) {
                fail("expected BLOCK or ENDSEC, found " + quoted(pair_.value));
            }
            readBlock();
        }
    }

    void readBlock() {
        const Scan begin = scanObject();
        const Slot record = blockRecord(begin);
        Block& block = database_.block(record);
        block.begin = addObject(begin, ObjectClass::BlockBegin);
        database_.record(block.begin).owner = record;
        main_entity_ = kNoSlot;
        while (!isMarker("ENDBLK")) {
            if (isMarker("BLOCK") || atSectionEnd()) {
                throw FormatError(begin.begin, "block " + quoted(begin.name) + " has no ENDBLK");
            }
            readEntity(record);
        }
        block.end = addObject(scanObject(), ObjectClass::BlockEnd);
        database_.record(block.end).owner = record;
    }

    /// The record of a block by its name, by its owner, or a new one for a file without records.
    Slot blockRecord(const Scan& begin) {
        const std::u16string name = database_.codec().decode(trimmed(begin.name));
        Slot record = database_.findSymbol("BLOCK_RECORD", name);
        if (record == kNoSlot && begin.owner != 0) {
            const Slot owner = database_.findHandle(begin.owner);
            if (owner != kNoSlot && database_.typeName(owner) == "BLOCK_RECORD") record = owner;
        }
        if (record != kNoSlot) return record;
        if (name.empty()) throw FormatError(begin.begin, "a block without a name");
        const Slot made = database_.makeSymbol("BLOCK_RECORD", name, {});
        if (made == kNoSlot) throw FormatError(begin.begin, "a block without a record");
        return made;
    }

    void readEntities() {
        main_entity_ = kNoSlot;
        while (!atSectionEnd()) {
            if (pair_.code != 0)
                fail("expected an entity, found group " + std::to_string(pair_.code));
            readEntity(kNoSlot);
        }
    }

    /// Reads an entity into a block; with kNoSlot its own groups tell the space.
    void readEntity(Slot record) {
        const Scan scan = scanObject();
        const bool is_part = isSubEntity(scan.type) && main_entity_ != kNoSlot;
        const Slot slot = addObject(scan, is_part ? ObjectClass::SubEntity : ObjectClass::Entity);
        if (is_part) {
            database_.record(slot).owner = main_entity_;
            if (record == kNoSlot) record = database_.record(main_entity_).owner;
        } else {
            main_entity_ = slot;
            if (record == kNoSlot) record = spaceOf(scan);
        }
        if (scan.type == "SEQEND") main_entity_ = kNoSlot;
        database_.appendEntity(record, slot);
    }

    Slot spaceOf(const Scan& scan) {
        if (spaces_found_ == 0) findSpaces();
        if (scan.in_paper_space) return database_.paperSpace();
        if (scan.owner != 0) {
            const Slot owner = database_.findHandle(scan.owner);
            if (owner != kNoSlot && owner == database_.paperSpace()) return owner;
        }
        return database_.modelSpace();
    }

    /// Model and paper space, made where the file has none.
    void findSpaces() {
        spaces_found_ = 1;
        const auto need = [this](std::u16string_view name) {
            const Slot record = database_.findSymbol("BLOCK_RECORD", name);
            if (record != kNoSlot) return record;
            return database_.makeSymbol("BLOCK_RECORD", name, {});
        };
        const Slot model = need(u"*Model_Space");
        const Slot paper = need(u"*Paper_Space");
        database_.setSpaces(model, paper);
        database_.block(model);
        database_.block(paper);
    }

    void readObjects() {
        while (!atSectionEnd()) {
            const Scan scan = scanObject();
            const Slot slot = addObject(scan, ObjectClass::Object);
            if (database_.namedObjects() == kNoSlot && scan.type == "DICTIONARY") {
                database_.setNamedObjects(slot);
            }
            object_owners_.emplace_back(slot, scan.owner);
        }
    }

    // --- end ------------------------------------------------------------------------------------

    void finish() {
        if (spaces_found_ == 0) findSpaces();
        for (const auto& [slot, owner] : object_owners_) {
            database_.record(slot).owner = database_.findHandle(owner);
        }
        for (const Slot slot : without_handle_)
            giveHandle(slot);
        database_.needTableHead("BLOCK_RECORD");
        database_.recountLockedLayers();
        database_.forgetChanges();
    }

    /// Objects of simple writers have no handle. They get one, which is written when the drawing is
    /// saved with a change.
    void giveHandle(Slot slot) {
        const ObjectClass object_class = database_.record(slot).object_class;
        if (object_class == ObjectClass::TableHead) return;
        const uint64_t handle = database_.newHandle();
        database_.setHandle(slot, handle);
        Tags& tags = database_.changeTags(slot);
        const int code = database_.typeName(slot) == "DIMSTYLE" ? 105 : 5;
        if (tags.size() > 1 && tags[1].code() == code) {
            tags[1] = Tag::handle(code, handle);
        } else {
            tags.insert(tags.begin() + 1, Tag::handle(code, handle));
        }
    }

    Database& database_;
    PairCursor cursor_;
    Progress progress_;
    Pair pair_;
    std::string_view section_;
    Slot main_entity_ = kNoSlot;
    int spaces_found_ = 0;
    std::vector<Slot> without_handle_;
    std::vector<std::pair<Slot, uint64_t>> object_owners_;
};

/// Puts a lifted image in the place of that of an old drawing. @return the version of the file
std::string liftIfOld(Database& database) {
    const std::string_view image = database.image();
    const char* const begin = image.data() + markSize(image);
    const char* const end = image.data() + image.size();
    std::string version = statedVersion(begin, end);
    if (!isOldVersion(version) || !looksLikeText(image)) return version;
    const std::string lifted = liftOldDrawing(begin, end);
    BigBytes bytes = makeBigBytes(lifted.size() + kImagePadding);
    if (bytes == nullptr) throw std::bad_alloc();
    std::memcpy(bytes.get(), lifted.data(), lifted.size());
    std::memset(bytes.get() + lifted.size(), 0, kImagePadding);
    FileOrigin& origin = database.origin();
    BigBytes old = database.takeImage();
    if (origin.bytes == nullptr) {
        origin.bytes = std::move(old);
        origin.size = image.size();
    }
    database.setImage(std::move(bytes), lifted.size());
    return version;
}

/// A text whose lines end in carriage returns alone gets line feeds.
void mendLineEnds(Database& database, char* text, size_t size) {
    if (std::memchr(text, '\n', size) != nullptr || std::memchr(text, '\r', size) == nullptr)
        return;
    FileOrigin& origin = database.origin();
    if (origin.bytes == nullptr) {
        origin.bytes = makeBigBytes(size + kImagePadding);
        if (origin.bytes == nullptr) throw std::bad_alloc();
        std::memcpy(origin.bytes.get(), text, size);
        origin.size = size;
    }
    std::replace(text, text + size, '\r', '\n');
}

/// Reads the bytes of a file into a database, which owns them from then on. @return false with
/// place and cause of the fault
bool readBytes(Database& database, BigBytes bytes, size_t size, std::string& fault, bool& damaged) {
    FileOrigin& origin = database.origin();
    if (isBinary({bytes.get(), size})) {
        BinaryText text = decodeBinary({bytes.get(), size});
        origin.binary = true;
        origin.bytes = std::exchange(bytes, std::move(text.bytes));
        origin.size = std::exchange(size, text.size);
        if (!text.error.empty()) {
            fault = ", byte " + std::to_string(text.error_at) + ": " + text.error;
            damaged = true;
            return false;
        }
    }
    mendLineEnds(database, bytes.get(), size);
    database.setImage(std::move(bytes), size);
    try {
        origin.version = liftIfOld(database);
        Reader(database).read();
        return true;
    } catch (const FormatError& error) {
        const char* begin = database.image().data();
        damaged = error.at() != nullptr;
        if (damaged && origin.binary) {
            const auto at = static_cast<size_t>(error.at() - begin);
            fault = ", byte " + std::to_string(binaryOffset(origin.kept(), at));
        } else if (damaged) {
            fault = ", line " + std::to_string(std::count(begin, error.at(), '\n') + 1);
        }
        fault += ": ";
        fault += error.what();
        return false;
    }
}

/// The sound part of a file, as text with room for padding.
BigBytes recoveredBytes(std::string_view file, RecoveryReport& report, size_t& size) {
    BinaryText decoded;
    if (isBinary(file)) {
        decoded = decodeBinary(file);
        if (!decoded.error.empty()) {
            report.dropped(
                0, "all behind byte " + std::to_string(decoded.error_at) + ", " + decoded.error);
        }
        file = {decoded.bytes.get(), decoded.size};
    }
    const std::string text = recoverText(file.substr(markSize(file)), report);
    BigBytes bytes = makeBigBytes(text.size() + kImagePadding);
    if (bytes == nullptr) throw std::bad_alloc();
    std::memcpy(bytes.get(), text.data(), text.size());
    std::memset(bytes.get() + text.size(), 0, kImagePadding);
    size = text.size();
    return bytes;
}

/// The file that a drawing was read from.
std::string_view fileOf(const Database& database) {
    const FileOrigin& origin = database.origin();
    return origin.bytes == nullptr ? database.image() : origin.kept();
}

/// Reads what recovery leaves of a file. @return NULL with the fault
std::unique_ptr<Database> recoverImage(const Database& damaged, RecoveryReport& report,
                                       std::string& fault) {
    size_t size = 0;
    BigBytes sound = recoveredBytes(fileOf(damaged), report, size);
    if (size == 0) {
        fault = ": nothing of a drawing can be read";
        return nullptr;
    }
    auto database = std::make_unique<Database>();
    bool still_damaged = false;
    fault.clear();
    if (!readBytes(*database, std::move(sound), size, fault, still_damaged)) {
        fault += " (nothing more can be recovered)";
        return nullptr;
    }
    FileOrigin& origin = database->origin();
    origin.binary = damaged.origin().binary;
    origin.bytes.reset();
    origin.recovered = true;
    database->noteRecovered();
    return database;
}

std::unique_ptr<Database> readImage(BigBytes bytes, size_t size, const std::string& name,
                                    const OpenOptions& options, OpenOutcome& outcome) {
    RecoveryReport report;
    try {
        auto database = std::make_unique<Database>();
        std::string fault;
        bool damaged = false;
        if (readBytes(*database, std::move(bytes), size, fault, damaged)) return database;
        if (damaged && options.recover) {
            auto recovered = recoverImage(*database, report, fault);
            outcome.recovered = report.lines();
            if (recovered != nullptr) return recovered;
        }
        // A text without sections is no drawing, and needs no advice.
        outcome.damaged = damaged && !options.recover &&
                          fileOf(*database).find("SECTION") != std::string_view::npos;
        outcome.error = name + fault;
    } catch (const std::bad_alloc&) {
        outcome.error = name + ": not enough memory to read the drawing";
    }
    return nullptr;
}

/// Closes a file descriptor at the end of its scope.
class Descriptor {
  public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0) close(fd_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return fd_; }

  private:
    int fd_;
};

}  // namespace

std::unique_ptr<Database> readFile(const std::string& path, std::string& error) {
    OpenOutcome outcome;
    auto database = readFile(path, OpenOptions(), outcome);
    error = std::move(outcome.error);
    return database;
}

std::unique_ptr<Database> readFile(const std::string& path, const OpenOptions& options,
                                   OpenOutcome& outcome) {
    const auto refuse = [&](const std::string& cause) {
        outcome.error = path + ": " + cause;
        return nullptr;
    };
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.get() < 0) return refuse(std::strerror(errno));
    struct stat status {};
    if (fstat(file.get(), &status) != 0) return refuse(std::strerror(errno));
    if (S_ISDIR(status.st_mode)) return refuse("a folder, not a drawing");
    if (!S_ISREG(status.st_mode)) return refuse("no regular file");
    const auto size = static_cast<size_t>(status.st_size);
    BigBytes bytes = makeBigBytes(size + kImagePadding);
    if (bytes == nullptr) return refuse("not enough memory to read the drawing");
    size_t filled = 0;
    while (filled < size) {
        const ssize_t got = ::read(file.get(), bytes.get() + filled, size - filled);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return refuse(std::strerror(errno));
        if (got == 0) break;
        filled += static_cast<size_t>(got);
    }
    std::memset(bytes.get() + filled, 0, kImagePadding);
    auto database = readImage(std::move(bytes), filled, path, options, outcome);
    if (database != nullptr) {
        database->setPath(path);
        database->origin().stamp = stampOf(status);
    }
    return database;
}

std::unique_ptr<Database> readText(std::string_view text, const std::string& name,
                                   std::string& error) {
    BigBytes bytes = makeBigBytes(text.size() + kImagePadding);
    if (bytes == nullptr) {
        error = name + ": not enough memory to read the drawing";
        return nullptr;
    }
    std::memcpy(bytes.get(), text.data(), text.size());
    std::memset(bytes.get() + text.size(), 0, kImagePadding);
    OpenOutcome outcome;
    auto database = readImage(std::move(bytes), text.size(), name, OpenOptions(), outcome);
    error = std::move(outcome.error);
    return database;
}

}  // namespace host::dxf
