// A module that knows another version of the seam than whatever it is asked for.
extern "C" __attribute__((visibility("default"))) void* orvane_window_system(int) { return nullptr; }
