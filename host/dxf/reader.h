/// Reads a DXF drawing into a database: one pass over the bytes that finds the objects and
/// checks the form of all values, and decodes nothing but names.
#ifndef HOST_DXF_READER_H
#define HOST_DXF_READER_H

#include <memory>
#include <string>

#include "db/database.h"
#include "host/drawing.h"

namespace host::dxf {

/// Reads the file at `path`. @return NULL with one sentence in `error` that names file, line (where
/// there is one) and cause
std::unique_ptr<Database> readFile(const std::string& path, std::string& error);
/// The same with options. @return NULL with `outcome.error`; `outcome.opened` is left to the caller
std::unique_ptr<Database> readFile(const std::string& path, const OpenOptions& options,
                                   OpenOutcome& outcome);

/// Reads a drawing from memory; `name` stands for the file in errors.
std::unique_ptr<Database> readText(std::string_view text, const std::string& name,
                                   std::string& error);

}  // namespace host::dxf

#endif
