#include "apps/sandbox/user_names.h"

#include <glib.h>

#include <memory>

#include "apps/sandbox/sandbox_texts.h"
#include "apps/sandbox/sandbox_util.h"

namespace qmv::sandbox {
namespace {


using GText = std::unique_ptr<gchar, decltype(&g_free)>;

std::string normalized(const std::string& text, GNormalizeMode mode) {
  const GText out(g_utf8_normalize(text.data(), static_cast<gssize>(text.size()), mode), g_free);
  return out ? std::string(out.get()) : text;
}

// UTF-8 of at most kMaxUserNameBytes without control, invisible or line-breaking characters,
// slash or backslash, not starting with a dot (a name is also a file name in the object store).
bool wellFormed(const std::string& name) {
  if (name.empty() || name.size() > kMaxUserNameBytes || name[0] == '.') return false;
  if (!g_utf8_validate_len(name.data(), name.size(), nullptr)) return false;
  for (const char* at = name.data(); at < name.data() + name.size(); at = g_utf8_next_char(at)) {
    const gunichar c = g_utf8_get_char(at);
    if (c == '/' || c == '\\') return false;
    switch (g_unichar_type(c)) {
      case G_UNICODE_CONTROL:
      case G_UNICODE_FORMAT:
      case G_UNICODE_LINE_SEPARATOR:
      case G_UNICODE_PARAGRAPH_SEPARATOR:
        return false;
      default:
        break;
    }
  }
  return true;
}

}  // namespace

std::string normalizedUserName(const std::string& typed) {
  if (!g_utf8_validate_len(typed.data(), typed.size(), nullptr)) return typed;
  const char* begin = typed.data();
  const char* end = typed.data() + typed.size();
  while (begin < end && g_unichar_isspace(g_utf8_get_char(begin))) begin = g_utf8_next_char(begin);
  while (end > begin) {
    const char* last = g_utf8_prev_char(end);
    if (!g_unichar_isspace(g_utf8_get_char(last))) break;
    end = last;
  }
  return normalized(std::string(begin, end), G_NORMALIZE_NFC);
}

std::string userNameKey(const std::string& name) {
  if (!g_utf8_validate_len(name.data(), name.size(), nullptr)) return name;
  const std::string compatible = normalized(name, G_NORMALIZE_NFKC);
  const GText folded(g_utf8_casefold(compatible.data(), static_cast<gssize>(compatible.size())), g_free);
  // Folding can leave text out of normal form.
  return folded ? normalized(folded.get(), G_NORMALIZE_NFKC) : compatible;
}

const char* userNameProblem(SandboxStore& db, const std::string& name, const std::string& phone) {
  if (!wellFormed(name)) return kMsgBadUserName;
  if (name == phone) return nullptr;  // a phone always belongs to its own registrant
  const std::string key = userNameKey(name);
  // Also full-width digits and the like: a name that reads as a phone is that phone's.
  if (isPhone(key)) return kMsgBadUserName;
  if (!db.queryOne("SELECT 1 FROM members WHERE name_key = ? OR phone = ?", {key, key}).is_null()) {
    return kMsgUserNameTaken;
  }
  return nullptr;
}

Status prepareUserNameKeys(SandboxStore& db) {
  return db.transact(true, [&] {
    if (db.queryOne("SELECT 1 FROM pragma_table_info('members') WHERE name = 'name_key'").is_null()) {
      db.executeScript("ALTER TABLE members ADD COLUMN name_key TEXT");
    }
    db.executeScript("CREATE INDEX IF NOT EXISTS members_name_key ON members(name_key)");
    for (const Json& row : db.query("SELECT id, user_name FROM members WHERE name_key IS NULL")) {
      db.execute("UPDATE members SET name_key = ? WHERE id = ?",
                 {userNameKey(row["user_name"].get<std::string>()), row["id"]});
    }
    return true;
  }).status();
}

}  // namespace qmv::sandbox
