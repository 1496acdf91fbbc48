// Wallet and catalogue contract, read through the client's own classes:
// a withdrawal to a bound card, and the category catalogue and templates.
#include <algorithm>

#include "core/session/mobile_code_net_api.h"
#include "core/session/search_types_reader.h"
#include "features/discovery/built_in_search_types.h"
#include "features/discovery/search_type_net_api.h"
#include "features/discovery/templates_net_api.h"
#include "features/wallet/top_up_record_net_api.h"
#include "features/wallet/bind_bank_net_api.h"
#include "features/wallet/with_draw_net_api.h"
#include "tests/sandbox_fixture.h"

namespace qmv::contract {
namespace {

constexpr const char* kCertificate = "371302199001011234";

// `prefix` completed to `length` digits with the check digit that makes the Luhn sum hold.
std::string luhnCard(std::string prefix, std::size_t length) {
  while (prefix.size() < length - 1) prefix += '0' + static_cast<char>(prefix.size() % 10);
  for (char check = '0'; check <= '9'; ++check) {
    const std::string card = prefix + check;
    int sum = 0;
    for (std::size_t i = 0; i < card.size(); ++i) {
      int digit = card[card.size() - 1 - i] - '0';
      if (i % 2 == 1) digit = digit * 2 > 9 ? digit * 2 - 9 : digit * 2;
      sum += digit;
    }
    if (sum % 10 == 0) return card;
  }
  return {};
}

std::shared_ptr<BindBankNetApi> bindRequest(const char* name, const std::string& cardId, const char* certifId,
                                            const char* code) {
  BankModel bank;
  bank.name = name;
  bank.cardId = cardId;
  bank.certifId = certifId;
  bank.identifying = code;
  return std::make_shared<BindBankNetApi>(bank);
}

class WalletContractTest : public SandboxContractTest {
 protected:
  void SetUp() override {
    SandboxContractTest::SetUp();
    ASSERT_NE(login(), nullptr);
  }
  // Asks for an SMS code for the member's own phone, as the bind screen does.
  bool askCode() {
    return sendCorrect(std::make_shared<MobileCodeNetApi>(GlobalData::sharedInstance().selfInfo()->phone, 0));
  }
};

TEST_F(WalletContractTest, WithdrawalToABoundCardIsTakenFromTheBalance) {
  const auto before = balance();
  ASSERT_TRUE(before.has_value());
  ASSERT_TRUE(askCode());
  ASSERT_TRUE(sendCorrect(
      bindRequest("张三", luhnCard("622588", 16), kCertificate, sandbox::kDemoSmsCode)));
  const long long amount = *before - 1234;
  ASSERT_TRUE(sendCorrect(std::make_shared<WithDrawNetApi>(std::to_string(amount))));
  EXPECT_EQ(balance(), 1234);
  auto records = std::make_shared<TopUpRecordNetApi>("1", "3");
  ASSERT_TRUE(sendCorrect(records));
  const Json list = dataOf(*records).value("dataList", Json::array());
  ASSERT_FALSE(list.empty());
  EXPECT_EQ(strForKey(list[0], "amount"), std::to_string(-amount));
}

TEST_F(WalletContractTest, CatalogueAndTemplatesReadAsTheClientsOwnRecords) {
  auto catalogue = std::make_shared<SearchTypeNetApi>();
  ASSERT_TRUE(sendCorrect(catalogue));
  const auto served = SearchTypeNetApi::getSearchTypeWithJsonStr(catalogue->responseString());
  const auto builtIn = searchTypesFromEnvelope(builtInSearchTypesText());
  ASSERT_FALSE(served.empty());
  ASSERT_EQ(served.size(), builtIn.size());
  for (std::size_t i = 0; i < served.size(); ++i) {
    EXPECT_EQ(served[i].typeId, builtIn[i].typeId);
    EXPECT_EQ(served[i].name, builtIn[i].name);
    EXPECT_EQ(served[i].list.size(), builtIn[i].list.size()) << served[i].name;
  }

  auto templates = std::make_shared<TemplatesNetApi>();
  ASSERT_TRUE(sendCorrect(templates));
  const auto read = templates->templatesFromResponse();
  ASSERT_FALSE(read.empty());
  EXPECT_EQ(settings_->stringForKey("templates"), templates->responseString());
  TemplatesNetApi::resetTemplates(read);
  int merged = 0;
  for (const auto& home : GlobalData::sharedInstance().defaultTypeList()) {
    const auto* served = TemplatesNetApi::getInfoWithName(home.name, read);
    if (served == nullptr) continue;
    ++merged;
    EXPECT_EQ(home.typeId, served->typeId) << home.name;
    EXPECT_EQ(home.list.size(), served->list.size()) << home.name;
  }
  EXPECT_EQ(merged, static_cast<int>(GlobalData::sharedInstance().defaultTypeList().size()))
      << "every home category has its template";
}

}  // namespace
}  // namespace qmv::contract
