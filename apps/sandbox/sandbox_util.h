#pragma once
// Small helpers shared by the sandbox's handlers: argument parsing, clock texts, random
// identifiers, digests and distances. The refusal messages are in sandbox_texts.h.
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include "apps/sandbox/sandbox_texts.h"

namespace qmv::sandbox {

inline constexpr int kPageSize = 10;
inline constexpr int64_t kSmsCodeLifetimeSeconds = 600;
inline constexpr int64_t kSessionLifetimeSeconds = 30LL * 86400;
// The cookie that carries the member's session to the object store (set at login, cleared
// at logout; the client deletes it when a session expires).
inline constexpr const char* kSessionCookie = "sessionId";

int64_t nowSeconds();
// Local time as "yyyy-MM-dd HH:mm:ss" (or the date alone).
std::string timeText(int64_t seconds);
std::string dateText(int64_t seconds);

// Random lower-case hexadecimal or decimal text from the system's CSPRNG (session ids, SMS
// codes, payment ids). Throws std::runtime_error when the generator cannot be seeded.
std::string randomHex(size_t length);
std::string randomDigits(size_t length);

// The decimal integer in `text` when it is one (optional sign, digits only) and lies in
// [min, max]; otherwise nothing.
std::optional<int64_t> parseInteger(const std::string& text, int64_t min, int64_t max);
// The page number: 1 when empty, nothing when not a positive integer.
std::optional<int64_t> parsePage(const std::string& text);

bool isPhone(const std::string& text);
bool isMd5Hex(const std::string& text);
bool isDigits(const std::string& text, size_t minLength, size_t maxLength);

// "lat,lng" as the client sends positions; nothing when malformed or out of range.
std::optional<std::pair<double, double>> parseLatLng(const std::string& text);
// Great-circle distance in metres.
double distanceMetres(double lat1, double lng1, double lat2, double lng2);

// The name=value pairs of a Cookie header (the first of a repeated name wins; malformed
// items are skipped).
std::map<std::string, std::string> parseCookies(const std::string& header);

// Yuan text with two decimals for an amount in fen ("12.50").
std::string yuanText(int64_t fen);

}  // namespace qmv::sandbox
