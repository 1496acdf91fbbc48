#pragma once
// UTF-8 well-formedness for text that arrives from outside (server bodies, typed
// arguments, files): JSON can only carry well-formed UTF-8, and a terminal must not be
// handed stray bytes.
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace qmv::utf8 {

// Length (1..4) of the well-formed sequence that starts at `text[at]`, or 0 when the
// bytes there are not one (stray continuation, overlong form, surrogate, above U+10FFFF,
// cut short). REQUIRES: at < text.size().
std::size_t sequenceLength(std::string_view text, std::size_t at);

bool isValid(std::string_view text);

// `text` with every byte that is not part of a well-formed sequence replaced by U+FFFD.
std::string replacingInvalid(std::string_view text);

// Code points of `text` for a field a member typed; nullopt when it is not UTF-8 or holds
// a control character (C0, DEL or C1) other than, with `lineBreaks`, a line feed, carriage
// return or tab.
std::optional<std::size_t> typedLength(std::string_view text, bool lineBreaks);

}  // namespace qmv::utf8
