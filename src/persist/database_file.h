// Database files.
#pragma once

#include <memory>

namespace qxe {

class TTableCollection;

/// The database in a file, which remembers its place. A failure throws.
std::unique_ptr<TTableCollection> load_database(const char* directory, const char* name);

}  // namespace qxe
