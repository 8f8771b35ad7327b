/// A host without a network: nothing is mounted, nothing shared, and no settings lead anywhere, whatever the machine on
/// which the tests run has. What the settings said goes away with the object too. Part of the fixtures that start the
/// system.
#pragma once

#include "platform/Platform.h"

class NoHostNetwork {
public:
    NoHostNetwork()
    {
        Platform::SetMountTable("/nowhere/mounts");
        Platform::SetUserShareFolder("/nowhere/usershares");
        Platform::SetMappedFolders({}, {});
    }
    NoHostNetwork(NoHostNetwork const &) = delete;
    NoHostNetwork &operator=(NoHostNetwork const &) = delete;
    ~NoHostNetwork()
    {
        Platform::SetMappedFolders({}, {});
        Platform::SetMountTable(nullptr);
        Platform::SetUserShareFolder(nullptr);
    }
};
