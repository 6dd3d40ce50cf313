#include "transfer/WatchThread.hpp"

#include "palette/KestranePalette.hpp"

#include <thread>
#include <utility>

WatchThread::WatchThread(GS::Array<GS::Thread*> threads, GS::Array<GS::UniString> filePaths)
    : threads(std::move(threads)), filePaths(std::move(filePaths)) {}

bool WatchThread::HaveAllFinished() const {
    for (const GS::Thread* thread : threads) {
        if (!thread->GetState().IsFinished()) return false;
    }
    return true;
}

void WatchThread::Run() {
    while (!HaveAllFinished())
        std::this_thread::yield();
    for (const GS::Thread* thread : threads)
        delete thread;
    threads.Clear();

    KestranePalette::WithInstance(
        [this](KestranePalette& palette) { palette.CompleteImportModels(filePaths); });
}
