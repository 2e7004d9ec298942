// Other programs that read what the tool wrote, so that no writer is judged by its own reader.
#pragma once

#include "tests/tools/placed_tool.h"

#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace orvane::tools {

/// What ExifTool tells of a file, by the names of its tags; numbers as numbers.
inline std::map<std::string, std::string> TagsOf(const std::string& path) {
    const ProcessResult result = RunProcess("/usr/bin/exiftool", {"-s", "-n", "-a", path}, "/");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    std::map<std::string, std::string> tags;
    for (const std::string& line : ProcessResult::Lines(result.out)) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos) continue;
        tags[line.substr(0, line.find(' '))] = line.substr(std::min(colon + 2, line.size()));
    }
    return tags;
}

/// "OK", or what ExifTool finds wrong with the structure of a file.
inline std::string Validated(const std::string& path) {
    const ProcessResult result =
        RunProcess("/usr/bin/exiftool", {"-s", "-s", "-s", "-validate", "-warning", path}, "/");
    return result.out.substr(0, result.out.find('\n'));
}

/// The rows of the list that Poppler prints of the pictures in a PDF file, each as its words.
inline std::vector<std::vector<std::string>> PicturesOf(const std::string& pdf) {
    const ProcessResult result = RunProcess("/usr/bin/pdfimages", {"-list", pdf}, "/");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    std::vector<std::vector<std::string>> rows;
    for (const std::string& line : ProcessResult::Lines(result.out)) {
        std::istringstream words(line);
        std::vector<std::string> row;
        for (std::string word; words >> word;) row.push_back(word);
        if (row.size() > 13 && row[0] != "page") rows.push_back(row);
    }
    return rows;
}

/// A page of a PDF file, counted from 1, in pixels.
inline Picture PageOf(const std::string& pdf, int page, int dpi) {
    const TempFolder folder;
    const std::string number = std::to_string(page);
    const ProcessResult result = RunProcess(
        "/usr/bin/pdftoppm",
        {"-r", std::to_string(dpi), "-f", number, "-l", number, "-singlefile", "-png", pdf, folder / "page"}, "/");
    EXPECT_EQ(result.exitCode, 0) << result.err;
    EXPECT_EQ(result.err, "") << "Poppler finds fault with the file";
    Picture picture;
    std::string error;
    EXPECT_TRUE(ReadPicture(folder / "page.png", &picture, &error)) << error;
    return picture;
}

} // namespace orvane::tools
