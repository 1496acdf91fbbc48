#pragma once
// Asks the server to send an SMS code to a mobile number: type 0 for registration and
// password recovery, type 1 for changing the account's phone number. The answer's
// "data"."sessionId" ties the later check or registration to this code.
#include <cstdint>
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class MobileCodeNetApi : public NetApi<MobileCodeNetApi> {
 public:
  MobileCodeNetApi(std::string mobile, std::int64_t type);

  // "getCheckCode4ChgMobile" for type 1, "getMobileCode" otherwise.
  std::string requestUrl() const override;
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // "data"."sessionId" of the answer as text; "" when there is none.
  std::string getSessionId() const;

  std::string mobile;
  std::int64_t type = 0;
};

}  // namespace qmv
