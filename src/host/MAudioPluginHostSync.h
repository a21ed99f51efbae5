#pragma once

#include "foundation/threads/MEventTarget.h"

/// Where what follows the host's clock meets the adapter's thread: it receives events, and its end
/// takes it off all of them.
class MAudioPluginHostSync : public MEventTarget
{
public:
    ~MAudioPluginHostSync() override = default;
};
