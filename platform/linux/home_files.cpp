#include "platform/linux/home_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace qmv::home_files {
namespace {

std::string refused(const std::filesystem::path& path, const std::string& why) {
  return "refusing " + path.string() + ": " + why;
}

std::string ownershipRefusal(const std::filesystem::path& path, const struct stat& status) {
  if (status.st_uid != ::geteuid()) return refused(path, "it belongs to another user");
  return {};
}

}  // namespace

std::string refusal(const std::filesystem::path& path, Kind kind) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) != 0) {
    if (errno == ENOENT) return {};
    return refused(path, std::strerror(errno));
  }
  if (S_ISLNK(status.st_mode)) return refused(path, "it is a symbolic link");
  if (kind == Kind::file && !S_ISREG(status.st_mode)) return refused(path, "it is not a regular file");
  if (kind == Kind::directory && !S_ISDIR(status.st_mode)) return refused(path, "it is not a directory");
  return ownershipRefusal(path, status);
}

std::string homeRefusal(const std::filesystem::path& home) {
  struct stat status {};
  if (::stat(home.c_str(), &status) != 0) return refused(home, std::strerror(errno));
  if (!S_ISDIR(status.st_mode)) return refused(home, "it is not a directory");
  if (std::string why = ownershipRefusal(home, status); !why.empty()) return why;
  if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
    return refused(home, "other users can write to it (chmod go-w, or choose another --home)");
  }
  return {};
}

std::string firstRefusal(const std::filesystem::path& home, const std::vector<std::string>& files,
                         const std::vector<std::string>& directories) {
  if (std::string why = homeRefusal(home); !why.empty()) return why;
  // Directories first: a linked directory would make its files' own checks look elsewhere.
  for (const auto& name : directories) {
    if (std::string why = refusal(home / name, Kind::directory); !why.empty()) return why;
  }
  for (const auto& name : files) {
    if (std::string why = refusal(home / name, Kind::file); !why.empty()) return why;
  }
  return {};
}

Opened openPrivate(const std::filesystem::path& path, int flags, mode_t mode) {
  Opened opened;
  const int fd = ::open(path.c_str(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, mode);
  if (fd < 0) {
    // ENXIO: a FIFO without a reader, or a device, opened for writing without blocking.
    opened.absent = errno == ENOENT;
    opened.error = errno == ELOOP   ? refused(path, "it is a symbolic link")
                   : errno == ENXIO ? refused(path, "it is not a regular file")
                                    : refused(path, std::strerror(errno));
    return opened;
  }
  struct stat status {};
  std::string why;
  if (::fstat(fd, &status) != 0) {
    why = refused(path, std::strerror(errno));
  } else if (!S_ISREG(status.st_mode)) {
    why = refused(path, "it is not a regular file");
  } else {
    why = ownershipRefusal(path, status);
  }
  if (why.empty() && ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK) != 0)
    why = refused(path, std::strerror(errno));
  if (!why.empty()) {
    ::close(fd);
    opened.error = std::move(why);
    return opened;
  }
  opened.fd = fd;
  return opened;
}

Read readPrivate(const std::filesystem::path& path, std::size_t maxBytes) {
  Read read;
  const Opened opened = openPrivate(path, O_RDONLY);
  if (opened.fd < 0) {
    read.absent = opened.absent;
    if (!read.absent) read.error = opened.error;
    return read;
  }
  char buffer[8192];
  for (;;) {
    const ssize_t n = ::read(opened.fd, buffer, sizeof buffer);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      read.error = refused(path, std::strerror(errno));
      break;
    }
    if (n == 0) break;
    if (read.bytes.size() + static_cast<std::size_t>(n) > maxBytes) {
      read.error = refused(path, "it is larger than " + std::to_string(maxBytes) + " bytes");
      break;
    }
    read.bytes.append(buffer, static_cast<std::size_t>(n));
  }
  ::close(opened.fd);
  if (!read.error.empty()) read.bytes.clear();
  return read;
}

}  // namespace qmv::home_files
