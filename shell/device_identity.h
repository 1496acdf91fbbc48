#pragma once
// The identity of this installation that the server pages receive as "deviceId": a
// random UUID made on first use and kept in the settings store, so it stays the same
// from one start to the next. A stored value that is not a UUID (a damaged store) is
// replaced rather than sent.
#include <string>

namespace qmv {

// REQUIRES: interface thread.
std::string deviceIdentity();

// Whether `text` is a UUID in its 36-character hexadecimal form.
bool isUuid(const std::string& text);

}  // namespace qmv
