#pragma once
// Masks for numbers a bystander must not read whole on screen: other members' phones and
// bank card numbers. Front ends show these texts; requests and stored data keep the
// numbers as they are.
//
// Characters are UTF-8 code points, so a mask never cuts one in two; bytes that are not
// UTF-8 are shown as U+FFFD. A text too short to keep both ends and still hide a
// character keeps a quarter of its length (rounded down) at each end instead, so a short
// number is never shown whole.
#include <cstddef>
#include <string>
#include <string_view>

namespace qmv::display_mask {

// `text` with all but its first `front` and last `back` characters replaced by "*"
// (see above for short texts). "" stays "".
std::string maskMiddle(std::string_view text, std::size_t front, std::size_t back);

// Another member's phone: the first 3 and the last 4 characters ("138****5678").
std::string phone(std::string_view phone);

// A bank card number without its blanks: the first 4 and the last 4 digits with the
// hidden run between them set apart ("6222 *********** 1234"); short numbers as
// maskMiddle has them.
std::string cardNumber(std::string_view cardId);

}  // namespace qmv::display_mask
