#include "apps/gtk/gtk_application.h"

int main(int argc, char** argv) { return qmv::gtk::runGtkApplication(argc, argv); }
