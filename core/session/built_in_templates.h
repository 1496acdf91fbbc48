#pragma once
// The home category templates shipped with the client, in the shape of a
// "getCategorTemplates1" answer. The earlier one was in use until 4 September 2016; its
// last group keeps its two unnamed entries as they were shipped.
#include <string_view>

namespace qmv {

std::string_view builtInTemplatesEarlierText();
std::string_view builtInTemplatesLaterText();

}  // namespace qmv
