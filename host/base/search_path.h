/// Where files are looked for: the working directory, the drawing's folder, and the folders of the
/// environment variable KZ_PATH, which are separated by colons.
#ifndef HOST_BASE_SEARCH_PATH_H
#define HOST_BASE_SEARCH_PATH_H

#include <string>
#include <vector>

namespace host {

/// A path as it is written here: a drawing may have it with backslashes.
std::string plainPath(std::string path);
/// The path of a file by a name as other systems spell it: what is there under this very name, or
/// with slashes for backslashes, or whatever the case of its letters (of several the first in
/// order). Of a name that isn't there the folders that are.
std::string spelledPath(const std::string& name);
/// The folders of KZ_PATH.
std::vector<std::string> supportFolders();
/// Full path of the first regular file with this name; empty when there is none. The name is
/// spelled as for spelledPath, and taken as it stands, from `beside` (a folder, may be empty), and
/// from each support folder.
std::string findInPath(const std::string& name, const std::string& beside);

}  // namespace host

#endif
