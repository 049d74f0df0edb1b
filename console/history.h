/// What was typed in earlier consoles, in a file that several of them may use at once.
#ifndef CONSOLE_HISTORY_H
#define CONSOLE_HISTORY_H

#include <string>
#include <string_view>
#include <vector>

namespace console {

/// An expression on one line: outside of texts line ends become blanks and comments go, in texts
/// line ends become "\n". It reads as the same expression.
std::string onOneLine(std::string_view expression);

/// The file of the history, one entry a line, readable by its owner only. Each entry is appended
/// when it is typed; a file that has grown is cut to the latest entries when it is next read.
class HistoryFile {
  public:
    /// KZ_HISTORY names the file, an empty one none; without it the file is
    /// kz_zaglaid/console_history in XDG_STATE_HOME, or in ~/.local/state.
    HistoryFile();
    /// The latest entries, oldest first; of equal ones the latest.
    std::vector<std::string> read() const;
    void append(const std::string& entry) const;

    static constexpr size_t kEntries = 2000;

  private:
    std::string path_;  ///< empty for none
};

}  // namespace console

#endif
