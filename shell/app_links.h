#pragma once
// The application's own links, as the server's pages use them: "qmv://login" presents
// the login screen; "qmv://pay?productId=..&series=..&acount=.." opens the pay-now screen
// for that draw, or the login screen when nobody is signed in.
#include <string>

namespace qmv {

// Whether `url` names one of those screens.
bool isAppLink(const std::string& url);
// Opens the screen `url` names; false when it is no application link this client knows
// (the page then loads it as usual). REQUIRES: interface thread.
bool openAppLink(const std::string& url);

}  // namespace qmv
