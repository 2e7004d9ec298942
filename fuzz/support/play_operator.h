// An operator out of choices.
#pragma once

#include "fuzz/support/choices.h"
#include "tests/support/fake_window.h"

#include <iterator>
#include <string>

namespace orvane::fuzz {

/// Some steps of what an operator does, and of what none could.
inline void PlayOperator(Choices& choices, test::FakeWindow& window) {
    static constexpr int32 kControls[] = {
#define ORV_CONTROL(kind, id, text, x, y, width, height, start) id,
        ORV_QUICK_VIEW_CONTROLS(ORV_CONTROL)
#undef ORV_CONTROL
    };
    const auto control = [&] { return kControls[choices.Int(0, static_cast<int32>(std::size(kControls)) - 1)]; };
    const auto place = [&] { return choices.Int(-20, 420); };
    for (int32 steps = choices.Int(0, 12); steps > 0; --steps) {
        const uint8 step = choices.Byte();
        switch (step % 16) {
        case 0:
            window.Click(control());
            break;
        case 1: {
            const int32 x = place();
            window.Press(x, place());
            break;
        }
        case 2: {
            const int32 x = place();
            window.Move(x, place());
            break;
        }
        case 3: {
            const int32 x = place();
            window.Release(x, place());
            break;
        }
        case 4: {
            const std::string text = choices.Text(choices.Byte() % 12);
            window.Type(choices.Flag() ? kToleranceEdit : kRotationEdit,
                        std::wstring(text.begin(), text.end()).c_str());
            break;
        }
        case 5:
            window.Type(choices.Flag() ? kToleranceEdit : kRotationEdit, std::to_wstring(choices.Int(0, 400)).c_str());
            break;
        case 6:
            window.DragSlider(choices.Int(-5, 105));
            break;
        case 7:
            window.Enter();
            break;
        case 8:
            window.Pump();
            if (step < 128) break;
            window.Click(kPlainOk); // the face is accepted, and the portrait turned by whole quarters
            window.Pump();
            window.Type(kRotationEdit, std::to_wstring(90 * (step / 16 - 7)).c_str());
            window.Pump();
            break;
        case 9:
            window.Click(kPlainOk);
            break;
        case 10:
            window.Click(choices.OneOf({kTurnBack1, kTurnBack90, kTurnOn1, kTurnOn90}));
            break;
        case 11:
            window.events.OnCommand(choices.AnyInt());
            break;
        case 12:
            window.events.OnEditChanged(control());
            window.events.OnSysCommand(choices.AnyInt());
            break;
        case 13: {
            const int32 x = choices.AnyInt();
            window.events.OnLButtonDown(x, choices.AnyInt());
            break;
        }
        case 14:
            window.events.OnMessage(choices.Flag() ? WindowMessage::previewBitmap : WindowMessage::animateMark);
            break;
        default:
            if (choices.Flag()) {
                window.Escape();
            } else {
                window.DestroyFromOutside();
            }
            break;
        }
    }
}

} // namespace orvane::fuzz
