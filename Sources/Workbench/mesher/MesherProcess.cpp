#include "Workbench/mesher/MesherProcess.hpp"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <deque>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include "Workbench/mesher/MesherSession.hpp"

namespace workbench {
namespace {

using Clock = std::chrono::steady_clock;
using Status = MeshOutcome::Status;

struct Job {
    std::uint64_t serial = 0;
    std::string path;
    MesherProcess::OnBatch onBatch;
    MesherProcess::OnDone onDone;
};

}  // namespace

class MesherProcess::Worker {
  public:
    explicit Worker(MesherSettings settings)
        : settings(std::move(settings)), wake(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
        if (!wake) throw std::system_error(errno, std::generic_category(), "eventfd");
        thread = std::thread([this] { Run(); });
    }

    ~Worker() {
        {
            const std::lock_guard lock(mutex);
            stopping = true;
            cancelledUpTo = lastSerial;
        }
        Wake();
        thread.join();
    }

    void Add(Job job) {
        {
            const std::lock_guard lock(mutex);
            cancelledUpTo = lastSerial;
            job.serial = ++lastSerial;
            waiting.push_back(std::move(job));
        }
        Wake();
    }

    void Cancel() {
        {
            const std::lock_guard lock(mutex);
            cancelledUpTo = lastSerial;
        }
        Wake();
    }

    int ChildId() const { return childId; }

  private:
    void Wake() const {
        const std::uint64_t one = 1;
        [[maybe_unused]] const ssize_t count = write(wake.Number(), &one, sizeof one);
    }

    void Run() {
        std::string ignored;
        Start(ignored);
        while (std::optional<Job> job = NextJob()) {
            const MeshOutcome outcome = Perform(*job);
            if (!session && !Stopping()) Start(ignored);
            job->onDone(outcome);
        }
        Drop();
    }

    // Waits for a file; none when the thread has to end.
    std::optional<Job> NextJob() {
        for (;;) {
            {
                const std::lock_guard lock(mutex);
                if (!waiting.empty()) {
                    Job job = std::move(waiting.front());
                    waiting.pop_front();
                    return job;
                }
                if (stopping) return std::nullopt;
            }
            Wait(std::nullopt);
            if (session && session->OutputEnded()) Drop();
        }
    }

    MeshOutcome Perform(const Job& job) {
        MeshOutcome outcome;
        if (Cancelled(job)) {
            outcome.status = Status::Cancelled;
            return outcome;
        }
        if (!Request(job.path, outcome.detail)) {
            outcome.status = Status::Crashed;
            return outcome;
        }
        const Clock::time_point deadline = Clock::now() + settings.timeLimit;
        MeshBatch batch;
        std::optional<Status> status;
        while (!status) {
            const bool understood = session->Read(
                [&](MeshMessage message) { Take(job, std::move(message), batch, outcome, status); });
            if (status) break;
            if (Cancelled(job)) {
                status = Status::Cancelled;
            } else if (!understood) {
                status = Status::Crashed;
                outcome.detail = "unexpected bytes on its standard output; ";
            } else if (session->OutputEnded()) {
                status = Status::Crashed;
            } else if (Clock::now() >= deadline) {
                status = Status::TimedOut;
            } else {
                Wait(deadline);
            }
        }
        outcome.status = *status;
        if (status != Status::Done && status != Status::Refused) {
            outcome.detail += session->End();
            Drop();
        }
        return outcome;
    }

    void Take(const Job& job, MeshMessage message, MeshBatch& batch, MeshOutcome& outcome,
              std::optional<Status>& status) {
        if (status) return;  // bytes after the end of the file's answer
        if (auto* element = std::get_if<ElementMeshPtr>(&message)) {
            batch.elements.push_back(std::move(*element));
        } else if (const auto* failed = std::get_if<MeshFailed>(&message)) {
            outcome.failed.push_back(failed->record);
        } else if (const auto* progress = std::get_if<MeshProgress>(&message)) {
            batch.done = progress->done;
            batch.total = progress->total;
            if (Cancelled(job)) return;
            outcome.elements += batch.elements.size();
            job.onBatch(std::exchange(batch, {}));
        } else if (auto* refused = std::get_if<MeshRefused>(&message)) {
            status = Status::Refused;
            outcome.detail = std::move(refused->reason);
        } else {
            status = Status::Done;
        }
    }

    bool Start(std::string& why) {
        try {
            session = std::make_unique<MesherSession>(settings.node, settings.script.string());
        } catch (const std::system_error& error) {
            why = error.what();
            return false;
        }
        childId = session->Id();
        return true;
    }

    void Drop() {
        session.reset();
        childId = 0;
    }

    // Hands the file to the child. One that died unnoticed is replaced once.
    bool Request(const std::string& path, std::string& why) {
        if (session && session->Request(path)) return true;
        Drop();
        if (!Start(why)) return false;
        if (session->Request(path)) return true;
        why = session->End();
        Drop();
        return false;
    }

    // Waits for something to happen, and takes in what the child says.
    void Wait(std::optional<Clock::time_point> deadline) {
        std::array<pollfd, 3> events{};
        events[0] = {wake.Number(), POLLIN, 0};
        events[1] = {session ? session->Output() : -1, POLLIN, 0};
        events[2] = {session && !session->ErrorTextEnded() ? session->ErrorOutput() : -1, POLLIN, 0};
        if (poll(events.data(), events.size(), Milliseconds(deadline)) <= 0) return;
        std::uint64_t count = 0;
        if (events[0].revents != 0) [[maybe_unused]]
            const ssize_t taken = read(wake.Number(), &count, sizeof count);
        if (events[1].revents != 0) session->TakeOutput();
        if (events[2].revents != 0) session->TakeErrorText();
    }

    static int Milliseconds(std::optional<Clock::time_point> deadline) {
        if (!deadline) return -1;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now()).count();
        return static_cast<int>(std::clamp<std::int64_t>(left, 0, INT_MAX));
    }

    bool Cancelled(const Job& job) const {
        const std::lock_guard lock(mutex);
        return job.serial <= cancelledUpTo;
    }

    bool Stopping() const {
        const std::lock_guard lock(mutex);
        return stopping;
    }

    const MesherSettings settings;
    const Descriptor wake;
    std::unique_ptr<MesherSession> session;  // the thread's own
    std::atomic<int> childId = 0;

    mutable std::mutex mutex;
    std::deque<Job> waiting;
    std::uint64_t lastSerial = 0;
    std::uint64_t cancelledUpTo = 0;
    bool stopping = false;

    std::thread thread;
};

MesherProcess::MesherProcess(MesherSettings settings)
    : worker(std::make_unique<Worker>(std::move(settings))) {}

MesherProcess::~MesherProcess() = default;

void MesherProcess::Mesh(const std::filesystem::path& path, OnBatch onBatch, OnDone onDone) {
    worker->Add({0, path.string(), std::move(onBatch), std::move(onDone)});
}

void MesherProcess::Cancel() {
    worker->Cancel();
}

int MesherProcess::ChildId() const {
    return worker->ChildId();
}

}  // namespace workbench
