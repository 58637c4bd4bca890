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

/// A number that is shared, so that a test sees when the worker has freed its request.
struct Request {
    Request(int value) : number(std::make_shared<int>(value)) {}

    bool IsFreed() const { return number.use_count() == 1; }

    std::shared_ptr<int> number;
};

using Worker = LatestRequestWorker<Request, int>;

/// The thread that asks: a worker whose computations wait at a gate, and the queue it posts to.
class Desk {
public:
    Worker worker{[this](const Request& request) { return Computed(*request.number); },
                  [this](std::unique_ptr<Worker::Posted>&& posted) { return Take(posted); }};
    std::function<void()> whilePosting; ///< on the worker

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

private:
    int Computed(int request) {
        std::unique_lock lock(mutex_);
        ++begun_;
        changed_.notify_all();
        if (request < 0) throw std::length_error("too long");
        changed_.wait(lock, [this] { return open_; });
        return request;
    }

    bool Take(std::unique_ptr<Worker::Posted>& posted) {
        if (whilePosting) whilePosting();
        const std::lock_guard lock(mutex_);
        EXPECT_GT(posted->serial, lastSerial_);
        lastSerial_ = posted->serial;
        answers_.push_back(posted->result);
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
    desk.worker.Stop(); // as the end of its life does again
}

TEST(LatestRequestWorker, FreesWhatWaitsAndOutdatesWhatIsOnItsWayWhenNothingIsWantedAnyMore) {
    Desk desk;
    desk.SetGate(false);
    desk.worker.Start();
    const std::uint64_t serial = desk.worker.Submit(1);
    desk.WaitForBegun(1);
    const Request waiting = 2;
    desk.worker.Submit(waiting);
    desk.worker.DropPending();
    EXPECT_TRUE(waiting.IsFreed());
    EXPECT_FALSE(desk.worker.IsLatest(serial));
    EXPECT_FALSE(desk.worker.IsLatest(serial + 1));
    desk.SetGate(true);
    EXPECT_EQ(desk.AnswersUpTo(serial), (std::vector<int>{1}));
}

TEST(LatestRequestWorker, TakesNothingOnceItHasStoppedItselfUntilItIsStartedAgain) {
    Desk desk;
    desk.whilePosting = [&] { desk.worker.Stop(); };
    desk.SetGate(false);
    desk.worker.Start();
    const std::uint64_t serial = desk.worker.Submit(1);
    desk.WaitForBegun(1);
    const Request waiting = 2;
    desk.worker.Submit(waiting);
    desk.SetGate(true);
    EXPECT_EQ(desk.AnswersUpTo(serial), (std::vector<int>{1}));
    EXPECT_TRUE(waiting.IsFreed());
    const Request late = 3;
    desk.worker.Submit(late);
    EXPECT_TRUE(late.IsFreed());
    desk.worker.Start();
    EXPECT_EQ(desk.AnswersUpTo(desk.worker.Submit(4)), (std::vector<int>{4}));
}

TEST(LatestRequestWorker, GoesOnAfterAComputationThatFails) {
    Desk desk;
    desk.worker.Start();
    desk.worker.Submit(-1);
    desk.WaitForBegun(1);
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
}

} // namespace
} // namespace kvx
