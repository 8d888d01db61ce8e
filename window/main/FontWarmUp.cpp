#include "window/main/FontWarmUp.h"

#ifdef TRACELET_FONTCONFIG
#include <fontconfig/fontconfig.h>
#endif

namespace tracelet {

FontWarmUp::FontWarmUp() {
#ifdef TRACELET_FONTCONFIG
    reader = std::jthread([] { FcInit(); });
#endif
}

} // namespace tracelet
