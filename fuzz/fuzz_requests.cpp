#include "fuzz/fuzzing.h"
#include "host/specialpropertyids.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

/// A sequence of requests to an object of three frames: two bytes choose the request and the
/// length of its buffer, which follows.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    constexpr int requests = SpecialPropertyId::RunningFrameName - SpecialPropertyId::ShowNextFrame;
    Stage stage(solidFrames({{4, 3}, {5, 6}, {1, 1}}));
    const QByteArray input = Fuzzing::bytes(data, size);
    for (int at = 0; at + 2 <= input.size() && !stage.isReleased();) {
        const int choice = static_cast<uint8_t>(input.at(at));
        const int length = static_cast<uint8_t>(input.at(at + 1));
        Request request(
            QByteArray(input.constData() + at + 2, qMin(length, input.size() - at - 2)));
        at += 2 + length;
        const int id = SpecialPropertyId::ShowNextFrame + (choice / 2) % (requests + 1);
        if (choice % 2)
            request.set(stage.image, id);
        else
            request.get(stage.image, id);
        Fuzzing::use(*stage.image);
    }
    return 0;
}
