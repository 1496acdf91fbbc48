#include <iostream>

#include "apps/qmv/command_registry.h"

int main(int argc, char** argv) { return qmv::cli::runCli(argc, argv, std::cout, std::cin); }
