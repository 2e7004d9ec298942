// The evaluation from its files to its tables.
#include "tools/train/evaluate.h"

#include <gtest/gtest.h>

namespace orvane::train {
namespace {

TEST(Evaluation, WithoutItsFilesFails) {
    std::FILE* out = std::tmpfile();
    ASSERT_NE(out, nullptr);
    EvaluateOptions options;
    options.data = testing::TempDir() + "orvane_no_such_folder";
    options.classifier = options.data + "/none.dat";
    EXPECT_EQ(Evaluate(options, out), 1);
    std::fclose(out);
}

} // namespace
} // namespace orvane::train
