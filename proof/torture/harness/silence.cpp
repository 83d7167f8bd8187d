// Drops what the library logs: the programs do not look at it.
extern "C" __attribute__((visibility("default"))) void UTIL_LOG_Print(int /*level*/,
                                                                      char* /*prefix*/,
                                                                      char* /*format*/, ...) {}
