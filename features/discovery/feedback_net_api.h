#pragma once
// Sends the member's feedback. The server names the text "concent" and only knows
// feedback of type "0".
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class FeedbackNetApi : public NetApi<FeedbackNetApi> {
 public:
  FeedbackNetApi(std::string content, std::string contact);

  std::string requestUrl() const override { return "postFeedback"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override;

  std::string content;
  std::string contact;
};

}  // namespace qmv
