#pragma once
// The pieces of an inbound URL that routing reads: the host, and the query pairs split
// the way the pages' links are written ("?" then key=value pairs joined by "&").
#include <map>
#include <string>
#include <string_view>

namespace qmv {

// Percent-encodes every byte except ASCII letters, digits and "-", ".", "_", "~"
// (upper-case hexadecimal); UTF-8 text is encoded byte by byte.
std::string percentEncode(std::string_view text);

// 0..15 for a hexadecimal digit, -1 for any other character.
int hexDigitValue(char c);

// "qqqmmmvvv://safepay/?x=1" -> "safepay", lower-cased as a host compares ("qmv://LOGIN"
// -> "login"). Empty when the text has no "scheme://".
std::string urlHost(std::string_view url);

// Everything between "://" and the first "/", "?" or "#", as written: user information
// and port included ("a://u@h:1/p" -> "u@h:1"). Empty when the text has no "scheme://".
std::string urlAuthority(std::string_view url);

// "scheme" of "scheme://...", lower-cased; empty when absent.
std::string urlScheme(std::string_view url);

// The pairs after the first "?", split at "&" and then at the first "="; a pair without
// "=" maps to "". Later duplicates win. Values are percent-decoded.
std::map<std::string, std::string> urlQueryPairs(std::string_view url);

}  // namespace qmv
