/// Any bytes as a drawing.
#include "any_drawing.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::tryDrawing({}, data, size);
    return 0;
}
