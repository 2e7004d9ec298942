// A program of exported calls in any order with any arguments: blocks right and wrong, an operator who may call back,
// and a heap that may be exhausted. Each call ends with one of its documented results. Live sessions stop at a camera
// that can't be used: their threads keep real time, and their steps have a target of their own.
#include "fuzz/support/played_library.h"

#include "fuzz/support/expect.h"
#include "fuzz/support/play_operator.h"

#include <array>
#include <initializer_list>

using namespace orvane;
using fuzz::Expect;

namespace {

class Program {
public:
    explicit Program(fuzz::Choices& choices) : choices_(choices) {
        library_.windows.canOpen = choices.Flag();
        library_.windows.opens = choices.Int(0, 7) != 0;
        library_.windows.makes = choices.Int(0, 7) != 0;
        library_.windows.hasSlider = choices.Int(0, 7) != 0;
        if (choices.Flag()) library_.video.devices = {{{0, 0}}, {{160, 120}, false}};
        library_.video.hasVideo = choices.Int(0, 3) != 0;
        library_.windows.script = [this](test::FakeWindow& window) {
            fuzz::PlayOperator(choices_, window);
            if (choices_.Flag()) Call(true); // from a handler of the host's
            fuzz::PlayOperator(choices_, window);
        };
    }

    void Run() {
        for (int32 calls = 0; calls < 24 && !choices_.AtEnd(); ++calls) Call(false);
        fuzz::TakeOutput();
    }

private:
    void Call(bool inside) {
        switch (choices_.Int(0, 15)) {
        case 0:
            Ends(orv_InitDLL(), {ORV_OK, ORV_NO_MEMORY, ORV_NO_SESSION});
            if (!inside) fuzz::KeepPreviewSmall(choices_);
            return;
        case 1:
            return Ends(orv_ReleaseDLL(), {ORV_OK, ORV_NO_SESSION});
        case 2:
            return SetLanguage();
        case 3: {
            const auto owner = reinterpret_cast<orv_Window>(static_cast<std::intptr_t>(choices_.AnyInt()));
            return Ends(orv_SetOwnerWindow(owner), {ORV_OK, ORV_NO_SESSION});
        }
        case 4:
            return Ends(orv_SetVisibleMode(choices_.AnyInt()), {ORV_OK, ORV_NO_SESSION});
        case 5: {
            const bool usual = choices_.Flag();
            const int32 width = usual ? choices_.Int(70, 200) : choices_.AnyInt();
            const int32 height = usual ? choices_.Int(70, 200) : choices_.AnyInt();
            return Ends(orv_SetSizeOutputImage(width, height), {ORV_OK, ORV_NO_SESSION});
        }
        case 6:
            return Ends(orv_SetFaceCropRatio(choices_.AnyFloat()), {ORV_OK, ORV_BAD_ARGUMENT});
        case 7: {
            const int32 slot = choices_.Flag() ? choices_.Int(-2, 7) : choices_.AnyInt();
            return Ends(orv_EnableAction(slot, choices_.AnyInt()), {ORV_OK, ORV_BAD_ARGUMENT});
        }
        case 8:
            return AskDepth();
        case 9:
            return Live();
        case 10:
            Ends(orv_GetOutputImage(nullptr), {ORV_NO_SESSION});
            fuzz::TakeOutput();
            return;
        case 11:
        case 12: {
            test::HostBlock& block = Block();
            block = fuzz::AnyBlock(choices_, 64);
            return;
        }
        default:
            return Detect(inside);
        }
    }

    void SetLanguage() {
        const std::string name = choices_.Flag() ? "texts.txt" : choices_.Text(choices_.Byte());
        if (name.find("..") != std::string::npos || name.find('/') != std::string::npos) return; // out of the folder
        const char* path = choices_.Int(0, 7) == 0 ? nullptr : name.c_str();
        Ends(orv_SetLanguageFile(path), {ORV_OK, ORV_BAD_ARGUMENT, ORV_NO_SESSION});
    }

    void AskDepth() {
        const int32 depth = orv_GetBitDepth(AnyHandle());
        Expect(depth >= -1 && depth <= 0xFFFF, "a depth is one, or -1");
    }

    void Live() {
        const int32 result = orv_DetectFaceLive(choices_.Flag() ? choices_.Int(-1, 3) : choices_.AnyInt());
        Ends(result, {ORV_CAPTURE_FAILED, ORV_NO_SESSION, ORV_NO_MEMORY});
    }

    void Detect(bool inside) {
        const bool faulty = choices_.Int(0, 3) == 0;
        const fuzz::SmallHeap heap(faulty ? choices_.Int(0, 60) : -1);
        const int32 result = orv_DetectFacePicture(AnyHandle());
        Expect(!inside || result == ORV_NO_SESSION, "a detect call inside a detect call is refused");
        Ends(result, {ORV_OK, ORV_NO_FACE, ORV_CANCELLED, ORV_BAD_ARGUMENT, ORV_STEP_FAILED, ORV_NO_MEMORY,
                      ORV_NO_PICTURE, ORV_NO_CLASSIFIER, ORV_NO_SESSION});
        if (!inside) fuzz::TakeOutput();
    }

    test::HostBlock& Block() { return blocks_[static_cast<std::size_t>(choices_.Int(0, 3))]; }

    /// Mostly a block's; now and then a pointer that is none.
    orv_Handle AnyHandle() {
        static uint64 foreign[8] = {1, 2, 3, 4, 5, 6, 7, 8};
        switch (choices_.Int(0, 15)) {
        case 0:
            return reinterpret_cast<orv_Handle>(static_cast<std::intptr_t>(choices_.Int(0, 4096)));
        case 1:
            return reinterpret_cast<uint8*>(foreign) + choices_.Int(16, 60);
        default:
            return Block().Handle();
        }
    }

    static void Ends(int32 result, std::initializer_list<int32> documented) {
        fuzz::ExpectOneOf(result, documented, "a call ends with a documented result");
    }

    fuzz::Choices& choices_;
    fuzz::PlayedLibrary library_;
    std::array<test::HostBlock, 4> blocks_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8* bytes, std::size_t size) {
    fuzz::Choices choices(bytes, size);
    Program(choices).Run();
    return 0;
}
