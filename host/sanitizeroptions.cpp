// Options of the address sanitizer for a program that loads the plug-in; nothing in other builds.

#ifdef __SANITIZE_ADDRESS__

/// Program and plug-in bring the same class data along, of which the program's are used: what the
/// sanitizer would report as a fault is how the two share them.
extern "C" const char* __asan_default_options();

extern "C" const char* __asan_default_options()
{
    return "detect_odr_violation=0";
}

#endif
