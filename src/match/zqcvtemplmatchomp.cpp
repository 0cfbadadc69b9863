// Valid-mode squared distance, cross-correlation and cross-correlation with
// the template's mean removed, without normalisation, for 32f, 8u and 8s
// pixels. The tiles of one call run in OpenMP threads.
//
// The master thread sizes one work array for the team, prepares the template
// spectrum in it and, after a barrier, every thread takes the tiles numbered
// (its thread number) + k (team size) in a part of the array of its own. The
// spectrum is only read after the barrier and tiles write disjoint blocks of
// the destination, so no lock is taken; a tile's results do not depend on
// which thread computed it, so neither do the call's on the team size.
#include "match/zqcvtemplmatch.h"

#include "core/zqcvcore.h"

#include <omp.h>

#include <algorithm>

namespace {

using zq::match::Method;

// Parts of the work array start on whole cache lines.
inline int64_t lines(int64_t floats) { return (floats + 15) & ~int64_t(15); }

// One thread's part: the tile, its window sums (squared distance only) and
// an FFT work buffer.
struct Parts {
    int64_t spectrum, part, sums;

    zq::match::TileWork work(Zeq32f* array, int thread, const zq::match::Tiling& t) const {
        Zeq32f* p = array + spectrum + part * thread;
        return {p, p + t.fftFloats(), nullptr, reinterpret_cast<Zeq8u*>(p + t.fftFloats() + sums)};
    }
};

template <Method M, class T>
ZeqStatus validParallel(const zq::match::Images<T>& im) {
    ZQ_CHECK(zq::match::checkArguments(im));
    const zq::match::Tiling t(im.srcSize, im.tplSize);
    zq::match::Resources res;
    ZQ_CHECK(res.createSpec(t));
    const int64_t sums = zq::match::needsSquares(M) ? t.sumFloats() : 0;
    const Parts parts{lines(t.fftFloats()), lines(t.fftFloats() + sums + res.bufFloats()), sums};

    zq::match::Job<T> job{M, im, t, res.spec(), nullptr, {}};
    ZeqStatus prepared = zeqStsOk, failed = zeqStsOk;
    // Destination rows closer than a row of results overlap: tiles then run
    // one after the other in order, as the normalised functions run them.
    const bool disjoint = int64_t(im.dstStep) >= int64_t(t.resultW) * int64_t(sizeof(Zeq32f));
    const int team = int(std::min<int64_t>(omp_get_max_threads(), t.tiles()));
#pragma omp parallel num_threads(team) if (disjoint && team > 1)
    {
#pragma omp master
        {
            const int n = omp_get_num_threads();
            prepared = res.allocate(parts.spectrum + n * parts.part);
            if (prepared == zeqStsOk) {
                job.spectrum = res.array();
                prepared = zq::match::prepareTemplate(job, parts.work(res.array(), 0, t).fftBuf);
            }
        }
#pragma omp barrier
        if (prepared == zeqStsOk) {
            const int thread = omp_get_thread_num(), n = omp_get_num_threads();
            const zq::match::TileWork work = parts.work(res.array(), thread, t);
            for (int64_t i = thread; i < t.tiles(); i += n) {
                int x0, y0;
                zq::match::tileOrigin(t, i, x0, y0);
                const ZeqStatus s = zq::match::processTile(job, x0, y0, work);
                if (s != zeqStsOk) {
#pragma omp atomic write
                    failed = s;
                    break;
                }
            }
        }
    }
    return prepared != zeqStsOk ? prepared : failed;
}

}  // namespace

// ---- exported functions ----

ZQ_VALID_FUNCTION(zeqiSqrDistanceValid_32f_C1R, validParallel, Method::SqrDistance, Zeq32f)
ZQ_VALID_FUNCTION(zeqiSqrDistanceValid_8u32f_C1R, validParallel, Method::SqrDistance, Zeq8u)
ZQ_VALID_FUNCTION(zeqiSqrDistanceValid_8s32f_C1R, validParallel, Method::SqrDistance, Zeq8s)
ZQ_VALID_FUNCTION(zeqiCrossCorrValid_32f_C1R, validParallel, Method::CrossCorr, Zeq32f)
ZQ_VALID_FUNCTION(zeqiCrossCorrValid_8u32f_C1R, validParallel, Method::CrossCorr, Zeq8u)
ZQ_VALID_FUNCTION(zeqiCrossCorrValid_8s32f_C1R, validParallel, Method::CrossCorr, Zeq8s)
ZQ_VALID_FUNCTION(zeqiCrossCorrValid_Level_32f_C1R, validParallel, Method::CrossCorrLevel, Zeq32f)
ZQ_VALID_FUNCTION(zeqiCrossCorrValid_Level_8u32f_C1R, validParallel, Method::CrossCorrLevel, Zeq8u)
ZQ_VALID_FUNCTION(zeqiCrossCorrValid_Level_8s32f_C1R, validParallel, Method::CrossCorrLevel, Zeq8s)
