#include "platform/fixed_location_source.h"

#include <charconv>
#include <cmath>
#include <string>

#include "core/common/string_util.h"
#include "platform/main_loop.h"

namespace qmv {
namespace {

std::optional<double> number(std::string_view text) {
  text = trimmed(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double value = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (ec != std::errc() || end != text.data() + text.size() || text.empty() || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

}  // namespace

// Handlers of one start. A queued delivery holds it weakly, so a stop (or a new start)
// that drops it also drops what is still queued.
struct FixedLocationSource::Delivery {
  UpdateHandler onUpdate;
  FailureHandler onFailure;
};

FixedLocationSource::FixedLocationSource(std::shared_ptr<MainLoop> loop, std::optional<Coordinate> position,
                                         bool enabled)
    : loop_(std::move(loop)), position_(position), enabled_(enabled) {}

FixedLocationSource::~FixedLocationSource() = default;

std::optional<Coordinate> FixedLocationSource::parsePosition(std::string_view text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) return std::nullopt;
  const auto latitude = number(text.substr(0, comma));
  const auto longitude = number(text.substr(comma + 1));
  if (!latitude || !longitude || std::fabs(*latitude) > 90 || std::fabs(*longitude) > 180) return std::nullopt;
  return Coordinate{*latitude, *longitude};
}

void FixedLocationSource::startUpdatingLocation(UpdateHandler onUpdate, FailureHandler onFailure) {
  current_ = std::make_shared<Delivery>(Delivery{std::move(onUpdate), std::move(onFailure)});
  if (!enabled_ || !loop_) return;
  loop_->post([weak = std::weak_ptr<Delivery>(current_), position = position_] {
    const std::shared_ptr<Delivery> delivery = weak.lock();
    if (!delivery) return;
    if (position) {
      if (delivery->onUpdate) delivery->onUpdate(*position);
    } else if (delivery->onFailure) {
      delivery->onFailure();
    }
  });
}

void FixedLocationSource::stopUpdatingLocation() { current_.reset(); }

}  // namespace qmv
