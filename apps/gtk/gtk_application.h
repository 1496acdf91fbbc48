#pragma once
// The libadwaita application around the front end: one window per process, URLs given
// on the command line or by the desktop (qqqmmmvvv://) opened in the running instance,
// and the stylesheet.
#include <string>
#include <vector>

#include "apps/gtk/gtk_front_end.h"

namespace qmv::gtk {

// Runs the client with `argv` (--home DIR, --server URL, --at LAT,LON, then URLs).
// Returns the process's exit status.
int runGtkApplication(int argc, char** argv);

// Reads the client's own options out of `args`, leaving the rest (program name, URLs).
// Fails with the message to print for a malformed option.
Status takeOptions(std::vector<std::string>& args, FrontEndOptions& options);

// Loads the client's stylesheet for the default display.
void loadStyle();

}  // namespace qmv::gtk
