#pragma once
// A screen's hold on one picture request. Destroying or cancelling it drops the callback;
// when the last ticket for a URL goes, its transfer is cancelled and any decode in flight
// is dropped. Move-only; a ticket outliving its loader does nothing.
#include <cstdint>
#include <memory>

namespace qmv {

class ImageLoaderCore;

class ImageTicket {
 public:
  ImageTicket() = default;
  ImageTicket(std::weak_ptr<ImageLoaderCore> core, std::uint64_t id) : core_(std::move(core)), id_(id) {}
  ~ImageTicket() { cancel(); }
  ImageTicket(ImageTicket&& other) noexcept : core_(std::move(other.core_)), id_(other.id_) { other.id_ = 0; }
  ImageTicket& operator=(ImageTicket&& other) noexcept {
    if (this != &other) {
      cancel();
      core_ = std::move(other.core_);
      id_ = other.id_;
      other.id_ = 0;
    }
    return *this;
  }
  ImageTicket(const ImageTicket&) = delete;
  ImageTicket& operator=(const ImageTicket&) = delete;

  void cancel();

 private:
  std::weak_ptr<ImageLoaderCore> core_;
  std::uint64_t id_ = 0;
};

}  // namespace qmv
