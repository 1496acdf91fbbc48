#pragma once
// The sandbox's category catalogue and the home page's category templates: demo content,
// like the stores and offers of demo_data. Each sub-category carries its icon's address
// relative to the sandbox.
#include "core/common/json.h"

namespace qmv::sandbox {

Json catalogue();
Json templates();

}  // namespace qmv::sandbox
