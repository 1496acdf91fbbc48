#pragma once
// The transient status overlay (the progress HUD): short notes and failure messages such
// as "连接服务器失败,请稍后再试". The core shows texts exactly as the user must read them.
#include <string>

namespace qmv {

class StatusOverlay {
 public:
  virtual ~StatusOverlay() = default;

  // Shows `status` with the picture named `image`; an empty image means a text-only
  // note. REQUIRES: interface thread.
  virtual void showImage(const std::string& image, const std::string& status) = 0;
};

}  // namespace qmv
