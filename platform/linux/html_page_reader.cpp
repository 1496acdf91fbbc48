#include "platform/linux/html_page_reader.h"

#include <libxml/HTMLparser.h>
#include <libxml/uri.h>

#include <cstring>
#include <memory>
#include <mutex>

namespace qmv {
namespace {

struct DocFree {
  void operator()(xmlDoc* doc) const { xmlFreeDoc(doc); }
};
struct XmlFree {
  void operator()(xmlChar* text) const { xmlFree(text); }
};
using XmlText = std::unique_ptr<xmlChar, XmlFree>;

const char* text(const xmlChar* value) { return reinterpret_cast<const char*>(value); }

bool named(const xmlNode* node, const char* name) {
  return node->type == XML_ELEMENT_NODE && node->name != nullptr && xmlStrcasecmp(node->name, BAD_CAST name) == 0;
}

bool isAsciiSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; }

// Strips and collapses ASCII whitespace, as "document.title" and link texts read.
std::string collapsed(std::string_view in) {
  std::string out;
  bool space = false;
  for (const char c : in) {
    if (isAsciiSpace(c)) {
      space = !out.empty();
    } else {
      if (space) out += ' ';
      out += c;
      space = false;
    }
  }
  return out;
}

std::string contentOf(const xmlNode* node) {
  const XmlText content(xmlNodeGetContent(node));
  return content ? collapsed(text(content.get())) : std::string();
}

// A link's text, collapsed as contentOf() does, but only up to kMaxLinkTextBytes (cut on a
// character boundary): links nested in links would otherwise each copy all the text below
// them, a hundredfold the page for a few hundred bytes of markup.
class LinkText {
 public:
  std::string read(const xmlNode* node) {
    gather(node->children);
    std::size_t end = out_.size();
    if (end > kMaxLinkTextBytes) {
      end = kMaxLinkTextBytes;
      while (end > 0 && (static_cast<unsigned char>(out_[end]) & 0xC0) == 0x80) --end;
    }
    out_.resize(end);
    if (!out_.empty() && out_.back() == ' ') out_.pop_back();
    return std::move(out_);
  }

 private:
  bool full() const { return out_.size() > kMaxLinkTextBytes; }

  // The parser keeps documents a few hundred elements deep, so recursion is bounded.
  void gather(const xmlNode* node) {
    for (; node != nullptr && !full(); node = node->next) {
      if (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE) {
        if (node->content != nullptr) append(text(node->content));
      } else if (node->type == XML_ELEMENT_NODE) {
        gather(node->children);
      }
    }
  }

  void append(std::string_view in) {
    for (const char c : in) {
      if (isAsciiSpace(c)) {
        space_ = !out_.empty();
        continue;
      }
      if (full()) return;
      if (space_) out_ += ' ';
      out_ += c;
      space_ = false;
    }
  }

  std::string out_;
  bool space_ = false;
};

std::string attribute(const xmlNode* node, const char* name) {
  const XmlText value(xmlGetProp(node, BAD_CAST name));
  return value ? std::string(text(value.get())) : std::string();
}

// `href` resolved against `base`; the trimmed text itself when it cannot be resolved.
std::string resolved(const std::string& href, const std::string& base) {
  const std::string trimmed = collapsed(href);
  const XmlText absolute(xmlBuildURI(BAD_CAST trimmed.c_str(), BAD_CAST base.c_str()));
  return absolute ? std::string(text(absolute.get())) : trimmed;
}

bool isHidden(const xmlNode* node) {
  for (const char* name : {"head", "script", "style", "template", "noscript"}) {
    if (named(node, name)) return true;
  }
  return false;
}

bool isBlock(const xmlNode* node) {
  for (const char* name :
       {"p",    "div",        "li",  "ul",    "ol",   "h1",      "h2",      "h3",     "h4",     "h5",
        "h6",   "br",         "tr",  "table", "form", "section", "article", "header", "footer", "nav",
        "main", "blockquote", "pre", "hr",    "dl",   "dt",      "dd",      "body"}) {
    if (named(node, name)) return true;
  }
  return false;
}

class Walker {
 public:
  explicit Walker(std::string base) : base_(std::move(base)) {}

  void walk(const xmlNode* node, bool visible = true) {
    for (; node != nullptr; node = node->next) {
      if (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE) {
        if (visible && node->content != nullptr) text_ += text(node->content);
        continue;
      }
      if (node->type != XML_ELEMENT_NODE) continue;
      if (named(node, "title")) {
        if (!titleSeen_) page.title = contentOf(node);
        titleSeen_ = true;
        continue;
      }
      if (named(node, "a") && xmlHasProp(node, BAD_CAST "href") != nullptr) {
        page.links.push_back({LinkText().read(node), resolved(attribute(node, "href"), base_)});
      }
      // Hidden parts are still walked: the title sits in the head.
      const bool shown = visible && !isHidden(node);
      const bool block = shown && isBlock(node);
      if (block) text_ += '\n';
      walk(node->children, shown);
      if (block) text_ += '\n';
    }
  }

  // The visible text: one collapsed line per block, empty lines dropped.
  std::string lines() const {
    std::string out;
    std::size_t start = 0;
    while (start <= text_.size()) {
      const std::size_t end = std::min(text_.find('\n', start), text_.size());
      const std::string line = collapsed(std::string_view(text_).substr(start, end - start));
      if (!line.empty()) out += (out.empty() ? "" : "\n") + line;
      start = end + 1;
    }
    return out;
  }

  WebPage page;

 private:
  std::string base_;
  std::string text_;
  bool titleSeen_ = false;
};

// A <base href> changes what relative links resolve against.
std::string baseOf(const xmlNode* node, const std::string& url) {
  for (; node != nullptr; node = node->next) {
    if (named(node, "base") && xmlHasProp(node, BAD_CAST "href") != nullptr) {
      return resolved(attribute(node, "href"), url);
    }
    if (node->type == XML_ELEMENT_NODE) {
      std::string found = baseOf(node->children, url);
      if (!found.empty()) return found;
    }
  }
  return {};
}

}  // namespace

WebPage readHtmlPage(std::string_view html, const std::string& url, const std::string& charset) {
  static std::once_flag once;
  std::call_once(once, [] { xmlInitParser(); });
  WebPage page;
  page.url = url;
  if (html.empty() || html.size() > kMaxHtmlPageBytes) return page;
  constexpr int kOptions = HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET;
  // libxml2 reads a charset it does not know as its default rather than refusing the page.
  const std::unique_ptr<xmlDoc, DocFree> doc(htmlReadMemory(html.data(), static_cast<int>(html.size()), url.c_str(),
                                                            charset.empty() ? "UTF-8" : charset.c_str(), kOptions));
  if (!doc) return page;
  const xmlNode* root = xmlDocGetRootElement(doc.get());
  std::string base = baseOf(root, url);
  Walker walker(base.empty() ? url : base);
  walker.walk(root);
  walker.page.url = url;
  walker.page.text = walker.lines();
  return std::move(walker.page);
}

}  // namespace qmv
