#pragma once
// The position from GeoClue 2, when the service answers; otherwise (no service, no
// permission, no fix) the fallback source, which is the configured or --at position.
// GeoClue positions are WGS-84, as the port expects.
#include <memory>

#include "platform/location_source.h"

typedef struct _GClueSimple GClueSimple;
typedef struct _GCancellable GCancellable;

namespace qmv::gtk {

class GeoClueLocationSource : public LocationSource {
 public:
  explicit GeoClueLocationSource(std::shared_ptr<LocationSource> fallback);
  ~GeoClueLocationSource() override;

  bool locationServicesEnabled() const override { return true; }
  void startUpdatingLocation(UpdateHandler onUpdate, FailureHandler onFailure) override;
  void stopUpdatingLocation() override;

 private:
  struct Request;
  void useFallback();

  std::shared_ptr<LocationSource> fallback_;
  std::shared_ptr<Request> current_;
  GClueSimple* simple_ = nullptr;
  bool unavailable_ = false;
};

}  // namespace qmv::gtk
