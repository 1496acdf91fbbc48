#include "apps/qmv/cli_output.h"

namespace qmv::cli {

CliOutput::CliOutput(bool json, std::ostream& out) : json_(json), out_(out) {}

void CliOutput::message(const std::string& text) {
  messages_.push_back(text);
  if (!json_) out_ << text << '\n' << std::flush;
}

void CliOutput::line(const std::string& text) {
  if (!json_) out_ << text << '\n';
}

void CliOutput::data(const std::string& key, Json value) {
  if (json_) data_[key] = std::move(value);
}

void CliOutput::finish() {
  if (!json_ || finished_) return;
  finished_ = true;
  Json doc = Json::object();
  doc["messages"] = messages_;
  doc["data"] = data_;
  // Invalid UTF-8 from a server must not abort the document.
  out_ << doc.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n' << std::flush;
}

}  // namespace qmv::cli
