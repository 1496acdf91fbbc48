#include "apps/sandbox/object_handlers.h"

#include <httplib.h>
#include <unistd.h>

#include <cstdint>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>

#include "apps/sandbox/file_answer.h"
#include "apps/sandbox/guarded_http_server.h"
#include "apps/sandbox/sandbox_util.h"
#include "platform/codecs/image_codecs.h"

namespace qmv::sandbox {
namespace {

constexpr size_t kMaxNameBytes = 200;
constexpr const char* kPortraitExtensions[] = {".png", ".jpg", ".jpeg"};

bool validName(const std::string& name) {
  if (name.empty() || name.size() > kMaxNameBytes || name.front() == '.') return false;
  for (const unsigned char c : name) {
    if (c < 0x20 || c == 0x7F || c == '/' || c == '\\') return false;
  }
  return true;
}

bool ownsObject(const std::string& userName, const std::string& name) {
  for (const char* extension : kPortraitExtensions) {
    if (name == userName + extension) return true;
  }
  return false;
}

std::string sessionOf(const httplib::Request& req) {
  if (req.has_param("sessionId")) return req.get_param_value("sessionId");
  const auto cookies = parseCookies(req.get_header_value("Cookie"));
  const auto it = cookies.find(kSessionCookie);
  return it == cookies.end() ? std::string() : it->second;
}

// A refused body up to this size is read and dropped so the connection can serve on;
// a larger one closes the connection instead.
constexpr size_t kMaxDrainBytes = 2 * kMaxObjectBytes;

// The declared body length; nothing when absent or malformed.
std::optional<int64_t> declaredLength(const httplib::Request& req) {
  if (!req.has_header("Content-Length")) return std::nullopt;
  return parseInteger(req.get_header_value("Content-Length"), 0, INT64_MAX / 2);
}

// Answers `status` to a PUT whose body has not been read. The body must not be taken for
// the next request on the connection: it is drained when small, else the connection closes.
void refuse(const httplib::Request& req, httplib::Response& res, const httplib::ContentReader& readBody,
            int status) {
  const auto length = declaredLength(req);
  bool drained = false;
  if (length && static_cast<uint64_t>(*length) <= kMaxDrainBytes) {
    drained = readBody([](const char*, size_t) { return true; });
  }
  res.status = status;
  if (!drained) GuardedHttpServer::closeAfterAnswer(res);
}

// What a client may do with an object: keep it, but ask again each time, since a portrait
// is replaced under the same name.
constexpr const char* kObjectCacheControl = "public, no-cache";

std::string contentTypeOf(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  char magic[16] = {};
  in.read(magic, sizeof magic);
  switch (sniffImageFormat(std::string_view(magic, static_cast<size_t>(in.gcount())))) {
    case ImageFormat::kPng: return "image/png";
    case ImageFormat::kJpeg: return "image/jpeg";
    case ImageFormat::kWebp: return "image/webp";
    case ImageFormat::kUnknown: break;
  }
  return "application/octet-stream";
}

}  // namespace

void registerObjectRoutes(httplib::Server& server, const std::filesystem::path& directory,
                          SessionUserName userNameOf, MissingObject drawMissing) {
  server.Get(R"(/oss/([^/]+))", [directory, drawMissing](const httplib::Request& req, httplib::Response& res) {
    const std::string name = req.matches[1].str();
    if (!validName(name)) {
      res.status = 404;
      return;
    }
    const auto file = directory / name;
    if (!std::filesystem::exists(file)) {
      const std::string drawn = drawMissing(name);
      if (!drawn.empty()) writeFileAtomically(directory, name, drawn, false);
    }
    if (!answerWithFile(req, res, file, contentTypeOf(file), kObjectCacheControl)) res.status = 404;
  });
  server.Put(R"(/oss/([^/]+))", [directory, userNameOf](const httplib::Request& req, httplib::Response& res,
                                                         const httplib::ContentReader& readBody) {
    const std::string name = req.matches[1].str();
    if (!validName(name)) return refuse(req, res, readBody, 400);
    const auto userName = userNameOf(sessionOf(req));
    if (!userName) return refuse(req, res, readBody, 401);
    if (!ownsObject(*userName, name)) return refuse(req, res, readBody, 403);
    const auto length = declaredLength(req);
    if (length && static_cast<uint64_t>(*length) > kMaxObjectBytes) return refuse(req, res, readBody, 413);
    std::string bytes;
    bool tooLarge = false;
    const bool read = readBody([&](const char* data, size_t size) {
      tooLarge = bytes.size() + size > kMaxObjectBytes;
      if (!tooLarge) bytes.append(data, size);
      return !tooLarge;
    });
    if (tooLarge || !read) {
      res.status = tooLarge ? 413 : 400;
      GuardedHttpServer::closeAfterAnswer(res);  // the rest of the body is still on its way
      return;
    }
    res.status = writeFileAtomically(directory, name, bytes) ? 200 : 500;
  });
}

}  // namespace qmv::sandbox
