// What calls of the system need: handles that are closed, and error codes in the words that the tools use on
// every system.
#pragma once

#include <string>

namespace orvane::tools {

/// What GetLastError told, in words where it is common, else by its number.
std::string SystemErrorText(unsigned long code);

/// A handle that is closed at the end; INVALID_HANDLE_VALUE counts as none.
class SystemHandle {
public:
    explicit SystemHandle(void* handle) : handle_(handle) {}
    ~SystemHandle() { Close(); }
    SystemHandle(const SystemHandle&) = delete;
    SystemHandle& operator=(const SystemHandle&) = delete;

    bool IsOpen() const;
    void* Get() const { return handle_; }
    void Close();

private:
    void* handle_;
};

} // namespace orvane::tools
