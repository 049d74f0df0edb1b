/// Small geometry of the utilities.
#include <cmath>

#include "acad/ads.h"

extern "C" ads_real acutDistance(const ads_point a, const ads_point b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}
