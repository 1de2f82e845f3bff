// SPDX-License-Identifier: Apache-2.0
#include "ledger/CommonSequence.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace ogmprobe {
namespace {

using Numbers = std::span<const uint32_t>;

/** The maximum number of differences in one stretch; memory grows with its square. */
constexpr int64_t kMaxDifferences = 1500;

/** Compares a stretch: from the beginnings to the ends, or as far as the limit allows. */
class Stretch {
  public:
    Stretch(Numbers a, Numbers b) : mA(a), mB(b) {}

    /** Adds the common elements and returns how far it got. */
    Pairing follow(size_t aBefore, size_t bBefore, std::vector<Pairing>& common) {
        const auto aSize = static_cast<int64_t>(mA.size());
        const auto bSize = static_cast<int64_t>(mB.size());
        int64_t diagonal = aSize - bSize;
        for (int64_t d = 0;; ++d) {
            mReached.emplace_back(static_cast<size_t>(2 * d + 1));
            for (int64_t k = -d; k <= d; k += 2) {
                reach(d, k);
            }
            const bool isDone = diagonal >= -d && diagonal <= d && (d - diagonal) % 2 == 0 &&
                                at(d, diagonal) >= aSize;
            if (!isDone && d < kMaxDifferences) {
                continue;
            }
            diagonal = isDone ? diagonal : furthest(d);
            const int64_t end = at(d, diagonal);
            collect(d, diagonal, aBefore, bBefore, common);
            return {static_cast<size_t>(end), static_cast<size_t>(end - diagonal)};
        }
    }

  private:
    int64_t& at(int64_t d, int64_t k) {
        return mReached[static_cast<size_t>(d)][static_cast<size_t>(k + d)];
    }

    /** Returns whether the path to the diagonal skips an element of b that a lacks. */
    bool comesDown(int64_t d, int64_t k) {
        return k == -d || (k != d && at(d - 1, k - 1) < at(d - 1, k + 1));
    }

    int64_t startOf(int64_t d, int64_t k) {
        if (d == 0) {
            return 0;
        }
        return comesDown(d, k) ? at(d - 1, k + 1) : at(d - 1, k - 1) + 1;
    }

    void reach(int64_t d, int64_t k) {
        int64_t x = startOf(d, k);
        while (x < static_cast<int64_t>(mA.size()) && x - k >= 0 &&
               x - k < static_cast<int64_t>(mB.size()) &&
               mA[static_cast<size_t>(x)] == mB[static_cast<size_t>(x - k)]) {
            ++x;
        }
        at(d, k) = x;
    }

    /** Returns the diagonal that got furthest; if there are several, the nearest to both ends. */
    int64_t furthest(int64_t d) {
        int64_t best = -d;
        int64_t most = -1;
        for (int64_t k = -d; k <= d; k += 2) {
            const int64_t x = at(d, k);
            const bool isInside = x <= static_cast<int64_t>(mA.size()) && x >= k &&
                                  x - k <= static_cast<int64_t>(mB.size());
            const int64_t end = static_cast<int64_t>(mA.size()) - static_cast<int64_t>(mB.size());
            const bool isNearer = std::abs(end - k) < std::abs(end - best);
            if (isInside && (2 * x - k > most || (2 * x - k == most && isNearer))) {
                most = 2 * x - k;
                best = k;
            }
        }
        return best;
    }

    void collect(int64_t d, int64_t k, size_t aBefore, size_t bBefore,
                 std::vector<Pairing>& common) {
        const auto first = static_cast<ptrdiff_t>(common.size());
        for (; d >= 0; --d) {
            const int64_t start = startOf(d, k);
            for (int64_t x = at(d, k); x-- > start;) {
                common.push_back(
                        {aBefore + static_cast<size_t>(x), bBefore + static_cast<size_t>(x - k)});
            }
            k += d > 0 && comesDown(d, k) ? 1 : -1;
        }
        std::reverse(common.begin() + first, common.end());
    }

    const Numbers mA;
    const Numbers mB;
    /** For each number of differences, how far each diagonal got in `a`. */
    std::vector<std::vector<int64_t>> mReached;
};

}  // namespace

std::vector<Pairing> commonSequence(Numbers a, Numbers b) {
    std::vector<Pairing> common;
    Pairing done;
    while (done.a < a.size() && done.b < b.size()) {
        const Pairing more =
                Stretch(a.subspan(done.a), b.subspan(done.b)).follow(done.a, done.b, common);
        done = {done.a + more.a, done.b + more.b};
    }
    return common;
}

}  // namespace ogmprobe
