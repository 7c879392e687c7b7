// The fixed-width type words of the records that cross to the engines and to
// scripts. Each has the width the engines were built with on 64-bit Windows,
// on every platform this code builds for. Kept free of OS headers: a
// translation unit that includes the system's own definitions of these words
// must not include the records too.
#pragma once

#include "engine/constants.h"

typedef unsigned char BYTE;
typedef unsigned short WORD;
typedef unsigned short PIXEL;  // one channel of a pixel, 8- or 16-bit data alike
typedef int INT;
typedef unsigned int UINT32;
typedef int BOOL;
typedef long long LONGLONG;

struct RECT {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};
static_assert(sizeof(RECT) == 16, "RECT layout");

// An OpenCL memory object, held by handle only.
typedef struct _cl_mem* cl_mem;

// Direction of a mask correction: 1 is the reverse mapping, any other value
// the direct one.
typedef int WarpStyle;

// Entries of ToneLevelSetting.ChannelPivot: the master curve, then red, green
// and blue, as the level keys "LvRGB", "LvR", "LvG" and "LvB" name them.
enum : int { TONE_LEVEL_CHANNEL_COUNT = COLOR_CHANNEL_COUNT + 1 };

static_assert(sizeof(BYTE) == 1 && sizeof(WORD) == 2 && sizeof(PIXEL) == 2 && sizeof(INT) == 4 &&
                  sizeof(UINT32) == 4 && sizeof(BOOL) == 4 && sizeof(LONGLONG) == 8 &&
                  sizeof(bool) == 1 && sizeof(short) == 2 && sizeof(float) == 4 &&
                  sizeof(double) == 8 && sizeof(unsigned long long) == 8 && sizeof(void*) == 8,
              "the records assume the engines' 64-bit type widths");
