#pragma once
// The category catalogue the client keeps: asked of the server and saved under
// "SearchTypes" when the answer holds a readable, non-empty catalogue, so that the next
// start reads it (SearchTypeNetApi::getSearchTypes).
#include <functional>
#include <memory>

#include "features/discovery/search_type_net_api.h"

namespace qmv {

class CategoryCatalogue {
 public:
  CategoryCatalogue() = default;
  ~CategoryCatalogue();
  CategoryCatalogue(const CategoryCatalogue&) = delete;
  CategoryCatalogue& operator=(const CategoryCatalogue&) = delete;

  // Asks for the catalogue again; a refresh still running is dropped. `done`, when set,
  // learns whether a catalogue was saved. REQUIRES: interface thread.
  void refresh(std::function<void(bool saved)> done = nullptr);

 private:
  std::shared_ptr<SearchTypeNetApi> request_;
};

}  // namespace qmv
