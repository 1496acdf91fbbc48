#pragma once
// User names: the shape a name must have, the form it is stored in and the form names are
// compared in, so that no member can register a name that reads as another's: " 13800000001"
// and "13800000001 " are trimmed to a phone number (which only that phone's registrant may
// take), and "Alice", "ALICE" and "Ａｌｉｃｅ" are one name. Members carry the compared form in
// the column members.name_key.
#include <string>

#include "apps/sandbox/sandbox_store.h"

namespace qmv::sandbox {

inline constexpr size_t kMaxUserNameBytes = 32;

// The name registration stores for `typed`: white space around it removed, composed (NFC).
// Text that is not UTF-8 comes back as it is (and fails userNameProblem).
std::string normalizedUserName(const std::string& typed);

// The form names are compared in: compatibility-composed (NFKC) and case-folded.
std::string userNameKey(const std::string& name);

// Why `name` (normalised) cannot be the user name of a new member with `phone`: a message
// to refuse with, or null when it can. REQUIRES: inside a transaction of `db`.
const char* userNameProblem(SandboxStore& db, const std::string& name, const std::string& phone);

// Adds members.name_key to a home made before it and fills it where it is missing (members
// seeded or registered without it). Returns a database failure.
Status prepareUserNameKeys(SandboxStore& db);

}  // namespace qmv::sandbox
