/// BLOCK and INSERT.
#include <algorithm>
#include <cmath>
#include <map>

#include "acad/ads.h"
#include "command/drafting.h"
#include "command/erased.h"
#include "command/insertion.h"
#include "dxf/reader.h"
#include "edit/block_definition.h"
#include "edit/copy.h"
#include "edit/import_drawing.h"
#include "edit/plane_map.h"
#include "edit/sysvars.h"
#include "edit/tag_values.h"
#include "edit/transform.h"
#include "kz_tls21an/text.h"

namespace host {
namespace {

std::u16string quoted(const std::u16string& name) {
    return u"\"" + name + u"\"";
}

/// Names of the drawing's own blocks.
void listBlocks(const CommandPrompt& prompt, Database& drawing) {
    size_t count = 0;
    for (const Slot record : drawing.blockRecords()) {
        const std::u16string name = drawing.symbolName(record);
        if (drawing.record(record).erased || name.starts_with(u'*')) continue;
        prompt.say(quoted(name));
        ++count;
    }
    prompt.say(kz::toUtf16(std::to_string(count)) + u" blocks");
}

// --- BLOCK --------------------------------------------------------------------------------------

/// True when the user lets a block take a new meaning. EXPERT silences the question.
bool mayRedefine(CommandPrompt& prompt, const std::u16string& name) {
    constexpr int kNoQuestion = 2;
    if (integerVariable("EXPERT", 0) >= kNoQuestion) return true;
    const Answered answer =
        prompt.keyword({u"Block " + quoted(name) + u" already exists. Redefine it? [Yes/No] <N>: ",
                        0, u"Yes No", nullptr});
    return answer == Answered::Keyword && prompt.given(u"Yes");
}

/// Moves entities into a block. Its coordinates are those of the user coordinate system.
void fillBlock(CommandPrompt& prompt, const Drafting& drafting, Slot block,
               const std::vector<AcDbObjectId>& chosen) {
    Database& drawing = drafting.drawing();
    const AcGeMatrix3d from_world = drafting.toWorld().inverse();
    const bool in_world = from_world.isEqualTo(AcGeMatrix3d());
    for (const AcDbObjectId id : chosen) {
        const Slot source = drawing.slotOf(id);
        const Slot copy = copyEntity(drawing, source, block);
        if (!in_world && transformEntity(drawing, copy, from_world) != TransformEnd::Done) {
            prompt.warn(u"a " + kz::toUtf16(drawing.typeName(copy)) +
                        u" keeps its world coordinates in the block.");
        }
        drawing.setErased(source, true);
    }
    noteAttributes(drawing, block);
}

void makeBlock(CommandPrompt& prompt) {
    const Drafting drafting(prompt);
    Database& drawing = drafting.drawing();
    std::u16string name;
    while (name.empty() || name == u"?") {
        name = askName(prompt, u"Enter block name or [?]: ");
        if (name.empty()) return;
        if (name == u"?") listBlocks(prompt, drawing);
    }
    if (acdbSNValid(name.c_str(), 0) != RTNORM) {
        prompt.refuse(quoted(name) + u" can't be the name of a block.");
    }
    const Slot present = drawing.findSymbol("BLOCK_RECORD", name);
    if (present != kNoSlot && !mayRedefine(prompt, name)) return;
    const AcGePoint3d base = askPoint(prompt, u"Specify insertion base point: ");
    const std::vector<AcDbObjectId> chosen = prompt.entities();
    for (const AcDbObjectId id : chosen) {
        const Slot inner = blockOfReference(drawing, drawing.slotOf(id));
        if (present != kNoSlot && inner != kNoSlot && containsBlock(drawing, inner, present)) {
            prompt.refuse(u"block " + quoted(name) + u" would contain itself.");
        }
    }
    const Slot block = defineBlock(drawing, name, base);
    if (block == kNoSlot) prompt.refuse(u"the block can't be made.");
    fillBlock(prompt, drafting, block, chosen);
    if (!chosen.empty()) rememberErased(chosen);
}

// --- INSERT -------------------------------------------------------------------------------------

constexpr int64_t kConstant = 2;
constexpr int64_t kVerified = 4;
constexpr int64_t kPreset = 8;

/// An attribute that an insert will get.
struct AttributeValue {
    Slot definition;
    std::u16string value;
};

class InsertCommand {
  public:
    explicit InsertCommand(CommandPrompt& prompt)
        : prompt_(prompt), drafting_(prompt), drawing_(drafting_.drawing()) {}

    void run() {
        if (askBlock()) place();
    }

    /// Inserts a block of the drawing.
    void run(Slot block) {
        block_ = block;
        name_ = drawing_.symbolName(block);
        place();
    }

  private:
    void place() {
        askPlace();
        if (!scaled_) askScales();
        if (!turned_) {
            const BasePoint base(place_);
            prompt_.angle({u"Specify rotation angle <" + shownAngle(0.0) + u">: ", 0, u"", base},
                          rotation_);
        }
        askAttributes();
        insert();
        setVariable("INSNAME", name_);
    }

    std::u16string textOf(Slot slot, int code) {
        const Tags& tags = drawing_.tags(slot);
        const size_t at = findTag(tags, code);
        return at < tags.size() ? tags[at].text(drawing_.codec()) : std::u16string();
    }

    bool askBlock() {
        const std::u16string last = textVariable("INSNAME");
        const std::u16string text = last.empty() ? u"Enter block name or [?]: "
                                                 : u"Enter block name or [?] <" + last + u">: ";
        for (;;) {
            name_ = askName(prompt_, text);
            if (name_.empty()) name_ = last;
            if (name_.empty()) return false;
            if (name_ != u"?") break;
            listBlocks(prompt_, drawing_);
        }
        if (!findBlock()) return false;
        name_ = drawing_.symbolName(block_);
        if (block_ == drawing_.modelSpace() || block_ == drawing_.paperSpace()) {
            prompt_.refuse(u"a space can't be inserted.");
        }
        return true;
    }

    /// The block of the answer: one of the drawing, a file, or NAME=FILE.
    bool findBlock() {
        const size_t equals = name_.find(u'=');
        if (equals != std::u16string::npos) {
            const std::u16string block = name_.substr(0, equals);
            const std::u16string file = name_.substr(equals + 1);
            return takeFile(block, file.empty() ? block : file);
        }
        block_ = drawing_.findSymbol("BLOCK_RECORD", name_);
        if (block_ != kNoSlot) return true;
        if (name_.starts_with(u'*')) prompt_.refuse(u"inserting single entities is not available.");
        const std::u16string file = name_;
        return takeFile(blockNameOf(file), file);
    }

    // --- blocks from files ----------------------------------------------------------------------

    /// Reads a drawing as a block. @return false when the user leaves the present block as it is
    bool takeFile(const std::u16string& block, const std::u16string& file) {
        const std::string path = findDrawing(file);
        if (path.empty()) {
            prompt_.refuse(u"there is no block and no file " + quoted(file) + u".");
        }
        if (acdbSNValid(block.c_str(), 0) != RTNORM) {
            prompt_.refuse(quoted(block) + u" can't be the name of a block.");
        }
        const Slot present = drawing_.findSymbol("BLOCK_RECORD", block);
        if (present != kNoSlot && !mayRedefine(prompt_, block)) return false;
        std::string error;
        const std::unique_ptr<Database> source = dxf::readFile(path, error);
        if (source == nullptr) prompt_.refuse(kz::toUtf16(error));
        if (wouldContain(*source, block, present)) {
            prompt_.refuse(u"block " + quoted(block) + u" would contain itself.");
        }
        std::map<std::string, size_t> left_out;
        block_ = importDrawing(drawing_, *source, block, left_out);
        if (block_ == kNoSlot) prompt_.refuse(u"the block can't be made.");
        for (const auto& [type, count] : left_out) {
            prompt_.warn(kz::toUtf16(std::to_string(count) + " " + type) +
                         u" can't be taken from another drawing.");
        }
        return true;
    }

    /// The file that a name means, with the extension of a drawing or without.
    static std::string findDrawing(std::u16string name) {
        std::replace(name.begin(), name.end(), u'\\', u'/');
        for (const char16_t* extension : {u"", u".dxf", u".dwg"}) {
            ACHAR path[513];
            if (acedFindFile((name + extension).c_str(), path) == RTNORM) return kz::toUtf8(path);
        }
        return {};
    }

    /// True when a block that the drawing brings along, or has here, leads back to the new one.
    bool wouldContain(Database& source, const std::u16string& block, Slot present) {
        if (source.findSymbol("BLOCK_RECORD", block) != kNoSlot) return true;
        if (present == kNoSlot) return false;
        for (const Slot record : source.blockRecords()) {
            const std::u16string name = source.symbolName(record);
            const Slot here = drawing_.findSymbol("BLOCK_RECORD", name);
            const bool space = name.starts_with(u'*');
            if (!space && here != kNoSlot && containsBlock(drawing_, here, present)) return true;
        }
        return false;
    }

    // --- place, scales, rotation ----------------------------------------------------------------

    void askPlace() {
        ads_point given;
        while (prompt_.point({u"Specify insertion point or [Scale/X/Y/Z/Rotate]: ", RSG_NONULL,
                              u"Scale X Y Z Rotate", nullptr},
                             given) == Answered::Keyword) {
            if (prompt_.given(u"Rotate")) {
                prompt_.angle(
                    {u"Specify rotation angle <" + shownAngle(0.0) + u">: ", 0, u"", nullptr},
                    rotation_);
                turned_ = true;
            } else {
                presetScale();
            }
        }
        place_ = toPoint(given);
    }

    /// A scale that is given ahead of the insertion point is not asked for again.
    void presetScale() {
        const std::u16string axis = prompt_.keywordGiven();
        double value = 1.0;
        askScale(u"Specify " + (axis == u"Scale" ? u"" : axis + u" ") + u"scale factor <1>: ",
                 value);
        scaled_ = true;
        if (axis == u"X" || axis == u"Scale") scale_.x = value;
        if (axis == u"Y" || axis == u"Scale") scale_.y = value;
        if (axis == u"Z" || axis == u"Scale") scale_.z = value;
    }

    Answered askScale(const std::u16string& text, double& value, std::u16string_view words = {}) {
        return prompt_.real({text, RSG_NOZERO, std::u16string(words), nullptr}, value);
    }

    void askScales() {
        const Answered answer =
            askScale(u"Enter X scale factor or [Corner/XYZ] <1>: ", scale_.x, u"Corner XYZ");
        if (answer == Answered::Keyword && prompt_.given(u"Corner")) return scaleByCorner();
        const bool all = answer == Answered::Keyword;
        if (all) askScale(u"Specify X scale factor <1>: ", scale_.x);
        scale_.y = scale_.x;
        askScale(u"Enter Y scale factor <use X scale factor>: ", scale_.y);
        scale_.z = std::fabs(scale_.x);
        if (all) askScale(u"Specify Z scale factor or <use X scale factor>: ", scale_.z);
    }

    void scaleByCorner() {
        const BasePoint base(place_);
        ads_point corner;
        prompt_.corner({u"Specify opposite corner: ", RSG_NONULL, u"", base}, corner);
        scale_ = {corner[0] - place_.x, corner[1] - place_.y, 1.0};
        if (scale_.x == 0.0 || scale_.y == 0.0) prompt_.refuse(u"scales can't be 0.");
        scale_.z = std::fabs(scale_.x);
    }

    // --- attributes -----------------------------------------------------------------------------

    int64_t attributeFlags(Slot definition) { return integerOf(drawing_.tags(definition), 70, 0); }

    void askAttributes() {
        for (const Slot slot : drawing_.block(block_).contents) {
            const bool defines =
                !drawing_.record(slot).erased && drawing_.typeName(slot) == "ATTDEF";
            if (defines && (attributeFlags(slot) & kConstant) == 0) {
                attributes_.push_back({slot, textOf(slot, 1)});
            }
        }
        if (attributes_.empty() || integerVariable("ATTREQ", 1) == 0) return;
        prompt_.say(u"Enter attribute values");
        askValues(0);
        for (const AttributeValue& attribute : attributes_) {
            if ((attributeFlags(attribute.definition) & kVerified) == 0) continue;
            prompt_.say(u"Verify attribute values");
            askValues(kVerified);
            break;
        }
    }

    /// Asks for all values, or for those of attributes with a flag. Enter keeps what is there.
    void askValues(int64_t flag) {
        for (AttributeValue& attribute : attributes_) {
            const int64_t flags = attributeFlags(attribute.definition);
            if ((flags & kPreset) != 0 || (flags & flag) != flag) continue;
            std::u16string text = textOf(attribute.definition, 3);
            if (text.empty()) text = textOf(attribute.definition, 2);
            if (!attribute.value.empty()) text += u" <" + attribute.value + u">";
            const std::u16string typed = prompt_.text(text + u": ", true);
            if (!typed.empty()) attribute.value = typed;
        }
    }

    /// From the block's coordinates to the world.
    AcGeMatrix3d blockToWorld(const AcGeVector3d& scale) const {
        const AcGeVector3d x = directionAt(drafting_.flatAngle(rotation_));
        const AcGeVector3d y(-x.y, x.x, 0.0);
        AcGeMatrix3d placed;
        placed.setCoordSystem(drafting_.flat(place_), x * scale.x, y * scale.y,
                              AcGeVector3d::kZAxis * scale.z);
        const AcGeVector3d base = blockBase(drawing_, block_).asVector();
        return AcGeMatrix3d().setToPlaneToWorld(drafting_.normal()) * placed *
               AcGeMatrix3d().setToTranslation(-base);
    }

    /// Groups of the attribute that a definition gives: those of the text, then its own.
    Tags attributeTags(const AttributeValue& attribute) {
        const Tags& source = drawing_.tags(attribute.definition);
        const size_t entity = findTag(source, 100);
        const size_t text = findTag(source, 100, entity + 1);
        const size_t own = findTag(source, 100, text + 1);
        const auto at = [&](size_t i) { return source.begin() + static_cast<std::ptrdiff_t>(i); };
        Tags tags(at(entity), at(own));
        replaceTag(tags, Tag(1, attribute.value));
        // What is drawn on layer 0 in a block comes on the layer of the insert.
        const size_t layer = findTag(tags, 8);
        if (layer < tags.size() && tags[layer].text(drawing_.codec()) == u"0") {
            tags[layer] = Tag(8, textVariable("CLAYER"));
        }
        NewGroups own_groups;
        own_groups.mark(u"AcDbAttribute").text(2, textOf(attribute.definition, 2));
        own_groups.integer(70, attributeFlags(attribute.definition));
        for (const int code : {73, 74}) {
            const size_t value = findTag(source, code, own);
            if (value < source.size()) own_groups.integer(code, source[value].integer());
        }
        for (Tag& tag : own_groups.take())
            tags.push_back(std::move(tag));
        return tags;
    }

    /// Under unequal scales a letter keeps its form: its height follows y, its width x.
    Tags placedAttribute(const AttributeValue& attribute) {
        Tags tags = attributeTags(attribute);
        TransformRules rules;
        rules.mirror_text = integerVariable("MIRRTEXT", 0) != 0;
        if (transformTags("ATTRIB", tags, blockToWorld(scale_), rules) == TransformEnd::Done) {
            return tags;
        }
        const Tags source = tags;
        const double height = std::fabs(scale_.y);
        const double width = std::fabs(scale_.x) / height;
        transformTags("ATTRIB", tags, blockToWorld({height, height, height}), rules);
        const AcGeMatrix3d to_flat =
            AcGeMatrix3d().setToWorldToPlane(drafting_.normal()) * blockToWorld(scale_);
        for (const int code : {10, 11}) {
            if (findTag(tags, code) < tags.size()) {
                replacePoint(tags, code, to_flat * pointOf(source, code));
            }
        }
        const double factor = realOf(source, 41, 1.0) * width;
        const size_t at = findTag(tags, 41);
        if (at < tags.size()) {
            tags[at] = Tag(41, factor);
        } else {
            tags.emplace(tags.begin() + static_cast<std::ptrdiff_t>(findTag(tags, 40)) + 1, 41,
                         factor);
        }
        return tags;
    }

    // --- the insert -----------------------------------------------------------------------------

    Slot addPart(std::string_view type, Slot main, Tags tags) {
        const Slot part = drawing_.makeRecord(type, ObjectClass::SubEntity,
                                              drawing_.record(main).handle, std::move(tags));
        drawing_.record(part).owner = main;
        drawing_.appendEntity(drafting_.space(), part);
        return part;
    }

    void insert() {
        NewGroups groups;
        groups.mark(u"AcDbBlockReference");
        if (!attributes_.empty()) groups.integer(66, 1);
        groups.text(2, name_).point(10, drafting_.flat(place_));
        if (scale_.x != 1.0) groups.real(41, scale_.x);
        if (scale_.y != 1.0) groups.real(42, scale_.y);
        if (scale_.z != 1.0) groups.real(43, scale_.z);
        const double rotation = drafting_.flatAngle(rotation_);
        if (rotation != 0.0) groups.real(50, rotation);
        drafting_.direct(groups);
        std::vector<Tags> placed;
        for (const AttributeValue& attribute : attributes_)
            placed.push_back(placedAttribute(attribute));
        const Slot main = drafting_.add("INSERT", groups);
        if (placed.empty()) return;
        for (Tags& tags : placed)
            addPart("ATTRIB", main, std::move(tags));
        addPart("SEQEND", main, drafting_.common("SEQEND"));
    }

    CommandPrompt& prompt_;
    Drafting drafting_;
    Database& drawing_;
    std::u16string name_;
    Slot block_ = kNoSlot;
    AcGePoint3d place_;
    AcGeVector3d scale_{1, 1, 1};
    double rotation_ = 0.0;
    bool scaled_ = false;
    bool turned_ = false;
    std::vector<AttributeValue> attributes_;
};

void insertBlock(CommandPrompt& prompt) {
    InsertCommand(prompt).run();
}

const Command kCommands[] = {
    {u"BLOCK", u"B", makeBlock, true, "Makes a block of entities, which leave the drawing."},
    {u"INSERT", u"I", insertBlock, true, "Inserts a block, with its attributes."},
};

}  // namespace

void askAndInsert(CommandPrompt& prompt, Slot block) {
    InsertCommand(prompt).run(block);
}

std::u16string blockNameOf(const std::u16string& path) {
    const size_t folder = path.find_last_of(u"/\\");
    std::u16string name = folder == std::u16string::npos ? path : path.substr(folder + 1);
    name.erase(std::min(name.rfind(u'.'), name.size()));
    return name;
}

std::span<const Command> blockCommands() {
    return kCommands;
}

}  // namespace host
