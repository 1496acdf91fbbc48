#pragma once
// The header fields of an HTTP response. A transport adds the lines as they arrive; they
// are split into names and values only when first read, since most answers are never
// asked for theirs. A value type: copies and moves carry the fields along.
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qmv {

using HeaderFields = std::vector<std::pair<std::string, std::string>>;

class ResponseHeaders {
 public:
  ResponseHeaders() = default;
  // Fields already split, as a fake transport gives them.
  ResponseHeaders(HeaderFields fields);  // NOLINT(google-explicit-constructor): a value like the list

  // One line as received ("Name: value", line end included or not). A line without a
  // colon (the blank one that ends the block) is passed over when the fields are read.
  void appendLine(std::string_view line);
  // Drops every field, as when a redirect or an interim answer is followed by another.
  void clear();

  // In the order received, names and values without surrounding blanks. Not safe to
  // call from two threads at once on one object (the first call splits the lines).
  const HeaderFields& fields() const;
  HeaderFields::const_iterator begin() const { return fields().begin(); }
  HeaderFields::const_iterator end() const { return fields().end(); }

 private:
  std::string lines_;  // each line followed by '\n'
  mutable std::optional<HeaderFields> fields_;
};

}  // namespace qmv
