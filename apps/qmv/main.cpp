#include <CLI/CLI.hpp>

#include <iostream>

#include "qmv/version.h"

int main(int argc, char** argv) {
  CLI::App app{"qmv: the client of a local-life services platform"};
  app.set_version_flag("--version", std::string("qmv ") + QMV_VERSION_STRING);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& e) {
    return app.exit(e) == 0 ? 0 : 2;
  }
  std::cout << app.help();
  return 0;
}
