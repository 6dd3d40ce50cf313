#pragma once

#include "Array.hpp"
#include "Runnable.hpp"
#include "Thread.hpp"
#include "UniString.hpp"

/// Waits until the downloads of one request have ended, then gives the palette, when there still is one, the
/// paths of their files, whether or not they arrived.
class WatchThread : public GS::Runnable {
  public:
    /// The started threads, which become its own, and the files' paths.
    WatchThread(GS::Array<GS::Thread*> threads, GS::Array<GS::UniString> filePaths);

    void Run() override;

  private:
    bool HaveAllFinished() const;

    GS::Array<GS::Thread*> threads;
    GS::Array<GS::UniString> filePaths;
};
