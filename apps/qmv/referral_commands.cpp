// Commands of the referral network: the member's own contacts with the header counts,
// and the members one of them invited. Each drives the contacts screens as a member
// would (the second level is opened by choosing the contact's row) and prints them.
#include <iostream>
#include <memory>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/cli_texts.h"
#include "apps/qmv/command_registry.h"
#include "core/common/display_mask.h"
#include "features/referral/my_contact_view_controller.h"
#include "features/referral/my_second_contact_view_controller.h"
#include "platform/navigator.h"

namespace qmv::cli {
namespace {

// Loads pages 1..`pages` (fewer when the list ends first). False when a page failed.
bool loadPages(CliApp& app, ContactListController& screen, long pages) {
  auto answer = awaitSlot(app, screen.onLoaded, [&screen] { screen.refresh(); });
  while (answer.value_or(false) && screen.pageNum < pages && !screen.loadMoreFooterHidden) {
    answer = awaitSlot(app, screen.onLoaded, [&screen] { screen.loadMore(); });
  }
  return answer.value_or(false);
}

void printRows(CliOutput& out, const std::vector<ContactCell>& cells) {
  Json rows = Json::array();
  for (const ContactCell& cell : cells) {
    std::string line = "  " + cell.name + " | " + cell.phoneText + " | " + cell.timeText;
    if (!cell.invitedText.empty()) line += " | " + cell.invitedText;
    out.line(line);
    rows.push_back({{"name", cell.name},
                    {"phone", cell.phoneText},
                    {"time", cell.timeText},
                    {"invited", cell.invitedText},
                    {"portrait", cell.portraitUrl}});
  }
  out.data("contacts", rows);
}

int runContacts(CliApp& app, const std::string& phone, long pages) {
  if (!memberSignedIn(app)) return kExitFailure;
  MyContactViewController first;
  // The second level is reached through its row, so the first level is read to its end.
  if (!loadPages(app, first, phone.empty() ? pages : 1000)) return kExitFailure;
  CliOutput& out = app.output();
  std::vector<ContactCell> cells;
  if (phone.empty()) {
    out.line(first.title());
    out.line(cli_texts::kFirstContactsLabel + first.num() + cli_texts::kSecondContactsLabel + first.subNum());
    out.data("counts", {{"oneContact", first.num()}, {"twoContact", first.subNum()}});
    for (std::size_t i = 0; i < first.contactList.size(); ++i) cells.push_back(first.cellAt(i));
    printRows(out, cells);
    out.data("page", first.pageNum);
    return kExitOk;
  }
  // The phone whole, or as the list shows it when only one contact shows it so.
  const auto& list = first.contactList;
  std::size_t row = 0;
  while (row < list.size() && list[row].phone != phone) ++row;
  if (row == list.size()) {
    for (std::size_t i = 0, matches = 0; i < list.size(); ++i) {
      if (display_mask::phone(list[i].phone) == phone && ++matches == 1) row = i;
      if (matches > 1) row = list.size();
    }
  }
  if (row == list.size()) {
    std::cerr << "qmv: none of your contacts has the phone " << phone << '\n';
    return kExitFailure;
  }
  first.selectRow(row);
  const auto shown = Env::current().navigator->topScreen();
  if (!shown) return kExitFailure;
  MySecondContactViewController second(UserInfoModel(shown->payload));
  if (!loadPages(app, second, pages)) return kExitFailure;
  out.line(second.title());
  for (std::size_t i = 0; i < second.contactList.size(); ++i) cells.push_back(second.cellAt(i));
  printRows(out, cells);
  out.data("page", second.pageNum);
  return kExitOk;
}

}  // namespace

void registerReferralCommands(CommandRegistry& registry) {
  auto phone = std::make_shared<std::string>();
  auto pages = std::make_shared<long>(1);
  CLI::App* contacts =
      registry.add("contacts", "your contacts with their counts, or the members the contact PHONE invited",
                   [phone, pages](CliApp& app) { return runContacts(app, *phone, *pages); });
  contacts->add_option("PHONE", *phone,
                        "a contact's phone, whole or as listed: list the members that contact invited");
  contacts->add_option("--page", *pages, "load up to this page")->check(CLI::Range(1L, 1000L));
}

}  // namespace qmv::cli
