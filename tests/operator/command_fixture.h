// A command of the operator's tool over the played library: what it returns, what it says, what it leaves in a
// folder.
#pragma once

#include "tests/operator/played_library.h"
#include "tests/tools/temp_folder.h"
#include "tools/operator/options.h"
#include "tools/operator/outcome.h"
#include "tools/support/picture_io.h"

#include <gtest/gtest.h>

namespace orvane::tools {

using test::g_played;
using Names = std::vector<std::string>;

class OperatorCommandTest : public testing::Test {
protected:
    OperatorCommandTest() {
        g_played = {};
        g_played.outputWidth = 480;
        g_played.outputHeight = 860;
        options_.output = folder_ / "b.png";
    }

    template <typename Command>
    OperatorExit Captured(Command command) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const OperatorExit code = command();
        out_ = testing::internal::GetCapturedStdout();
        err_ = testing::internal::GetCapturedStderr();
        return code;
    }

    /// What was written; it must have been told, and nothing else.
    Picture WrittenPortrait() const {
        EXPECT_EQ(out_, options_.output + ": 480x860, result 0\n");
        EXPECT_EQ(err_, "");
        Picture portrait;
        std::string error;
        EXPECT_TRUE(ReadPicture(options_.output, &portrait, &error)) << error;
        return portrait;
    }

    TempFolder folder_;
    OperatorOptions options_;
    std::string out_;
    std::string err_;
};

} // namespace orvane::tools
