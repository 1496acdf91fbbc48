#pragma once
// A screen's paged list, paged like every list of the client (applyPage): page 1 first,
// loadMore asks for the next page, an empty page ends the list, a failed or refused page
// steps the counter back and keeps the rows, so that the next loadMore asks for it again.
// A new page stops the request still running, whose answer is then ignored.
//
// A screen derives from it and says how one page is asked for (makeRequest) and read
// (rowsOf); answered() sees a correct answer before its rows are applied.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/common/paged_list.h"
#include "core/session/base_view_controller.h"

namespace qmv {

template <class Row, class Api>
class PagedListController : public BaseViewController {
 public:
  ~PagedListController() override { detachRequest(request_); }
  PagedListController(const PagedListController&) = delete;
  PagedListController& operator=(const PagedListController&) = delete;

  // Page 1 again (the first appearance, pull to refresh, a new filter).
  void refresh() {
    pageNum_ = 1;
    loadMoreFooterHidden_ = false;
    sendPage();
  }
  // The page after pageNum (pull-up). Does nothing once the list has ended, nor while a
  // page is still on its way (a second pull-up would skip that page).
  void loadMore() {
    if (loadMoreFooterHidden_ || isLoading()) return;
    ++pageNum_;
    sendPage();
  }

  const std::vector<Row>& rows() const { return rows_; }
  long pageNum() const { return pageNum_; }
  // True once a page came back empty: there is nothing more to load.
  bool loadMoreFooterHidden() const { return loadMoreFooterHidden_; }
  bool isLoading() const { return request_ && request_->isExecuting(); }
  bool hasData() const override { return !rows_.empty(); }

  // After every page was applied (or failed): whether it was correct.
  std::function<void(bool correct)> onLoaded;

 protected:
  PagedListController() = default;

  // The request for page `page` (1 first); nullptr sends nothing and counts as a failed page
  // (a screen without the id its request needs).
  virtual std::shared_ptr<Api> makeRequest(long page) = 0;
  // The rows of a correct answer.
  virtual std::vector<Row> rowsOf(const Api& answered) = 0;
  // A correct answer, before its rows are applied.
  virtual void answered(const Api& /*answered*/) {}
  // Forgets the rows shown (a new filter: a failed first page must not show the old rows).
  void clearRows() { rows_.clear(); }

 private:
  void sendPage() {
    detachRequest(request_);
    request_ = makeRequest(pageNum_);
    if (!request_) {
      applyPage(rows_, pageNum_, loadMoreFooterHidden_, false, std::vector<Row>{});
      if (onLoaded) onLoaded(false);
      return;
    }
    attachRequest(*request_);
    request_->startWithCompletionBlockWithSuccess([this](Api& api) { finished(api, api.isCorrectResult()); },
                                                  [this](Api& api) { finished(api, false); });
  }

  void finished(Api& api, bool correct) {
    if (&api != request_.get()) return;
    if (correct) answered(api);
    applyPage(rows_, pageNum_, loadMoreFooterHidden_, correct, correct ? rowsOf(api) : std::vector<Row>{});
    if (onChange) onChange();
    if (onLoaded) onLoaded(correct);
  }

  std::vector<Row> rows_;
  long pageNum_ = 1;
  bool loadMoreFooterHidden_ = false;
  std::shared_ptr<Api> request_;
};

}  // namespace qmv
