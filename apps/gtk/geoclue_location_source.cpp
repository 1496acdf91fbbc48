#include "apps/gtk/geoclue_location_source.h"

#include <geoclue.h>

namespace qmv::gtk {

// One start: its handlers, and the cancellable of the asynchronous connection.
struct GeoClueLocationSource::Request {
  GeoClueLocationSource* owner;  // cleared when the start is replaced or stopped
  UpdateHandler onUpdate;
  FailureHandler onFailure;
  GCancellable* cancellable = g_cancellable_new();
  gulong notifyId = 0;
  ~Request() { g_object_unref(cancellable); }
};

namespace {

void deliver(GClueSimple* simple, const GeoClueLocationSource::UpdateHandler& onUpdate) {
  GClueLocation* location = gclue_simple_get_location(simple);
  if (location == nullptr || !onUpdate) return;
  onUpdate(Coordinate{gclue_location_get_latitude(location), gclue_location_get_longitude(location)});
}

}  // namespace

GeoClueLocationSource::GeoClueLocationSource(std::shared_ptr<LocationSource> fallback)
    : fallback_(std::move(fallback)) {}

GeoClueLocationSource::~GeoClueLocationSource() {
  stopUpdatingLocation();
  if (simple_ != nullptr) g_object_unref(simple_);
}

void GeoClueLocationSource::useFallback() {
  auto request = current_;
  if (!request) return;
  if (fallback_) {
    fallback_->startUpdatingLocation(request->onUpdate, request->onFailure);
  } else if (request->onFailure) {
    request->onFailure();
  }
}

void GeoClueLocationSource::startUpdatingLocation(UpdateHandler onUpdate, FailureHandler onFailure) {
  stopUpdatingLocation();
  current_ = std::make_shared<Request>();
  current_->owner = this;
  current_->onUpdate = std::move(onUpdate);
  current_->onFailure = std::move(onFailure);
  if (unavailable_) {
    useFallback();
    return;
  }
  if (simple_ != nullptr) {
    current_->notifyId = g_signal_connect(simple_, "notify::location", G_CALLBACK(+[](GObject* simple, GParamSpec*, gpointer data) {
                                            auto* request = static_cast<Request*>(data);
                                            if (request->owner) deliver(GCLUE_SIMPLE(simple), request->onUpdate);
                                          }),
                                          current_.get());
    deliver(simple_, current_->onUpdate);
    return;
  }
  // The handle keeps the request alive until GeoClue answers, even after a stop.
  auto* hold = new std::shared_ptr<Request>(current_);
  gclue_simple_new("qmv-gtk", GCLUE_ACCURACY_LEVEL_EXACT, current_->cancellable,
                   +[](GObject*, GAsyncResult* result, gpointer data) {
                     std::unique_ptr<std::shared_ptr<Request>> held(static_cast<std::shared_ptr<Request>*>(data));
                     GError* error = nullptr;
                     GClueSimple* simple = gclue_simple_new_finish(result, &error);
                     Request& request = **held;
                     GeoClueLocationSource* self = request.owner;
                     if (self == nullptr) {
                       if (simple != nullptr) g_object_unref(simple);
                       if (error != nullptr) g_error_free(error);
                       return;
                     }
                     if (simple == nullptr) {
                       g_error_free(error);
                       self->unavailable_ = true;
                       self->useFallback();
                       return;
                     }
                     self->simple_ = simple;
                     // Starts again on the connected service with the same handlers.
                     self->startUpdatingLocation(request.onUpdate, request.onFailure);
                   },
                   hold);
}

void GeoClueLocationSource::stopUpdatingLocation() {
  if (current_) {
    current_->owner = nullptr;
    if (current_->notifyId != 0 && simple_ != nullptr) g_signal_handler_disconnect(simple_, current_->notifyId);
    current_.reset();
  }
  if (fallback_) fallback_->stopUpdatingLocation();
}

}  // namespace qmv::gtk
