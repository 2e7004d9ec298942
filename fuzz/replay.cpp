// replay FOLDER: hands every file of a folder to a target, as the fuzzer would. A finding ends the process.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

int main(int count, char** arguments) {
    if (count != 2) {
        std::fputs("usage: replay FOLDER\n", stderr);
        return 2;
    }
    std::set<std::filesystem::path> files; // in one order everywhere
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(arguments[1], error)) files.insert(entry.path());
    for (const auto& path : files) {
        std::ifstream file(path, std::ios::binary);
        const std::string content{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        if (!file.good()) {
            std::fprintf(stderr, "%s can't be read\n", path.c_str());
            return 1;
        }
        std::fprintf(stderr, "%s\n", path.filename().c_str()); // the last one is the one that ended it
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
    }
    std::printf("%zu inputs of '%s'\n", files.size(), arguments[1]);
    return files.empty() ? 1 : 0; // none would be no test
}
