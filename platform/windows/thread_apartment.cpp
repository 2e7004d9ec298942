#include "platform/thread_apartment.h"

#include <objbase.h>

namespace orvane {

// A thread that the host made part of a multi-threaded apartment stays so: the call fails and is not undone.
ThreadApartment::ThreadApartment()
    : thread_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) ? GetCurrentThreadId() : 0) {}

ThreadApartment::~ThreadApartment() {
    if (thread_ == GetCurrentThreadId()) CoUninitialize();
}

} // namespace orvane
