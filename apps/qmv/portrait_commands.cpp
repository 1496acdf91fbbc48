// The portrait: with a FILE, the portrait screen takes that picture (checked, shrunk to
// 640 px at most, sent as JPEG); without, the stored portrait is written to ./portrait.jpg.
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/command_registry.h"
#include "features/member/portrait_view_controller.h"
#include "platform/navigator.h"

namespace qmv::cli {
namespace {

constexpr const char* kSavedFile = "portrait.jpg";

// The file's bytes, read no further than one byte past the screen's limit, so that the
// screen still sees that the picture is too large; nullopt when it cannot be read.
std::optional<std::string> readPicture(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::nullopt;
  std::string bytes(PortraitViewController::kMaxPictureBytes + 1, '\0');
  in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (in.bad()) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(in.gcount()));
  return bytes;
}

// Saving needs no member: what is stored is what the last login left (logout removes it).
int runPortrait(CliApp& app, const std::string& file) {
  if (!file.empty() && !memberSignedIn(app)) return kExitFailure;
  Env::current().navigator->push(portrait_texts::kScreen);
  PortraitViewController screen;
  CliOutput& out = app.output();
  if (file.empty()) {
    const std::string portrait = screen.currentPortrait();
    if (portrait.empty()) {
      out.line(portrait_texts::kNoPortrait);
      return kExitFailure;
    }
    std::ofstream saved(kSavedFile, std::ios::binary | std::ios::trunc);
    saved << portrait;
    saved.close();
    if (!saved) return failWith("cannot write ./portrait.jpg");
    out.line(std::string(screen.title()) + ": ./" + kSavedFile + " (" + std::to_string(portrait.size()) + " bytes)");
    out.data("file", std::filesystem::absolute(kSavedFile).string());
    out.data("bytes", portrait.size());
    return kExitOk;
  }
  const auto bytes = readPicture(file);
  if (!bytes) return failWith("cannot read " + file);
  const auto stored = awaitSlot(app, screen.onFinished, [&] { return screen.upload(*bytes); });
  if (!stored) return screen.isSending() ? timedOut("the portrait upload") : kExitFailure;
  if (!*stored) return kExitFailure;
  out.line(std::string(screen.title()) + ": " + std::to_string(screen.currentPortrait().size()) + " bytes");
  out.data("bytes", screen.currentPortrait().size());
  return kExitOk;
}

}  // namespace

void registerPortraitCommands(CommandRegistry& registry) {
  auto file = std::make_shared<std::string>();
  CLI::App* portrait = registry.add("portrait", "upload FILE (PNG, JPEG or WebP) as your portrait, or save yours",
                                    [file](CliApp& app) { return runPortrait(app, *file); });
  portrait->add_option("FILE", *file, "the picture to upload; without it the portrait goes to ./portrait.jpg");
}

}  // namespace qmv::cli
