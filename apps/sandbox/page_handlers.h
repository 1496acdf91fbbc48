#pragma once
// The server-hosted pages (/static/...) shown by the client's page host, and the
// sandbox's placeholder pictures.
#include <optional>
#include <string>

#include "core/common/json.h"

namespace qmv::sandbox {

// The HTML of a known page path (e.g. "/static/dial/index.html"), or nothing. The page
// names `member` (a members row; null when the visitor brought no live session). The
// registration page shows `inviteId` (the link's "inviteID") when it is a plausible code.
std::optional<std::string> pageHtml(const std::string& path, const std::string& rootUrl, const Json& member,
                                    const std::string& inviteId = {});

}  // namespace qmv::sandbox
