#pragma once
// The prize-wheel screen, headless. It shows the current wheel (period, spins left, rule,
// the face with its sectors) and draws one spin at a time. Before drawing it checks what
// it can know itself and says why it will not spin: no wheel, no spins left, a period
// not begun or already over (the server decides the rest, and its refusal is shown).
//
// A front end animates each spin from restSector() to stopSector() over sectorCount()
// sectors and reveals prize() when the wheel stops; the sector a spin stopped on is
// where the next one starts.
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "core/session/base_view_controller.h"
#include "features/wheel/wheel_model.h"

namespace qmv {

class WheelNetApi;
class WheelResultNetApi;

class WheelViewController : public BaseViewController {
 public:
  // More sectors than this cannot be drawn; such a face counts as having none.
  static constexpr int kMaxSectors = 360;

  WheelViewController() = default;
  ~WheelViewController() override;
  WheelViewController(const WheelViewController&) = delete;
  WheelViewController& operator=(const WheelViewController&) = delete;

  const char* title() const;
  // Stops a running load and asks for the current wheel.
  void wheelNet();
  // Draws one spin when nothing stands against it; otherwise shows why and sends
  // nothing. Returns whether a draw was sent.
  bool spinAction();
  bool isSpinning() const;

  // The wheel as last read, updated by each spin; none before the first answer or when
  // there is no wheel.
  const std::optional<WheelModel>& wheel() const { return wheel_; }
  // "活动时间: start 至 end", or "" when the period is unknown.
  std::string periodText() const;
  // "剩余抽奖次数: n", or "" without a wheel.
  std::string leftCountText() const;

  // Sectors of the face: itemCount when it is a whole number from 1 to kMaxSectors, else 0.
  int sectorCount() const;
  // Where the pointer rests before the next spin (lastIndex).
  int restSector() const;
  // Where the last spin stopped; none before a spin, or when the server named no
  // sector of this face.
  std::optional<int> stopSector() const;
  // The prize of the last spin ("" before one).
  std::string prize() const { return wheel_ ? wheel_->result : std::string(); }

  bool hasData() const override { return wheel_.has_value(); }

  std::function<void(bool correct)> onLoaded;
  std::function<void(bool correct)> onSpun;

 private:
  // Why a spin cannot be drawn now, or nullptr.
  const char* refusal() const;
  void spun(WheelResultNetApi& request, bool correct);

  std::optional<WheelModel> wheel_;
  std::shared_ptr<WheelNetApi> wheelRequest_;
  std::shared_ptr<WheelResultNetApi> spinRequest_;
};

}  // namespace qmv
