#pragma once
// Checks and opens for the files of the home directory (settings, shell history,
// configuration, caches). The home holds the password and the session, so nothing in
// it is followed when it is a symbolic link, read when it is a FIFO or a device, or
// used when another user owns it: each would let someone else read what the client
// writes, overwrite a file of their choice through it, or hang every start.
#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace qmv::home_files {

enum class Kind { file, directory };

// Why `path` may not serve as a `kind` of the home: a symbolic link, an entry of another
// type, or one owned by another user. "" when it is fit, or absent. Looks without
// opening, so a FIFO cannot block the look.
std::string refusal(const std::filesystem::path& path, Kind kind);

// Why `home` may not serve as the home directory: not a directory, owned by another
// user, or writable by other users (who could plant entries in it after any check).
// A home given as a symbolic link to a directory is followed: the user named it.
std::string homeRefusal(const std::filesystem::path& home);

// The refusal of the home or of the first of its entries that is refused, "" when all
// are fit. `files` and `directories` are relative to `home`.
std::string firstRefusal(const std::filesystem::path& home, const std::vector<std::string>& files,
                         const std::vector<std::string>& directories);

struct Opened {
  int fd = -1;          // blocking, close-on-exec; -1 on failure
  std::string error;    // names the file
  bool absent = false;  // failed only because nothing is there
};

// Opens the regular file `path` with `flags` (O_RDONLY, O_RDWR | O_CREAT, ...) without
// following a link or blocking on a FIFO, and checks that the user owns what it opened.
// A file it creates gets `mode`. The caller closes the descriptor.
Opened openPrivate(const std::filesystem::path& path, int flags, mode_t mode = 0600);

struct Read {
  std::string bytes;
  std::string error;  // names the file; "" when read or absent
  bool absent = false;
};

// The whole of the regular file `path`, opened as openPrivate does, so that what is read
// is what was checked (no second look-up by name). Refused past `maxBytes`.
Read readPrivate(const std::filesystem::path& path, std::size_t maxBytes);

}  // namespace qmv::home_files
