#pragma once
// GET /oss/art/<name>: the demo world's pictures, drawn on first request from the record
// they show and kept under `directory` (in the home's object storage), served from there
// afterwards with ETag, Last-Modified and a day's Cache-Control. Read-only: the object
// store's PUT takes one path segment, so no upload reaches art/.
//
// Names: store_<id>_<1|2>.jpg, commodity_<id>.jpg, desc_<id>.jpg, banner_<id>.jpg,
// product_<id>.jpg, wheel_<id>.jpg, category_<subId>.png; 404 for any other name or a
// record that does not exist. ?w=128|256|375|750 scales down (400 for another width).
//
// GET /sandbox/img/<old name> answers 301 to the picture that replaced it.
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/common/json.h"

namespace httplib {
class Server;
}

namespace qmv::sandbox {

// One row of the sandbox's store for `sql`, or null; the caller takes the store's turn.
using ArtRecordLookup = std::function<Json(const std::string& sql, const std::vector<Json>& params)>;

void registerArtRoutes(httplib::Server& server, const std::filesystem::path& directory, ArtRecordLookup lookup);

// The art name that replaced an old /sandbox/img/ name, or nothing.
std::optional<std::string> artNameOfOldImage(const std::string& oldName);

}  // namespace qmv::sandbox
