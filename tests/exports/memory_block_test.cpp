// Blocks of a host that are locked, foreign, freed or gone: a code each time, and the block as it was.
#include "tests/exports/exports_fixture.h"

#include <cerrno>
#include <cstdint>
#include <vector>

#ifndef _WIN32
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace orvane {
namespace {

using test::HostBlock;

class MemoryBlock : public test::ExportsTest {
protected:
    MemoryBlock() { OpenHidden(); }

    void ExpectRefused(orv_Handle handle, const char* what) {
        EXPECT_EQ(lib.orv_DetectFacePicture(handle), ORV_NO_PICTURE) << what;
        EXPECT_EQ(lib.orv_GetBitDepth(handle), ORV_LOCK_FAILED) << what;
        EXPECT_EQ(Detect(test::SmallFaceScene()), ORV_OK) << "after " << what;
    }
};

TEST_F(MemoryBlock, OfNoLengthIsRefused) {
    ExpectRefused(HostBlock(std::vector<std::uint8_t>()).Handle(), "no byte at all");
}

TEST_F(MemoryBlock, ThatTheHostHoldsLockedIsReadAndStaysLocked) {
    const HostBlock block(test::SmallFaceScene());
    const std::vector<std::uint8_t> before = block.Bytes();
    void* const held = orv_BlockLock(block.Handle());
    for (int times = 0; times < 2; ++times) {
        EXPECT_EQ(lib.orv_DetectFacePicture(block.Handle()), ORV_OK);
        EXPECT_EQ(lib.orv_GetBitDepth(block.Handle()), 24);
        EXPECT_EQ(orv_BlockLock(block.Handle()), held) << "it has not moved";
        orv_BlockUnlock(block.Handle());
    }
    orv_BlockUnlock(block.Handle());
    EXPECT_EQ(block.Bytes(), before);
}

TEST_F(MemoryBlock, OfAnOutputBelongsToTheHostAlone) {
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    HostBlock first, second;
    ASSERT_EQ(lib.orv_GetOutputImage(first.Receive()), ORV_OK);
    ASSERT_EQ(lib.orv_GetOutputImage(second.Receive()), ORV_OK);
    const std::vector<std::uint8_t> bytes = second.Bytes();
    orv_BlockFree(*first.Receive());
    ASSERT_EQ(lib.orv_ReleaseDLL(), ORV_OK);
    EXPECT_EQ(second.Bytes(), bytes) << "neither another block nor the session takes it along";
}

#ifdef _WIN32

UINT LockCount(orv_Handle handle) { return GlobalFlags(handle) & GMEM_LOCKCOUNT; }

TEST_F(MemoryBlock, KeepsItsLockCountWhateverComesOfTheCall) {
    const HostBlock good(test::SmallFaceScene());
    const HostBlock bad(test::HeaderFor(16, 12), {});
    const HostBlock tooShort(std::vector<std::uint8_t>(3, 24));
    for (const HostBlock* block : {&good, &bad, &tooShort}) {
        for (const UINT locks : {0U, 1U, 3U}) {
            for (UINT i = 0; i < locks; ++i) GlobalLock(block->Handle());
            lib.orv_DetectFacePicture(block->Handle());
            lib.orv_GetBitDepth(block->Handle());
            EXPECT_EQ(LockCount(block->Handle()), locks);
            for (UINT i = 0; i < locks; ++i) GlobalUnlock(block->Handle());
        }
    }
    HostBlock output;
    ASSERT_EQ(Detect(test::SmallFaceScene()), ORV_OK);
    ASSERT_EQ(lib.orv_GetOutputImage(output.Receive()), ORV_OK);
    EXPECT_EQ(LockCount(output.Handle()), 0U) << "what the host gets is not locked";
}

TEST_F(MemoryBlock, LockedAsOftenAsTheSystemCountsIsRead) {
    const HostBlock block(test::SmallFaceScene());
    for (int i = 0; i < 0xFF; ++i) GlobalLock(block.Handle());
    EXPECT_EQ(lib.orv_DetectFacePicture(block.Handle()), ORV_OK);
    while (LockCount(block.Handle()) != 0) GlobalUnlock(block.Handle());
}

TEST_F(MemoryBlock, OfFixedMemoryIsRead) {
    const std::vector<std::uint8_t> bytes = HostBlock(test::SmallFaceScene()).Bytes();
    HGLOBAL fixed = GlobalAlloc(GMEM_FIXED, bytes.size());
    std::memcpy(fixed, bytes.data(), bytes.size());
    EXPECT_EQ(lib.orv_DetectFacePicture(fixed), ORV_OK);
    EXPECT_EQ(lib.orv_GetBitDepth(fixed), 24);
    GlobalFree(fixed);
}

TEST_F(MemoryBlock, ThatWasDiscardedIsRefused) {
    const HostBlock block(test::SmallFaceScene());
    ASSERT_NE(GlobalReAlloc(block.Handle(), 0, GMEM_MOVEABLE), nullptr);
    ASSERT_NE(GlobalFlags(block.Handle()) & GMEM_DISCARDED, 0U);
    ExpectRefused(block.Handle(), "a discarded block");
}

TEST_F(MemoryBlock, ThatWasFreedIsRefused) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{40}, std::size_t{1} << 24}) {
        orv_Handle freed = orv_BlockAlloc(size);
        orv_BlockFree(freed);
        ExpectRefused(freed, "a freed block");
    }
}

TEST_F(MemoryBlock, ThatIsNoneIsRefused) {
    static std::uint8_t data[256] = {40};
    std::uint8_t stack[256] = {40};
    ExpectRefused(reinterpret_cast<orv_Handle>(std::uintptr_t{1}), "a number");
    ExpectRefused(reinterpret_cast<orv_Handle>(std::uintptr_t{0x12346}), "another number");
    ExpectRefused(INVALID_HANDLE_VALUE, "the handle that stands for none");
    ExpectRefused(GetCurrentProcess(), "a handle of the system's");
    ExpectRefused(GetDesktopWindow(), "a window");
    ExpectRefused(GetModuleHandleW(nullptr), "a module");
    ExpectRefused(data, "data of the program's");
    ExpectRefused(stack, "a place on the stack");
    const HostBlock block(test::SmallFaceScene());
    std::uint8_t* inside = static_cast<std::uint8_t*>(orv_BlockLock(block.Handle())) + 16;
    ExpectRefused(inside, "a place inside a block");
    orv_BlockUnlock(block.Handle());
}

#else

TEST_F(MemoryBlock, ThatIsNoneIsRefused) {
    alignas(16) std::uint8_t stack[256] = {40};
    ExpectRefused(stack + 64, "a place on the stack");
    const HostBlock block(test::SmallFaceScene());
    ExpectRefused(static_cast<std::uint8_t*>(block.Handle()) + 16, "a place inside a block");
}

TEST_F(MemoryBlock, ThatCannotBeReadIsRefused) {
    for (const std::uintptr_t number : {1, 8, 15, 16, 24, 0x1000, 0x12346, 0x12348}) {
        ExpectRefused(reinterpret_cast<orv_Handle>(number), "a number");
    }
    ExpectRefused(reinterpret_cast<orv_Handle>(~std::uintptr_t{7}), "the last address");
    // The page in front of the second one, where a block's tag would lie, is closed, then gone.
    const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    void* const pages = ::mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(pages, MAP_FAILED);
    std::uint8_t* const second = static_cast<std::uint8_t*>(pages) + page;
    ASSERT_EQ(::mprotect(pages, page, PROT_NONE), 0);
    for (const int offset : {0, 8}) ExpectRefused(second + offset, "a place behind a closed page");
    ASSERT_EQ(::munmap(pages, page), 0);
    for (const int offset : {0, 8}) ExpectRefused(second + offset, "a place behind a page that is gone");
    errno = 7;
    EXPECT_EQ(lib.orv_GetBitDepth(second), ORV_LOCK_FAILED);
    EXPECT_EQ(errno, 7) << "the host's own";
    ::munmap(second, page);
}

#ifndef __SANITIZE_ADDRESS__ // which reports the look at it, rightly: only the host can keep from it
TEST_F(MemoryBlock, ThatWasJustFreedHasLostItsTag) {
    const HostBlock neighbour(std::vector<std::uint8_t>(1000)); // keeps the pages where they are
    orv_Handle freed = orv_BlockAlloc(1000);
    orv_BlockFree(freed);
    EXPECT_EQ(lib.orv_GetBitDepth(freed), ORV_LOCK_FAILED);
    EXPECT_EQ(lib.orv_DetectFacePicture(freed), ORV_NO_PICTURE);
}
#endif

#endif

} // namespace
} // namespace orvane
