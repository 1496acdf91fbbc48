#include "platform/env.h"

#include <utility>

namespace qmv {
namespace {

Env& installed() {
  static Env env;
  return env;
}

}  // namespace

Env& Env::current() { return installed(); }

void Env::install(Env env) { installed() = std::move(env); }

ScopedEnv::ScopedEnv(Env env) : previous_(std::exchange(installed(), std::move(env))) {}

ScopedEnv::~ScopedEnv() { installed() = std::move(previous_); }

}  // namespace qmv
