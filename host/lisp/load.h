/// Finding and reading program files.
#ifndef HOST_LISP_LOAD_H
#define HOST_LISP_LOAD_H

#include <string>
#include <string_view>

namespace host::lisp {

/// Full path of an existing file, as acedFindFile finds it; empty when there is none.
std::string findFile(const std::string& name);
/// The same for a program, whose name may lack its ".lsp".
std::string findProgram(const std::string& name);
/// Text of a file that is UTF-8, or in the code page of the drawing in the editor.
std::u16string decodeText(std::string_view bytes);
/// Reads a whole program. @return true; false with the cause in `error`
bool readProgram(const std::string& path, std::u16string& text, std::string& error);

}  // namespace host::lisp

#endif
