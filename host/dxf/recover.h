/// Drawings that are damaged: what can be read of them, as sound text for the reader.
#ifndef HOST_DXF_RECOVER_H
#define HOST_DXF_RECOVER_H

#include <string>
#include <string_view>
#include <vector>

namespace host::dxf {

/// Lines of a report that are kept; what comes after them is counted only.
constexpr size_t kReportLines = 100;

/// What was done to a damaged drawing, one sentence each, and the sum in the last line.
class RecoveryReport {
  public:
    /// Notes a change at a line (0 for none).
    void mended(size_t line, const std::string& what) { note(line, what, mended_); }
    void dropped(size_t line, const std::string& what) { note(line, what, dropped_); }
    bool empty() const { return mended_ + dropped_ == 0; }
    /// The lines and the sum.
    std::vector<std::string> lines() const;

  private:
    void note(size_t line, const std::string& what, size_t& count);

    std::vector<std::string> lines_;
    size_t mended_ = 0, dropped_ = 0;
};

/// The sound part of a text. What is no pair of a group code and a value goes; numbers that are
/// none become those that they begin with; sections, tables and blocks that were not closed are
/// closed, and what stands outside of them goes into one of its own; objects lose a handle that
/// another has already or that is none, and get a new one from the reader; a block without a name
/// gets one. Sections come in their usual order, and the parts of one section or table together.
/// All else stays as it is, but for blanks around group codes and the kind of line ends. One pass,
/// in memory of about twice the size of the text. @return empty when there is nothing of a drawing
std::string recoverText(std::string_view text, RecoveryReport& report);

}  // namespace host::dxf

#endif
