#pragma once
// The sandbox's schema and its demo world: the areas the client ships (so that the area
// refresh never takes a city away from it), stores across every category of the built-in
// catalogue at real places in 临沂市 and 济南市 (stored BD-09), offers with first-purchase
// prices, draw products, banners, a prize wheel, and the demo member with contacts two
// levels deep, messages, vouchers, fund records and orders in every status.
#include <cstdint>
#include <filesystem>
#include <string>

#include "apps/sandbox/sandbox_store.h"

namespace qmv::sandbox {

inline constexpr const char* kDemoPhone = "13800000000";
inline constexpr const char* kDemoPassword = "qmv123";
inline constexpr const char* kDemoMemberNumber = "100001";
inline constexpr long long kDemoBalanceFen = 50000;
// Version of the area list. Each area row carries the version that last changed it; a
// client holding version V is sent the rows changed after V, so one holding this one is
// sent nothing. Homes seeded before the areas carried versions held 20161001.
inline constexpr int64_t kAreaVersion = 20250701;

// Creates the tables when missing and seeds the demo world once per database (a marker in
// the meta table records that it was done). The areas come from the "areas" table of the
// client's shipped database `areaDatabase`, in its order; a home whose areas predate their
// versions gets them anew. Returns the failure, with nothing of the set-up kept.
Status prepareDatabase(SandboxStore& db, const std::filesystem::path& areaDatabase);

// The demo member's fund records of every kind (adding up to the balance he has) and his
// vouchers, and comments on every store. Called once per database, inside
// prepareDatabase's transaction.
void seedMemberCentre(SandboxStore& db, int64_t now);

// The demo member's messages (one per ledger line, and a voucher reminder) and his
// bookmarked stores and offers. Called once per database, after seedMemberCentre.
void seedMemberPages(SandboxStore& db, int64_t now);

}  // namespace qmv::sandbox
