#include "features/discovery/feedback_net_api.h"

#include <utility>

#include "core/common/dictionary.h"

namespace qmv {

FeedbackNetApi::FeedbackNetApi(std::string content, std::string contact)
    : content(std::move(content)), contact(std::move(contact)) {}

Json FeedbackNetApi::requestArgument() const {
  Json arguments = getBaseArgument();
  setCustomString(arguments, content, "concent");
  setCustomString(arguments, contact, "contact");
  setCustomString(arguments, "0", "type");
  return arguments;
}

}  // namespace qmv
