#include "features/member/zd_my_view_controller.h"

#include <iterator>

#include "core/common/settings_keys.h"
#include "core/common/string_util.h"
#include "core/session/global_data.h"
#include "core/session/member_texts.h"
#include "core/session/user_info_model.h"
#include "features/discovery/discovery_texts.h"
#include "features/member/account_centre_texts.h"
#include "platform/env.h"
#include "platform/image_decoder.h"
#include "platform/settings_store.h"

namespace qmv {

namespace {

namespace act = account_centre_texts;
namespace mct = member_centre_texts;

// The page host's types of its known pages.
constexpr long kCoinPage = 0;
constexpr long kAddressPage = 3;
constexpr long kMyTopicPage = 5;

constexpr ZDMyViewController::Entry kEntries[] = {
    {act::kProfileTitle, act::kProfileScreen},
    {mct::kMyOrdersTitle, mct::kMyOrdersScreen, mct::kOrdersTypeKey, 0},
    {mct::kMessagesTitle, mct::kMessagesScreen},
    {discovery_texts::kFavoritesTitle, discovery_texts::kFavoritesScreen},
    {mct::kMyContactTitle, mct::kMyContactScreen},
    {act::kInviteTitle, act::kInviteScreen},
    {mct::kWheelTitle, mct::kWheelScreen},
    {mct::kFundRecordTitle, mct::kFundRecordScreen},
    {mct::kVoucherTitle, mct::kVoucherScreen},
    {discovery_texts::kMyRatingsTitle, discovery_texts::kMyRatingsScreen},
    {act::kMemberLevelTitle, act::kMemberLevelScreen},
    {act::kChangePhoneTitle, act::kChangePhoneScreen},
    {act::kChangePasswordTitle, act::kChangePasswordScreen},
    {mct::kFeedbackTitle, mct::kFeedbackScreen},
    {mct::kCoinPageTitle, act::kH5Screen, act::kH5TypeKey, kCoinPage},
    {mct::kAddressPageTitle, act::kH5Screen, act::kH5TypeKey, kAddressPage},
    {mct::kLevelPageTitle, act::kH5Screen, act::kH5TypeKey, act::kLevelPageType},
    {mct::kMyTopicPageTitle, act::kH5Screen, act::kH5TypeKey, kMyTopicPage},
};

const std::shared_ptr<UserInfoModel>& me() { return GlobalData::sharedInstance().selfInfo(); }

}  // namespace

ZDMyViewController::ZDMyViewController() {
  badge_.onChange = [this] {
    if (onChanged) onChanged();
  };
}

void ZDMyViewController::viewWillAppear() { badge_.viewWillAppear(); }

bool ZDMyViewController::hasMember() const { return me() != nullptr; }

std::string ZDMyViewController::nameText() const {
  if (!me()) return {};
  return me()->nickName.empty() ? StringUtil::formatPhone(me()->userName) : me()->nickName;
}

std::string ZDMyViewController::phoneText() const { return me() ? StringUtil::formatPhone(me()->phone) : std::string(); }

std::string ZDMyViewController::balanceText() const { return me() ? member_texts::balanceYuan(*me()) : std::string(); }

std::string ZDMyViewController::levelText() const {
  return me() ? member_texts::level(*me()) + "  " + member_texts::progress(*me()) : std::string();
}

std::string ZDMyViewController::remainingText() const { return me() ? member_texts::remainingExp(*me()) : std::string(); }

const DecodedImage* ZDMyViewController::portrait() {
  const Env& env = Env::current();
  std::string bytes;
  if (me() && env.settings) {
    const auto stored = env.settings->dataForKey(kHeaderImageNowKey);
    if (stored) bytes.assign(stored->begin(), stored->end());
  }
  if (bytes != portraitBytes_) {
    portraitBytes_ = std::move(bytes);
    portrait_.reset();
    if (!portraitBytes_.empty() && env.imageDecoder) {
      const ImageLimits limits;
      const auto size = env.imageDecoder->readSize(portraitBytes_, limits);
      if (size.ok()) {
        auto decoded = env.imageDecoder->decode(portraitBytes_, limits, fitWithin(size.value(), kPortraitSide));
        if (decoded.ok()) portrait_ = std::move(decoded).value();
      }
    }
  }
  return portrait_ ? &*portrait_ : nullptr;
}

std::span<const ZDMyViewController::Entry> ZDMyViewController::entries() { return kEntries; }

std::string ZDMyViewController::badgeOf(std::size_t index) const {
  return index < std::size(kEntries) && std::string_view(kEntries[index].screen) == mct::kMessagesScreen
             ? badge_.badgeText()
             : std::string();
}

void ZDMyViewController::openEntry(std::size_t index) {
  if (index >= std::size(kEntries)) return;
  const Entry& entry = kEntries[index];
  Json payload;
  if (entry.payloadKey != nullptr) payload = Json{{entry.payloadKey, entry.payloadValue}};
  Env::current().navigator->push(entry.screen, payload);
}

}  // namespace qmv
