#pragma once
// The arguments every endpoint takes, declared in one table: each argument's kind and its
// largest size in bytes. The server checks a request against its endpoint's rules before
// the handler runs and hands the handler only the arguments (and files) named there, so
// no handler ever sees an unbounded or ill-formed text. A refusal is the envelope's failure
// naming the field in Chinese: "昵称过长", "手机号格式不正确".
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "apps/sandbox/sandbox_call.h"

namespace qmv::sandbox {

enum class ParamKind {
  kToken,    // ASCII letters, digits and . _ - , (ids, session ids, digests, coordinates)
  kInteger,  // decimal digits after an optional sign
  kLine,     // UTF-8 on one line: no control, format or separator characters
  kText,     // UTF-8 that may hold line breaks and tabs, no other control characters
};

struct ParamRule {
  const char* key;
  ParamKind kind;
  size_t maxBytes;
  // How a refusal names the field.
  const char* label;
};

struct EndpointParameters {
  std::vector<ParamRule> params;
  bool takesFiles = false;
};

// The name under which the payment completion route has its rules.
inline constexpr const char* kCompletionRoute = "sandbox/pay/complete";

// The rules of an endpoint (by its name under /qmv/app/v3/, or kCompletionRoute); an
// endpoint without an entry takes no arguments.
const EndpointParameters& parametersOf(const std::string& endpoint);
// Every name the table holds.
std::vector<std::string> endpointsWithParameters();

// Drops from `call` what `rules` do not name and answers the refusal for the first
// argument that breaks its rule; nothing when every one keeps it.
std::optional<Reply> applyParameterRules(const EndpointParameters& rules, Call& call);

}  // namespace qmv::sandbox
