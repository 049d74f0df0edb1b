/// What texts say: the plain letters of a TEXT and the lines of an MTEXT.
#ifndef HOST_PLOT_TEXT_CONTENT_H
#define HOST_PLOT_TEXT_CONTENT_H

#include <string>
#include <string_view>
#include <vector>

namespace host {

/// The letters behind "%%d", "%%p", "%%c", "%%nnn"; lines over and under the text ("%%o", "%%u")
/// are left out.
std::u16string plainText(std::u16string_view text);

/// The paragraphs of formatted text: the codes for fonts, colours, heights and alignment are left
/// out, stacked fractions come as "a/b".
std::vector<std::u16string> paragraphs(std::u16string_view text);

}  // namespace host

#endif
