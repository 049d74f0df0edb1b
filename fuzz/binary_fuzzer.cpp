/// Any bytes as the groups of a binary drawing.
#include "any_drawing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static constexpr char kSentinel[] = "AutoCAD Binary DXF\r\n\x1A";
    fuzz::tryDrawing({kSentinel, sizeof kSentinel}, data, size);
    return 0;
}
