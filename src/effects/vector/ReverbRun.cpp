#include "effects/vector/ReverbRun.h"

#include "effects/vector/Check.h"
#include "effects/vector/Lanes.h"

namespace velmora {
namespace {

// The kernel is written for vectors of any width and becomes part of a function for certain
// instructions. So it is always inlined, and vectors travel by reference: as arguments and results
// they would do so differently from one set of instructions to another.

/// Four samples of one channel.
struct Narrow {
    using Vector = Lanes;

    static void load(const float* from, const float*, Vector& to) noexcept { to = loadLanes(from); }
    static void store(float* to, float*, const Vector& from) noexcept { storeLanes(to, from); }
    static bool isFinite(const Vector& vector) noexcept { return allFinite(vector); }

    /// Swaps rows and columns of four by four.
    static void transpose(std::array<Vector, 4>& rows) noexcept {
        const Vector lower01 = __builtin_shufflevector(rows[0], rows[1], 0, 4, 1, 5);
        const Vector upper01 = __builtin_shufflevector(rows[0], rows[1], 2, 6, 3, 7);
        const Vector lower23 = __builtin_shufflevector(rows[2], rows[3], 0, 4, 1, 5);
        const Vector upper23 = __builtin_shufflevector(rows[2], rows[3], 2, 6, 3, 7);
        rows[0] = __builtin_shufflevector(lower01, lower23, 0, 1, 4, 5);
        rows[1] = __builtin_shufflevector(lower01, lower23, 2, 3, 6, 7);
        rows[2] = __builtin_shufflevector(upper01, upper23, 0, 1, 4, 5);
        rows[3] = __builtin_shufflevector(upper01, upper23, 2, 3, 6, 7);
    }
};

/// Four samples of the left channel, then four of the right.
struct Both {
    using Vector [[gnu::vector_size(32)]] = float;

    [[gnu::always_inline]] static void
    load(const float* left, const float* right, Vector& to) noexcept {
        to = __builtin_shufflevector(loadLanes(left), loadLanes(right), 0, 1, 2, 3, 4, 5, 6, 7);
    }
    [[gnu::always_inline]] static void
    store(float* left, float* right, const Vector& from) noexcept {
        storeLanes(left, __builtin_shufflevector(from, from, 0, 1, 2, 3));
        storeLanes(right, __builtin_shufflevector(from, from, 4, 5, 6, 7));
    }
    [[gnu::always_inline]] static bool isFinite(const Vector& vector) noexcept {
        return allFinite(__builtin_shufflevector(vector, vector, 0, 1, 2, 3) +
                         __builtin_shufflevector(vector, vector, 4, 5, 6, 7));
    }

    /// In each half by itself.
    [[gnu::always_inline]] static void transpose(std::array<Vector, 4>& rows) noexcept {
        const Vector lower01 = __builtin_shufflevector(rows[0], rows[1], 0, 8, 1, 9, 4, 12, 5, 13);
        const Vector upper01 =
            __builtin_shufflevector(rows[0], rows[1], 2, 10, 3, 11, 6, 14, 7, 15);
        const Vector lower23 = __builtin_shufflevector(rows[2], rows[3], 0, 8, 1, 9, 4, 12, 5, 13);
        const Vector upper23 =
            __builtin_shufflevector(rows[2], rows[3], 2, 10, 3, 11, 6, 14, 7, 15);
        rows[0] = __builtin_shufflevector(lower01, lower23, 0, 1, 8, 9, 4, 5, 12, 13);
        rows[1] = __builtin_shufflevector(lower01, lower23, 2, 3, 10, 11, 6, 7, 14, 15);
        rows[2] = __builtin_shufflevector(upper01, upper23, 0, 1, 8, 9, 4, 5, 12, 13);
        rows[3] = __builtin_shufflevector(upper01, upper23, 2, 3, 10, 11, 6, 7, 14, 15);
    }
};

template <Check check, typename Vector>
[[gnu::always_inline]] inline void resetIfBad(Vector& vector) noexcept {
    if constexpr (check == Check::everyFrame) {
        vector = vector - vector == Vector{} ? vector : Vector{}; // bad - bad is not a number
    }
}

/// What four samples leave in the lines. Nothing is stored before it is known to be finite.
template <typename Width>
struct Quadruple {
    using Vector = typename Width::Vector;

    std::array<Vector, ReverbRun::combs> combs;
    std::array<Vector, ReverbRun::allpasses> allpasses;
    Vector wet;
    Vector stores;

    template <Check check>
    [[gnu::always_inline]] void
    make(const ReverbRun& left, const ReverbRun& right, std::size_t at, const ReverbTone& tone);
    [[gnu::always_inline]] void
    keep(const ReverbRun& left, const ReverbRun& right, std::size_t at) const;
    /// A sum is finite only if all its terms are.
    [[gnu::always_inline]] bool isFinite() const {
        const Vector sum =
            (combs[0] + combs[1]) + (combs[2] + combs[3]) + (allpasses[0] + allpasses[1]);
        return Width::isFinite(sum);
    }
};

/// The combs' low-passes go sample by sample, but all combs at once; the rest goes by four samples,
/// which lie side by side along each line.
template <typename Width>
template <Check check>
inline void Quadruple<Width>::make(const ReverbRun& left,
                                   const ReverbRun& right,
                                   std::size_t at,
                                   const ReverbTone& tone) {
    Vector sum{};
    for (std::size_t k = 0; k < combs.size(); ++k) {
        Width::load(left.lines[k] + at, right.lines[k] + at, combs[k]);
        sum = sum + combs[k];
    }
    Width::transpose(combs);
    const float keep = 1.0F - tone.damp;
    for (Vector& sample : combs) {
        stores = keep * sample + tone.damp * stores;
        resetIfBad<check>(stores);
        sample = stores;
    }
    Width::transpose(combs);
    Vector input;
    Width::load(left.signal + at, right.signal + at, input);
    for (Vector& comb : combs) {
        comb = input + tone.feedback * comb;
        resetIfBad<check>(comb);
    }
    wet = sum * 0.25F;
    for (std::size_t k = 0; k < allpasses.size(); ++k) {
        Vector delayed;
        Width::load(left.lines[combs.size() + k] + at, right.lines[combs.size() + k] + at, delayed);
        allpasses[k] = wet + delayed * allpassGain;
        resetIfBad<check>(allpasses[k]);
        wet = delayed - wet;
    }
}

template <typename Width>
inline void
Quadruple<Width>::keep(const ReverbRun& left, const ReverbRun& right, std::size_t at) const {
    for (std::size_t k = 0; k < combs.size(); ++k) {
        Width::store(left.lines[k] + at, right.lines[k] + at, combs[k]);
    }
    for (std::size_t k = 0; k < allpasses.size(); ++k) {
        Width::store(
            left.lines[combs.size() + k] + at, right.lines[combs.size() + k] + at, allpasses[k]);
    }
    Width::store(left.signal + at, right.signal + at, wet);
}

template <typename Width>
[[gnu::always_inline]] inline void run(const ReverbRun& left,
                                       const ReverbRun& right,
                                       std::size_t samples,
                                       const ReverbTone& tone) noexcept {
    typename Width::Vector stores;
    Width::load(left.stores, right.stores, stores);
    for (std::size_t at = 0; at < samples; at += 4) {
        Quadruple<Width> next;
        next.stores = stores;
        next.template make<Check::atTheEnd>(left, right, at, tone);
        if (!next.isFinite()) [[unlikely]] {
            next.stores = stores;
            next.template make<Check::everyFrame>(left, right, at, tone);
        }
        next.keep(left, right, at);
        stores = next.stores;
    }
    Width::store(left.stores, right.stores, stores);
}

void runPlain(const ReverbRun& channel, std::size_t samples, const ReverbTone& tone) noexcept {
    run<Narrow>(channel, channel, samples, tone);
}

#if defined(__x86_64__)
[[gnu::target("avx2")]] void runAvx2(const ReverbRun& left,
                                     const ReverbRun& right,
                                     std::size_t samples,
                                     const ReverbTone& tone) noexcept {
    run<Both>(left, right, samples, tone);
}
#endif

} // namespace

void runBoth(const ReverbRun& left,
             const ReverbRun& right,
             std::size_t samples,
             const ReverbTone& tone,
             Instructions instructions) noexcept {
#if defined(__x86_64__)
    if (instructions == Instructions::avx2) {
        runAvx2(left, right, samples, tone);
        return;
    }
#endif
    runPlain(left, samples, tone);
    runPlain(right, samples, tone);
}

} // namespace velmora
