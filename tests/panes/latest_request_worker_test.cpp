#include "panes/latest_request_worker.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <random>
#include <stdexcept>
#include <vector>

namespace kvx {
namespace {

using namespace std::chrono_literals;

/// Tells that it lives, so that one that nobody frees or two free is seen.
struct Answer {
    explicit Answer(int toRequest) : request(toRequest) { ++living; }
    Answer(Answer&& other) noexcept : request(other.request) { ++living; }
    Answer(const Answer&) = delete;
    ~Answer() { --living; }

    int request;
    static inline std::atomic<int> living = 0;
};

struct Request {
    Request(int theNumber, std::shared_ptr<int> itsLife = nullptr)
        : number(theNumber), life(std::move(itsLife)) {}

    int number;
    std::shared_ptr<int> life; ///< tells whoever watches it that the request is freed
};

using Worker = LatestRequestWorker<Request, Answer>;

/// The thread that asks: a worker whose computations wait at a gate, and the queue it posts to.
class Desk {
public:
    Worker worker{[this](const Request& request) { return Computed(request.number); },
                  [this](std::unique_ptr<Worker::Posted>&& posted) { return Take(posted); }};
    std::function<void(int request)> whilePosting; ///< on the worker
    bool takes = true;

    void SetGate(bool open) {
        const std::lock_guard lock(mutex_);
        open_ = open;
        changed_.notify_all();
    }

    /// Waits until that many computations have begun since the start.
    void WaitForBegun(int count) {
        std::unique_lock lock(mutex_);
        EXPECT_TRUE(changed_.wait_for(lock, 10s, [&] { return begun_ >= count; }));
    }

    /// Waits for the answer to that serial. Gives the requests answered since the last call.
    std::vector<int> AnswersUpTo(std::uint64_t serial) {
        std::unique_lock lock(mutex_);
        EXPECT_TRUE(changed_.wait_for(lock, 10s, [&] { return lastSerial_ >= serial; }));
        return std::exchange(answers_, {});
    }

    std::vector<int> Answers() { return AnswersUpTo(0); }

private:
    Answer Computed(int request) {
        if (request < 0) throw std::length_error("too long");
        std::unique_lock lock(mutex_);
        ++begun_;
        changed_.notify_all();
        changed_.wait(lock, [this] { return open_; });
        return Answer(request);
    }

    bool Take(std::unique_ptr<Worker::Posted>& posted) {
        if (whilePosting) whilePosting(posted->result.request);
        const std::lock_guard lock(mutex_);
        if (!takes) return false;
        EXPECT_GT(posted->serial, lastSerial_);
        lastSerial_ = posted->serial;
        answers_.push_back(posted->result.request);
        posted.reset();
        changed_.notify_all();
        return true;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    bool open_ = true;
    int begun_ = 0;
    std::uint64_t lastSerial_ = 0;
    std::vector<int> answers_;
};

TEST(LatestRequestWorker, AnswersOnlyTheFirstAndTheLastOfABurst) {
    Desk desk;
    desk.SetGate(false);
    desk.worker.Start();
    desk.worker.Start(); // changes nothing
    std::uint64_t serial = desk.worker.Submit(0);
    desk.WaitForBegun(1);
    for (int request = 1; request <= 1000; ++request)
        serial = desk.worker.Submit(request);
    desk.SetGate(true);
    EXPECT_EQ(desk.AnswersUpTo(serial), (std::vector<int>{0, 1000}));
    EXPECT_TRUE(desk.worker.IsLatest(serial));
    EXPECT_FALSE(desk.worker.IsLatest(serial - 1));
    desk.worker.Stop();
    EXPECT_EQ(Answer::living, 0);
}

TEST(LatestRequestWorker, StopsBehindTheComputationThatRunsAndDropsWhatWaits) {
    Desk desk;
    desk.SetGate(false);
    desk.worker.Start();
    desk.worker.Submit(1);
    desk.WaitForBegun(1);
    auto life = std::make_shared<int>();
    const std::weak_ptr<int> waiting = life;
    desk.worker.Submit({2, std::move(life)});
    std::atomic<bool> stopped = false;
    std::thread other([&] {
        desk.worker.Stop();
        stopped = true;
    });
    const auto patience = std::chrono::steady_clock::now() + 10s;
    while (!waiting.expired() && std::chrono::steady_clock::now() < patience)
        std::this_thread::sleep_for(1ms);
    EXPECT_TRUE(waiting.expired());
    EXPECT_FALSE(stopped);
    desk.SetGate(true);
    desk.worker.Stop();
    other.join();
    EXPECT_EQ(desk.Answers(), (std::vector<int>{1}));

    desk.worker.Submit(3); // to nobody
    desk.worker.Start();
    EXPECT_EQ(desk.AnswersUpTo(desk.worker.Submit(4)), (std::vector<int>{4}));
}

TEST(LatestRequestWorker, FreesTheResultsThatCannotBePosted) {
    Desk desk;
    desk.takes = false;
    desk.worker.Start();
    desk.worker.Submit(1);
    desk.WaitForBegun(1);
    desk.worker.Stop();
    EXPECT_EQ(desk.Answers(), std::vector<int>());
    EXPECT_EQ(Answer::living, 0);
}

TEST(LatestRequestWorker, OutdatesTheResultOnItsWayWhenNothingIsWantedAnyMore) {
    Desk desk;
    desk.SetGate(false);
    desk.worker.Start();
    const std::uint64_t serial = desk.worker.Submit(1);
    desk.WaitForBegun(1);
    desk.worker.Submit(2);
    desk.worker.DropPending();
    desk.SetGate(true);
    desk.AnswersUpTo(serial);
    desk.worker.Stop();
    EXPECT_EQ(desk.Answers(), std::vector<int>());
    EXPECT_FALSE(desk.worker.IsLatest(serial));
    EXPECT_FALSE(desk.worker.IsLatest(serial + 1));
}

TEST(LatestRequestWorker, CanBeStoppedByItselfAndStartedAgain) {
    Desk desk;
    desk.whilePosting = [&](int request) {
        if (request == 1) desk.worker.Stop();
    };
    desk.worker.Start();
    desk.AnswersUpTo(desk.worker.Submit(1));
    desk.worker.Start();
    EXPECT_EQ(desk.AnswersUpTo(desk.worker.Submit(2)), (std::vector<int>{2}));
}

TEST(LatestRequestWorker, GoesOnAfterAComputationThatFails) {
    Desk desk;
    desk.worker.Start();
    desk.worker.Submit(-1);
    EXPECT_EQ(desk.AnswersUpTo(desk.worker.Submit(1)), (std::vector<int>{1}));
}

TEST(LatestRequestWorker, KeepsItsPromisesWhateverTheOrderOfCalls) {
    Desk desk;
    std::mt19937 random(6);
    std::atomic<bool> done = false;
    std::thread other([&] {
        while (!done) {
            desk.worker.Stop();
            std::this_thread::sleep_for(1ms);
        }
    });
    for (int step = 0; step < 3000; ++step) {
        if (random() % 50 == 0)
            desk.worker.DropPending();
        else if (random() % 10 == 0)
            desk.worker.Start();
        else
            desk.worker.Submit(step);
        if (random() % 20 == 0) std::this_thread::yield();
    }
    done = true;
    other.join();
    desk.worker.Start();
    EXPECT_EQ(desk.AnswersUpTo(desk.worker.Submit(3000)).back(), 3000);
    desk.worker.Stop();
    EXPECT_EQ(Answer::living, 0);
}

} // namespace
} // namespace kvx
