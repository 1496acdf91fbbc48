// Prize-wheel endpoints: the current wheel and one spin. Cash prizes go to the balance.
#include <random>

#include "apps/sandbox/endpoint_table.h"
#include "apps/sandbox/sandbox_records.h"
#include "apps/sandbox/sandbox_texts.h"
#include "apps/sandbox/sandbox_util.h"

namespace qmv::sandbox {
namespace {


int64_t spinsLeft(SandboxStore& db, const Json& wheel, int64_t memberId) {
  const Json used = db.queryOne("SELECT COUNT(*) AS n FROM wheel_spins WHERE wheel_id = ? AND member_id = ?",
                                {wheel["id"], memberId});
  return std::max<int64_t>(0, wheel["spins"].get<int64_t>() - used["n"].get<int64_t>());
}

Json wheelRecord(const Call& call, const Json& wheel, int64_t left) {
  const Json items = parseJson(wheel["items"].get<std::string>());
  return {{"id", std::to_string(wheel["id"].get<int64_t>())},
          {"leftCount", std::to_string(left)},
          {"time", timeText(wheel["starts"].get<int64_t>()) + "|" + timeText(wheel["ends"].get<int64_t>())},
          {"imgURL", absoluteUrl(call, wheel["image"].get<std::string>())},
          {"rule", wheel["rule"]},
          {"itemCount", std::to_string(items.is_array() ? items.size() : 0)}};
}

Reply currentWheel(Call& call) {
  const int64_t now = nowSeconds();
  const Json wheel =
      call.db.queryOne("SELECT * FROM wheels WHERE starts <= ? AND ends > ? ORDER BY id LIMIT 1", {now, now});
  if (!wheel.is_object()) return Reply::refuse(kMsgNoWheel);
  return Reply::ok(wheelRecord(call, wheel, spinsLeft(call.db, wheel, call.memberId())));
}

Reply spin(Call& call) {
  const auto id = parseInteger(call.arg("id"), 1, INT64_MAX);
  if (!id) return Reply::refuse(kMsgBadArgument);
  const Json wheel = call.db.queryOne("SELECT * FROM wheels WHERE id = ?", {*id});
  if (!wheel.is_object()) return Reply::refuse(kMsgUnknownWheel);
  const int64_t now = nowSeconds();
  if (now < wheel["starts"].get<int64_t>() || now >= wheel["ends"].get<int64_t>())
    return Reply::refuse(kMsgOutOfPeriod);
  const int64_t left = spinsLeft(call.db, wheel, call.memberId());
  if (left == 0) return Reply::refuse(kMsgNoSpinsLeft);
  const Json items = parseJson(wheel["items"].get<std::string>());
  if (!items.is_array() || items.empty()) return Reply::refuse(kMsgUnknownWheel);
  std::vector<double> weights;
  for (const Json& item : items) weights.push_back(item.value("weight", 0.0));
  thread_local std::mt19937 engine(std::random_device{}());
  std::discrete_distribution<size_t> pick(weights.begin(), weights.end());
  const size_t index = pick(engine);
  const Json& prize = items[index];
  const std::string result = prize.value("name", std::string());
  call.db.execute("INSERT INTO wheel_spins(wheel_id, member_id, item_index, result, created) VALUES(?,?,?,?,?)",
                  {*id, call.memberId(), static_cast<int64_t>(index), result, now});
  const int64_t fen = prize.value("fen", int64_t{0});
  if (fen > 0) moveBalance(call.db, call.memberId(), fen, "prize", kMemoWheelPrize + result, std::to_string(*id));
  Json data = wheelRecord(call, wheel, left - 1);
  data["index"] = std::to_string(index);
  data["result"] = result;
  return Reply::ok(data);
}

}  // namespace

void registerWheelHandlers(EndpointTable& table) {
  using enum HttpMethod;
  using enum SessionRule;
  table.add("getWheels", {kGet, kRequired, false, currentWheel});
  table.add("getWheelResult", {kGet, kRequired, true, spin});
}

}  // namespace qmv::sandbox
