#include "core/session/user_info_model.h"

#include <gtest/gtest.h>

namespace qmv {
namespace {

UserInfoModel withExp(const char* exp) { return UserInfoModel(Json{{"nowExp", exp}}); }

TEST(UserInfoModelTest, LevelRowsIncludingTheIrregularOnes) {
  auto m = withExp("99");
  EXPECT_EQ(m.level, 0);
  EXPECT_DOUBLE_EQ(m.currentProgress, 0.99);
  EXPECT_EQ(m.currentTotal, 100);
  EXPECT_DOUBLE_EQ(m.totalProgress, 1.0);

  m = withExp("100");
  EXPECT_EQ(m.level, 1);
  EXPECT_DOUBLE_EQ(m.currentProgress, 0.0);
  EXPECT_EQ(m.currentTotal, 200);

  m = withExp("600");  // 200 into a 400-point level
  EXPECT_EQ(m.level, 3);
  EXPECT_DOUBLE_EQ(m.currentProgress, 0.5);
  EXPECT_EQ(m.currentTotal, 800);

  m = withExp("12799");
  EXPECT_EQ(m.level, 7);
  EXPECT_DOUBLE_EQ(m.currentProgress, 6399 / 6400.0);

  m = withExp("12800");  // full bar, not r / 12800
  EXPECT_EQ(m.level, 8);
  EXPECT_DOUBLE_EQ(m.currentProgress, 1.0);
  EXPECT_EQ(m.currentTotal, 25600);

  // Levels 9-11 move only the level; the earlier progress and total stay.
  m = withExp("3300");
  m.nowEXP = "30000";
  m.setLevels();
  EXPECT_EQ(m.level, 9);
  EXPECT_DOUBLE_EQ(m.currentProgress, 100 / 3200.0);
  EXPECT_EQ(m.currentTotal, 6400);
  m.nowEXP = "51200";
  m.setLevels();
  EXPECT_EQ(m.level, 10);
  m.nowEXP = "999999";
  m.setLevels();
  EXPECT_EQ(m.level, 11);
  EXPECT_EQ(m.currentTotal, 6400);

  // A negative value matches no row.
  m.nowEXP = "-5";
  m.setLevels();
  EXPECT_EQ(m.level, 11);
  EXPECT_EQ(m.currentTotal, 6400);

  // Unreadable or numeric experience values.
  EXPECT_EQ(withExp("abc").level, 0);
  EXPECT_EQ(UserInfoModel(Json{{"nowExp", 450}}).level, 3);
}

TEST(UserInfoModelTest, ReadersDisagreeOnTheInviterKeyAndUpdateKeepsEmptyFields) {
  const UserInfoModel full(Json{{"sessionId", "s1"},
                                {"phone", "13800000000"},
                                {"inviterID", "A"},
                                {"inviterId", "B"},
                                {"balance", 1250},
                                {"email", nullptr},
                                {"nowExp", "150"}});
  EXPECT_EQ(full.inviterID, "A");
  EXPECT_EQ(full.balance, "1250");
  EXPECT_EQ(full.email, "");
  EXPECT_EQ(full.userName, "");
  EXPECT_EQ(full.level, 1);

  UserInfoModel user = full;
  user.setWithDict(Json{{"inviterID", "C"},
                        {"phone", ""},
                        {"sessionId", nullptr},
                        {"balance", "500"},
                        {"nickName", "小明"},
                        {"nowExp", "900"}});
  EXPECT_EQ(user.inviterID, "A");  // capital D is not the update's key
  EXPECT_EQ(user.phone, "13800000000");
  EXPECT_EQ(user.sessionId, "s1");
  EXPECT_EQ(user.balance, "500");
  EXPECT_EQ(user.nickName, "小明");
  EXPECT_EQ(user.level, 4);
  user.setWithDict(Json{{"inviterId", "D"}});
  EXPECT_EQ(user.inviterID, "D");
  user.setWithDict(Json::array());  // not an object: nothing changes
  EXPECT_EQ(user.inviterID, "D");
}

}  // namespace
}  // namespace qmv
