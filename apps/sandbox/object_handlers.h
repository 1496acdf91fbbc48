#pragma once
// The sandbox's object storage: GET and PUT /oss/<name>, one file per object under a
// directory (<home>/oss), standing in for the object-storage service portraits go to.
// Names are one path segment: no slash, backslash, control character or leading dot.
#include <filesystem>

namespace httplib {
class Server;
}

namespace qmv::sandbox {

void registerObjectRoutes(httplib::Server& server, const std::filesystem::path& directory);

}  // namespace qmv::sandbox
