#include "core/common/json.h"

#include "core/common/fast_json.h"
#include "core/common/utf8.h"

namespace qmv {
namespace {

// The standard DOM builder, refusing (ending the parse) once a container would open
// below kMaxJsonDepth. The parse itself is iterative; only the tree is bounded.
class BoundedDomParser {
 public:
  explicit BoundedDomParser(Json& root) : dom_(root, /*allow_exceptions=*/false) {}

  bool tooDeep() const { return tooDeep_; }
  bool failed() const { return tooDeep_ || dom_.is_errored(); }

  bool null() { return dom_.null(); }
  bool boolean(bool value) { return dom_.boolean(value); }
  bool number_integer(Json::number_integer_t value) { return dom_.number_integer(value); }
  bool number_unsigned(Json::number_unsigned_t value) { return dom_.number_unsigned(value); }
  bool number_float(Json::number_float_t value, const Json::string_t& text) { return dom_.number_float(value, text); }
  bool string(Json::string_t& value) { return dom_.string(value); }
  bool binary(Json::binary_t& value) { return dom_.binary(value); }
  bool key(Json::string_t& value) { return dom_.key(value); }
  bool start_object(std::size_t elements) { return open() && dom_.start_object(elements); }
  bool end_object() {
    --depth_;
    return dom_.end_object();
  }
  bool start_array(std::size_t elements) { return open() && dom_.start_array(elements); }
  bool end_array() {
    --depth_;
    return dom_.end_array();
  }
  template <class Exception>
  bool parse_error(std::size_t position, const std::string& token, const Exception& error) {
    return dom_.parse_error(position, token, error);
  }

 private:
  bool open() {
    if (++depth_ <= kMaxJsonDepth) return true;
    tooDeep_ = true;
    return false;
  }

  nlohmann::detail::json_sax_dom_parser<Json> dom_;
  std::size_t depth_ = 0;
  bool tooDeep_ = false;
};

Json parseBounded(std::string_view text, bool* tooDeep) {
  Json result;
  BoundedDomParser parser(result);
  Json::sax_parse(text.begin(), text.end(), &parser);
  if (tooDeep) *tooDeep = parser.tooDeep();
  // A refused document may hold a partial tree, at most kMaxJsonDepth deep.
  if (parser.failed()) result = Json(Json::value_t::discarded);
  return result;
}

}  // namespace

Json parseJson(std::string_view text) {
  Json result;
  if (fastjson::readDocument(text, [&result](fastjson::Element root) { result = fastjson::toJson(root); })) {
    return result;
  }
  bool tooDeep = false;
  result = parseBounded(text, &tooDeep);
  // Checked only after a failure, so well-formed answers pay nothing for it.
  if (!isParsed(result) && !tooDeep && !utf8::isValid(text)) result = parseBounded(utf8::replacingInvalid(text), nullptr);
  return result;
}

}  // namespace qmv
