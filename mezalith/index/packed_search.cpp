// SPDX-License-Identifier: MIT
#include <mezalith/index/packed_search.hpp>

#include <algorithm>
#include <bit>
#include <utility>

#if defined(__x86_64__) && defined(__GNUC__)
#define MEZALITH_X86
#include <immintrin.h>
#endif

namespace mezalith::detail {
namespace {

/// Which boxes of a node meet the window, and which lie within: a bit for each.
struct Masks {
    std::uint64_t meets, inside;
};

// --- any processor --------------------------------------------------------

/// Without branches, unlike &&.
bool all(bool a, bool b, bool c, bool d) { return (a & b & c & d) != 0; }

template <std::size_t size>
struct Portable {
    static Masks compareNodes(const float* node, const PackedWindow& w) {
        const float *minX = node, *minY = node + size, *maxX = minY + size, *maxY = maxX + size;
        Masks masks{0, 0};
        for (std::size_t i = 0; i < size; ++i) {
            const bool meets = all(minX[i] <= w.maxXAbove, minY[i] <= w.maxYAbove,
                                   maxX[i] >= w.minXBelow, maxY[i] >= w.minYBelow);
            const bool inside = all(minX[i] >= w.minXAbove, minY[i] >= w.minYAbove,
                                    maxX[i] <= w.maxXBelow, maxY[i] <= w.maxYBelow);
            masks.meets |= std::uint64_t{meets} << i;
            masks.inside |= std::uint64_t{inside} << i;
        }
        return masks;
    }
    static std::uint64_t compareItems(const double* node, const MzBox& w, double after) {
        const double *minX = node, *minY = node + size, *maxX = minY + size, *maxY = maxX + size;
        std::uint64_t mask = 0;
        for (std::size_t i = 0; i < size; ++i) {
            const bool meets =
                all(minX[i] <= w.maxX, minY[i] <= w.maxY, maxX[i] >= w.minX, maxY[i] >= w.minY);
            mask |= std::uint64_t{all(meets, !(minX[i] <= after), true, true)} << i;
        }
        return mask;
    }
    static std::size_t take(const std::uint32_t* items, std::uint64_t mask, std::uint32_t* to) {
        std::size_t count = 0;
        for (; mask != 0; mask &= mask - 1) to[count++] = items[std::countr_zero(mask)];
        return count;
    }
};

#ifdef MEZALITH_X86

// --- x86-64 with AVX2 -----------------------------------------------------

#define MEZALITH_AVX2 __attribute__((target("avx2,bmi,popcnt")))
#define MEZALITH_AVX512 __attribute__((target("avx512f,avx512dq,avx512vl,avx2,bmi,popcnt")))

template <std::size_t size>
struct AVX2 {
    MEZALITH_AVX2 static inline std::uint64_t bits(__m256 v) {
        return static_cast<unsigned>(_mm256_movemask_ps(v));
    }

    MEZALITH_AVX2 static inline Masks compareNodes(const float* node, const PackedWindow& w) {
        Masks masks{0, 0};
        for (std::size_t i = 0; i < size; i += 8, node += 8) {
            const __m256 minX = _mm256_loadu_ps(node), minY = _mm256_loadu_ps(node + size);
            const __m256 maxX = _mm256_loadu_ps(node + 2 * size);
            const __m256 maxY = _mm256_loadu_ps(node + 3 * size);
            const __m256 meetsX =
                _mm256_and_ps(_mm256_cmp_ps(minX, _mm256_set1_ps(w.maxXAbove), _CMP_LE_OQ),
                              _mm256_cmp_ps(maxX, _mm256_set1_ps(w.minXBelow), _CMP_GE_OQ));
            const __m256 meetsY =
                _mm256_and_ps(_mm256_cmp_ps(minY, _mm256_set1_ps(w.maxYAbove), _CMP_LE_OQ),
                              _mm256_cmp_ps(maxY, _mm256_set1_ps(w.minYBelow), _CMP_GE_OQ));
            const __m256 insideX =
                _mm256_and_ps(_mm256_cmp_ps(minX, _mm256_set1_ps(w.minXAbove), _CMP_GE_OQ),
                              _mm256_cmp_ps(maxX, _mm256_set1_ps(w.maxXBelow), _CMP_LE_OQ));
            const __m256 insideY =
                _mm256_and_ps(_mm256_cmp_ps(minY, _mm256_set1_ps(w.minYAbove), _CMP_GE_OQ),
                              _mm256_cmp_ps(maxY, _mm256_set1_ps(w.maxYBelow), _CMP_LE_OQ));
            masks.meets |= bits(_mm256_and_ps(meetsX, meetsY)) << i;
            masks.inside |= bits(_mm256_and_ps(insideX, insideY)) << i;
        }
        return masks;
    }

    MEZALITH_AVX2 static inline std::uint64_t compareItems(const double* node, const MzBox& w,
                                                           double after) {
        std::uint64_t mask = 0;
        for (std::size_t i = 0; i < size; i += 4, node += 4) {
            const __m256d minX = _mm256_loadu_pd(node), minY = _mm256_loadu_pd(node + size);
            const __m256d maxX = _mm256_loadu_pd(node + 2 * size);
            const __m256d maxY = _mm256_loadu_pd(node + 3 * size);
            const __m256d x =
                _mm256_and_pd(_mm256_cmp_pd(minX, _mm256_set1_pd(w.maxX), _CMP_LE_OQ),
                              _mm256_cmp_pd(maxX, _mm256_set1_pd(w.minX), _CMP_GE_OQ));
            const __m256d y =
                _mm256_and_pd(_mm256_cmp_pd(minY, _mm256_set1_pd(w.maxY), _CMP_LE_OQ),
                              _mm256_cmp_pd(maxY, _mm256_set1_pd(w.minY), _CMP_GE_OQ));
            const __m256d later = _mm256_cmp_pd(minX, _mm256_set1_pd(after), _CMP_NLE_UQ);
            const __m256d all = _mm256_and_pd(_mm256_and_pd(x, y), later);
            mask |= std::uint64_t{static_cast<unsigned>(_mm256_movemask_pd(all))} << i;
        }
        return mask;
    }

    MEZALITH_AVX2 static inline std::size_t take(const std::uint32_t* items, std::uint64_t mask,
                                                 std::uint32_t* to) {
        return Portable<size>::take(items, mask, to);
    }
};

// --- x86-64 with AVX-512 --------------------------------------------------

template <std::size_t size>
struct AVX512 {
    MEZALITH_AVX512 static inline Masks compareNodes(const float* node, const PackedWindow& w) {
        Masks masks{0, 0};
        for (std::size_t i = 0; i < size; i += 16, node += 16) {
            const __m512 minX = _mm512_loadu_ps(node), minY = _mm512_loadu_ps(node + size);
            const __m512 maxX = _mm512_loadu_ps(node + 2 * size);
            const __m512 maxY = _mm512_loadu_ps(node + 3 * size);
            __mmask16 meets = _mm512_cmp_ps_mask(minX, _mm512_set1_ps(w.maxXAbove), _CMP_LE_OQ);
            meets = _mm512_mask_cmp_ps_mask(meets, minY, _mm512_set1_ps(w.maxYAbove), _CMP_LE_OQ);
            meets = _mm512_mask_cmp_ps_mask(meets, maxX, _mm512_set1_ps(w.minXBelow), _CMP_GE_OQ);
            meets = _mm512_mask_cmp_ps_mask(meets, maxY, _mm512_set1_ps(w.minYBelow), _CMP_GE_OQ);
            __mmask16 inside = _mm512_cmp_ps_mask(minX, _mm512_set1_ps(w.minXAbove), _CMP_GE_OQ);
            inside = _mm512_mask_cmp_ps_mask(inside, minY, _mm512_set1_ps(w.minYAbove), _CMP_GE_OQ);
            inside = _mm512_mask_cmp_ps_mask(inside, maxX, _mm512_set1_ps(w.maxXBelow), _CMP_LE_OQ);
            inside = _mm512_mask_cmp_ps_mask(inside, maxY, _mm512_set1_ps(w.maxYBelow), _CMP_LE_OQ);
            masks.meets |= std::uint64_t{meets} << i;
            masks.inside |= std::uint64_t{inside} << i;
        }
        return masks;
    }

    MEZALITH_AVX512 static inline std::uint64_t compareItems(const double* node, const MzBox& w,
                                                             double after) {
        std::uint64_t mask = 0;
        for (std::size_t i = 0; i < size; i += 8, node += 8) {
            const __m512d minX = _mm512_loadu_pd(node);
            __mmask8 meets = _mm512_cmp_pd_mask(minX, _mm512_set1_pd(w.maxX), _CMP_LE_OQ);
            meets = _mm512_mask_cmp_pd_mask(meets, _mm512_loadu_pd(node + size),
                                            _mm512_set1_pd(w.maxY), _CMP_LE_OQ);
            meets = _mm512_mask_cmp_pd_mask(meets, _mm512_loadu_pd(node + 2 * size),
                                            _mm512_set1_pd(w.minX), _CMP_GE_OQ);
            meets = _mm512_mask_cmp_pd_mask(meets, _mm512_loadu_pd(node + 3 * size),
                                            _mm512_set1_pd(w.minY), _CMP_GE_OQ);
            meets = _mm512_mask_cmp_pd_mask(meets, minX, _mm512_set1_pd(after), _CMP_NLE_UQ);
            mask |= std::uint64_t{meets} << i;
        }
        return mask;
    }

    MEZALITH_AVX512 static inline std::size_t take(const std::uint32_t* items, std::uint64_t mask,
                                                   std::uint32_t* to) {
        std::size_t count = 0;
        for (std::size_t i = 0; i < size; i += 16, mask >>= 16) {
            const auto bits = static_cast<__mmask16>(mask);
            const __m512i kept = _mm512_maskz_compress_epi32(bits, _mm512_loadu_si512(items + i));
            _mm512_storeu_si512(to + count, kept);
            count += static_cast<std::size_t>(_mm_popcnt_u32(bits));
        }
        return count;
    }
};

#endif

// --- the way through the tree ---------------------------------------------

/// Fills the buffer until it may not hold the items of another node, or a long run turns up.
template <template <std::size_t> typename Instructions, std::size_t size>
[[gnu::always_inline]] inline void step(PackedSearch& search) {
    using Simd = Instructions<size>;
    const PackedNodes& nodes = search.nodes;
    if (!search.pending.empty()) {
        search.found = std::exchange(search.pending, {});
        return;
    }
    std::uint32_t* const buffer = search.buffer.data();
    std::size_t count = 0;
    while (search.depth >= 0 && count <= PackedSearch::kRoom - size) {
        PackedSearch::Frame& frame = search.frames[static_cast<std::size_t>(search.depth)];
        if (frame.meets == 0) {
            --search.depth;
            continue;
        }
        const int bit = std::countr_zero(frame.meets);
        frame.meets &= frame.meets - 1;
        const std::uint64_t node = frame.first + static_cast<unsigned>(bit);
        if ((frame.inside >> bit & 1) != 0) {
            const auto run = nodes.itemsBelow(node, frame.level);
            if (run.size() > size) {
                search.pending = run;
                break;
            }
            std::copy(run.begin(), run.end(), buffer + count);
            count += run.size();
        } else if (frame.level == 0) {
            const std::uint64_t mask =
                Simd::compareItems(nodes.leaves + node * 4 * size, search.window, search.after);
            count += Simd::take(nodes.items + node * size, mask, buffer + count);
        } else {
            const float* boxes = nodes.inner[static_cast<std::size_t>(frame.level)];
            const Masks masks = Simd::compareNodes(boxes + node * 4 * size, search.rounded);
            const PackedSearch::Frame next{masks.meets, masks.inside, node * size, frame.level - 1};
            search.frames[static_cast<std::size_t>(++search.depth)] = next;
        }
    }
    search.found = count == 0 ? std::exchange(search.pending, {}) : std::span(buffer, count);
}

template <std::size_t size>
void stepPortable(PackedSearch& search) {
    step<Portable, size>(search);
}

#ifdef MEZALITH_X86
template <std::size_t size>
MEZALITH_AVX2 void stepAVX2(PackedSearch& search) {
    step<AVX2, size>(search);
}

template <std::size_t size>
MEZALITH_AVX512 void stepAVX512(PackedSearch& search) {
    step<AVX512, size>(search);
}
#endif

template <std::size_t size>
PackedSearch::Step stepWith(PackedInstructions instructions) {
#ifdef MEZALITH_X86
    const PackedInstructions used = std::min(instructions, bestInstructions());
    if (used == PackedInstructions::AVX512 && size >= 16) return stepAVX512<size>;
    if (used >= PackedInstructions::AVX2) return stepAVX2<size>;
#endif
    return stepPortable<size>;
}

}  // namespace

PackedInstructions bestInstructions() {
#ifdef MEZALITH_X86
    __builtin_cpu_init();
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("bmi")) {
        return PackedInstructions::Portable;
    }
    const bool has512 = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
                        __builtin_cpu_supports("avx512vl");
    return has512 ? PackedInstructions::AVX512 : PackedInstructions::AVX2;
#else
    return PackedInstructions::Portable;
#endif
}

PackedSearch::Step PackedSearch::stepFor(PackedInstructions instructions, unsigned shift) {
    switch (shift) {
        case 3:
            return stepWith<8>(instructions);
        case 5:
            return stepWith<32>(instructions);
        case 6:
            return stepWith<64>(instructions);
        default:
            return stepWith<16>(instructions);
    }
}

}  // namespace mezalith::detail
