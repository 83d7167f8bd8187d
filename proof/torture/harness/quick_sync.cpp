// Preloaded into the tool, so that its saves need not wait for the whole machine's disks.
extern "C" __attribute__((visibility("default"))) void sync() noexcept {}
