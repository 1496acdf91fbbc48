#pragma once
// The sandbox's object storage: GET and PUT /oss/<name>, one file per object under a
// directory (<home>/oss), standing in for the object-storage service portraits go to.
// Names are one path segment: no slash, backslash, control character or leading dot.
//
// Reading is open (portraits are shown to anyone, like a public-read bucket). Writing
// needs a member's session, sent as the "sessionId" cookie that login sets (or a
// "sessionId" query parameter), and only reaches the member's own portrait objects:
// <userName>.png, .jpg or .jpeg. Answers: 401 without a known session, 403 for another
// name, 413 past kMaxObjectBytes (refused before the body is read when it says its
// length), 400 for a bad name.
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace httplib {
class Server;
}

namespace qmv::sandbox {

inline constexpr size_t kMaxObjectBytes = 2 * 1024 * 1024;

// The user name of the member signed in with a session id, or nothing.
using SessionUserName = std::function<std::optional<std::string>(const std::string& sessionId)>;

// The bytes of an object that is not stored yet but can be drawn (the launch picture, a
// demo member's portrait), or "". What it draws is stored, unless an upload got there first.
using MissingObject = std::function<std::string(const std::string& name)>;

void registerObjectRoutes(httplib::Server& server, const std::filesystem::path& directory,
                          SessionUserName userNameOf, MissingObject drawMissing);

}  // namespace qmv::sandbox
