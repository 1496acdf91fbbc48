#pragma once
// The sandbox's schema and its demo world: two cities of areas (临沂市 with its districts as
// the default city, 济南市, and 青岛市 areas), stores across every category of the built-in
// catalogue at real places (stored BD-09), offers with first-purchase prices, draw products,
// banners, a prize wheel, and the demo member with contacts two levels deep, messages,
// vouchers, fund records and orders in every status.
#include <string>

#include "apps/sandbox/sandbox_store.h"

namespace qmv::sandbox {

inline constexpr const char* kDemoPhone = "13800000000";
inline constexpr const char* kDemoPassword = "qmv123";
inline constexpr const char* kDemoMemberNumber = "100001";
inline constexpr long long kDemoBalanceFen = 50000;
// Version of the area list; a client holding it is sent an empty list.
inline constexpr const char* kAreaVersion = "20161001";

// Creates the tables when missing and seeds the demo world once per database (a marker in
// the meta table records that it was done). Throws StoreError on a database failure.
void prepareDatabase(SandboxStore& db);

}  // namespace qmv::sandbox
