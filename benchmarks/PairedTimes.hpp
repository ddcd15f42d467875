// Times of two ways to do the same, taken turn by turn so that what else the machine does touches both alike.
#pragma once

#include <time.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace mireth::benchmarks {

/// The middle one of several values, which a few interruptions do not change. Not for an empty list.
inline double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

/// What the process has computed so far, all its threads together, in seconds. Unlike the clock it stands
/// still while another process has the processor.
inline double processorSeconds() {
    timespec now{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

inline double clockSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Ours and theirs, a pair for each turn.
class PairedTimes {
  public:
    template <class Ours, class Theirs>
    void turn(Ours ours, Theirs theirs) {
        const Moment start;
        ours();
        const Moment middle;
        theirs();
        const Moment end;
        ours_.add(start, middle);
        theirs_.add(middle, end);
    }

    /// Medians, of processor time.
    double oursSeconds() const { return medianOf(ours_.processor); }
    double theirsSeconds() const { return medianOf(theirs_.processor); }

    /// Ours by theirs: the median of the pairs.
    double ratio() const { return medianOf(ratios(ours_.processor, theirs_.processor)); }
    double ratioByTheClock() const { return medianOf(ratios(ours_.clock, theirs_.clock)); }

  private:
    struct Moment {
        double processor = processorSeconds();
        double clock = clockSeconds();
    };

    struct Times {
        std::vector<double> processor;
        std::vector<double> clock;

        void add(const Moment& from, const Moment& to) {
            processor.push_back(to.processor - from.processor);
            clock.push_back(to.clock - from.clock);
        }
    };

    static std::vector<double> ratios(const std::vector<double>& ours, const std::vector<double>& theirs) {
        std::vector<double> result(ours.size());
        std::ranges::transform(ours, theirs, result.begin(),
                               [](double own, double other) { return own / other; });
        return result;
    }

    Times ours_;
    Times theirs_;
};

}  // namespace mireth::benchmarks
