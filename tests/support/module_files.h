// The library's folder for tests: a temporary one, with a classifier file in it where one is wanted.
#pragma once

#include "detect/classifier_file.h"
#include "platform/module_folder.h"
#include "tests/support/cascade_builder.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace orvane::test {

/// While it lives g_moduleFolder is an empty folder; the classifier is freed with it.
class ModuleFiles {
public:
    ModuleFiles() : before_(g_moduleFolder) { g_moduleFolder = folder_.Path().native(); }
    ~ModuleFiles() {
        FreeClassifier(g_classifier);
        g_classifier = {};
        g_moduleFolder = before_;
    }
    ModuleFiles(const ModuleFiles&) = delete;
    ModuleFiles& operator=(const ModuleFiles&) = delete;

    /// Writes "Orvane.dat" and loads it; the load's result.
    int32 Load(const std::string& bytes) {
        EXPECT_TRUE(WriteClassifier(folder_.Path(), bytes));
        return LoadClassifier();
    }
    int32 Load(const CascadeFile& file) { return Load(file.Bytes()); }

    const std::filesystem::path& Path() const { return folder_.Path(); }

private:
    TempFolder folder_;
    PathString before_;
};

} // namespace orvane::test
