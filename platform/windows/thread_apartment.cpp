#include "platform/thread_apartment.h"

#include <objbase.h>

namespace orvane {

// The handle keeps the system from giving the thread's number to another one. A thread that the host made part of a
// multi-threaded apartment stays so: the call fails and is not undone.
ThreadApartment::ThreadApartment() {
    const HANDLE process = GetCurrentProcess();
    if (!DuplicateHandle(process, GetCurrentThread(), process, &thread_, THREAD_QUERY_LIMITED_INFORMATION, FALSE, 0)) {
        return;
    }
    if (SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) return;
    CloseHandle(thread_);
    thread_ = nullptr;
}

ThreadApartment::~ThreadApartment() {
    if (thread_ == nullptr) return;
    if (GetThreadId(thread_) == GetCurrentThreadId()) CoUninitialize();
    CloseHandle(thread_);
}

} // namespace orvane
