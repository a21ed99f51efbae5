#pragma once

#include "foundation/threads/MSemaphore.h"
#include "foundation/threads/MThread.h"
#include "host/MAudioPlugin.h"

/// Looks ten times a second whether an editor is behind what was automated, and asks for it to be
/// refreshed: the audio thread, which notes the changes, may wake no one.
/// Runs from construction to destruction, which waits for its end.
class MAudioPlugin::AutomationUpdateRequestThread final : public MThread
{
public:
    /// @throws MException as MThread::Start
    explicit AutomationUpdateRequestThread(MAudioPlugin& watchedPlugin);
    ~AutomationUpdateRequestThread() override;

private:
    int Main() override;

    MAudioPlugin& plugin;
    MSemaphore wake;
};
