// Classification of the processor. Leaves are read once each, in the order in which they are needed.
#include "primitives/processor.h"

#if defined(__i386__) || defined(__x86_64__)
#include <cpuid.h>
#endif

namespace orvane {
namespace {

#if defined(__i386__) || defined(__x86_64__)

bool CpuidAvailable() {
    // The compiler's helper toggles the ID bit of the flags register where CPUID may be absent.
    return __get_cpuid_max(0, nullptr) != 0;
}

CpuidRegisters QueryCpuid(uint32 leaf) {
    CpuidRegisters r{};
    __cpuid(leaf, r.eax, r.ebx, r.ecx, r.edx);
    return r;
}

#else

bool CpuidAvailable() { return false; }
CpuidRegisters QueryCpuid(uint32) { return {}; }

#endif

bool Bit(uint32 word, int bit) { return (word >> bit & 1) != 0; }

struct Features {
    uint32 family;
    bool mmx, sse, sse2, sse3, ssse3, hyperThreading, longMode;
};

Features ReadFeatures(const CpuidSource& cpuid) {
    const CpuidRegisters one = cpuid.query(1);
    Features f{};
    f.family = one.eax >> 8 & 15;
    f.mmx = Bit(one.edx, 23);
    f.sse = Bit(one.edx, 25);
    f.sse2 = Bit(one.edx, 26);
    f.hyperThreading = Bit(one.edx, 28) && (one.ebx >> 16 & 255) > 1;
    f.sse3 = Bit(one.ecx, 0);
    f.ssse3 = Bit(one.ecx, 9);
    constexpr uint32 kExtended = 0x80000000, kExtendedFeatures = 0x80000001;
    if (cpuid.query(kExtended).eax >= kExtendedFeatures) f.longMode = Bit(cpuid.query(kExtendedFeatures).edx, 29);
    return f;
}

int32 CodeOfFamily15(const Features& f) {
    if (!f.sse2) return 17;
    if (!f.sse3) return f.hyperThreading ? 7 : 6;
    if (!f.longMode) return 8;
    return f.ssse3 ? 33 : 32;
}

int32 CodeOfFamily6(const Features& f) {
    if (f.sse2) {
        if (f.ssse3) return 33;
        return f.sse3 ? 10 : 9;
    }
    if (f.sse) return 5;
    return f.mmx ? 4 : 3;
}

int32 CodeOfFeatures(const Features& f) {
    if (f.ssse3) return 33;
    if (f.sse3) return 66;
    if (f.sse2) return 65;
    return f.sse ? 64 : 0;
}

} // namespace

CpuidSource SystemCpuid() { return {CpuidAvailable, QueryCpuid}; }

int32 ProcessorCode(const CpuidSource& cpuid) {
    if (!cpuid.available()) return 0;
    const CpuidRegisters vendor = cpuid.query(0);
    const Features f = ReadFeatures(cpuid);
    if (vendor.ebx == 0x756E6547 && vendor.edx == 0x49656E69 && vendor.ecx == 0x6C65746E) {
        switch (f.family) {
        case 7:
            return 16;
        case 31:
            return 17; // a four-bit family never reaches 31
        case 15:
            return CodeOfFamily15(f);
        case 5:
            return f.mmx ? 2 : 1;
        case 6:
            return CodeOfFamily6(f);
        default:
            break;
        }
    }
    return CodeOfFeatures(f);
}

int32 ProcessorClass(int32 code) {
    switch (code) {
    case 5:
    case 16:
    case 17:
        return 1;
    case 6:
    case 7:
    case 9:
        return 2;
    case 8:
    case 32:
        return 3;
    default:
        return 0;
    }
}

} // namespace orvane
