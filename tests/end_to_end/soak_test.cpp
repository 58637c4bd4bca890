// The real program used at random for a long time: what it shows and saves must be what a plain
// model says, and what it holds of the system must not grow.
#include "soak.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdlib>
#include <iostream>
#include <mutex>
#include <thread>
#include <vector>

namespace kvx::test {
namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

/// A whole number from the environment; `usual` when it is not set.
int Chosen(const char* variable, int usual) {
    const char* text = std::getenv(variable);
    return text != nullptr ? std::atoi(text) : usual;
}

/// Kills the program when an action takes so long that it must hang: then whatever waits for it
/// goes on.
class Watchdog {
public:
    explicit Watchdog(const Soak& soak) : thread_([this, &soak] { Watch(soak); }) {}
    ~Watchdog() {
        {
            const std::lock_guard lock(mutex_);
            stop_ = true;
        }
        wake_.notify_all();
        thread_.join();
    }
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

private:
    void Watch(const Soak& soak) {
        constexpr seconds kLongestAction{120};
        std::unique_lock lock(mutex_);
        for (std::uint64_t step = 0;; step = soak.Steps()) {
            if (wake_.wait_for(lock, kLongestAction, [this] { return stop_; })) return;
            if (soak.Steps() != step) continue;
            std::cerr << "Killed: step " << step << " takes too long\n";
            return soak.Kill();
        }
    }

    std::mutex mutex_;
    std::condition_variable wake_;
    bool stop_ = false;
    std::thread thread_;
};

TEST(SoakTest, ShowsSavesAndHoldsWhatItShouldHoweverLongItIsUsed) {
    constexpr int kStepsPerSample = 40;
    const seconds length(Chosen("KIVRA_SOAK_SECONDS", 60));
    Soak soak(static_cast<std::uint32_t>(Chosen("KIVRA_SOAK_SEED", 1)));
    const Watchdog watchdog(soak);
    std::vector<ProcessResources> samples;
    const auto start = steady_clock::now();
    try {
        soak.DoEverythingTwice();
        while (steady_clock::now() < start + length || samples.size() < kFewestSamples) {
            for (int step = 0; step < kStepsPerSample; ++step)
                soak.DoSomething();
            samples.push_back(soak.ResourcesAtRest());
        }
        soak.Exit();
    } catch (const std::exception& error) {
        FAIL() << error.what() << '\n' << soak.Place();
    }
    EXPECT_EQ(Growth(samples), "");

    const auto taken = std::chrono::duration<double>(steady_clock::now() - start).count();
    const Soak::Counts& done = soak.Done();
    std::cout << soak.Steps() << " steps in " << std::lround(taken) << " s, "
              << static_cast<double>(soak.Steps()) / taken << " a second: " << done.saves
              << " saves compared (" << done.inPlace << " in place), " << done.opened
              << " files opened, " << done.searches
              << " searches\nAt first: " << ToText(samples.front())
              << "\nAt last:  " << ToText(samples.back()) << '\n';
    if (HasFailure()) {
        for (const ProcessResources& sample : samples)
            std::cout << ToText(sample) << '\n';
    }
}

} // namespace
} // namespace kvx::test
