#pragma once
// What the home screen hands to the nearby tab: a category or a keyword. The nearby
// screen implements it; the application delegate forwards to it.
#include <string>

namespace qmv {

class NearbyHandoff {
 public:
  virtual ~NearbyHandoff() = default;
  virtual bool isViewLoaded() const = 0;
  virtual void selectedCategoryFromMain(const std::string& typeId) = 0;
  virtual void selectedKeyFromMain(const std::string& keyword) = 0;
};

}  // namespace qmv
