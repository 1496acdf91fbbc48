// fontconfig, Pango, HarfBuzz and cairo keep caches they never free (fontconfig even loses
// some while parsing its configuration), which LeakSanitizer reports at exit. A program
// takes one such list, so the sanitizer tree compiles this file into every executable
// (see CMakeLists.txt) rather than into a library that only some of them pull in.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QMV_ADDRESS_SANITIZER 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(QMV_ADDRESS_SANITIZER)
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig.so\nleak:libpangoft2-1.0.so\nleak:libpango-1.0.so\nleak:libharfbuzz.so\n"
         "leak:libpangocairo-1.0.so\nleak:libcairo.so\n";
}
#endif
