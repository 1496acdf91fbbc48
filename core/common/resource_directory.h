#pragma once
// Where the shipped databases are read from when no one says: both the client's file
// locations and the sandbox, which sits below the platform ports, look there.
#include <filesystem>

namespace qmv {

// $QMV_RESOURCE_DIR, else <prefix>/share/qmv beside an installed <prefix>/bin executable,
// else the resources folder of the build tree the executable runs from, else /usr/share/qmv.
std::filesystem::path defaultResourceDirectory();

}  // namespace qmv
