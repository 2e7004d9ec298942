// A module that knows another version of the seam than whatever it is asked for.
extern "C" __attribute__((visibility("default"))) void* orvane_video_system(int) { return nullptr; }
