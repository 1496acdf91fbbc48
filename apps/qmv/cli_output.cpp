#include "apps/qmv/cli_output.h"

#include <glib.h>

#include <cstdio>

#include "core/common/utf8.h"

namespace qmv::cli {
namespace {

// A server's text or a link it sent could otherwise drive the terminal: retitle the
// window, clear the screen, hide what came before with CR, or reorder what is shown with
// an invisible direction override (a name that reads as another). C0 and C1 controls,
// DEL, bytes that are not UTF-8, format characters (general category Cf: direction
// marks and overrides, zero-width characters, the byte-order mark) and the line and
// paragraph separators are written as visible escapes (\x1b, \u009b, \u202e,
// \U000e0001); tabs stay.
bool isInvisibleLayout(gunichar c) {
  switch (g_unichar_type(c)) {
    case G_UNICODE_FORMAT:
    case G_UNICODE_LINE_SEPARATOR:
    case G_UNICODE_PARAGRAPH_SEPARATOR:
      return true;
    default:
      return false;
  }
}

}  // namespace

std::string forTerminal(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  char escape[16];
  for (std::size_t i = 0; i < text.size();) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const std::size_t length = utf8::sequenceLength(text, i);
    if (length == 0 || (byte < 0x20 && byte != '\t') || byte == 0x7F) {
      std::snprintf(escape, sizeof escape, "\\x%02x", byte);
      out += escape;
      ++i;
      continue;
    }
    const gunichar c = length == 1 ? byte : g_utf8_get_char(text.data() + i);
    if ((c >= 0x80 && c < 0xA0) || (length > 1 && isInvisibleLayout(c))) {
      std::snprintf(escape, sizeof escape, c > 0xFFFF ? "\\U%08x" : "\\u%04x", static_cast<unsigned>(c));
      out += escape;
    } else {
      out.append(text.substr(i, length));
    }
    i += length;
  }
  return out;
}

CliOutput::CliOutput(bool json, std::ostream& out) : json_(json), out_(out) {}

void CliOutput::message(const std::string& text) {
  messages_.push_back(text);
  if (!json_) out_ << forTerminal(text) << '\n' << std::flush;
}

void CliOutput::line(const std::string& text) {
  if (!json_) out_ << forTerminal(text) << '\n';
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
  out_ << dumpJson(doc) << '\n' << std::flush;
}

}  // namespace qmv::cli
