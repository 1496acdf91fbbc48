#pragma once
// How the discovery commands print records: one readable line per store (name, title,
// distance, "￥price", "门市价:￥price", "已售N份") or, with --json, one object per record.
#include <optional>
#include <string>
#include <vector>

#include "core/common/coordinate.h"
#include "core/common/json.h"
#include "features/discovery/store_info_model.h"

namespace qmv::cli {

class CliOutput;

// "<id> <name> | <title> | <distance> | ￥<price> 门市价:￥<shop price> | 已售<n>份".
std::string storeRowText(const StoreInfoModel& store, std::optional<Coordinate> member);
Json storeRowJson(const StoreInfoModel& store, std::optional<Coordinate> member);

// Prints `stores` under `title` (a heading line in text mode) and as data[`key`].
void printStores(CliOutput& output, const std::string& title, const std::string& key,
                 const std::vector<StoreInfoModel>& stores);

}  // namespace qmv::cli
