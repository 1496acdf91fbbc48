#pragma once
// Where the client keeps its files. On Linux everything lives under one home directory
// (the --home option, else $XDG_DATA_HOME/qmv, else ~/.local/share/qmv): the library
// directory is <home>/Library and its caches <home>/Library/Caches. Shipped resources
// (area.db, bank_card_bin.db) come from the resource directory.
#include <filesystem>

namespace qmv {

class FileLocations {
 public:
  virtual ~FileLocations() = default;
  virtual std::filesystem::path homeDirectory() const = 0;
  virtual std::filesystem::path libraryDirectory() const = 0;
  // libraryDirectory() / "Caches".
  std::filesystem::path cachesDirectory() const { return libraryDirectory() / "Caches"; }
  // Directory of the shipped databases.
  virtual std::filesystem::path resourceDirectory() const = 0;
};

// Locations rooted at one home directory.
class HomeFileLocations : public FileLocations {
 public:
  // `resources` empty: $QMV_RESOURCE_DIR, else the resources folder installed beside
  // the executable's build tree, else /usr/share/qmv.
  explicit HomeFileLocations(std::filesystem::path home, std::filesystem::path resources = {});

  std::filesystem::path homeDirectory() const override { return home_; }
  std::filesystem::path libraryDirectory() const override { return home_ / "Library"; }
  std::filesystem::path resourceDirectory() const override { return resources_; }

  // $XDG_DATA_HOME/qmv, else $HOME/.local/share/qmv.
  static std::filesystem::path defaultHome();

 private:
  std::filesystem::path home_;
  std::filesystem::path resources_;
};

}  // namespace qmv
