#pragma once
// How the client's paged lists take one page's answer: page 1 replaces the list and later
// pages append; an empty page hides the load-more footer (the end of the list); a page
// that failed leaves the list as it was and steps the counter back, so that the next
// load-more asks for the same page again.
#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "core/common/dictionary.h"

namespace qmv {

template <typename Row>
void applyPage(std::vector<Row>& list, long& pageNum, bool& loadMoreFooterHidden, bool correct, std::vector<Row> rows) {
  if (!correct) {
    if (pageNum >= 2) --pageNum;
    return;
  }
  loadMoreFooterHidden = rows.empty();
  if (pageNum <= 1) {
    list = std::move(rows);
  } else {
    list.insert(list.end(), std::make_move_iterator(rows.begin()), std::make_move_iterator(rows.end()));
  }
}

// A list answer's "count" when it is a plain whole number (at most 18 digits), else "".
inline std::string listCount(const Json& data) {
  std::string count = strForKey(data, "count");
  const bool digits = !count.empty() && count.size() <= 18 &&
                      std::all_of(count.begin(), count.end(), [](char c) { return c >= '0' && c <= '9'; });
  return digits ? count : std::string();
}

}  // namespace qmv
