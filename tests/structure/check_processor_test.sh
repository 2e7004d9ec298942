#!/usr/bin/env bash
# check_processor_test.sh COMPILER: check_processor.sh passes an object of what processors with SSE2 have and notices
# instructions of each newer kind, data among code and a file without symbols.
set -euo pipefail
check=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)/check_processor.sh
compiler=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
failures=0

# judge EXPECTED WHAT WORD: what the check makes of code.o, and a word that it says about it.
judge() {
    local result=passes
    bash "$check" code.o >output 2>&1 || result=fails
    if [ "$result" != "$1" ] || ! grep -qF -- "$3" output; then
        echo "$2 should be: $1 ($3), but it: $result"
        cat output
        failures=$((failures + 1))
    fi
}

# expect EXPECTED INSTRUCTION [FUNCTION]: an object with a function of this instruction.
expect() {
    local function=${3:-work} word=${2%% *}
    printf '.text\n.globl "%s"\n"%s":\n\t%s\n\tret\n' "$function" "$function" "$2" >code.s
    "$compiler" -c -Wa,-mindex-reg -o code.o code.s
    if [ "$1" = passes ]; then word='no more of a processor than SSE2'; fi
    judge "$1" "$2" "$word"
}
for line in 'paddq %xmm1, %xmm2' 'cvttpd2dq %xmm1, %xmm2' 'sqrtsd %xmm1, %xmm2' 'pshufd $1, %xmm1, %xmm2' 'pause' \
    'cmovne %eax, %ecx' 'cmpxchg8b (%eax)' 'fucomip %st(1)' 'rep bsf %eax, %ecx' 'bsr %eax, %ecx' 'cpuid' 'mfence' \
    'nopw 0x0(%eax,%eax,1)' 'lea 0x0(%esi,%eiz,1), %esi' 'rep stosl' 'call work' 'jmp work'; do
    expect passes "$line"
done
for line in 'haddps %xmm1, %xmm2' 'fisttpl (%eax)' 'lddqu (%eax), %xmm1' 'movddup %xmm1, %xmm2' 'pshufb %xmm1, %xmm2' \
    'pabsd %xmm1, %xmm2' 'pmulld %xmm1, %xmm2' 'roundsd $1, %xmm1, %xmm2' 'blendvps %xmm1, %xmm2' \
    'pcmpgtq %xmm1, %xmm2' 'crc32 %eax, %ecx' 'popcnt %eax, %ecx' 'lzcnt %eax, %ecx' 'andn %eax, %ecx, %edx' \
    'blsr %eax, %ecx' 'pdep %eax, %ecx, %edx' 'shlx %eax, %ecx, %edx' 'movbe (%eax), %ecx' 'adcx %eax, %ecx' \
    'vaddps %xmm1, %xmm2, %xmm3' 'vpaddd %ymm1, %ymm2, %ymm3' 'vfmadd213sd %xmm1, %xmm2, %xmm3' \
    'vaddps %zmm1, %zmm2, %zmm3' 'aesenc %xmm1, %xmm2' 'pclmulhqlqdq %xmm1, %xmm2' 'sha1nexte %xmm1, %xmm2' \
    'extrq %xmm1, %xmm2' 'rdrand %eax' 'rdseed %eax' 'rdtscp' 'xgetbv' 'monitor' 'prefetchw (%eax)' 'endbr32'; do
    expect fails "$line"
done
for name in '.text$_ZNSt12_GLOBAL__N_112__x86_rdrandEPv' _ZNSt12_GLOBAL__N_112__x86_rdrandEPv; do
    expect fails 'rdseed %eax' "$name"
done
expect passes 'rdrand %eax' '.text$_ZNSt12_GLOBAL__N_112__x86_rdrandEPv'
printf '.text\nwork: .byte 0x0f, 0x04\n' >code.s # no instruction at all
"$compiler" -c -Wa,-mindex-reg -o code.o code.s
judge fails 'an unknown instruction' '(bad)'
expect passes '.section .ctors, "ax"; .byte 0xff, 0xff; .text; nop'
expect passes 'ret'
strip code.o
judge fails 'a stripped object' 'no symbols'

if [ "$failures" -gt 0 ]; then exit 1; fi
echo "every rule notices its breach"
