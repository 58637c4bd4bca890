// A thread that computes the result of the newest request. A request that comes while an older one
// still waits takes its place, so a burst costs two computations, however long it is.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace kvx {

/// A result on its way from the worker to the thread that asked.
template <typename Result>
struct PostedResult {
    std::uint64_t serial = 0; ///< of the request that it answers
    Result result;
};

/// Owned by the thread that submits, the owner below. Start and stop as often as wanted.
template <typename Request, typename Result>
class LatestRequestWorker {
public:
    using Posted = PostedResult<Result>;

    /// Runs on the worker, without any lock.
    using Compute = std::function<Result(const Request&)>;

    /// Hands a result to the owner; runs on the worker. True when the receiver has taken it over
    /// (and released the pointer); false leaves it to the worker, which frees it.
    using Post = std::function<bool(std::unique_ptr<Posted>&&)>;

    LatestRequestWorker(Compute compute, Post post)
        : compute_(std::move(compute)), post_(std::move(post)) {}
    ~LatestRequestWorker() { Stop(); }
    LatestRequestWorker(const LatestRequestWorker&) = delete;
    LatestRequestWorker& operator=(const LatestRequestWorker&) = delete;

    /// Starts the thread unless it runs. Owner only. Throws std::system_error when the system gives
    /// no thread.
    void Start() {
        const std::lock_guard lifetime(lifetimeMutex_);
        if (thread_.joinable()) {
            if (!IsStopping()) return;
            thread_.join();
        }
        stopping_ = false; // there is no thread that looks
        thread_ = std::thread([this] { Run(); });
    }

    /// Drops the waiting request and ends the thread after the computation that it may be in;
    /// returns when it has ended. From any thread; on the worker itself it does not wait for the
    /// end.
    void Stop() {
        if (IsWorker()) return SetStopping();
        const std::lock_guard lifetime(lifetimeMutex_); // or a start in between would be joined
        SetStopping();
        wake_.notify_all();
        if (thread_.joinable()) thread_.join();
    }

    /// Leaves `request` to the worker in place of one that it has not taken yet. Owner only. Gives
    /// the serial that the result will carry. A stopped worker drops it.
    std::uint64_t Submit(Request request) {
        Replace(Pending{++latestSerial_, std::move(request)});
        wake_.notify_one();
        return latestSerial_;
    }

    /// Drops the waiting request and makes a result that is still on its way outdated. Owner only.
    void DropPending() {
        ++latestSerial_;
        Replace(std::nullopt);
    }

    /// False for the result of a request that is not the newest any more. Owner only.
    bool IsLatest(std::uint64_t serial) const { return serial == latestSerial_; }

private:
    using Pending = std::pair<std::uint64_t, Request>; ///< with its serial

    bool IsStopping() {
        const std::lock_guard lock(mutex_);
        return stopping_;
    }

    bool IsWorker() {
        const std::lock_guard lock(mutex_);
        return workerId_ == std::this_thread::get_id();
    }

    void SetStopping() {
        const std::lock_guard lock(mutex_);
        stopping_ = true;
        pending_.reset();
    }

    /// What was waiting is freed without the lock.
    void Replace(std::optional<Pending> next) {
        const std::lock_guard lock(mutex_);
        if (!stopping_) pending_.swap(next);
    }

    void Run() {
        while (const std::optional<Pending> taken = TakePending()) {
            try {
                post_(std::make_unique<Posted>(Posted{taken->first, compute_(taken->second)}));
            } catch (const std::exception&) {
                // No result for this request: unsaved edits are worth more than it.
            }
        }
    }

    /// Waits for a request; empty when the thread is to end.
    std::optional<Pending> TakePending() {
        std::unique_lock lock(mutex_);
        workerId_ = std::this_thread::get_id();
        wake_.wait(lock, [this] { return stopping_ || pending_.has_value(); });
        if (!stopping_) return std::exchange(pending_, std::nullopt);
        workerId_ = {}; // the system may give this number to another thread
        return std::nullopt;
    }

    const Compute compute_;
    const Post post_;
    std::uint64_t latestSerial_ = 0; ///< owner only

    std::mutex mutex_; ///< guards the next four; free while computing and posting
    std::condition_variable wake_;
    std::optional<Pending> pending_;
    bool stopping_ = true;
    std::thread::id workerId_;

    std::mutex lifetimeMutex_; ///< held while the thread is started or joined
    std::thread thread_;
};

} // namespace kvx
