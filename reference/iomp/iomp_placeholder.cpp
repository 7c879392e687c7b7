// The module only loads this library, keeps the handle and frees it last; it
// calls nothing in it. The one entry lets tests see which file was loaded.
#include <cstdint>

extern "C" int32_t RefIomp_Loaded(void) {
    return 1;
}
