#include "core/common/fast_json.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstring>
#include <memory>

#include "core/common/dictionary.h"

namespace qmv::fastjson {
namespace {

// A "-0" token reads as the integer 0 to simdjson but as a signed zero integer to nlohmann,
// and the tape does not keep which it was; texts that may hold one go the nlohmann way.
bool mayHoldNegativeZero(std::string_view text) {
  for (std::size_t at = text.find("-0"); at != std::string_view::npos; at = text.find("-0", at + 2)) {
    const std::size_t next = at + 2;
    const char after = next < text.size() ? text[next] : ' ';
    if (!std::isdigit(static_cast<unsigned char>(after)) && after != '.' && after != 'e' && after != 'E') return true;
  }
  return false;
}

// Documents up to this size reuse one parser and one padded copy per thread; larger ones
// (rare) get their own, so that one big file does not keep its buffers alive.
constexpr std::size_t kReusedBytes = 1 << 20;
// simdjson counts the document itself as one level.
constexpr std::size_t kParserDepth = kMaxJsonDepth + 1;

// A parser and the padded copy of the text it reads (simdjson reads a little past the end).
struct Reader {
  explicit Reader(std::size_t capacity)
      : parser(capacity), copy(new char[capacity + simdjson::SIMDJSON_PADDING]) {
    ready = parser.allocate(std::min<std::size_t>(capacity, 4096), kParserDepth) == simdjson::SUCCESS;
  }

  bool parse(std::string_view text, Element& root) {
    if (!ready) return false;
    std::memcpy(copy.get(), text.data(), text.size());
    std::memset(copy.get() + text.size(), 0, simdjson::SIMDJSON_PADDING);
    return parser.parse(copy.get(), text.size(), false).get(root) == simdjson::SUCCESS;
  }

  simdjson::dom::parser parser;
  std::unique_ptr<char[]> copy;
  bool ready = false;
  bool busy = false;
};

void build(Element element, Json& into) {
  using simdjson::dom::element_type;
  switch (element.type()) {
    case element_type::OBJECT: {
      const simdjson::dom::object fields(element);
      into = Json::object();
      auto& members = into.get_ref<Json::object_t&>();
      members.reserve(fields.size());
      for (const simdjson::dom::key_value_pair field : fields) {
        Json value;
        build(field.value, value);
        // A repeated key keeps its first place and takes the last value, as nlohmann's reader does.
        const auto [slot, added] = members.emplace(std::string(field.key), std::move(value));
        if (!added) slot->second = std::move(value);
      }
      return;
    }
    case element_type::ARRAY: {
      const simdjson::dom::array elements(element);
      into = Json::array();
      auto& items = into.get_ref<Json::array_t&>();
      items.reserve(elements.size());
      for (const Element item : elements) build(item, items.emplace_back());
      return;
    }
    case element_type::STRING:
      into = std::string(std::string_view(element));
      return;
    case element_type::INT64: {
      // nlohmann reads every number without a minus sign as unsigned.
      const auto value = std::int64_t(element);
      into = value < 0 ? Json(value) : Json(static_cast<std::uint64_t>(value));
      return;
    }
    case element_type::UINT64:
      into = std::uint64_t(element);
      return;
    case element_type::DOUBLE:
      into = double(element);
      return;
    case element_type::BOOL:
      into = bool(element);
      return;
    case element_type::NULL_VALUE:
      into = nullptr;
      return;
  }
}

}  // namespace

bool readDocument(std::string_view text, const std::function<void(Element)>& read) {
  // Nothing to read (no document; simdjson would say so too) or a possible "-0".
  if (text.empty() || mayHoldNegativeZero(text)) return false;
  thread_local Reader reused(kReusedBytes);
  // A reader that reads another document while in one (or a big text) gets a reader of its own.
  std::unique_ptr<Reader> own;
  Reader* reader = &reused;
  if (reused.busy || text.size() > kReusedBytes) {
    own = std::make_unique<Reader>(text.size());
    reader = own.get();
  }
  Element root;
  if (!reader->parse(text, root)) return false;
  reader->busy = true;
  struct Release {
    ~Release() { flag = false; }
    bool& flag;
  } release{reader->busy};
  read(root);
  return true;
}

Json toJson(Element element) {
  Json result;
  build(element, result);
  return result;
}

std::optional<Element> member(Element dict, std::string_view key) {
  if (!dict.is_object()) return std::nullopt;
  std::optional<Element> found;
  for (const simdjson::dom::key_value_pair field : simdjson::dom::object(dict)) {
    if (field.key == key) found = field.value;
  }
  return found;
}

std::string textOf(Element value) {
  using simdjson::dom::element_type;
  switch (value.type()) {
    case element_type::STRING:
      return std::string(std::string_view(value));
    case element_type::BOOL:
      return bool(value) ? "1" : "0";
    case element_type::INT64:
      return std::to_string(std::int64_t(value));
    case element_type::UINT64:
      return std::to_string(std::uint64_t(value));
    case element_type::DOUBLE:
      return qmv::textOf(Json(double(value)));
    default:
      return {};
  }
}

std::string textOf(const Json& value) { return qmv::textOf(value); }

}  // namespace qmv::fastjson
