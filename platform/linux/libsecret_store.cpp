#include "platform/linux/libsecret_store.h"

#include <libsecret/secret.h>

#include <chrono>
#include <functional>
#include <mutex>

#include "core/common/log.h"

namespace qmv {
namespace {

const SecretSchema* schema() {
  static const SecretSchema built = [] {
    SecretSchema s{};
    s.name = "org.qmv.Client.Secret";
    s.flags = SECRET_SCHEMA_NONE;
    s.attributes[0] = {"home", SECRET_SCHEMA_ATTRIBUTE_STRING};
    s.attributes[1] = {"id", SECRET_SCHEMA_ATTRIBUTE_STRING};
    return s;
  }();
  return &built;
}

}  // namespace

// One context for every store of the process, never the thread's default one: the
// interface loop's sources must not run inside a call, and libsecret's service proxy,
// made once per process, stays bound to the context it was first made on. Calls take
// turns on it.
struct LibsecretStore::Context {
  static GMainContext* shared() {
    static GMainContext* context = g_main_context_new();
    return context;
  }
  static std::mutex& turn() {
    static std::mutex mutex;
    return mutex;
  }
};

struct LibsecretStore::Call {
  std::function<void(GCancellable*, GAsyncReadyCallback, gpointer)> start;
  // Completes the operation; an error it sets gives the keyring up.
  std::function<void(GAsyncResult*, GError**)> finish;
  bool done = false;
  GError* error = nullptr;

  static void completed(GObject*, GAsyncResult* result, gpointer self) {
    auto* call = static_cast<Call*>(self);
    call->finish(result, &call->error);
    call->done = true;
  }
};

LibsecretStore::LibsecretStore(std::string home, std::chrono::milliseconds timeout)
    : home_(std::move(home)), timeout_(timeout) {}

LibsecretStore::~LibsecretStore() = default;

bool LibsecretStore::run(Call& call) {
  if (!failure_.empty()) return false;
  std::lock_guard hold(Context::turn());
  GMainContext* main = Context::shared();
  g_main_context_push_thread_default(main);
  GCancellable* cancellable = g_cancellable_new();
  call.start(cancellable, &Call::completed, &call);
  GSource* timer = g_timeout_source_new(static_cast<guint>(timeout_.count()));
  g_source_set_callback(
      timer,
      +[](gpointer c) -> gboolean {
        g_cancellable_cancel(G_CANCELLABLE(c));
        return G_SOURCE_REMOVE;
      },
      cancellable, nullptr);
  g_source_attach(timer, main);
  // A cancelled operation still completes, with G_IO_ERROR_CANCELLED.
  while (!call.done) g_main_context_iteration(main, TRUE);
  g_source_destroy(timer);
  g_source_unref(timer);
  g_object_unref(cancellable);
  g_main_context_pop_thread_default(main);
  if (call.error == nullptr) return true;
  failure_ = call.error->message;
  g_error_free(call.error);
  call.error = nullptr;
  logLine("keyring unavailable for the rest of this run: " + failure_);
  return false;
}

SecretStore::Lookup LibsecretStore::lookup(const std::string& id) {
  Lookup found{Answer::absent, {}};
  Call call;
  call.start = [&](GCancellable* cancellable, GAsyncReadyCallback done, gpointer data) {
    secret_password_lookup(schema(), cancellable, done, data, "home", home_.c_str(), "id", id.c_str(), nullptr);
  };
  call.finish = [&](GAsyncResult* result, GError** error) {
    gchar* secret = secret_password_lookup_finish(result, error);
    if (secret == nullptr) return;
    found = {Answer::found, secret};
    secret_password_free(secret);  // wiped, not only freed
  };
  if (!run(call)) return {};
  return found;
}

bool LibsecretStore::store(const std::string& id, const std::string& label, const std::string& secret) {
  Call call;
  call.start = [&](GCancellable* cancellable, GAsyncReadyCallback done, gpointer data) {
    secret_password_store(schema(), SECRET_COLLECTION_DEFAULT, label.c_str(), secret.c_str(), cancellable, done, data,
                          "home", home_.c_str(), "id", id.c_str(), nullptr);
  };
  bool stored = false;
  call.finish = [&](GAsyncResult* result, GError** error) { stored = secret_password_store_finish(result, error); };
  return run(call) && stored;
}

bool LibsecretStore::remove(const std::string& id) {
  Call call;
  call.start = [&](GCancellable* cancellable, GAsyncReadyCallback done, gpointer data) {
    secret_password_clear(schema(), cancellable, done, data, "home", home_.c_str(), "id", id.c_str(), nullptr);
  };
  // False without an error when there was nothing to forget.
  call.finish = [](GAsyncResult* result, GError** error) { secret_password_clear_finish(result, error); };
  return run(call);
}

std::optional<std::vector<SecretStore::Kept>> LibsecretStore::kept() {
  std::vector<Kept> all;
  Call call;
  call.start = [&](GCancellable* cancellable, GAsyncReadyCallback done, gpointer data) {
    // Without SECRET_SEARCH_UNLOCK: listing must not prompt, and needs no secret.
    secret_password_search(schema(), SECRET_SEARCH_ALL, cancellable, done, data, "home", home_.c_str(), nullptr);
  };
  call.finish = [&](GAsyncResult* result, GError** error) {
    GList* found = secret_password_search_finish(result, error);
    for (GList* item = found; item != nullptr; item = item->next) {
      auto* retrievable = SECRET_RETRIEVABLE(item->data);
      GHashTable* attributes = secret_retrievable_get_attributes(retrievable);
      const auto* id = static_cast<const char*>(g_hash_table_lookup(attributes, "id"));
      if (id != nullptr) {
        const auto created = std::chrono::seconds(secret_retrievable_get_created(retrievable));
        all.push_back({id, std::chrono::system_clock::time_point(created)});
      }
      g_hash_table_unref(attributes);
    }
    g_list_free_full(found, g_object_unref);
  };
  if (!run(call)) return std::nullopt;
  return all;
}

}  // namespace qmv
