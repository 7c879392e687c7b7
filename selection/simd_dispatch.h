// Whether the processor runs the AVX2 forms of the mask loops. Those forms
// are compiled for AVX2 and the bit instructions that come with it (POPCNT,
// BMI1, BMI2), never fused multiply-add; they do the scalar operations lane
// by lane in the scalar order, and so give the same bytes.
#pragma once

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#define PCG_AVX2_KERNELS 1
#define PCG_TARGET_AVX2 __attribute__((target("avx2,popcnt,bmi,bmi2")))
#else
#define PCG_AVX2_KERNELS 0
#define PCG_TARGET_AVX2
#endif

namespace pcg {
namespace selection {

// True when the AVX2 forms run; tests switch them off to check the scalar ones.
bool UseAvx2();
void SetAvx2Allowed(bool bAllowed);

}  // namespace selection
}  // namespace pcg
