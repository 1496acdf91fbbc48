#include "platform/history_web_view.h"

namespace qmv {

const WebPage& HistoryWebView::page() const {
  static const WebPage kBlank;
  return history_.empty() ? kBlank : history_[index_];
}

bool HistoryWebView::loadRequest(const std::string& url) { return navigate(url, WebNavigationType::Other, 0); }

bool HistoryWebView::reload() {
  if (history_.empty()) return false;
  return navigate(history_[index_].url, WebNavigationType::Reload, index_);
}

bool HistoryWebView::goBack() {
  if (!canGoBack()) return false;
  return navigate(history_[index_ - 1].url, WebNavigationType::BackForward, index_ - 1);
}

bool HistoryWebView::tapLink(std::size_t index) {
  if (history_.empty() || index >= history_[index_].links.size()) return false;
  const std::string url = history_[index_].links[index].url;
  return navigate(url, WebNavigationType::LinkClicked, 0);
}

void HistoryWebView::stopLoading() {
  if (!pending_) return;
  pending_.reset();
  cancelFetch();
}

bool HistoryWebView::navigate(const std::string& url, WebNavigationType type, std::size_t target) {
  const std::weak_ptr<bool> alive = alive_;
  if (delegate_ && !delegate_->shouldStartLoadWithRequest(url, type)) return false;
  if (alive.expired()) return false;
  stopLoading();
  const std::uint64_t id = nextLoad_++;
  pending_ = Pending{id, type, target};
  // The delegate may stop this load, start another or drop the view while it is told.
  const auto current = [&] { return !alive.expired() && pending_ && pending_->id == id; };
  if (delegate_) delegate_->webViewDidStartLoad();
  if (current() && delegate_) delegate_->updateProgress(0.1);
  if (!current()) return !alive.expired();
  fetch(url, [this, alive, id](Result<WebPage> fetched) {
    if (!alive.expired()) finished(id, std::move(fetched));
  });
  return true;
}

void HistoryWebView::finished(std::uint64_t id, Result<WebPage> page) {
  if (!pending_ || pending_->id != id) return;
  const Pending done = *pending_;
  pending_.reset();
  if (page.ok()) {
    if (done.type == WebNavigationType::BackForward || done.type == WebNavigationType::Reload) {
      if (done.target < history_.size()) {
        history_[done.target] = std::move(page).value();
        index_ = done.target;
      }
    } else {
      // A new page drops whatever lay ahead of the shown one.
      if (!history_.empty()) history_.resize(index_ + 1);
      history_.push_back(std::move(page).value());
      index_ = history_.size() - 1;
    }
  }
  if (!delegate_) return;
  const std::weak_ptr<bool> alive = alive_;
  delegate_->updateProgress(1.0);
  if (alive.expired() || !delegate_) return;
  if (page.ok()) {
    delegate_->webViewDidFinishLoad();
  } else {
    delegate_->didFailLoadWithError(page.status().message());
  }
}

}  // namespace qmv
