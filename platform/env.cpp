#include "platform/env.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "platform/null_ports.h"

namespace qmv {
namespace {

Env& installed() {
  static Env env;
  return env;
}

// A front end that forgot an essential port would fail far from the cause; it stops here.
Env completed(Env env) {
  if (const char* missing = missingEssentialPort(env)) {
    std::fprintf(stderr, "qmv: the environment has no %s port\n", missing);
    std::abort();
  }
  fillOptionalPorts(env);
  return env;
}

}  // namespace

Env& Env::current() { return installed(); }

void Env::install(Env env) { installed() = completed(std::move(env)); }

ScopedEnv::ScopedEnv(Env env) : previous_(std::exchange(installed(), completed(std::move(env)))) {}

ScopedEnv::~ScopedEnv() { installed() = std::move(previous_); }

}  // namespace qmv
