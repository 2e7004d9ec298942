// The kernel is asked to read the tag and the size: a signal mask from an unreadable place gives EFAULT before anything
// else is looked at, and a readable one EINVAL, since the request itself is none. It touches nothing, and every sandbox
// lets it through. The method is that of Abseil's AddressIsReadable.
#include "platform/block_prefix.h"

#define ORV_API // for the length of what stands in front of a block
#include "orvane/orvane.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/syscall.h>
#include <unistd.h>

namespace orvane {
namespace {

constexpr std::size_t kKernelMaskBytes = 8;

/// Of eight bytes at an address that is a multiple of eight.
bool IsReadable(std::uintptr_t address) {
    errno = 0;
    ::syscall(SYS_rt_sigprocmask, ~0, address, nullptr, kKernelMaskBytes);
    return errno != EFAULT;
}

} // namespace

bool MayBeBlock(const void* handle) {
    const int before = errno;
    const auto address = reinterpret_cast<std::uintptr_t>(handle);
    bool readable = address % 8 == 0 && address > ORV_BLOCK_PREFIX; // heaps give nothing else
    for (std::uintptr_t at = ORV_BLOCK_PREFIX; readable && at > 0; at -= 8) readable = IsReadable(address - at);
    errno = before;
    return readable;
}

} // namespace orvane
