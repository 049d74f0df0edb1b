/// One walk over the bytes of all objects of a drawing that was just read: it counts what there is
/// and notes what is odd. Nothing is decoded but names, each once.
#ifndef HOST_DXF_OBJECT_SURVEY_H
#define HOST_DXF_OBJECT_SURVEY_H

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "db/database.h"
#include "dxf/pairs.h"
#include "host/drawing_info.h"

namespace host::dxf {

/// What may be odd, in the order in which it is told.
enum class Odd : uint8_t {
    LostReference,
    WrongOwner,
    NotHeld,
    LostMember,
    MissingLayer,
    MissingLineType,
    MissingBlock,
    DuplicateName,
    Unregistered,
    UnknownType,
    Proxy,
    Unreadable,
    LowSeed,
    Count
};

class ObjectSurvey {
  public:
    explicit ObjectSurvey(Database& database) : database_(database) {}

    /// Types that the drawing declares are not unknown.
    void declare(std::string_view type) { declared_.emplace(type); }
    /// Does the walk; the counts of names are filled in.
    void run(DrawingInfo& out);
    void note(Odd what, const std::string& where);
    /// The findings as they are told.
    std::vector<InfoFinding> findings() const;

  private:
    struct Use {
        uint64_t count = 0;
        Slot first = kNoSlot;
    };
    /// Names as the file has their bytes, which are mostly the same for many objects.
    using Uses = std::unordered_map<std::string_view, Use>;
    /// What a look at one object finds.
    struct Look;

    void look(Slot slot);
    void lookAtPair(Slot slot, const Pair& pair, Look& look);
    void checkReference(Slot slot, const Pair& pair, const Look& look);
    void checkOwner(Slot slot, const Look& look);
    void endData(Look& look, const char* end);
    void checkText(Slot slot, std::string_view value);
    void noteLargest(Slot slot);
    void countType(Slot slot, std::string_view type);
    void checkHeld();
    std::string nameOf(Slot slot) const;
    /// Uses by the decoded name in upper case; a name that the table lacks is noted.
    std::unordered_map<std::u16string, uint64_t> merged(const Uses& uses, const char* table,
                                                        Odd missing);
    void fillTables(DrawingInfo& out);
    void fillApplications(DrawingInfo& out);

    Database& database_;
    std::unordered_set<std::string> declared_;
    Uses layers_, line_types_, inserts_;
    struct AppUse {
        uint64_t objects = 0, bytes = 0;
        Slot first = kNoSlot;
    };
    std::unordered_map<std::string_view, AppUse> apps_;
    std::vector<uint64_t> type_counts_[2];  ///< by the number of the type; entities, objects
    enum class Kind : uint8_t { Unseen, Known, Unknown, Proxy };
    Kind kindOf(std::string_view type) const;
    std::vector<Kind> kinds_;    ///< by the number of the type
    std::vector<Slot> held_by_;  ///< dictionary that has an entry for the object
    std::vector<std::pair<uint32_t, Slot>> largest_;
    uint64_t data_bytes_ = 0, greatest_handle_ = 0;
    DrawingInfo* out_ = nullptr;
    std::vector<InfoFinding> odd_ = std::vector<InfoFinding>(static_cast<size_t>(Odd::Count));
};

}  // namespace host::dxf

#endif
