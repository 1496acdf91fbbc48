#pragma once
// What the verdict on an answer needs of its envelope ({"success", "message", "data"}):
// whether the text is a JSON object, and its "success" and "message" as text.
#include <optional>
#include <string>
#include <string_view>

#include "core/common/fast_json.h"

namespace qmv {

struct Envelope {
  bool isObject = false;
  std::string success;
  std::string message;

  bool operator==(const Envelope&) const = default;
};

// From the parsed document (a Json value or an in-place element).
template <typename Dict>
Envelope envelopeIn(const Dict& root) {
  Envelope envelope;
  envelope.isObject = fastjson::isObject(root);
  if (envelope.isObject) {
    envelope.success = fastjson::strForKey(root, "success");
    envelope.message = fastjson::strForKey(root, "message");
  }
  return envelope;
}

// The same, read from `text` in one pass that builds nothing and allocates only the two
// texts: a large answer whose "data" is read elsewhere (the whole area table) is then never
// held as a tree or a tape for its envelope alone. The whole text is still checked, so the
// envelope of a document that parseJson refuses is not taken. Returns nullopt whenever
// parseJson may read the text differently or it takes more than a plain reading to say
// (the text is no object, a byte is not UTF-8, an escape in a key of the envelope or in
// its two texts, a number with an exponent, a surrogate escape, deep nesting, anything
// malformed): the caller then reads the envelope from the parsed document.
std::optional<Envelope> scanEnvelope(std::string_view text);

}  // namespace qmv
