# Every third-party library comes from a Debian package installed by scripts/setup. Each
# layer's target links the ones it uses itself (CMakeLists.txt, apps/CMakeLists.txt).
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(CURL REQUIRED)
find_package(SQLite3 REQUIRED)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)
find_package(nlohmann_json 3.10 REQUIRED)
# The fast reading of server answers (core/common/fast_json.h); nlohmann stays the value type.
find_package(simdjson 3 REQUIRED)
find_package(CLI11 REQUIRED)
find_package(GTest REQUIRED)
find_package(benchmark QUIET)
pkg_check_modules(PCRE2 REQUIRED IMPORTED_TARGET libpcre2-8)
pkg_check_modules(HTTPLIB REQUIRED IMPORTED_TARGET cpp-httplib)
# Line editing of the interactive shell (the CLI only).
pkg_check_modules(LIBEDIT REQUIRED IMPORTED_TARGET libedit)
# Text measurement: Pango over FreeType and fontconfig, no drawing surface needed.
pkg_check_modules(PANGOFT2 REQUIRED IMPORTED_TARGET pangoft2)
# The sandbox's generated pictures: cairo surfaces with text set by Pango.
pkg_check_modules(PANGOCAIRO REQUIRED IMPORTED_TARGET pangocairo cairo)
# GLib's main context: the interface thread of the graphical client.
pkg_check_modules(GLIB REQUIRED IMPORTED_TARGET glib-2.0)

# QR codes: zbar decodes the invitation scan, libqrencode draws redemption codes, libpng reads/writes them.
pkg_check_modules(ZBAR REQUIRED IMPORTED_TARGET zbar)
pkg_check_modules(QRENCODE REQUIRED IMPORTED_TARGET libqrencode)
pkg_check_modules(PNG REQUIRED IMPORTED_TARGET libpng)
# Pictures from outside (qmv_codecs): JPEG through libjpeg-turbo, WebP through libwebp.
pkg_check_modules(LIBJPEG REQUIRED IMPORTED_TARGET libjpeg)
pkg_check_modules(LIBWEBP REQUIRED IMPORTED_TARGET libwebp)

# Secrets and cookies: the desktop's keyring through libsecret (the stored password),
# and the public-suffix list through libpsl (no cookie for "com").
# Only the keyring adapter includes libsecret's headers: its include path is set on that
# file alone, so that every other file keeps its compiler cache hits.
pkg_check_modules(LIBSECRET REQUIRED libsecret-1)
pkg_check_modules(PSL REQUIRED libpsl)
set_property(SOURCE ${CMAKE_SOURCE_DIR}/platform/linux/libsecret_store.cpp APPEND PROPERTY
  INCLUDE_DIRECTORIES ${LIBSECRET_INCLUDE_DIRS})

# HTML: libxml2's forgiving HTML parser reads the server pages of the headless web view.
pkg_check_modules(LIBXML2 REQUIRED IMPORTED_TARGET libxml-2.0)

# The graphical client: gtkmm for the widgets, libadwaita's C API for the adaptive
# pieces, libshumate for the map, GeoClue for the position. Optional, so that a machine
# without them still builds the core, the CLI and the sandbox.
if(QMV_BUILD_GTK)
  pkg_check_modules(QMV_GTK IMPORTED_TARGET gtkmm-4.0 libadwaita-1 shumate-1.0 libgeoclue-2.0)
  # WebKitGTK draws the server pages; without it the client falls back to the headless
  # web view and shows a page's text.
  pkg_check_modules(QMV_WEBKIT IMPORTED_TARGET webkitgtk-6.0)
endif()
