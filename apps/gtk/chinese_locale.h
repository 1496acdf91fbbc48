#pragma once
// The client speaks Chinese throughout, GTK's and WebKit's own texts included (the file
// chooser, the web view's error pages), whatever language the desktop is set to: a
// Chinese client whose dialogs come up half in English reads as broken.
//
// Choice: when the member's messages are not Chinese already, the process takes the
// zh_CN.UTF-8 locale as a whole (LC_ALL and LANGUAGE in its environment), so that GTK's
// own setlocale and WebKit's helper processes follow, and the file chooser's dates agree
// with its words. Programs the client opens for the member (a browser for a link) get
// his own locale back. Without zh_CN.UTF-8 on the system (Debian: locales-all, or
// locales with that locale generated) nothing changes: GTK's texts stay in the desktop's
// language, the client's own are Chinese either way.
#include <gio/gio.h>

namespace qmv::gtk {

// Whether gettext gives Chinese for a messages locale `messages` (setlocale's name for
// LC_MESSAGES) and a LANGUAGE list `language` (null or empty when unset): LANGUAGE is
// read only under a real locale, and its first entry wins.
bool messagesAreChinese(const char* messages, const char* language);

// Call before GTK starts, once. Returns whether GTK's texts will be Chinese.
bool speakChinese();

// Gives programs started through `context` the locale the member started the client
// with (nothing when speakChinese changed nothing).
void restoreMemberLocale(GAppLaunchContext* context);

}  // namespace qmv::gtk
