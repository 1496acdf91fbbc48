#pragma once
// The JSON records the sandbox answers with, in the shapes the client reads: the member
// record and the narrower contact entry, stores with "coordinate" longitude first (BD-09), offers
// ("commodities") with their rule, package and note lists, orders, and remarks. Rows are
// those of the sandbox's tables.
#include <cstdint>
#include <string>

#include "apps/sandbox/sandbox_call.h"

namespace qmv::sandbox {

// Member record keys of the login and profile answers; `sessionId` may be empty.
Json memberRecord(const Call& call, const Json& memberRow, const std::string& sessionId);
// Contact entry: what the contacts screens show ("imgUrl", "name", "phone", "time") and
// "num" = how many members this one invited.
Json contactRecord(const Call& call, const Json& memberRow, int64_t invitedCount);

// SELECT list producing the store columns `storeRecord` reads (table alias "s").
extern const char* const kStoreColumns;
Json storeRecord(const Call& call, const Json& storeRow);
// SELECT list producing the offer columns `commodityRecord` reads (aliases "c" and "s").
extern const char* const kCommodityColumns;
Json commodityRecord(const Call& call, const Json& row);
Json orderRecord(const Call& call, const Json& orderRow);

// Absolute URL for a path stored relative to the sandbox root ("" stays "").
std::string absoluteUrl(const Call& call, const std::string& path);

// A member of the signed-in session, re-read inside the current transaction.
Json memberById(SandboxStore& db, int64_t id);

// Appends a fund record and moves the member's balance by `amount` fen (negative to spend).
// Returns false, changing nothing, when the balance would go below zero.
bool moveBalance(SandboxStore& db, int64_t memberId, int64_t amount, const std::string& kind, const std::string& title,
                 const std::string& ref);

}  // namespace qmv::sandbox
