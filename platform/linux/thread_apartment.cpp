#include "platform/thread_apartment.h"

namespace orvane {

ThreadApartment::ThreadApartment() = default;

ThreadApartment::~ThreadApartment() = default;

} // namespace orvane
