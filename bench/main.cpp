// orvane_bench [photograph] [benchmark options]. The classifier is looked for beside the program.
#include "bench/photo.h"
#include "primitives/dispatch.h"

#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (!orvane::bench::LoadPhoto(argc > 1 ? argv[1] : "")) return 1;
    if (orvane::SelectPrimitiveColumn() != 0) return 1; // as a session does
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
