// The parts of a file, one after the other: each is found from the one before, and nothing is kept of those behind, of
// which a hostile file may have millions.
#pragma once

#include <cstddef>
#include <iterator>
#include <optional>
#include <string>

namespace orvane::tools {

/// A range over the parts of `file`, which must outlive it. A Part has `End()`, the place behind it; `find` gives the
/// part that begins at a place, or none, and the first one for place 0.
template <typename Part>
class FileParts {
public:
    using Finder = std::optional<Part> (*)(const std::string& file, std::size_t at);

    FileParts(const std::string& file, Finder find) : file_(file), find_(find) {}

    class Iterator {
    public:
        using value_type = Part;
        using difference_type = std::ptrdiff_t;

        Iterator(const std::string& file, Finder find) : file_(&file), find_(find), part_(find(file, 0)) {}

        const Part& operator*() const { return *part_; }
        const Part* operator->() const { return &*part_; }
        Iterator& operator++() {
            part_ = find_(*file_, part_->End());
            return *this;
        }
        void operator++(int) { ++*this; }
        bool operator==(std::default_sentinel_t) const { return !part_.has_value(); }

    private:
        const std::string* file_;
        Finder find_;
        std::optional<Part> part_;
    };

    Iterator begin() const { return Iterator(file_, find_); }
    std::default_sentinel_t end() const { return {}; }

private:
    const std::string& file_;
    Finder find_;
};

} // namespace orvane::tools
