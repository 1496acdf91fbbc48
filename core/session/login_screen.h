#pragma once
// The session rule of the screens a page link or a payment opens: without a session the
// login screen comes instead.

namespace qmv {

// Whether a member is signed in with a session to send.
bool hasSession();

// Presents the login screen inside its own navigation layer, unless it is on top already:
// several requests or links may ask at once, and one login screen is enough.
void presentLoginScreen();

}  // namespace qmv
