// How often a random test tries.
#pragma once

// As often as given; less where each try takes many times as long: under sanitizers, without optimisation.
inline constexpr int Rounds(int optimised) {
#if defined(QTRACE_SANITIZED)
    return optimised / 5;
#else
    return optimised;
#endif
}
