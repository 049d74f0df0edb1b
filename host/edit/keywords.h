/// What acedInitGet prepares: flags and keywords for one input function.
#ifndef HOST_EDIT_KEYWORDS_H
#define HOST_EDIT_KEYWORDS_H

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// A list of keywords as acedInitGet takes it.
class Keywords {
  public:
    Keywords() = default;
    explicit Keywords(std::u16string_view list);

    /// The keyword that a typed text means, as the program wants it: of the language-free words
    /// where there are such, without abbreviation. Empty for none. Of several the first; a text
    /// that is the whole of one goes before.
    std::u16string match(std::u16string_view typed) const;
    bool empty() const { return local_.empty(); }

  private:
    struct Word {
        std::u16string text;  ///< without abbreviation
        std::u16string
            abbreviation;  ///< its capitals, or what stands behind the comma; may be none
    };
    static Word wordOf(std::u16string_view text);
    static size_t find(const std::vector<Word>& words, std::u16string_view typed);

    std::vector<Word> local_;
    std::vector<Word> global_;  ///< behind the underscore; as many as local_ or none
};

/// Prepared for the next input function.
struct InputRules {
    int flags = 0;
    Keywords keywords;
};

/// Takes what was prepared; the next call gets nothing.
InputRules takeInputRules();
/// What acedGetInput gives.
void setLastKeyword(std::u16string keyword);
const std::u16string& lastKeyword();

}  // namespace host

#endif
