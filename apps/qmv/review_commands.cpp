// Commands of ratings and comments: a store's comments, reached as the store screen's
// "more comments" opens them, with the star filter; and the member's own ratings. Each
// prints page N of its list ("--page N": page 1, then N-1 pulls up).
#include <memory>
#include <string>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/command_registry.h"
#include "core/common/dictionary.h"
#include "features/discovery/my_grade_view_controller.h"
#include "features/discovery/qxr_store_detail_view_controller.h"
#include "features/discovery/user_commit_view_controller.h"
#include "platform/navigator.h"

namespace qmv::cli {
namespace {

Json gradeJson(const GradeModel& grade) {
  return {{"userName", grade.userName}, {"nickName", grade.nickName}, {"star", grade.star},
          {"content", grade.content},   {"time", grade.time},         {"storeId", grade.storeId},
          {"storeName", grade.storeName}};
}

// One row: who (or which store), the stars, the day, then the comment.
void printGrades(CliOutput& out, const std::vector<GradeModel>& rows, std::size_t from, bool byStore) {
  Json json = Json::array();
  for (std::size_t i = from; i < rows.size(); ++i) {
    const GradeModel& g = rows[i];
    const std::string who = byStore ? g.storeName : (g.nickName.empty() ? g.userName : g.nickName);
    out.line("  " + who + "  " + UserCommitViewController::starsText(g.star) + "  " + g.time);
    out.line("    " + g.content);
    json.push_back(gradeJson(g));
  }
  out.data(byStore ? "ratings" : "comments", json);
}

int runComments(CliApp& app, const std::string& storeId, long star, long pages) {
  // The store screen's "查看更多评论" pushes the comments with the store's id.
  QXRStoreDetailViewController store(storeId, "");
  store.showMoreComments();
  const auto shown = Env::current().navigator->topScreen();
  if (!shown) return kExitFailure;
  UserCommitViewController comments(strForKey(shown->payload, "storeId"), star);
  const auto from = loadListPages(app, comments, pages);
  if (!from) return kExitFailure;
  CliOutput& out = app.output();
  const std::string count = comments.countText();
  out.line(std::string(comments.title()) + " - " + UserCommitViewController::starFilters()[comments.star()] +
           (count.empty() ? "" : " (" + count + ")"));
  if (comments.rows().empty()) out.line(UserCommitViewController::kEmptyText);
  printGrades(out, comments.rows(), *from, false);
  out.data("storeId", comments.storeId());
  out.data("star", comments.star());
  out.data("count", comments.count());
  out.data("page", comments.pageNum());
  return kExitOk;
}

int runRatings(CliApp& app, long pages) {
  if (!memberSignedIn(app)) return kExitFailure;
  Env::current().navigator->push(discovery_texts::kMyRatingsScreen);
  MyGradeViewController ratings;
  const auto from = loadListPages(app, ratings, pages);
  if (!from) return kExitFailure;
  CliOutput& out = app.output();
  out.line(ratings.title());
  if (ratings.rows().empty()) out.line(MyGradeViewController::kEmptyText);
  printGrades(out, ratings.rows(), *from, true);
  out.data("page", ratings.pageNum());
  return kExitOk;
}

}  // namespace

void registerReviewCommands(CommandRegistry& registry) {
  {
    auto storeId = std::make_shared<std::string>();
    auto star = std::make_shared<long>(0);
    auto pages = std::make_shared<long>(1);
    CLI::App* comments = registry.add("comments", "a store's comments, all or of one star count",
                                      [storeId, star, pages](CliApp& app) {
                                        return runComments(app, *storeId, *star, *pages);
                                      });
    comments->add_option("STORE_ID", *storeId, "the store")->required();
    comments->add_option("--star", *star, "0 every comment, 1-5 only that many stars")->check(CLI::Range(0L, 5L));
    comments->add_option("--page", *pages, "the page of comments to show")->check(CLI::Range(1L, 1000L));
  }
  {
    auto pages = std::make_shared<long>(1);
    CLI::App* ratings = registry.add("ratings", "the ratings you gave stores",
                                     [pages](CliApp& app) { return runRatings(app, *pages); });
    ratings->add_option("--page", *pages, "the page of ratings to show")->check(CLI::Range(1L, 1000L));
  }
}

}  // namespace qmv::cli
