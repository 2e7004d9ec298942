#include "primitives/processor.h"

#include <gtest/gtest.h>

#include <ostream>

namespace orvane::test {
namespace {

/// What a processor of the test's own answers.
struct Fake {
    CpuidRegisters vendor;
    CpuidRegisters one;
    uint32 largestExtended;
    uint32 extendedEdx;
};
Fake g_fake;

bool Present() { return true; }
bool Absent() { return false; }

CpuidRegisters Answer(uint32 leaf) {
    switch (leaf) {
    case 0:
        return g_fake.vendor;
    case 1:
        return g_fake.one;
    case 0x80000000:
        return {g_fake.largestExtended, 0, 0, 0};
    case 0x80000001:
        return {0xFFFFFFFF, 0xFFFFFFFF, 0xFFFFFFFF, g_fake.extendedEdx};
    default:
        ADD_FAILURE() << "leaf " << leaf << " was asked";
        return {};
    }
}

enum Feature : uint32 {
    kMmx = 1,
    kSse = 2,
    kSse2 = 4,
    kSse3 = 8,
    kSsse3 = 16,
    kThreads = 32,
    kLong = 64,
    kAll = 127,
    kUpToSse2 = kMmx | kSse | kSse2,
};

constexpr CpuidRegisters kKnownVendor = {0, 0x756E6547, 0x6C65746E, 0x49656E69};
constexpr CpuidRegisters kOtherVendor = {0, 0x41414141, 0x43434343, 0x42424242};

int32 CodeOf(CpuidRegisters vendor, uint32 family, uint32 features) {
    g_fake = {};
    g_fake.vendor = vendor;
    // Every bit that must play no part is set: stepping, model, extended family; the APIC number.
    g_fake.one.eax = 0xFFFF00FF | family << 8;
    g_fake.one.ebx = 0xFF00FFFF;
    if (features & kMmx) g_fake.one.edx |= 1u << 23;
    if (features & kSse) g_fake.one.edx |= 1u << 25;
    if (features & kSse2) g_fake.one.edx |= 1u << 26;
    if (features & kSse3) g_fake.one.ecx |= 1u;
    if (features & kSsse3) g_fake.one.ecx |= 1u << 9;
    if (features & kThreads) {
        g_fake.one.edx |= 1u << 28;
        g_fake.one.ebx |= 2u << 16;
    }
    g_fake.largestExtended = 0x80000008;
    if (features & kLong) g_fake.extendedEdx = 1u << 29;
    return ProcessorCode({Present, Answer});
}

struct Row {
    uint32 family;
    uint32 features;
    int32 code;
    int32 processorClass;
};

TEST(Processor, TheKnownVendorsFamiliesFollowTheTable) {
    const Row rows[] = {
        {7, 0, 16, 1},
        {7, kAll, 16, 1},
        {15, kAll & ~kSse2, 17, 1},
        {15, kUpToSse2 | kThreads | kLong | kSsse3, 7, 2},
        {15, kUpToSse2, 6, 2},
        {15, kUpToSse2 | kSse3, 8, 3},
        {15, kUpToSse2 | kSse3 | kSsse3 | kThreads, 8, 3},
        {15, kUpToSse2 | kSse3 | kLong, 32, 3},
        {15, kAll, 33, 0},
        {5, kMmx, 2, 0},
        {5, kAll & ~kMmx, 1, 0},
        {6, kAll, 33, 0},
        {6, kSse2 | kSsse3, 33, 0},
        {6, kUpToSse2 | kSse3, 10, 0},
        {6, kUpToSse2, 9, 2},
        {6, kMmx | kSse | kSse3 | kSsse3, 5, 1},
        {6, kMmx, 4, 0},
        {6, 0, 3, 0},
    };
    for (const Row& r : rows) {
        const int32 code = CodeOf(kKnownVendor, r.family, r.features);
        EXPECT_EQ(r.code, code) << "family " << r.family << ", features " << r.features;
        EXPECT_EQ(r.processorClass, ProcessorClass(code)) << "code " << code;
    }
}

TEST(Processor, AnyOtherVendorOrFamilyGoesByFeaturesAlone) {
    const Row rows[] = {
        {0, kAll, 33, 0},      {0, kSsse3, 33, 0},      {0, kUpToSse2 | kSse3, 66, 0},
        {0, kUpToSse2, 65, 0}, {0, kMmx | kSse, 64, 0}, {0, kMmx, 0, 0},
        {0, 0, 0, 0},
    };
    for (const Row& r : rows) {
        for (uint32 family = 0; family < 16; ++family) {
            EXPECT_EQ(r.code, CodeOf(kOtherVendor, family, r.features)) << "family " << family;
            if (family == 5 || family == 6 || family == 7 || family == 15) continue;
            EXPECT_EQ(r.code, CodeOf(kKnownVendor, family, r.features)) << "known vendor, family " << family;
        }
        EXPECT_EQ(r.processorClass, ProcessorClass(r.code));
    }
}

TEST(Processor, TheVendorIsKnownByAllThreeWords) {
    for (int word = 0; word < 3; ++word) {
        CpuidRegisters vendor = kKnownVendor;
        (word == 0 ? vendor.ebx : word == 1 ? vendor.ecx : vendor.edx) ^= 1;
        EXPECT_EQ(65, CodeOf(vendor, 6, kUpToSse2)) << "word " << word;
    }
    EXPECT_EQ(9, CodeOf(kKnownVendor, 6, kUpToSse2));
}

TEST(Processor, HyperThreadingNeedsTheBitAndASecondLogicalProcessor) {
    ASSERT_EQ(7, CodeOf(kKnownVendor, 15, kUpToSse2 | kThreads));
    g_fake.one.ebx = 1u << 16;
    EXPECT_EQ(6, ProcessorCode({Present, Answer})) << "one logical processor";
    g_fake.one.ebx = 2u << 16;
    EXPECT_EQ(7, ProcessorCode({Present, Answer}));
    g_fake.one.edx &= ~(1u << 28);
    EXPECT_EQ(6, ProcessorCode({Present, Answer})) << "no bit";
}

TEST(Processor, AnAbsentExtendedLeafMeansNo64BitExtension) {
    ASSERT_EQ(32, CodeOf(kKnownVendor, 15, kUpToSse2 | kSse3 | kLong));
    g_fake.largestExtended = 0x80000000;
    EXPECT_EQ(8, ProcessorCode({Present, Answer}));
    g_fake.largestExtended = 0;
    EXPECT_EQ(8, ProcessorCode({Present, Answer}));
}

TEST(Processor, WithoutCpuidTheCodeIsZeroAndTheClassGeneric) {
    const auto refuse = [](uint32) -> CpuidRegisters {
        ADD_FAILURE() << "CPUID was asked";
        return {};
    };
    EXPECT_EQ(0, ProcessorCode({Absent, refuse}));
    EXPECT_EQ(0, ProcessorClass(0));
}

TEST(Processor, OnlyTheNamedCodesHaveAClassOtherThanZero) {
    for (int32 code = -5; code <= 100; ++code) {
        int32 expected = 0;
        if (code == 5 || code == 16 || code == 17) expected = 1;
        if (code == 6 || code == 7 || code == 9) expected = 2;
        if (code == 8 || code == 32) expected = 3;
        EXPECT_EQ(expected, ProcessorClass(code)) << code;
    }
}

TEST(Processor, ThisOneHasACodeOfTheTable) {
    const int32 code = ProcessorCode(SystemCpuid());
    EXPECT_GE(code, 0);
    EXPECT_LE(code, 66);
    EXPECT_EQ(code, ProcessorCode(SystemCpuid())) << "the same each time";
}

} // namespace
} // namespace orvane::test
