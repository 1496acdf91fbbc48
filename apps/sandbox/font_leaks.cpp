// The sandbox draws its pictures with cairo and Pango over fontconfig, which keeps caches
// it never frees (and loses some while parsing its configuration): LeakSanitizer reports
// them at exit. The client's executables get the same list with the Pango text measurer;
// executables that link the sandbox without it (its tests, its fuzz target) compile this
// file themselves, since nothing would pull it out of the library.
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
