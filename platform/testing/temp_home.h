#pragma once
// Test helper: a fresh home directory with HomeFileLocations and an in-memory settings
// store, installed as the Env for the helper's lifetime and removed afterwards.
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "platform/env.h"
#include "platform/file_locations.h"
#include "platform/settings_store.h"
#include "platform/testing/test_env.h"

namespace qmv {

class TempHome {
 public:
  // `resources` empty: the built resources ($QMV_RESOURCE_DIR).
  explicit TempHome(std::filesystem::path resources = {})
      : home_(makeDirectory()),
        settings_(std::make_shared<MemorySettingsStore>()),
        files_(std::make_shared<HomeFileLocations>(home_, resources)),
        scoped_(makeEnv()) {}
  ~TempHome() {
    std::error_code ec;
    std::filesystem::remove_all(home_, ec);
  }
  TempHome(const TempHome&) = delete;
  TempHome& operator=(const TempHome&) = delete;

  const std::filesystem::path& home() const { return home_; }
  std::filesystem::path caches() const { return files_->cachesDirectory(); }
  MemorySettingsStore& settings() { return *settings_; }
  const std::shared_ptr<HomeFileLocations>& files() const { return files_; }

 private:
  static std::filesystem::path makeDirectory() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qmv-test-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) std::abort();
    return pattern;
  }
  Env makeEnv() {
    Env env;
    env.settings = settings_;
    env.files = files_;
    return completedForTesting(std::move(env));
  }

  std::filesystem::path home_;
  std::shared_ptr<MemorySettingsStore> settings_;
  std::shared_ptr<HomeFileLocations> files_;
  ScopedEnv scoped_;
};

}  // namespace qmv
