#pragma once
// The demo world's picture addresses: each record points at the art drawn for it under
// /oss/art/ (art_routes.h), and the demo members who have not uploaded a portrait show
// one drawn for them, /oss/<userName>.png.
#include "apps/sandbox/sandbox_store.h"

namespace qmv::sandbox {

// The demo member's contacts are numbered after him (kDemoMemberNumber), up to this one.
inline constexpr const char* kLastDemoMemberNumber = "100007";

// Points the wheel inserted last at its own picture, /oss/art/wheel_<id>.jpg.
void nameWheelPicture(SandboxStore& db);

}  // namespace qmv::sandbox
