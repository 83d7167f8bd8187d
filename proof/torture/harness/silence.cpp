// The programs' log: what the library records in a device's log is not what they are about.
extern "C" __attribute__((visibility("default"))) void UTIL_LOG_Print(int /*level*/,
                                                                      char* /*prefix*/,
                                                                      char* /*format*/, ...) {}
