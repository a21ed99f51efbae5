#pragma once

#include <cstdlib>

#include <unistd.h>

/// Rights bind everybody but the superuser, which tests in containers often are: they are not as
/// long as this lives.
class OrdinaryUser
{
public:
    OrdinaryUser() : isRoot(geteuid() == 0)
    {
        if (isRoot && seteuid(65534) != 0)
            std::abort();
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser()
    {
        if (isRoot && seteuid(0) != 0)
            std::abort();
    }

private:
    bool isRoot;
};
