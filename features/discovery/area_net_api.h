#pragma once
// Asks the server for the area list newer than the one the client holds ("getAreaList").
// The client names its version in "ver": the stored "area_version" while the cached area
// database is complete and valid, otherwise "0" (send everything).
#include <string>
#include <string_view>

#include "core/request/net_api.h"
#include "core/storage/db_util.h"

namespace qmv {

class AreaNetApi : public NetApi<AreaNetApi> {
 public:
  AreaNetApi() = default;

  std::string requestUrl() const override;
  RequestMethod requestMethod() const override { return RequestMethod::GET; }
  Json requestArgument() const override;

  // The version the request sends (see above).
  static std::string currentVersion();

  // "data"."dataList" when it is an array, else an empty array.
  Json getAreaList() const;
  // "data"."ver" as text ("" when absent).
  std::string getAreaVersion() const;

  // What a refresh takes from the answer: the areas of getAreaList() and getAreaVersion(),
  // read from the text in place. The whole table is thousands of objects: as a Json tree
  // (and the copies a rebuild would make of it) it weighs many times its compact rows.
  using Areas = AreaList;
  Areas readAreas() const;
  // The same from `text`, an answer of this request found correct, on any thread: a
  // refresh reads the table off the interface thread (see RequestOperation::takeBody).
  static Areas readAreas(std::string_view text);
};

}  // namespace qmv
