// The font configuration library that Qt loads keeps its caches until the process ends and
// never frees them; the leak checker isn't to count them as ours.
extern "C" const char* __lsan_default_suppressions();

extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
