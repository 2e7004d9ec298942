// What kind of processor this is, as a pure function of CPUID.
#pragma once

#include "primitives/types.h"

namespace orvane {

/// The four registers that CPUID answers with.
struct CpuidRegisters {
    uint32 eax;
    uint32 ebx;
    uint32 ecx;
    uint32 edx;
};

/// Answers a CPUID leaf; tests put processors of their own here. `available` tells whether the
/// instruction exists at all.
struct CpuidSource {
    bool (*available)();
    CpuidRegisters (*query)(uint32 leaf);
};

/// The processor that this process runs on. Elsewhere than on x86 CPUID is not available.
CpuidSource SystemCpuid();

/// Processor code 0 to 66 by vendor, family and features.
int32 ProcessorCode(const CpuidSource& cpuid);

/// Class 0 to 3 of a processor code: the row of the waterfall table to walk. Only a handful of old
/// processors are known by name; every other one, also every newer one, is class 0.
int32 ProcessorClass(int32 code);

} // namespace orvane
