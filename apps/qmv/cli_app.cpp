#include "apps/qmv/cli_app.h"

#include <unistd.h>

#include <condition_variable>
#include <iostream>
#include <mutex>
#include <thread>

#include "apps/launch/app_launch.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/line_editor.h"
#include "apps/qmv/message_stream.h"
#include "apps/sandbox/sandbox_server.h"
#include "core/common/loop_stall_probe.h"
#include "core/images/image_loader.h"
#include "features/discovery/main_view_controller.h"
#include "platform/linux/asio_main_loop.h"
#include "platform/linux/headless_app_window.h"
#include "platform/linux/printing_url_opener.h"
#include "platform/linux/stream_alerts.h"
#include "platform/linux/stream_status_overlay.h"
#include "platform/linux/thread_work_queue.h"
#include "platform/main_loop.h"
#include "platform/stack_navigator.h"
#include "shell/app_delegate.h"

namespace qmv::cli {

// Lines handed from the reading thread to the interface thread. On a terminal the
// thread edits a line only when one is asked for, so that its prompt follows what the
// last command printed; otherwise it reads ahead.
struct CliApp::LineReader {
  std::mutex mutex;
  std::condition_variable asked;
  std::optional<std::pair<std::string, bool>> request;  // prompt, remember
  std::deque<std::string> lines;
  bool eof = false;
  bool closing = false;
};

CliApp::CliApp(GlobalOptions options, std::ostream& out, std::istream& in)
    : options_(std::move(options)),
      out_(out),
      in_(in),
      interactive_(&in == &std::cin && ::isatty(STDIN_FILENO) != 0),
      output_(std::make_unique<CliOutput>(options_.json, out)),
      answers_(options_.answers.begin(), options_.answers.end()) {
  messageStream_ = std::make_unique<MessageStream>([this](const std::string& line) { output_->message(line); });
}

CliApp::~CliApp() {
  if (lineReader_) {
    std::lock_guard lock(lineReader_->mutex);
    lineReader_->closing = true;
    lineReader_->asked.notify_all();
  }
  // The delegate removes its observers through the installed ports, so it goes first;
  // the ports go before the sandbox that their last transfers may still be talking to.
  pictures_.reset();
  appDelegate_.reset();
  installed_.reset();
  env_ = Env{};
  launch_.reset();
}

ImageLoader& CliApp::pictures() {
  if (!pictures_) {
    ImageLoaderOptions options;
    options.objectStoreBase = config().objectStorageHost;
    pictures_ = std::make_unique<ImageLoader>(env_, std::make_shared<ThreadWorkQueue>(2), options);
  }
  return *pictures_;
}

CliApp::SettingsWrapper& CliApp::settingsWrapperForTesting() {
  static SettingsWrapper wrapper;
  return wrapper;
}

Status CliApp::boot() {
  LaunchOptions launch{options_.home, options_.server, options_.at, options_.payOutcome, {}};
  launch.openURL = [this](const std::string& url, const std::string& source) {
    if (appDelegate_) appDelegate_->openURL(url, source);
  };
  launch_ = std::make_unique<AppLaunch>(std::move(launch));
  if (Status prepared = launch_->prepare(); !prepared.ok()) return prepared;
  if (Status built = buildEnv(); !built.ok()) return built;

  appDelegate_ = std::make_unique<AppDelegate>(launch_->config());
  appDelegate_->didFinishLaunchingWithOptions();

  // Every later start shows the main tabs, whose home screen signs the member in again.
  // Only "home" draws that screen; for every other command its sign-in is all that runs.
  if (MainViewController* home = appDelegate_->mainCtrl()) {
    bool started = false;
    const auto finished = awaitSlot(*this, home->onAutoLoginFinished, [&] { return started = home->autoLoginNet(); });
    if (started) autoLoginFailure_ = finished ? home->autoLoginFailure() : "it did not end in time";
  }
  return {};
}

bool CliApp::tellAutoLoginFailure() {
  if (autoLoginFailure_.empty() || autoLoginFailureTold_) return false;
  autoLoginFailureTold_ = true;
  std::cerr << "qmv: not signed in: the automatic login with the stored account failed: " << autoLoginFailure_
            << '\n';
  return true;
}

void CliApp::endCommand() {
  output_->finish();
  if (LoopStallProbe::enabled()) {
    std::cerr << "qmv: " << LoopStallProbe::describe() << '\n';
    LoopStallProbe::reset();
  }
}

Status CliApp::buildEnv() {
  auto loop = std::make_shared<AsioMainLoop>();
  if (Status built = launch_->buildEnv(loop, env_); !built.ok()) return built;
  if (const auto& wrap = settingsWrapperForTesting()) env_.settings = wrap(env_.settings);
  env_.overlay = std::make_shared<StreamStatusOverlay>(*messageStream_);
  env_.navigator = std::make_shared<StackNavigator>();
  env_.urlOpener = std::make_shared<PrintingUrlOpener>(*messageStream_);
  alerts_ = std::make_shared<StreamAlerts>(*messageStream_, loop,
                                           [this](const AlertSpec& alert) { return answerFor(alert); });
  env_.alerts = alerts_;
  env_.window = std::make_shared<HeadlessAppWindow>();
  installed_ = std::make_unique<ScopedEnv>(env_);
  return {};
}

const AppConfig& CliApp::config() const { return launch_->config(); }
const std::filesystem::path& CliApp::home() const { return launch_->home(); }
sandbox::SandboxServer* CliApp::sandbox() { return launch_ ? launch_->sandbox() : nullptr; }

std::optional<AlertAnswer> CliApp::answerFor(const AlertSpec& alert) {
  const bool canAsk = interactive_ && !lineReader_;
  AlertAnswer answer;
  // A text field takes one answer; an alert whose fields are filled and that has one
  // button is answered by that button.
  for (const std::string& placeholder : alert.textFields) {
    if (!answers_.empty()) {
      answer.fieldTexts.push_back(answers_.front());
      answers_.pop_front();
    } else if (auto line = canAsk ? readLine(placeholder + " ") : std::nullopt) {
      answer.fieldTexts.push_back(*line);
    } else {
      return std::nullopt;
    }
  }
  if (!alert.textFields.empty() && alert.buttons.size() == 1) return answer;
  if (!answers_.empty()) {
    const std::string given = answers_.front();
    answers_.pop_front();
    if (auto index = answerIndex(given, alert.buttons)) {
      answer.buttonIndex = *index;
      return answer;
    }
    std::cerr << "qmv: \"" << given << "\" is not one of this alert's buttons\n";
    return std::nullopt;
  }
  if (!canAsk || alert.buttons.size() < 2) return std::nullopt;
  for (std::size_t i = 0; i < alert.buttons.size(); ++i) out_ << "  [" << i + 1 << "] " << alert.buttons[i] << '\n';
  while (auto line = readLine("> ")) {
    if (auto index = answerIndex(*line, alert.buttons)) {
      answer.buttonIndex = *index;
      return answer;
    }
  }
  return std::nullopt;
}

std::optional<int> CliApp::answerIndex(const std::string& answer, const std::vector<std::string>& buttons) const {
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    if (buttons[i] == answer) return static_cast<int>(i);
  }
  if (!answer.empty() && answer.find_first_not_of("0123456789") == std::string::npos && answer.size() < 4) {
    const int n = std::stoi(answer);
    if (n >= 1 && n <= static_cast<int>(buttons.size())) return n - 1;
  }
  return std::nullopt;
}

bool CliApp::answerAlert(const std::string& answer) {
  if (!alerts_ || alerts_->pendingCount() == 0) return false;
  // An alert with one text field takes the text and its first button.
  if (alerts_->pendingAlert()->textFields.size() == 1) return alerts_->answer(AlertAnswer{0, {answer}});
  if (answer.empty() || answer.size() > 3 || answer.find_first_not_of("0123456789") != std::string::npos) return false;
  const int number = std::stoi(answer);
  return number >= 1 && alerts_->answer(AlertAnswer{number - 1, {}});
}

std::size_t CliApp::pendingAlerts() const { return alerts_ ? alerts_->pendingCount() : 0; }

bool CliApp::waitUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
  if (done()) return true;
  return env_.mainLoop->runUntil(done, timeout);
}

void CliApp::runFor(std::chrono::milliseconds duration) {
  env_.mainLoop->runUntil([] { return false; }, duration);
}

void CliApp::beginCommand(bool json) { output_ = std::make_unique<CliOutput>(json, out_); }

void CliApp::startLineReader(std::vector<std::string> commandWords) {
  if (lineReader_) return;
  lineReader_ = std::make_shared<LineReader>();
  if (!interactive_) {
    std::thread([reader = lineReader_, &in = in_] {
      std::string line;
      while (std::getline(in, line)) {
        std::lock_guard lock(reader->mutex);
        reader->lines.push_back(line);
      }
      std::lock_guard lock(reader->mutex);
      reader->eof = true;
    }).detach();
    return;
  }
  auto editor = std::make_shared<LineEditor>(home() / "shell_history", std::move(commandWords));
  // Detached: at exit it may still wait inside the editor for a key.
  std::thread([reader = lineReader_, editor] {
    for (;;) {
      std::pair<std::string, bool> request;
      {
        std::unique_lock lock(reader->mutex);
        reader->asked.wait(lock, [&] { return reader->request.has_value() || reader->closing; });
        if (reader->closing) return;
        request = std::move(*reader->request);
        reader->request.reset();
      }
      auto line = editor->readLine(request.first, request.second);
      std::lock_guard lock(reader->mutex);
      if (!line) {
        reader->eof = true;
        return;
      }
      reader->lines.push_back(std::move(*line));
    }
  }).detach();
}

std::optional<std::string> CliApp::readLine(const std::string& prompt, bool remember) {
  if (!lineReader_) {
    if (interactive_ && !prompt.empty()) out_ << prompt << std::flush;
    std::string line;
    if (!std::getline(in_, line)) return std::nullopt;
    return line;
  }
  auto reader = lineReader_;
  if (interactive_) {
    out_ << std::flush;
    std::lock_guard lock(reader->mutex);
    if (reader->lines.empty() && !reader->eof && !reader->request) {
      reader->request.emplace(prompt, remember);
      reader->asked.notify_one();
    }
  }
  const auto available = [&] {
    std::lock_guard lock(reader->mutex);
    return !reader->lines.empty() || reader->eof;
  };
  // The loop keeps running while the user types, so timers fire on time.
  while (!available()) {
    env_.mainLoop->runUntil(available, std::chrono::milliseconds(50));
  }
  std::lock_guard lock(reader->mutex);
  if (reader->lines.empty()) return std::nullopt;
  std::string line = std::move(reader->lines.front());
  reader->lines.pop_front();
  return line;
}

}  // namespace qmv::cli
