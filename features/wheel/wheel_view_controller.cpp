#include "features/wheel/wheel_view_controller.h"

#include <charconv>
#include <cstdio>
#include <ctime>

#include "features/wheel/wheel_net_api.h"
#include "features/wheel/wheel_result_net_api.h"
#include "features/wheel/wheel_texts.h"
#include "platform/clock.h"
#include "platform/env.h"
#include "platform/status_overlay.h"

namespace qmv {
namespace {

namespace texts = wheel_texts;

std::optional<long> wholeNumber(const std::string& text) {
  long value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return value;
}

// "yyyy-MM-dd HH:mm:ss" or "yyyy-MM-dd" in local time; none for any other text.
std::optional<std::int64_t> localSeconds(const std::optional<std::string>& text) {
  if (!text) return std::nullopt;
  std::tm tm{};
  int consumed = 0;
  const int fields = std::sscanf(text->c_str(), "%4d-%2d-%2d%n %2d:%2d:%2d%n", &tm.tm_year, &tm.tm_mon, &tm.tm_mday,
                                 &consumed, &tm.tm_hour, &tm.tm_min, &tm.tm_sec, &consumed);
  if ((fields != 3 && fields != 6) || consumed != static_cast<int>(text->size())) return std::nullopt;
  if (tm.tm_mon < 1 || tm.tm_mon > 12 || tm.tm_mday < 1 || tm.tm_mday > 31) return std::nullopt;
  tm.tm_year -= 1900;
  tm.tm_mon -= 1;
  tm.tm_isdst = -1;
  return static_cast<std::int64_t>(std::mktime(&tm));
}

}  // namespace

WheelViewController::~WheelViewController() {
  detachRequest(wheelRequest_);
  detachRequest(spinRequest_);
}

const char* WheelViewController::title() const { return texts::kTitle; }

void WheelViewController::wheelNet() {
  detachRequest(wheelRequest_);
  auto request = std::make_shared<WheelNetApi>();
  attachRequest(*request);
  wheelRequest_ = request;
  const auto ended = [this](WheelNetApi& api, bool correct) {
    if (&api != wheelRequest_.get()) return;
    if (correct) wheel_ = api.getWheel();
    if (onChange) onChange();
    if (onLoaded) onLoaded(correct && wheel_.has_value());
  };
  request->startWithCompletionBlockWithSuccess(
      [ended](WheelNetApi& api) { ended(api, api.isCorrectResult()); },
      [ended](WheelNetApi& api) { ended(api, false); });
}

const char* WheelViewController::refusal() const {
  if (!wheel_) return texts::kNoWheel;
  if (const auto left = wholeNumber(wheel_->leftCount); left && *left <= 0) return texts::kNoSpinsLeft;
  const std::int64_t now = Env::current().clock->unixSeconds();
  if (const auto start = localSeconds(wheel_->timeStart); start && now < *start) return texts::kNotStarted;
  if (const auto end = localSeconds(wheel_->timeEnd); end && now >= *end) return texts::kEnded;
  return nullptr;
}

bool WheelViewController::spinAction() {
  if (isSpinning()) return false;
  if (const char* reason = refusal()) {
    Env::current().overlay->showImage("", reason);
    return false;
  }
  detachRequest(spinRequest_);
  auto request = std::make_shared<WheelResultNetApi>(wheel_->wheelId);
  attachRequest(*request);
  spinRequest_ = request;
  request->startWithCompletionBlockWithSuccess(
      [this](WheelResultNetApi& api) { spun(api, api.isCorrectResult()); },
      [this](WheelResultNetApi& api) { spun(api, false); });
  return true;
}

void WheelViewController::spun(WheelResultNetApi& request, bool correct) {
  if (&request != spinRequest_.get()) return;
  std::optional<WheelModel> drawn = correct ? request.getWheel() : std::nullopt;
  if (correct && !drawn) Env::current().overlay->showImage("", texts::kNoResult);
  if (drawn && wheel_) {
    // The pointer now rests where the previous spin stopped.
    if (!wheel_->resultIndex.empty()) wheel_->lastIndex = wheel_->resultIndex;
    wheel_->resultIndex = drawn->resultIndex;
    wheel_->result = drawn->result;
    // The spins left after this one, as the answer says; a count it leaves out is unknown
    // now, not the count from before the spin.
    wheel_->leftCount = drawn->leftCount;
  }
  if (onChange) onChange();
  if (onSpun) onSpun(drawn.has_value());
}

bool WheelViewController::isSpinning() const { return spinRequest_ && spinRequest_->isExecuting(); }

std::string WheelViewController::periodText() const {
  if (!wheel_ || !wheel_->timeStart || !wheel_->timeEnd) return {};
  return texts::kPeriodPrefix + *wheel_->timeStart + texts::kPeriodSeparator + *wheel_->timeEnd;
}

std::string WheelViewController::leftCountText() const {
  return wheel_ ? texts::kLeftCountPrefix + wheel_->leftCount : std::string();
}

int WheelViewController::sectorCount() const {
  const auto count = wheel_ ? wholeNumber(wheel_->itemCount) : std::nullopt;
  return count && *count >= 1 && *count <= kMaxSectors ? static_cast<int>(*count) : 0;
}

int WheelViewController::restSector() const {
  const auto rest = wheel_ ? wholeNumber(wheel_->lastIndex) : std::nullopt;
  return rest && *rest >= 0 && *rest < sectorCount() ? static_cast<int>(*rest) : 0;
}

std::optional<int> WheelViewController::stopSector() const {
  const auto stop = wheel_ ? wholeNumber(wheel_->resultIndex) : std::nullopt;
  if (!stop || *stop < 0 || *stop >= sectorCount()) return std::nullopt;
  return static_cast<int>(*stop);
}

}  // namespace qmv
