#include "core/images/image_ticket.h"

#include "core/images/image_loader_core.h"

namespace qmv {

void ImageTicket::cancel() {
  if (id_ == 0) return;
  if (const auto core = core_.lock()) core->cancel(id_);
  id_ = 0;
  core_.reset();
}

}  // namespace qmv
