#include "apps/sandbox/object_handlers.h"

#include <httplib.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <string>

namespace qmv::sandbox {
namespace {

constexpr size_t kMaxNameBytes = 200;

bool validName(const std::string& name) {
  if (name.empty() || name.size() > kMaxNameBytes || name.front() == '.') return false;
  for (const unsigned char c : name) {
    if (c < 0x20 || c == 0x7F || c == '/' || c == '\\') return false;
  }
  return true;
}

}  // namespace

void registerObjectRoutes(httplib::Server& server, const std::filesystem::path& directory) {
  server.Get(R"(/oss/([^/]+))", [directory](const httplib::Request& req, httplib::Response& res) {
    const std::string name = req.matches[1].str();
    if (!validName(name)) {
      res.status = 404;
      return;
    }
    std::ifstream in(directory / name, std::ios::binary);
    if (!in) {
      res.status = 404;
      return;
    }
    std::ostringstream bytes;
    bytes << in.rdbuf();
    res.set_content(bytes.str(), "application/octet-stream");
  });
  server.Put(R"(/oss/([^/]+))", [directory](const httplib::Request& req, httplib::Response& res) {
    const std::string name = req.matches[1].str();
    if (!validName(name)) {
      res.status = 400;
      return;
    }
    std::error_code ec;
    std::filesystem::create_directories(directory, ec);
    // Written aside and renamed, so a reader never sees half an object.
    const auto target = directory / name;
    const auto partial = directory / (".partial-" + std::to_string(::getpid()) + "-" + name);
    {
      std::ofstream out(partial, std::ios::binary | std::ios::trunc);
      out.write(req.body.data(), static_cast<std::streamsize>(req.body.size()));
      if (!out) ec = std::make_error_code(std::errc::io_error);
    }
    if (!ec) std::filesystem::rename(partial, target, ec);
    if (ec) {
      std::filesystem::remove(partial, ec);
      res.status = 500;
      return;
    }
    res.status = 200;
  });
}

}  // namespace qmv::sandbox
