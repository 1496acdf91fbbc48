#pragma once
// What an optional port does on a platform that lacks it. Env::install puts these in
// place of a port left null, so callers use every port without asking whether it is
// there; each one answers as the platform without the capability would.
#include <memory>

namespace qmv {

struct Env;

// Fills every optional port of `env` that is null with its null object.
void fillOptionalPorts(Env& env);

// Name of the first essential port of `env` that is null; nullptr when all are set.
const char* missingEssentialPort(const Env& env);

}  // namespace qmv
