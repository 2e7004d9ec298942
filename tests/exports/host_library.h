// The built library as a host has it: a file in a folder, loaded at run time, its functions found by name.
#pragma once

#include "orvane/orvane.h"
#include "tests/support/temp_folder.h"
#include "tests/support/tested_file.h"

#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#ifndef _WIN32
#include <dlfcn.h>
#endif

namespace orvane::test {

/// A library file, loaded; unloaded at the end without a word to it.
class LoadedLibrary {
public:
#ifdef _WIN32
    static constexpr const char* kFileName = "Orvane.dll"; // by this name the library finds itself
#else
    static constexpr const char* kFileName = "liborvane.so";
#endif

    explicit LoadedLibrary(const std::filesystem::path& file) {
        Load(file);
        Find("orv_InitDLL", orv_InitDLL);
        Find("orv_ReleaseDLL", orv_ReleaseDLL);
        Find("orv_SetLanguageFile", orv_SetLanguageFile);
        Find("orv_SetOwnerWindow", orv_SetOwnerWindow);
        Find("orv_SetVisibleMode", orv_SetVisibleMode);
        Find("orv_SetSizeOutputImage", orv_SetSizeOutputImage);
        Find("orv_SetFaceCropRatio", orv_SetFaceCropRatio);
        Find("orv_EnableAction", orv_EnableAction);
        Find("orv_GetBitDepth", orv_GetBitDepth);
        Find("orv_DetectFacePicture", orv_DetectFacePicture);
        Find("orv_DetectFaceLive", orv_DetectFaceLive);
        Find("orv_GetOutputImage", orv_GetOutputImage);
    }
    ~LoadedLibrary() {
#ifdef _WIN32
        FreeLibrary(module_);
#else
        dlclose(module_);
#endif
    }
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    decltype(&::orv_InitDLL) orv_InitDLL;
    decltype(&::orv_ReleaseDLL) orv_ReleaseDLL;
    decltype(&::orv_SetLanguageFile) orv_SetLanguageFile;
    decltype(&::orv_SetOwnerWindow) orv_SetOwnerWindow;
    decltype(&::orv_SetVisibleMode) orv_SetVisibleMode;
    decltype(&::orv_SetSizeOutputImage) orv_SetSizeOutputImage;
    decltype(&::orv_SetFaceCropRatio) orv_SetFaceCropRatio;
    decltype(&::orv_EnableAction) orv_EnableAction;
    decltype(&::orv_GetBitDepth) orv_GetBitDepth;
    decltype(&::orv_DetectFacePicture) orv_DetectFacePicture;
    decltype(&::orv_DetectFaceLive) orv_DetectFaceLive;
    decltype(&::orv_GetOutputImage) orv_GetOutputImage;

private:
    // Without the library or one of its functions no test can say anything.
    [[noreturn]] static void Fail(const std::string& what) {
        std::cerr << what << " of " << TestedFile(ORVANE_LIBRARY_FILE) << " was not found\n";
        std::abort();
    }

#ifdef _WIN32
    void Load(const std::filesystem::path& file) {
        module_ = LoadLibraryW(file.c_str());
        if (module_ == nullptr) Fail("a copy");
    }
    void* Address(const char* name) { return reinterpret_cast<void*>(GetProcAddress(module_, name)); }

    HMODULE module_ = nullptr;
#else
    void Load(const std::filesystem::path& file) {
        module_ = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (module_ == nullptr) Fail(std::string("a copy (") + dlerror() + ")");
    }
    void* Address(const char* name) { return dlsym(module_, name); }

    void* module_ = nullptr;
#endif

    template <typename Function>
    void Find(const char* name, Function& function) {
        void* address = Address(name);
        if (address == nullptr) Fail(name);
        function = reinterpret_cast<Function>(address);
    }
};

/// A folder of its own with a copy of the library file, perhaps in folders inside it.
class LibraryFolder {
public:
    explicit LibraryFolder(const char* fileName = LoadedLibrary::kFileName, const std::filesystem::path& inside = {})
        : place_(inside.empty() ? folder_.Path() : folder_.Path() / inside), file_(place_ / fileName) {
        std::filesystem::create_directories(place_);
        std::filesystem::copy_file(TestedFile(ORVANE_LIBRARY_FILE), file_);
    }

    /// Where the library looks for its files.
    const std::filesystem::path& Folder() const { return place_; }
    const std::filesystem::path& File() const { return file_; }

private:
    TempFolder folder_;
    std::filesystem::path place_;
    std::filesystem::path file_;
};

/// Loads a copy of the library from a folder of its own, so that nothing has happened in it yet; releases and
/// unloads it at the end.
class HostLibrary : public LibraryFolder, public LoadedLibrary {
public:
    explicit HostLibrary(const char* fileName = kFileName, const std::filesystem::path& inside = {})
        : LibraryFolder(fileName, inside), LoadedLibrary(File()) {}
    ~HostLibrary() { orv_ReleaseDLL(); }
};

} // namespace orvane::test
