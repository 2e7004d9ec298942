// orvane_bench_plain PHOTO OUTPUT WIDTH HEIGHT: the whole program that the tool's is measured beside.
#include "bench/linux/picture_library.h"

#include <cstdlib>

int main(int argc, char** argv) {
    if (argc != 5) return 1;
    orvane::bench::PlainTimes times;
    return orvane::bench::ScalePlainly(argv[1], argv[2], {std::atoi(argv[3]), std::atoi(argv[4])}, &times) ? 0 : 1;
}
