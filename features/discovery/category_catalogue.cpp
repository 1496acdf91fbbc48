#include "features/discovery/category_catalogue.h"

#include <utility>

#include "core/common/settings_keys.h"
#include "core/session/base_view_controller.h"
#include "platform/env.h"
#include "platform/settings_store.h"

namespace qmv {

CategoryCatalogue::~CategoryCatalogue() { detachRequest(request_); }

void CategoryCatalogue::refresh(std::function<void(bool saved)> done) {
  detachRequest(request_);
  request_ = std::make_shared<SearchTypeNetApi>();
  request_->startWithCompletionBlockWithSuccess(
      [done](SearchTypeNetApi& api) {
        bool saved = false;
        if (api.isCorrectResult() && !SearchTypeNetApi::getSearchTypeWithJsonStr(api.responseString()).empty()) {
          Env::current().settings->setString(api.responseString(), kSearchTypesKey);
          Env::current().settings->synchronize();
          saved = true;
        }
        if (done) done(saved);
      },
      [done](SearchTypeNetApi&) {
        if (done) done(false);
      });
}

}  // namespace qmv
