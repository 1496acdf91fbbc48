#pragma once
// The member level screen ("会员等级"), headless: the signed-in member's level, computed
// by the member record from his experience points, shown as "LV%ld", "%@/%ld" (points
// over the total at which the level ends), "距离下一等级还需要%ld经验" (that total minus
// the points) and a progress bar of the record's current progress. It sends nothing: the
// record of the last sign-in or profile answer is what it shows, read at every call.
//
// Choices: the screen shows what the record holds and corrects nothing. At level 8 the
// bar is full. At levels 9 to 11 the record keeps the total and progress it held before
// (after a sign-in straight into those levels: total 0 and an empty bar), so the lines
// read e.g. "30000/0" and a negative remainder, as the member's profile shows them too.
// Without a signed-in member every text is empty, the bar is empty and hasMember() is
// false; the level page can still be opened, and the server's page tells its rules.
#include <string>

#include "core/session/base_view_controller.h"
#include "features/member/account_centre_texts.h"

namespace qmv {

class UserInfoModel;

class MemberLevelViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = account_centre_texts::kMemberLevelTitle;
  static constexpr const char* kLevelPageEntry = account_centre_texts::kLevelPageEntry;

  const char* title() const { return kTitle; }

  bool hasMember() const;
  bool hasData() const override { return hasMember(); }
  // "LV%ld".
  std::string levelText() const;
  // "%@/%ld": the experience points as the record holds them, over the level's total.
  std::string experienceText() const;
  // "距离下一等级还需要%ld经验".
  std::string remainingText() const;
  // The record's currentProgress, the filled fraction of the bar.
  double progress() const;

  // Pushes the page host with the server's level page (type 4).
  void openLevelPage();

 private:
  const UserInfoModel* member() const;
};

}  // namespace qmv
