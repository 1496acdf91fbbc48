#include "apps/sandbox/file_answer.h"

#include <httplib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <fstream>
#include <optional>
#include <sstream>

#include "apps/sandbox/sandbox_util.h"
#include "core/common/string_util.h"

namespace qmv::sandbox {
namespace {

constexpr const char* kHttpDate = "%a, %d %b %Y %H:%M:%S GMT";

std::string httpDate(time_t seconds) {
  struct tm parts {};
  gmtime_r(&seconds, &parts);
  char text[64];
  return std::string(text, std::strftime(text, sizeof text, kHttpDate, &parts));
}

std::optional<time_t> parseHttpDate(const std::string& text) {
  struct tm parts {};
  const char* end = strptime(text.c_str(), kHttpDate, &parts);
  if (end == nullptr || *end != '\0') return std::nullopt;
  return timegm(&parts);
}

// Whether an If-None-Match list names `etag` or is "*". A weak comparison is enough for a
// GET, so W/"x" matches "x" too.
bool listNames(const std::string& list, const std::string& etag) {
  return list.find(etag) != std::string::npos || list.find('*') != std::string::npos;
}

}  // namespace

bool answerWithFile(const httplib::Request& req, httplib::Response& res, const std::filesystem::path& file,
                    const std::string& contentType, const std::string& cacheControl) {
  std::ifstream in(file, std::ios::binary);
  struct stat info {};
  if (!in || ::stat(file.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
  std::ostringstream read;
  read << in.rdbuf();
  std::string bytes = read.str();
  const std::string etag = "\"" + StringUtil::getmd5WithString(bytes) + "\"";
  const time_t modified = info.st_mtime;
  res.set_header("ETag", etag);
  res.set_header("Last-Modified", httpDate(modified));
  res.set_header("Cache-Control", cacheControl);
  bool fresh = false;
  if (req.has_header("If-None-Match")) {
    fresh = listNames(req.get_header_value("If-None-Match"), etag);
  } else if (req.has_header("If-Modified-Since")) {
    const auto since = parseHttpDate(req.get_header_value("If-Modified-Since"));
    fresh = since && modified <= *since;
  }
  if (fresh) {
    res.status = 304;
    return true;
  }
  res.set_content(std::move(bytes), contentType);
  return true;
}

bool writeFileAtomically(const std::filesystem::path& directory, const std::string& name, const std::string& bytes,
                         bool replace) {
  std::error_code ec;
  std::filesystem::create_directories(directory, ec);
  const auto partial = directory / (".partial-" + std::to_string(::getpid()) + "-" + randomHex(8) + "-" + name);
  {
    std::ofstream out(partial, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!out) ec = std::make_error_code(std::errc::io_error);
  }
  if (!ec && replace) std::filesystem::rename(partial, directory / name, ec);
  if (!ec && !replace && ::link(partial.c_str(), (directory / name).c_str()) != 0) {
    ec = std::error_code(errno, std::generic_category());
  }
  std::error_code removed;
  if (ec || !replace) std::filesystem::remove(partial, removed);
  return !ec;
}

}  // namespace qmv::sandbox
