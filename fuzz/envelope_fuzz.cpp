// The answer of the application server as the client reads it: the envelope
// ({"success", "message", "data"}), read in one pass and from the parsed document, and then
// the records the endpoint reads out of "data".
// Input: the endpoint's name, a newline, the body. The body is answered (status 200) to
// that endpoint's request through the real request layer; a name no reader knows is
// answered to a bare endpoint, which still decodes the envelope.
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "core/common/area_model.h"
#include "core/request/envelope_reader.h"
#include "core/request/net_api.h"
#include "core/session/login_net_api.h"
#include "core/session/mobile_code_net_api.h"
#include "core/session/search_sub_type_model.h"
#include "core/storage/area_rows.h"
#include "features/discovery/activity_detail_net_api.h"
#include "features/discovery/area_net_api.h"
#include "features/discovery/map_list_net_api.h"
#include "features/discovery/news_info_model.h"
#include "features/discovery/popular_store_net_api.h"
#include "features/discovery/recommend_store_net_api.h"
#include "features/discovery/resources_net_api.h"
#include "features/discovery/search_store_net_api.h"
#include "features/discovery/store_detail_net_api.h"
#include "features/discovery/store_list_reader.h"
#include "features/discovery/templates_net_api.h"
#include "features/orders/my_order_net_api.h"
#include "features/orders/order_detail_net_api.h"
#include "features/orders/prepare_pay_net_api.h"
#include "features/referral/my_contacts_net_api.h"
#include "features/wallet/my_bank_net_api.h"
#include "features/wheel/wheel_net_api.h"
#include "features/wheel/wheel_result_net_api.h"
#include "fuzz/fuzz_env.h"

namespace qmv::fuzz {
namespace {

// Any other endpoint: the envelope, and "data" handed to every record reader, so that
// each record meets shapes its own endpoint never sends.
class BareNetApi : public NetApi<BareNetApi> {
 public:
  std::string requestUrl() const override { return "bare"; }
  std::size_t readData() const {
    const Json data = responseData();
    const Json list = data.is_object() ? data.value("dataList", Json()) : Json();
    UserInfoModel member(list);
    member.setWithDict(data);
    std::size_t read = storesOfData(data).size() + static_cast<std::size_t>(countOfData(data) != 0);
    read += modelsWithArray<AreaModel>(list).size() + modelsWithArray<NewsInfoModel>(list).size();
    read += modelsWithArray<SearchSubTypeModel>(list).size() + modelsWithArray<SearchTypeModel>(list).size();
    read += modelsWithArray<ResourceModel>(list).size() + modelsWithArray<BankModel>(list).size();
    read += GradeModel::listWithArray(list).size() + OrderInfoModel::listWithArray(list).size();
    read += modelsWithArray<ActivityModel>(list).size() + sizeOfWheel(WheelModel::fromData(data));
    return read + static_cast<std::size_t>(member.level);
  }

 private:
  static std::size_t sizeOfWheel(const std::optional<WheelModel>& wheel) { return wheel ? wheel->result.size() : 0; }
};

class CountingSessionDelegate : public SessionExpireDelegate {
 public:
  void sessionExpired(BaseNetApi& /*request*/) override { ++expired; }
  std::size_t expired = 0;
};

// Sink for what the readers return, so that no read is optimised away.
std::size_t g_read = 0;

template <typename Api>
std::size_t sizeOf(const std::optional<Api>& value) {
  return value ? 1 : 0;
}
template <typename T>
std::size_t sizeOf(const std::vector<T>& value) {
  return value.size();
}
std::size_t sizeOf(const std::string& value) { return value.size(); }
std::size_t sizeOf(long value) { return static_cast<std::size_t>(value != 0); }
template <typename T>
std::size_t sizeOf(const std::shared_ptr<T>& value) {
  return value ? 1 : 0;
}

// Sends `api` through the agent, answered from memory, and runs `read` on success.
template <typename Api, typename Read>
void exchange(std::shared_ptr<Api> api, Read read) {
  static CountingSessionDelegate sessions;
  api->sessionDelegate = &sessions;
  Api* raw = api.get();
  api->setCompletionBlockWithSuccess([raw, read](BaseRequest&) { g_read += read(*raw); }, nullptr);
  api->start();
  FuzzEnv::get().loop->runPending();
}

using Exchange = std::function<void()>;

const std::map<std::string, Exchange, std::less<>>& exchanges() {
  static const std::map<std::string, Exchange, std::less<>> table = {
      {"getCommodityDetailInfo",
       [] {
         exchange(std::make_shared<ActivityDetailNetApi>("1"), [](auto& a) { return sizeOf(a.getActivityDetail()); });
       }},
      {"getAreaList",
       [] {
         // The refresh reads the table from the text, in place or as a stream off the
         // interface thread; both must see what the tree sees.
         exchange(std::make_shared<AreaNetApi>(), [](auto& a) {
           const AreaRows tree = areaRowsOf(a.getAreaList());
           const std::string ver = a.getAreaVersion();
           const auto same = [&](const AreaNetApi::Areas& read) {
             return read.rows.areas == tree.areas && read.rows.lastId == tree.lastId && read.ver == ver;
           };
           const AreaNetApi::Areas inPlace = a.readAreas();
           if (!same(inPlace) || !same(AreaNetApi::readAreas(a.responseString()))) __builtin_trap();
           return tree.areas.size() + sizeOf(inPlace.ver);
         });
       }},
      {"getMapList",
       [] { exchange(std::make_shared<MapListNetApi>("1"), [](auto& a) { return sizeOf(a.getMapList()); }); }},
      {"getPopularList",
       [] {
         exchange(std::make_shared<PopularStoreNetApi>("1", "1"),
                  [](auto& a) { return sizeOf(a.getPopularStores()) + sizeOf(a.totalCount()); });
       }},
      {"getRecommendStore",
       [] {
         exchange(std::make_shared<RecommendStoreNetApi>("1"), [](auto& a) { return sizeOf(a.getRecommendStores()); });
       }},
      {"getCarouselList",
       [] { exchange(std::make_shared<ResourcesNetApi>(), [](auto& a) { return sizeOf(a.getResources()); }); }},
      {"getSearchList",
       [] {
         SearchConditionModel condition;
         condition.keyword = "a";
         exchange(std::make_shared<SearchStoreNetApi>(condition),
                  [](auto& a) { return sizeOf(a.getSearchStores()) + sizeOf(a.totalCount()); });
       }},
      {"getStoreDetailInfo",
       [] {
         exchange(std::make_shared<StoreDetailNetApi>("1"),
                  [](auto& a) { return sizeOf(a.getStoreDetail()) + sizeOf(a.getGradeList()); });
       }},
      {"getCategorTemplates1",
       [] {
         exchange(std::make_shared<TemplatesNetApi>(), [](auto& a) { return sizeOf(a.templatesFromResponse()); });
       }},
      {"getMyPosts",
       [] { exchange(std::make_shared<MyOrderNetApi>("1", 0), [](auto& a) { return sizeOf(a.getOrderList()); }); }},
      {"getOrderDetail",
       [] { exchange(std::make_shared<OrderDetailNetApi>("1"), [](auto& a) { return sizeOf(a.getOrderDetail()); }); }},
      {"postPayForStore",
       [] {
         exchange(std::make_shared<PreparePayNetApi>("1", "1", "1", false),
                  [](auto& a) { return sizeOf(a.getOrderInfo()); });
       }},
      {"getMyContacts",
       [] {
         exchange(std::make_shared<MyContactsNetApi>("1", ""), [](auto& a) {
           return sizeOf(a.getMyContacts()) + sizeOf(a.getFirstLevelCount()) + sizeOf(a.getSecondLevelCount());
         });
       }},
      {"getBoundBankCard",
       [] { exchange(std::make_shared<MyBankNetApi>(), [](auto& a) { return sizeOf(a.getBank()); }); }},
      {"getWheels", [] { exchange(std::make_shared<WheelNetApi>(), [](auto& a) { return sizeOf(a.getWheel()); }); }},
      {"getWheelResult",
       [] { exchange(std::make_shared<WheelResultNetApi>("1"), [](auto& a) { return sizeOf(a.getWheel()); }); }},
      {"getUserLogin",
       [] {
         exchange(std::make_shared<LoginNetApi>("13800000000", "x"), [](auto& a) { return sizeOf(a.getUserInfo()); });
       }},
      {"getMobileCode",
       [] {
         exchange(std::make_shared<MobileCodeNetApi>("13800000000", 0),
                  [](auto& a) { return sizeOf(a.getSessionId()); });
       }},
  };
  return table;
}

}  // namespace
}  // namespace qmv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmv::fuzz;
  FuzzEnv& env = FuzzEnv::get();
  const auto [name, body] = splitFirstLine(asText(data, size));
  // The verdict reads the envelope in one pass where it can: that must be what the
  // parsed document says.
  if (const auto scanned = qmv::scanEnvelope(body); scanned && *scanned != qmv::envelopeIn(qmv::parseJson(body))) {
    __builtin_trap();
  }
  env.http->body.assign(body);
  const auto found = exchanges().find(name);
  if (found != exchanges().end()) {
    found->second();
  } else {
    exchange(std::make_shared<BareNetApi>(), [](const BareNetApi& api) { return api.readData(); });
  }
  return 0;
}
