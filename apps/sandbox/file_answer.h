#pragma once
// Files served as they are stored, with what lets a client keep them: a strong ETag (the
// MD5 of the bytes), Last-Modified (the file's time) and a Cache-Control, and 304 without
// a body when If-None-Match or If-Modified-Since shows the client holds these bytes.
#include <filesystem>
#include <string>

namespace httplib {
struct Request;
struct Response;
}  // namespace httplib

namespace qmv::sandbox {

// False, with nothing answered, when the file cannot be read.
bool answerWithFile(const httplib::Request& req, httplib::Response& res, const std::filesystem::path& file,
                    const std::string& contentType, const std::string& cacheControl);

// Writes `bytes` aside and moves them in, so that a reader never sees half a file. Without
// `replace`, a file already there is kept (and the call fails).
bool writeFileAtomically(const std::filesystem::path& directory, const std::string& name, const std::string& bytes,
                         bool replace = true);

}  // namespace qmv::sandbox
