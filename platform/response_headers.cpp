#include "platform/response_headers.h"

#include "core/common/string_util.h"

namespace qmv {

ResponseHeaders::ResponseHeaders(HeaderFields fields) : fields_(std::move(fields)) {
  for (const auto& [name, value] : *fields_) {
    lines_.append(name).append(": ").append(value).push_back('\n');
  }
}

void ResponseHeaders::appendLine(std::string_view line) {
  // The blank line that ends every block holds no field: nothing to keep.
  if (line == "\r\n" || line == "\n") return;
  // A small answer's block in one allocation.
  if (lines_.empty()) lines_.reserve(256);
  lines_.append(line);
  if (line.empty() || line.back() != '\n') lines_.push_back('\n');
  fields_.reset();
}

void ResponseHeaders::clear() {
  lines_.clear();
  fields_.reset();
}

const HeaderFields& ResponseHeaders::fields() const {
  if (fields_) return *fields_;
  HeaderFields fields;
  std::string_view rest = lines_;
  while (!rest.empty()) {
    const auto end = rest.find('\n');
    const std::string_view line = rest.substr(0, end);
    rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) continue;
    fields.emplace_back(trimmed(line.substr(0, colon)), trimmed(line.substr(colon + 1)));
  }
  return fields_.emplace(std::move(fields));
}

}  // namespace qmv
